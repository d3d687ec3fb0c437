#!/usr/bin/env bash
# bench.sh [--smallest]: checks and times the stages of a run, then whole runs. Only what is said in
# seconds differs from machine to machine; --smallest takes the smallest studies, briefly.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh libbenchmark-dev
scripts/build.sh plain -DVELMORANT_BENCH=ON
echo "== Timing the stages"
if [ "${1:-}" = --smallest ]; then
    build/bench/stage_bench --benchmark_min_time=0.01 --benchmark_filter='/(64/64/32|4|64)/real_time'
    echo "== Timing whole runs"
    ROUNDS=3 bench/whole_program.sh --smallest
else
    build/bench/stage_bench
    echo "== Timing whole runs"
    bench/whole_program.sh
fi
