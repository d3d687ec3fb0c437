#!/usr/bin/env bash
# test.sh [PRESET [-DOPTION=VALUE...]]: builds everything and passes the tests.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-plain}

scripts/packages.sh pkg-config
scripts/build.sh "$@"
folder=build-$preset
if [ "$preset" = plain ]; then
    folder=build
fi
echo "== Testing ($preset)"
# Of the program itself a sanitizer's own status, 1, says that all went well.
export ASAN_OPTIONS=exitcode=99:verify_asan_link_order=0 UBSAN_OPTIONS=exitcode=99:print_stacktrace=1
ctest --test-dir "$folder" --output-on-failure --no-tests=error --timeout 120 --parallel 2
