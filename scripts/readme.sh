#!/usr/bin/env bash
# readme.sh: holds README.md to what it says. Its dialogues, each command after "$ " with what it prints below,
# are gone through in one shell after the first of its two commands; its pictures, tables and versions
# are compared with what they are of.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/packages.sh imagemagick
scripts/demo.sh >/dev/null
root=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "readme.sh: $*" >&2
    exit 1
}

echo "== The dialogues of README.md"
awk '/^```console$/ { inside = 1; next } /^```$/ { inside = 0 } inside' README.md >"$work/told"
# Each command, after a line that shows it.
sed -n 's/^\$ //p' "$work/told" | while IFS= read -r command; do
    printf 'printf "%%s\\n" %q\n%s\n' "\$ $command" "$command"
done >"$work/script"
PATH=/usr/local/bin:/usr/bin:/bin bash "$work/script" >"$work/shown" 2>&1 </dev/null
diff "$work/told" "$work/shown" || fail "a dialogue goes otherwise"
grep -c '^\$ ' "$work/told" | sed 's/$/ commands/'

echo "== Its pictures, tables and versions"
export PATH=$root/out/installed/bin:$PATH
(cd out && tiffgen-run --format SHORTINT2L phantom.img gray 0.0 -f4 -g1 >/dev/null)
for pair in phantom:phantom gray:phantom-gray; do
    compare -metric AE "out/${pair%:*}.tif" "docs/${pair#*:}.png" null: 2>&1 | grep -qx 0 ||
        fail "docs/${pair#*:}.png is another picture"
done
# Options that the one names and the other doesn't.
diff <(tiffgen-run --help | grep -o -- '-[a-zA-Z][A-Z]' | cut -c 1-2 | sort -u) \
    <(sed -n '/^## Options/,/^## /p' README.md | grep '^|' | grep -o -- '`-[a-zA-Z]' | tr -d '`' | sort -u) ||
    fail "other options"
diff <(tiffgen-run --help | grep -o -- '--[a-z-]*' | grep -v -e '--help' -e '--version' | sort -u | grep '[a-z]') \
    <(sed -n '/^## Options/,/^makes/p' README.md | grep -o -- '--[a-z-]*' | sort -u) || fail "other options"
diff <(tiffgen-run --help | grep -o 'CTI6.*NIFTI' | tr -d ',' | sed 's/ or / /' | tr ' ' '\n' | sort) \
    <(sed -n '/^## Formats/,/^## /p' README.md | grep '^| `' | cut -d'|' -f 2 | tr -d '`, ' |
        sed 's/\([BL]\)\(SHORT\|FLOAT\)/\1\n\2/' | sort) || fail "other formats"
diff <(git ls-files | grep / | grep -v '^\.' | cut -d/ -f 1 | sort -u) \
    <(sed -n '/^## Where things are/,$p' README.md | grep '^|' | cut -d'|' -f 2 | grep -o '[a-z]*/' |
        tr -d / | sort) || fail "other folders"
check_links() ( # FOLDER
    cd "$1"
    for link in $(grep -o '](\([^)]*\))' ./*.md docs/*.md | sed 's/:](/ /; s/)//' | tr ' ' :); do
        case ${link#*:} in
        http*) ;;
        *) [ -e "$(dirname "${link%%:*}")/${link#*:}" ] || fail "no ${link#*:}, which $1/${link%%:*} names" ;;
        esac
    done
)
while read -r page; do
    man -w "$page" >/dev/null || fail "no manual page $page"
done < <(grep -oh '[`]man [a-z-]*' ./*.md docs/*.md | sed 's/.* //')
check_links .
check_links out/installed/share/doc/velmorant
version=$(tiffgen-run --version | sed 's/.* //')
grep -qx "version: $version" CITATION.cff || fail "another version in CITATION.cff"
grep -q "velmorant_$version-1_amd64.deb" README.md || fail "another version in README.md"
diff <(sed -n 's/^    sudo apt-get install //p' README.md | tr ' ' '\n' | sort) \
    <(sed -n 's/^scripts\/packages.sh //p' scripts/build.sh scripts/test.sh | tr ' ' '\n' | sort) ||
    fail "other packages"
for command in scripts/demo.sh scripts/test.sh; do
    if ! grep -q "^    $command " README.md || ! grep -qx "$command" .ci/checks; then
        fail "$command is no longer one of the two commands, or CI's"
    fi
done
