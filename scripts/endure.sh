#!/usr/bin/env bash
# endure.sh: the long tests of what a run withstands: one operation after the other failing in
# every format, and a thousand times sixteen first runs at once. A few minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh
echo "== Enduring"
build/tests/robustness_test --gtest_also_run_disabled_tests --gtest_filter='*DISABLED*'
