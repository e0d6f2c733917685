#!/usr/bin/env bash
# Compares the names that a library exports or the libraries that it is linked with to a list, both ways.
# usage: check-names.sh exports|imports LIBRARY LIST      a DLL or a native shared library; imports of a DLL only
# Exit code: 0 the same, 1 names are missing or too many.
set -u -o pipefail
what=$1 library=$2 list=$3
objdump=x86_64-w64-mingw32-objdump

exports() {
    case $library in
    *.dll) "$objdump" -p "$library" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] //p' | c++filt ;;
    *) nm -D --defined-only -C "$library" | sed 's/^[0-9a-f]* . //; s/char16_t/wchar_t/g' ;;
    esac | grep -v '^typeinfo '
}

imports() {
    "$objdump" -p "$library" | sed -n 's/^\tDLL Name: //p'
}

# Sorting merges the variants of one constructor or destructor: they read alike.
found=$("$what" | LC_ALL=C sort -u) || { echo "nothing read from $library" >&2; exit 1; }
differences=$(diff <(grep -v '^\(#\|$\)' "$list" | LC_ALL=C sort) <(echo "$found") |
    sed -n 's/^</missing:/p; s/^>/not in the list:/p')
if [ -n "$differences" ]; then
    echo "$differences" >&2
    exit 1
fi
echo "$(wc -l <<<"$found") names, as listed"
