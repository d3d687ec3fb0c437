#!/usr/bin/env bash
# package.sh [--try]: makes a Debian package in out/; the same tree always gives the same bytes. With --try it is
# installed, used by an ordinary user from another folder, and removed again, which has to leave nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh dpkg-dev file man-db pkg-config
export LC_ALL=C.UTF-8 # CPack skips folders with non-ASCII names in the C locale
# As it is built on its own, whatever is in build/.
scripts/build.sh plain -UVELMORANT_{PROGRAMS,NIFTI,TESTS,STATIC,SANITIZE,FUZZ,HARDEN,INSTALL} '-UCMAKE_INSTALL_*DIR' \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr/local
# Nothing in the package depends on who makes it, where and when.
if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
    if [ -e .git ]; then
        SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
    else
        SOURCE_DATE_EPOCH=$(stat -c %Y CHANGELOG.md)
    fi
fi
export SOURCE_DATE_EPOCH
umask 022
mkdir -p out
rm -f out/*.deb
cpack --config build/CPackConfig.cmake -B build/package >build/package.log
cp build/package/*.deb out/
package=$(echo "$PWD"/out/*.deb)
echo "== The package: $package"
if [ "${1:-}" != --try ]; then
    exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
fi
as_nobody=(setpriv "--reuid=nobody" "--regid=nogroup" --clear-groups env -i "PATH=/usr/bin:/bin")
# What the package system itself and its triggers write is not the package's.
list_files() {
    "${as_root[@]}" find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /run -o -path /tmp -o \
        -path /var/tmp -o -path /var/lib/dpkg -o -path /var/lib/apt -o -path /var/cache -o -path /var/log -o \
        -path "$PWD" \) -prune -o -print
}

work=$(mktemp -d)
trap '"${as_root[@]}" rm -rf "$work"' EXIT
chmod 755 "$work"
list_files | sort >"$work/before"
echo "== Installing it"
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$package" >"$work/log" 2>&1 ||
    { cat "$work/log" >&2 && exit 1; }

echo "== Using it as an ordinary user"
mkdir "$work/home"
build/examples/make_phantom SHORTINT2L "$work/home/phantom.img" 64 64 12
"${as_root[@]}" chown -R nobody "$work/home"
(
    cd "$work/home"
    "${as_root[@]}" "${as_nobody[@]}" sh -euc '
        tiffgen-check study SHORTINT2L phantom.img | tail -n 1
        tiffgen-run --palette pet-20-step phantom.img phantom 0.0 -f2 -s1 | tail -n 1
        tiffgen-check picture phantom.tif 650 128
        man tiffgen-run >/dev/null
    '
    test "$(ls -A)" = "$(printf 'phantom.hdr\nphantom.img\nphantom.tif')"
)

echo "== Building a program with its library"
# shellcheck disable=SC2046 # options, several
g++ -std=c++20 tests/sibling/sibling.cpp -o "$work/sibling" $(pkg-config --cflags --libs velmorant)
"$work/sibling" SHORTINT2L "$work/home/phantom.img"
rm "$work/sibling"

echo "== Removing it"
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get purge -y -qq velmorant >/dev/null
"${as_root[@]}" rm -r "${work:?}/home"
list_files | sort >"$work/after"
if ! diff "$work/before" "$work/after"; then
    echo "package.sh: the package left something behind, or took it away" >&2
    exit 1
fi
