#!/usr/bin/env bash
# montage_vips.sh IMAGE PICTURE TYPE X Y SLICES FRAME PALETTE: the same picture with the command line of
# libvips. TYPE is its own, short or float; PALETTE is an image of 256 x 1 RGB pixels.
set -euo pipefail
image=$1 picture=$2 type=$3 x=$4 y=$5 slices=$6 frame=$7 palette=$8

work=$(mktemp -d "$(dirname "$picture")/vips.XXXXXX")
trap 'rm -r "$work"' EXIT
element=2
if [ "$type" = float ]; then
    element=4
fi
rows=$(((slices + 9) / 10))
vips rawload "$image" "$work/stored.v" "$x" $((y * slices)) 1 --format "$type" \
    --offset $(((frame - 1) * x * y * slices * element))
vips byteswap "$work/stored.v" "$work/volume.v"
maximum=$(vips max "$work/volume.v")
factor=$(awk -v maximum="$maximum" 'BEGIN { printf "%.17g", 254 / maximum }')
vips linear "$work/volume.v" "$work/indices.v" "$factor" 0 --uchar
vips embed "$work/indices.v" "$work/tiles.v" 0 0 "$x" $((y * rows * 10))
vips grid "$work/tiles.v" "$work/montage.v" "$y" 10 "$rows"
vips maplut "$work/montage.v" "$picture" "$palette"
