#!/usr/bin/env bash
# build.sh [PRESET [-D... | -U...] [TARGET...]]: installs what is missing and builds everything, or only the
# named targets. Without a preset, or as "plain", it builds in build/ as README.md says; a preset in build-PRESET/.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-plain}
options=()
targets=()
for word in "${@:2}"; do
    case $word in
    -[DU]*) options+=("$word") ;;
    *) targets+=(--target "$word") ;;
    esac
done

scripts/packages.sh g++ make cmake libtiff-dev libnifti2-dev libgtest-dev
command -v cmake >/dev/null || {
    echo "build.sh: cmake is missing; README.md says what a build needs" >&2
    exit 1
}
echo "== Building ($preset)"
case $preset in
plain)
    folder=build
    cmake -B "$folder" "${options[@]}" >/dev/null
    ;;
*)
    folder=build-$preset
    if [ "$preset" = static ]; then
        scripts/packages.sh pkg-config
    else
        scripts/packages.sh clang libclang-rt-14-dev
    fi
    cmake --preset "$preset" "${options[@]}" >/dev/null
    ;;
esac
cmake --build "$folder" --parallel "$(nproc)" "${targets[@]}"
