#!/usr/bin/env bash
# build.sh [PRESET [-DOPTION=VALUE...] [TARGET...]]: installs what is missing and builds everything, or so many
# targets, into build/PRESET (release).
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-release}
options=()
targets=()
for word in "${@:2}"; do
    case $word in
    -D*) options+=("$word") ;;
    *) targets+=(--target "$word") ;;
    esac
done

scripts/packages.sh g++ make cmake libtiff-dev libnifti2-dev libgtest-dev
case $preset in
clang* | sanitizers | fuzz) scripts/packages.sh clang libclang-rt-14-dev ;;
static) scripts/packages.sh pkg-config ;;
esac
echo "== Building ($preset)"
cmake --preset "$preset" "${options[@]}" >/dev/null
cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}"
