#!/usr/bin/env bash
# lint.sh: clang-tidy over all sources, shellcheck over all scripts.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh clang clang-tidy shellcheck libtiff-dev libgtest-dev cmake ninja-build
shellcheck scripts/*.sh .ci/run
cmake --preset clang >/dev/null
git ls-files -z '*.cpp' | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/clang
