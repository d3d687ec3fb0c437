#!/usr/bin/env bash
# lint.sh: clang-tidy over all sources, shellcheck over all scripts.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh clang clang-tidy shellcheck libtiff-dev libgtest-dev libbenchmark-dev cmake \
    ninja-build
shellcheck scripts/*.sh bench/*.sh bench/peers/*.sh .ci/run
cmake --preset clang -DVELMORANT_BENCH=ON >/dev/null
git ls-files -z '*.cpp' | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/clang
