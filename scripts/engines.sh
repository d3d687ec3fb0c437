#!/usr/bin/env bash
# engines.sh [parallel|snakemake|slurm]...: makes the pictures of a cohort, some of its studies damaged, with
# the recipe for each engine, all if none is named. Killed in the middle, each has to leave no picture
# half-made and to go on from there, to report the damaged studies and no others, to make nothing twice, and
# to make what was mended. All have to make the same pictures. Slurm wants root.
set -euo pipefail
cd "$(dirname "$0")/.."
engines=("$@")
if [ "${#engines[@]}" -eq 0 ]; then
    engines=(parallel snakemake slurm)
fi

scripts/build.sh
cmake --install build --prefix "$PWD/build/recipes" >/dev/null
export PATH=$PWD/build/recipes/bin:$PATH
export recipes=$PWD/build/recipes/share/velmorant/recipes
page=$PWD/docs/batch.md
one_node_slurm=$PWD/scripts/one_node_slurm.sh
work=$(mktemp -d)
chmod 755 "$work"
mkdir "$work/tmp"
export TMPDIR=$work/tmp
export studies=$work/studies.tsv
export SLURM_CONF=$work/cluster/slurm.conf
trap '[ ! -e "$SLURM_CONF" ] || "$one_node_slurm" stop "$work/cluster"; rm -rf "$work"' EXIT
scripts/cohort.sh "$work" "$PWD/build/examples"
cp -r "$work/studies" "$work/as-made"

prepare_parallel() {
    scripts/packages.sh parallel
}
prepare_snakemake() {
    scripts/packages.sh snakemake
}
prepare_slurm() {
    scripts/packages.sh munge slurm-wlm
    "$one_node_slurm" start "$work/cluster"
}

# The lines of the page that start an engine, in a folder of the engine's own with the list.
lines_of_page() { # WORD
    sed -n "/^    .*$1/,/^\$/p" "$page"
}
export parallel_lines snakemake_lines slurm_lines
parallel_lines=$(lines_of_page parallel.sh)
snakemake_lines=$(lines_of_page 'snakemake ')
slurm_lines=$(lines_of_page size= | sed 's/size=.*/size=10/; s/sbatch /&--parsable /')
run_parallel() {
    bash -euc "$parallel_lines"
}
run_snakemake() {
    snakemake --snakefile "$recipes/Snakefile" --unlock --config studies=studies.tsv pictures=pictures
    bash -euc "$snakemake_lines"
}
run_slurm() {
    local job
    job=$(bash -euc "$slurm_lines")
    local end=$((SECONDS + 300)) left
    until left=$(squeue -h -j "$job") && [ -z "$left" ]; do # sbatch --wait looks every half minute
        [ "$SECONDS" -lt "$end" ] || return 0
        sleep 0.2
    done
    ! grep "ArrayJobId=$job " "${SLURM_CONF%/*}/jobcomp.txt" | grep -q JobState=FAILED
}
export -f run_parallel run_snakemake run_slurm

fail() {
    echo "engines.sh: $*" >&2
    tail -n 20 log >&2
    exit 1
}

pictures() {
    find pictures -name '[!.]*.tif' 2>/dev/null | sort
}

when_made() {
    pictures | xargs stat -c '%n %i %y'
}

# The engine and its jobs are killed at once, as by a failing machine; Slurm's are cancelled.
kill_in_the_middle() { # ENGINE
    setsid bash -c "run_$1" >log 2>&1 &
    until [ "$(pictures | wc -l)" -ge 10 ]; do
        kill -0 "$!" 2>/dev/null || fail "ended by itself"
        sleep 0.01
    done
    if [ "$1" = slurm ]; then
        scancel --name=pictures
    else
        pkill -KILL --session "$!"
    fi
    wait "$!" 2>/dev/null || true
    sleep 2 # what was cancelled comes to its end
    local made
    made=$(pictures | wc -l)
    [ "$made" -lt 60 ] || fail "was not killed in the middle"
    pictures | xargs -n 1 tiffgen-check picture >/dev/null || fail "a picture is half-made"
    when_made >killed
    echo "   killed after $made pictures, all of them whole"
}

# What the engine and its jobs said, wherever.
said() {
    cat log pictures/*.log pictures-*.log 2>/dev/null || true
}

run_to_the_end() { # ENGINE FILE; the file names the studies that have to fail
    rm -f pictures-*.log pictures/*.log
    if "run_$1" >log 2>&1; then
        fail "ended with status 0 though studies failed"
    fi
    { "$recipes/missing-pictures" "$studies" pictures || true; } | cut -f 3 | diff "$2" - ||
        fail "other pictures are missing"
    said | grep -o '^tiffgen-run: [^:]*' | sed 's/.*\///; s/\..*//' | sort -u | diff "$2" - ||
        fail "other studies were reported"
}

for engine in "${engines[@]}"; do
    echo "== The recipe for $engine"
    "prepare_$engine"
    mkdir "$work/$engine"
    cd "$work/$engine"
    cp "$studies" .
    kill_in_the_middle "$engine"

    run_to_the_end "$engine" "$work/damaged"
    # Those that were just being finished may have got no note of it.
    [ "$(when_made | diff killed - | grep -c '^<')" -le 2 ] || fail "began from the start"
    when_made >made
    run_to_the_end "$engine" "$work/damaged"
    when_made | diff made - || fail "made a picture twice"
    echo "   went on, reported $(wc -l <"$work/damaged") damaged studies one by one, and made no picture twice"

    cp "$work/whole.img" "$work/studies/study-07.img"
    grep -vx study-07 "$work/damaged" >still-damaged
    run_to_the_end "$engine" still-damaged
    [ "$(when_made | diff made - | grep -c '^>')" -eq 1 ] || fail "made more than what was mended"
    echo "   made the one that was mended"
    cp -p "$work/as-made/study-07.img" "$work/studies/"

    pictures | xargs sha256sum >"$work/$engine.sums"
    cmp "$work/$engine.sums" "$work/${engines[0]}.sums"
    cd - >/dev/null
done

echo "== Contact sheets"
scripts/packages.sh imagemagick libtiff-tools fonts-dejavu-core
"$recipes/contact-sheets.sh" "$work/${engines[0]}/pictures" "$work/sheet"
ls "$work"/sheet-00[123].png "$work"/sheet-00[123].pdf >/dev/null
