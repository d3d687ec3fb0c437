#!/bin/sh
# parallel.sh STUDIES PICTURES [JOBS]: the pictures of a cohort with GNU parallel, JOBS at a time, or as many
# as there are cores. Called again, it goes on: with what failed and with what was not reached.
#
# STUDIES: a line for each study, its format, its image and the name of its picture, with tabs between.
# PICTURES: the folder; what became of each study is in PICTURES.joblog, its status in the column Exitval.
# Ends with the number of studies that failed, or 101 where there are more than a hundred.
set -u
studies=$1
pictures=$2
mkdir -p "$pictures"
exec parallel --will-cite --jobs "${3:-100%}" --colsep '\t' --joblog "$pictures.joblog" --resume-failed \
    'tiffgen-run --check-study --format {1} {2} {4}/{3} 0.0 -s1 >/dev/null' \
    :::: "$studies" ::: "$pictures"
