#!/usr/bin/env bash
# format.sh [--check]: formats all sources, or only says which are not.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh clang-format
how=(-i)
if [ "${1:-}" = --check ]; then
    how=(--dry-run -Werror)
fi
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format "${how[@]}"
