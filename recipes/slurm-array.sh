#!/bin/sh
#SBATCH --job-name=pictures
#SBATCH --cpus-per-task=1
#SBATCH --mem=1G
#SBATCH --time=2:00:00
#SBATCH --output=pictures-%A_%a.log
# The pictures of a cohort as a Slurm array. Each task makes those of SIZE studies, one after another:
#
#   size=100
#   tasks=$((($(grep -c '' studies.tsv) + size - 1) / size))
#   sbatch --array=1-$tasks /usr/share/velmorant/recipes/slurm-array.sh studies.tsv pictures $size
#
# studies.tsv: a line for each study, its format, its image and the name of its picture, with tabs between.
# pictures: a folder that is there. A task ends with status 1 where a study failed, and its log says which
# and why. Submitted again, an array makes what is missing.
set -u
studies=$1
pictures=$2
size=$3
last=$((SLURM_ARRAY_TASK_ID * size))
first=$((last - size + 1))
tab=$(printf '\t')
failed=0
# Slurm ends a task by SIGTERM to all its processes, and tiffgen-run cleans up then.
trap 'exit 143' TERM
while IFS=$tab read -r keyword image name; do
    if [ ! -e "$pictures/$name.tif" ]; then
        tiffgen-run --check-study --format "$keyword" "$image" "$pictures/$name" 0.0 -s1 \
            >/dev/null </dev/null || failed=1
    fi
done <<END
$(sed -n "$first,${last}p" "$studies")
END
exit "$failed"
