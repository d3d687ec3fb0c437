#!/usr/bin/env bash
# build.sh [PRESET [-DOPTION=VALUE...] [TARGET...]]: installs what is missing and builds everything, or so many
# targets. Without a preset, or as "plain", it builds in build/ as README.md says; a preset in build-PRESET/.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-plain}
options=()
targets=()
for word in "${@:2}"; do
    case $word in
    -D*) options+=("$word") ;;
    *) targets+=(--target "$word") ;;
    esac
done

scripts/packages.sh g++ make cmake libtiff-dev libnifti2-dev libgtest-dev
echo "== Building ($preset)"
case $preset in
plain)
    folder=build
    cmake -B "$folder" "${options[@]}" >/dev/null
    ;;
*)
    folder=build-$preset
    scripts/packages.sh clang libclang-rt-14-dev pkg-config
    cmake --preset "$preset" "${options[@]}" >/dev/null
    ;;
esac
cmake --build "$folder" --parallel "$(nproc)" "${targets[@]}"
