#!/usr/bin/env bash
# test.sh [PRESET]: builds everything and passes the tests.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-plain}

scripts/packages.sh pkg-config
scripts/build.sh "$preset"
echo "== Testing ($preset)"
case $preset in
plain) ctest --test-dir build --output-on-failure --no-tests=error --timeout 120 --parallel 2 ;;
*) ctest --preset "$preset" ;;
esac
