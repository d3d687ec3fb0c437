#!/usr/bin/env bash
# demo.sh: builds everything, makes up a study and turns it into a picture in out/.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh
scripts/packages.sh man-db || echo "== README.md's tour reads manual pages, for which man-db is missing"
mkdir -p out
cp build/tiffgen palettes/rainbow.plt out/
cd out
echo "== Making up a study: out/phantom.img, 4 frames at 2 bed positions"
../build/examples/make_phantom SHORTINT2L phantom.img
echo "== ./tiffgen makes its preference files, GLOBAL.prf and tiffgen.prf"
status=0
./tiffgen >/dev/null || status=$?
[ "$status" -eq 255 ] # that of the usage text
echo "== ./tiffgen phantom.img phantom 0.0 -f4 -s1"
status=0
./tiffgen phantom.img phantom 0.0 -f4 -s1 || status=$?
if [ "$status" -ne 1 ]; then
    echo "demo.sh: tiffgen ended with status $status instead of 1, which says that the picture is made" >&2
    exit 1
fi
echo "== The picture, all slices of frame 4 with a colour scale: $PWD/phantom.tif"
