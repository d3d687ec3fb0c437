#!/usr/bin/env bash
# whole_program.sh [--smallest]: times whole runs of tiffgen on made-up studies, in pairs with what else
# could make the same picture: a script on numpy and tifffile, and libvips, where they are installed; and
# with the least that any program would have to do (bench/copy_study.cpp). Prints the table that is kept
# in docs/performance.md. Everything is in the page cache. Needs 3 GB in TMPDIR, or 20 MB for the
# smallest study alone.
set -euo pipefail
cd "$(dirname "$0")/.."
source=$PWD
build=${BUILD:-build}
smallest=${1:-}

work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
mkdir "$work/ecat"
cp "$build/tiffgen" palettes/rainbow.plt "$work"
cp "$build/tiffgen" "$work/ecat"
for program in examples/make_phantom bench/copy_study bench/time_pair; do
    cp "$build/$program" "$work"
done
cd "$work"

python=
for candidate in python3 /usr/bin/python3; do
    if "$candidate" -c 'import numpy, tifffile' 2>/dev/null; then
        python=$candidate
        break
    fi
done
has_vips=
if command -v vips >/dev/null; then
    has_vips=yes
    export VIPS_WARNING=off
    # The palette's three tables, red, green and blue, as the bands of an image.
    for band in 0 1 2; do
        vips rawload rainbow.plt band$band.v 256 1 1 --offset $((256 * band))
    done
    vips bandjoin "band0.v band1.v band2.v" bands.v
    vips copy bands.v palette.v --interpretation srgb
fi

# The first run writes the preference files; the ECAT folder gets its own.
first_run() {
    ./make_phantom FLOATB first.img 8 8 1 1 1
    ./tiffgen first.img first 0.0 >/dev/null || [ $? -eq 1 ]
    cp GLOBAL.prf tiffgen.prf ecat
    sed -i 's/"FLOATB"/"CTI6"/' ecat/GLOBAL.prf
}

# What each command of a round came to, as time_pair prints it, goes into the arrays times, ratios, peaks.
pair() {
    times=() ratios=() peaks=()
    local time ratio peak status
    while read -r time ratio peak status; do
        if [ "$status" -gt 1 ]; then
            echo "whole_program.sh: a run ended with status $status" >&2
            exit 1
        fi
        times+=("$time") ratios+=("$ratio") peaks+=("$peak")
    done < <(./time_pair "$@")
}

quotient() {
    awk -v a="$1" -v b="$2" -v digits="$3" 'BEGIN { printf "%.*f", digits, a / b }'
}

# row NAME KEYWORD X Y SLICES FRAMES FRAME ROUNDS
row() {
    local name=$1 keyword=$2 x=$3 y=$4 slices=$5 frames=$6 frame=$7 rounds=$8
    local numpy_type='>i2' vips_type=short element=2
    if [ "$keyword" = FLOATB ]; then
        numpy_type='>f4' vips_type=float element=4
    fi
    local bytes=$((x * y * slices * element))
    ./make_phantom "$keyword" study.img "$x" "$y" "$slices" "$frames" 1
    ./tiffgen study.img picture 0.0 "-f$frame" >/dev/null || [ $? -eq 1 ]

    local commands=("$rounds" ./tiffgen study.img picture 0.0 "-f$frame"
        -- ./copy_study study.img $(((frame - 1) * bytes)) "$bytes" copy.tif
        "$(stat -c %s picture.tif)")
    if [ -n "$python" ]; then
        commands+=(-- "$python" "$source/bench/peers/montage_numpy.py" study.img numpy.tif
            "$numpy_type" "$x" "$y" "$slices" "$frame" rainbow.plt)
    fi
    if [ -n "$has_vips" ]; then
        commands+=(-- "$source/bench/peers/montage_vips.sh" study.img "$work/vips.tif"
            "$vips_type" "$x" "$y" "$slices" "$frame" palette.v)
    fi
    pair "${commands[@]}"
    if [ -n "$python" ]; then
        for picture in numpy.tif vips.tif; do
            [ ! -e "$picture" ] || "$python" "$source/bench/peers/same_picture.py" picture.tif "$picture"
        done
    fi
    rm -f copy.tif numpy.tif vips.tif

    local columns=("${times[0]}" "${times[1]}")
    local peer=2
    for present in "$python" "$has_vips"; do
        if [ -n "$present" ]; then
            columns+=("${times[$peer]}" "$(quotient 1 "${ratios[$peer]}" 3)")
            peer=$((peer + 1))
        else
            columns+=(- -)
        fi
    done
    local numpy_peak=-
    [ -z "$python" ] || numpy_peak=$(quotient "${peaks[2]}" 1024 1)
    columns+=("$(quotient "${peaks[0]}" 1024 1)" "$numpy_peak")
    printf '| %s |' "$name" "${columns[@]}" | sed 's/||/|/g'
    printf '\n'
    raw_time=${times[0]}
}

first_run
echo '| study | tiffgen, ms | copy, ms | numpy, ms | of numpy | libvips, ms | of libvips | tiffgen, MiB | numpy, MiB |'
echo '|---|---|---|---|---|---|---|---|---|'
row S FLOATB 128 128 60 1 1 "${ROUNDS:-40}"
if [ "$smallest" = --smallest ]; then
    exit
fi
small=$raw_time
row M SHORTINT2B 256 256 128 1 1 15
row L FLOATB 512 512 512 1 1 5
growth=$(awk -v a="$raw_time" -v b="$small" \
    'BEGIN { printf "%.2f", (a - b) * 1e6 / (512 * 512 * 512 - 128 * 128 * 60) }')
row XL SHORTINT2B 128 128 63 60 30 "${ROUNDS:-40}"

./make_phantom CTI6 study.ecat 128 128 63 60 1
pair "${ROUNDS:-40}" ./tiffgen study.img picture 0.0 -f30 -- ecat/tiffgen study.ecat picture 0.0 -f30
echo
echo "Growth from S to L: $growth ns a voxel."
echo "ECAT 6, 60 frames of 63 planes, frame 30: ${times[1]} ms, ${ratios[1]} of the raw XL, peak $(quotient "${peaks[1]}" 1024 1) MiB."
