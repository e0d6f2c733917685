#!/usr/bin/env bash
# Compares what stands in the file of a library with a checked-in list.
# usage: check-library.sh exports|imports|initialisers|resources FILE LIST
#   exports       the names that a DLL or a native shared library exports
#   imports       the DLLs that a DLL is linked with
#   initialisers  the sources of a native shared library with objects that are constructed at load
#   resources     the resources of a DLL or of a .res file, in the form in which windres prints them
# Lines with # at the start of a list are comments. Only the order of resources matters.
# Exit code: 0 the same, 1 different; the differences go to stderr.
set -u -o pipefail
what=$1 file=$2 list=$3
tools=x86_64-w64-mingw32

exports() {
    case $file in
    *.dll) "$tools-objdump" -p "$file" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] //p' | c++filt ;;
    *) nm -D --defined-only -C "$file" | sed 's/^[0-9a-f]* . //; s/char16_t/wchar_t/g' ;;
    esac | grep -v '^typeinfo ' | LC_ALL=C sort -u # the variants of one constructor or destructor read alike
}

imports() {
    "$tools-objdump" -p "$file" | sed -n 's/^\tDLL Name: //p' | LC_ALL=C sort
}

initialisers() {
    nm "$file" | sed -n 's/.* _GLOBAL__sub_I_//p' | LC_ALL=C sort
}

resources() {
    local format=coff
    [[ $file != *.res ]] || format=res
    # The memory flags are for 16-bit Windows, and a DLL does not keep them.
    "$tools-windres" -J "$format" -O rc "$file" | sed 's/ MOVEABLE PURE DISCARDABLE//; /^$/d'
}

found=$("$what") || { echo "nothing read from $file" >&2; exit 1; }
differences=$(diff <(grep -v '^\(#\|$\)' "$list" | { [ "$what" = resources ] && cat || LC_ALL=C sort; }) <(echo "$found") |
    sed -n 's/^</missing:/p; s/^>/not in the list:/p')
if [ -n "$differences" ]; then
    echo "$differences" >&2
    exit 1
fi
echo "$(wc -l <<<"$found") lines, as listed"
