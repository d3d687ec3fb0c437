#!/usr/bin/env bash
# cohort.sh FOLDER PROGRAMS: makes up a cohort, 66 studies in all formats, in FOLDER/studies, from the example
# programs in the folder PROGRAMS. FOLDER/studies.tsv lists them as the recipes take it; the studies named in
# FOLDER/damaged are damaged, each in its own way, or not there.
set -euo pipefail
mkdir -p "$1/studies"
cd "$1"
make=$2/make_phantom

formats=(CTI6 SHORTINT2B SHORTINT2L FLOATB FLOATL NIFTI)
endings=(v img img img img nii.gz)
: >studies.tsv
for number in {1..66}; do
    format=${formats[number % 6]}
    name=$(printf 'study-%02d' "$number")
    image=$PWD/studies/$name.${endings[number % 6]}
    "$make" "$format" "$image" $((48 + 16 * (number % 3))) 64 $((12 + number % 5)) 2 1
    printf '%s\t%s\t%s\n' "$format" "$image" "$name" >>studies.tsv
done

damage() { # NUMBER COMMAND...
    "${@:2}"
    echo "study-$1" >>damaged
}
strip_orientation() { # IMAGE.nii.gz
    gzip -d "$1"
    # sform_code and qform_code
    printf '\0\0\0\0' | dd of="${1%.gz}" bs=1 seek=252 conv=notrunc status=none
    gzip "${1%.gz}"
}
cp studies/study-07.img whole.img
: >damaged
damage 06 truncate -s 3000 studies/study-06.v
damage 07 truncate -s -1 studies/study-07.img
damage 14 rm studies/study-14.hdr
damage 23 truncate -s -100 studies/study-23.nii.gz
damage 34 rm studies/study-34.img
damage 41 strip_orientation studies/study-41.nii.gz
