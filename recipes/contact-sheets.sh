#!/bin/sh
# contact-sheets.sh PICTURES SHEETS: small versions of all pictures of a folder with their names, 24 a page, as
# SHEETS-001.png and SHEETS-001.pdf, an A4 page, and so on. With ImageMagick's montage, libtiff's tiff2pdf and
# the font DejaVu Sans: Debian's imagemagick, libtiff-tools and fonts-dejavu-core.
set -eu
pictures=${1:?PICTURES SHEETS}
sheets=${2:?PICTURES SHEETS}
[ -d "$pictures" ] || {
    echo "contact-sheets.sh: no folder $pictures" >&2
    exit 1
}
page=0
make_page() { # PICTURE...
    page=$((page + 1))
    name=$(printf '%s-%03d' "$sheets" "$page")
    montage -font DejaVu-Sans -label '%t' "$@" -tile 3x8 -geometry 400x180+6+2 -depth 8 -alpha off "$name.tif"
    convert "$name.tif" -strip "$name.png"
    tiff2pdf -p A4 -F -z -o "$name.pdf" "$name.tif"
    rm "$name.tif"
}
list=$(find "$pictures" -name '[!.]*.tif' | sort)
[ -n "$list" ] || exit 0
set --
while IFS= read -r picture; do
    set -- "$@" "${picture}[400x180]" # read small: all of a page are in memory
    if [ $# -eq 24 ]; then
        make_page "$@"
        set --
    fi
done <<END
$list
END
[ $# -eq 0 ] || make_page "$@"
