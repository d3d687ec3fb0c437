#!/usr/bin/env bash
# fuzz.sh [RUNS [HARNESS...]]: runs the fuzzing harnesses, all of them if none is named, on so many
# inputs each (a million), two at a time. What they learn is kept in build-sanitizers/corpus/, and a finding
# in build-sanitizers/: it ends its harness, and belongs in fuzz/seeds/ as found-WHAT once it is mended.
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-1000000}
harnesses=("${@:2}")
if [ "${#harnesses[@]}" -eq 0 ]; then
    harnesses=(raw ecat preference palette options formats check nifti)
fi

scripts/build.sh sanitizers "${harnesses[@]/#/fuzz_}"
# A small quarantine: memory that was freed long ago would only go through the caches.
export ASAN_OPTIONS=quarantine_size_mb=1:malloc_context_size=0

# Whole paths, because a harness goes to a folder of its own, and a pipe, because it limits the size of
# its files.
fuzz() {
    set -o pipefail
    mkdir -p "build-sanitizers/corpus/$1"
    if "build-sanitizers/fuzz/fuzz_$1" -runs="$2" -dict=fuzz/dictionary.txt -detect_leaks=0 \
        -timeout=20 -entropic_scale_per_exec_time=1 -print_final_stats=1 -reload=0 \
        -artifact_prefix="$PWD/build-sanitizers/$1-" \
        "$PWD/build-sanitizers/corpus/$1" "$PWD/fuzz/seeds/$1" |& cat >"build-sanitizers/$1.log"; then
        awk -v name="$1" '/number_of_executed/ { print "   " name ": " $2 " inputs, no finding" }' \
            "build-sanitizers/$1.log"
    else
        echo "fuzz.sh: a finding of $1, see build-sanitizers/$1.log" >&2
        return 1
    fi
}
export -f fuzz

echo "== Fuzzing, $runs inputs each: ${harnesses[*]}"
printf '%s\n' "${harnesses[@]}" | xargs -P 2 -I{} bash -c "fuzz {} $runs"
