#!/usr/bin/env bash
# lint.sh: clang-tidy over all sources, shellcheck over all scripts, and manual pages without a warning.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh clang clang-tidy shellcheck libtiff-dev libnifti2-dev libgtest-dev \
    libbenchmark-dev cmake make man-db
shellcheck scripts/*.sh recipes/*.sh recipes/missing-pictures bench/*.sh bench/peers/*.sh .ci/run .ci/checks companions/completion.bash \
    companions/tiffgen-run.in
for page in man/*; do
    warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -Tutf8 -Z -l "$page" 2>&1 >/dev/null)
    if [ -n "$warnings" ]; then
        echo "lint.sh: $page: $warnings" >&2
        exit 1
    fi
done
# Many sources in one file, because the checks go through all that a file includes, which takes them longer than
# the sources themselves. The static analyzer, told to look at what is included, goes through so many states of a
# procedure, a tenth of its own limit, which takes it half the time.
rm -rf build-lint
cmake --preset clang -B build-lint -DVELMORANT_BENCH=ON -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=14 >/dev/null
tidy=(xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build-lint
    --extra-arg=-Xclang --extra-arg=-analyzer-opt-analyze-headers
    --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=20000)
find build-lint/{tests,fuzz,bench} -name 'unity_*.cxx' -print0 | "${tidy[@]}" --config-file=tests/.clang-tidy
find build-lint -name 'unity_*.cxx' -not -path 'build-lint/tests/*' -not -path 'build-lint/fuzz/*' \
    -not -path 'build-lint/bench/*' -print0 | "${tidy[@]}" --checks=-bugprone-suspicious-include
