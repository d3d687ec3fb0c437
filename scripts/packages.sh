#!/usr/bin/env bash
# packages.sh PACKAGE...: installs those of the Debian packages that are missing. Without apt-get it only lists
# them.
set -euo pipefail

if ! command -v apt-get >/dev/null; then
    echo "packages.sh: no apt-get here; needed, by Debian's names: $*" >&2
    exit 0
fi
missing=()
for package in "$@"; do
    if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
        missing+=("$package")
    fi
done
if [ "${#missing[@]}" -eq 0 ]; then
    exit 0
fi

echo "== Installing ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
    if ! command -v sudo >/dev/null; then
        echo "packages.sh: root is needed for: apt-get install ${missing[*]}" >&2
        exit 1
    fi
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# Show apt-get's output only if it fails.
if ! { "${as_root[@]}" apt-get update -qq && "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "packages.sh: this failed: apt-get install ${missing[*]}" >&2
    exit 1
fi
