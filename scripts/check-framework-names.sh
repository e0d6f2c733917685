#!/usr/bin/env bash
# Compares the public and protected names of the headers in platform/mfc with platform/mfc/names.txt, so that a name that
# MFC does not have is not added unnoticed. Prints the names instead with --list.
# usage: check-framework-names.sh [--list]
# Exit code 0: the same. 1: names are missing or not in the list.
set -eu -o pipefail
cd "$(dirname "$0")/.."

names() {
    ctags --language-force=C++ --kinds-C++=cdefgmpstu --fields=aks --sort=no -f - platform/mfc/*.h | awk -F '\t' '
        {
            scope = ""
            for (i = 4; i <= NF; i++) {
                if ($i ~ /^access:private/) next
                if ($i ~ /^(class|struct|union|namespace|enum):/) { scope = $i; sub(/^[a-z]*:/, "", scope); scope = scope "::" }
            }
            print scope $1
        }' | grep -v '::Nil' | LC_ALL=C sort -u
}

if [ "${1:-}" = --list ]; then
    names
    exit
fi
differences=$(diff <(grep -v '^\(#\|$\)' platform/mfc/names.txt) <(names) | sed -n 's/^</missing:/p; s/^>/not in the list:/p') || true
if [ -n "$differences" ]; then
    echo "platform/mfc/names.txt: $differences" >&2
    exit 1
fi
