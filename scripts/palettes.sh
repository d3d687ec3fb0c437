#!/usr/bin/env bash
# palettes.sh: makes docs/palettes.png, which shows every palette on the same made-up study.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh imagemagick fonts-dejavu-core
scripts/build.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp build/tiffgen "$work"
build/examples/make_phantom FLOATL "$work/phantom.img" 56 56 6
palettes=(rainbow spectrum turbo hot-iron hot-metal-blue pet pet-20-step viridis inferno gray inverted-gray)
for palette in "${palettes[@]}"; do
    status=0
    (cd "$work" && ./tiffgen phantom.img "$palette" 0.0 -f4 -X6 -s1 \
        "-c$OLDPWD/palettes/$palette.plt" >/dev/null) || status=$?
    if [ "$status" -ne 1 ]; then
        echo "palettes.sh: no picture of $palette" >&2
        exit 1
    fi
    convert "$work/$palette.tif" -bordercolor white -border 4 \
        -font DejaVu-Sans -pointsize 13 -background white -gravity south "label:$palette" \
        -append "$work/$palette.png"
done
# Without dates and the like, so that the same pixels make the same file.
pages=("${palettes[@]/#/$work/}")
montage "${pages[@]/%/.png}" -tile 2x -geometry +6+2 -background white -strip \
    -define png:compression-level=9 -define png:exclude-chunk=date,time docs/palettes.png
