#!/usr/bin/env bash
# seeds.sh: makes the fuzzing harnesses' kept seeds anew, from the example programs, in fuzz/seeds/.
# What fuzzing found, files named found-WHAT, stays, and so does nifti/second, which no program here makes.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh
programs=$PWD/build
seeds=$PWD/fuzz/seeds
mkdir -p "$seeds"/{raw,ecat,preference,palette,options,formats,check,nifti}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$programs/tiffgen" palettes/rainbow.plt "$work"
cd "$work"

for keyword in SHORTINT2B SHORTINT2L FLOATB FLOATL; do
    "$programs/examples/make_phantom" "$keyword" a.img 5 4 3 2 2
    cat a.hdr a.img >"$seeds/raw/$keyword"
done
sed 's/data format :=1/data format :=2/; s/offset in bytes :=0/offset in bytes :=7/' \
    "$seeds/raw/SHORTINT2L" >"$seeds/raw/unsigned"

{ echo "-x1 -y1 -X1 -f2 -b1"; cat "$seeds/raw/FLOATL"; } >"$seeds/raw/options"
sed 's/matrix size \[\([12]\)\] :=.*/matrix size [\1] :=65536/; s/of slices :=.*/of slices :=1/' \
    "$seeds/raw/options" >"$seeds/raw/huge"

"$programs/examples/make_phantom" CTI6 "$seeds/ecat/one" 16 16 1
"$programs/examples/make_phantom" CTI6 "$seeds/ecat/many" 5 3 2 2 2
{ echo "-x2 -y9 -s0 -f2 -b1 -g1 -m3"; cat "$seeds/ecat/many"; } >"$seeds/ecat/options"

for keyword in CTI6 SHORTINT2B SHORTINT2L FLOATB FLOATL; do
    "$programs/examples/make_phantom" FLOATB a.img 8 4 2 2 2
    for operation in 0 1 2 3; do
        { echo "$keyword $operation"; cat a.hdr a.img; } >"$seeds/formats/$keyword-$operation"
    done
done
{ echo "SHORTINT2B 0 100 5.5 -1"; cat a.hdr a.img; } >"$seeds/formats/quantised"

sed '1s/.*/SHORTINT2L 3/; s/offset in bytes :=0/offset in bytes :=-5/' \
    "$seeds/formats/SHORTINT2L-0" >"$seeds/formats/negative"

head -c 768 rainbow.plt >"$seeds/palette/rainbow"
./tiffgen >/dev/null || true
sed "s|$work|/home/u|" tiffgen.prf >"$seeds/preference/tiffgen"
{ cat GLOBAL.prf; echo 'color palette file := "p.plt"'; } >"$seeds/preference/both"
./tiffgen a.img colour 0.0 -X1 -s1 >/dev/null || true
./tiffgen a.img gray 0.0 -X1 -y31 -g1 >/dev/null || true
cp colour.tif gray.tif "$seeds/ecat/many" "$seeds/raw/SHORTINT2L" "$seeds/check"

"$programs/examples/make_phantom" NIFTI "$seeds/nifti/series.nii" 5 4 3 2 1
gzip -n <"$seeds/nifti/series.nii" >"$seeds/nifti/compressed"
mv "$seeds/nifti/series.nii" "$seeds/nifti/series"

printf '%s' 'phantom.img phantom 0.0 -f4 -s1' >"$seeds/options/demo"
printf '%s' 'a.img "o u t" 250 -b1 -x100 -y100 -X8 -chot.plt -m50 -g1 -hb.img -pmy.prf -s0' \
    >"$seeds/options/all"
