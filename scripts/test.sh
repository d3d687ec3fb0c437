#!/usr/bin/env bash
# test.sh [PRESET]: builds everything and passes the tests.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-release}

scripts/packages.sh pkg-config
scripts/build.sh "$preset"
echo "== Testing ($preset)"
ctest --preset "$preset"
