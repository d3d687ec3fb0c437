#!/bin/sh
# parallel.sh STUDIES PICTURES [JOBS]: the pictures of a cohort with GNU parallel, JOBS at a time, or as many
# as there are cores. Called again, it makes what is missing.
#
# STUDIES: a line for each study, its format, its image and the name of its picture, with tabs between.
# PICTURES: the folder; what became of each study of the last call is in PICTURES.joblog, its status in the
# column Exitval. Ends with the number of studies that failed, or 101 where there are more than a hundred.
# What is there decides, and not parallel's own --resume, which takes the lines of any list for those of the one before.
set -u
studies=${1:?STUDIES PICTURES [JOBS]}
pictures=${2%/}
tab=$(printf '\t')
[ -r "$studies" ] || {
    echo "parallel.sh: can't read $studies" >&2
    exit 255
}
mkdir -p "$pictures"
while IFS=$tab read -r keyword image name || [ -n "$keyword" ]; do
    [ -e "$pictures/$name.tif" ] || printf '%s\t%s\t%s\n' "$keyword" "$image" "$pictures/$name"
done <"$studies" |
    parallel --will-cite --jobs "${3:-100%}" --colsep '\t' --trim n --joblog "$pictures.joblog" \
        'tiffgen-run --check-study --format {1} {2} {3} 0.0 -s1 >/dev/null'
