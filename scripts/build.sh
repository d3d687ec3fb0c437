#!/usr/bin/env bash
# build.sh [PRESET]: installs what is missing and builds everything into build/PRESET (release).
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-release}

scripts/packages.sh g++ cmake ninja-build libtiff-dev libnifti2-dev libgtest-dev
if [ "$preset" = static ]; then
    scripts/packages.sh pkg-config
fi
echo "== Building ($preset)"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
