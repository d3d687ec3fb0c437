#!/usr/bin/env bash
# costs.sh [ROUNDS]: what one study costs with tiffgen-run, in every format and in three sizes: the files in
# MB, the shortest of ROUNDS (5) runs in milliseconds, without and with --check-study, the processor time of
# that, and the largest process in MB. Files are in the system's cache. A picture of all slices, 32 in a row.
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${1:-5}
scripts/packages.sh time
scripts/build.sh >/dev/null
cmake --install build --prefix "$PWD/build/recipes" >/dev/null
export PATH=$PWD/build/recipes/bin:$PATH
make=$PWD/build/examples/make_phantom
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TMPDIR=$work
cd "$work"

# Prints milliseconds, those of the processor, and kB: the least of several runs, and the most memory of one.
measure() { # COMMAND...
    local round TIMEFORMAT='%3R %3U %3S'
    for ((round = 0; round < rounds; round++)); do
        { time "$@" >/dev/null; } 2>>"times"
    done
    "$(type -P time)" -o memory -f %M "$@" >/dev/null
    awk '{ wall = $1 * 1000; cpu = ($2 + $3) * 1000
           if (NR == 1 || wall < least) least = wall
           if (NR == 1 || cpu < least_cpu) least_cpu = cpu }
         END { printf "%d %d ", least, least_cpu }' times
    cat memory
    rm times
}

echo '| Pixels, frames | Format | Files | Run | Checked | Processor | Memory |'
echo '|---|---|---|---|---|---|---|'
for pixels in '128 128 64 1' '128 128 64 32' '256 256 128 1' '512 512 256 1'; do
    read -r x y z frames <<<"$pixels"
    for format in CTI6 SHORTINT2L FLOATL NIFTI NIFTI.gz; do
        image=study.${format#NIFTI.}
        case $format in
        NIFTI*) image=study.nii${format#NIFTI} ;;
        esac
        # shellcheck disable=SC2086 # several words
        "$make" "${format%.gz}" "$image" $x $y $z $frames 1
        size=$(($(stat -c %s "$image") / 1000000))
        command=(tiffgen-run --format "${format%.gz}" "$image" picture 0.0 -X32 "-f$frames")
        read -r plain _ _ <<<"$(measure "${command[@]}")"
        read -r checked cpu memory <<<"$(measure tiffgen-run --check-study "${command[@]:1}")"
        printf '| %s × %s × %s, %s | %s | %s MB | %s ms | %s ms | %s ms | %s MB |\n' "$x" "$y" "$z" "$frames" \
            "$format" "$size" "$plain" "$checked" "$cpu" "$((memory / 1000))"
        rm -f study.*
    done
done
