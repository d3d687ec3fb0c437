#!/usr/bin/env bash
# lint.sh: clang-tidy over all sources, shellcheck over all scripts, and manual pages without a warning.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh clang clang-tidy shellcheck libtiff-dev libnifti2-dev libgtest-dev \
    libbenchmark-dev cmake make man-db
shellcheck scripts/*.sh recipes/*.sh recipes/missing-pictures bench/*.sh bench/peers/*.sh .ci/run .ci/checks \
    companions/completion.bash companions/tiffgen-run.in
for page in man/*; do
    warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -Tutf8 -Z -l "$page" 2>&1 >/dev/null)
    if [ -n "$warnings" ]; then
        echo "lint.sh: $page: $warnings" >&2
        exit 1
    fi
done
# Many sources in one file, because the checks go through all that a file includes, which takes them longer than
# the sources themselves. (Two checks see the first file only: misc-unused-using-decls and -alias-decls.) The
# analyzer has to be told to look at what is included; its limit is a tenth of its default, which halves its time.
rm -rf build-lint
cmake --preset clang -B build-lint -DVELMORANT_BENCH=ON -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_UNITY_BUILD_BATCH_SIZE=14 >/dev/null
tidy=(xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build-lint
    --extra-arg=-Xclang --extra-arg=-analyzer-opt-analyze-headers
    --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=20000)
unities() { # FIND'S CONDITION...
    find build-lint -name 'unity_*.cxx' "$@" -print0
}
# Only tests/sibling, which has a build of its own, is left out.
diff <(unities | xargs -0 sed -n "s|^#include \"$PWD/\(.*\)\"|\1|p" | sort -u) \
    <(git ls-files '*.cpp' ':!tests/sibling' | sort) || {
    echo "lint.sh: other sources are built than those of the tree" >&2
    exit 1
}
unities -regex 'build-lint/\(tests\|fuzz\|bench\)/.*' | "${tidy[@]}" --config-file=tests/.clang-tidy
unities -not -regex 'build-lint/\(tests\|fuzz\|bench\)/.*' | "${tidy[@]}" --checks=-bugprone-suspicious-include
