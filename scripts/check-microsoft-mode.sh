#!/usr/bin/env bash
# Compiles the sources as Microsoft's compiler would read them, with clang in its Microsoft mode, and compares the names
# that the module exports in Microsoft's form with tests/dll/exports-msvc.txt. Nothing is linked.
# usage: check-microsoft-mode.sh
# Exit code 0: no warning and the names as listed. 1: otherwise; the output tells which.
set -u -o pipefail
cd "$(dirname "$0")/.."
objects=build/microsoft-mode
list=tests/dll/exports-msvc.txt

# The standard library's headers and Boost's, without the system's own headers next to Boost.
mkdir -p "$objects/headers"
ln -sfn /usr/include/boost "$objects/headers/boost"
ln -sfn /usr/include/CLI "$objects/headers/CLI"
rm -f "$objects"/*.obj

compile() { # SOURCE
    local definitions=()
    case $1 in
    platform/host/*) definitions=(-DPLATFORM_HOST_BUILD) ;;
    commands/* | configuration/* | projection/* | uistrings/* | xml/*) definitions=(-DVELTRANO_MODULE_BUILD) ;;
    tools/*) definitions=(-DVELTRANO_MODULE_BUILD '-DVELTRANO_VERSION="0"') ;;
    esac
    # The library reads __GNUC__ and the Windows headers want one of at least 4.2; the compiler defines none in this mode.
    # It counts std::jthread as experimental; Microsoft's library does not.
    ${CMAKE_CXX_COMPILER_LAUNCHER:-} clang++-19 --target=x86_64-pc-windows-msvc19.40 -fms-extensions -std=c++20 \
        -Wall -Wextra -Werror -D__GNUC__=4 -D__GNUC_MINOR__=2 -D_LIBCPP_NO_VCRUNTIME -fexperimental-library \
        -D_CLANG_DISABLE_CRT_DEPRECATION_WARNINGS -DUNICODE -D_UNICODE -D_WIN32_WINNT=0x0601 "${definitions[@]}" \
        -include scripts/microsoft-mode.h -nostdinc++ -isystem /usr/lib/llvm-19/include/c++/v1 \
        -isystem /usr/x86_64-w64-mingw32/include -isystem "$objects/headers" -I. -Iplatform/mfc -Iplatform/host \
        -c "$1" -o "$objects/${1//\//-}.obj" || { echo "in Microsoft's mode: $1 does not compile" >&2; return 255; }
}
export -f compile
export objects

# The directives by which the objects tell the linker what to export.
exported_names() {
    llvm-readobj-19 --coff-directives "$objects"/{commands,configuration,projection,uistrings,xml}-*.obj |
        grep -oE '/EXPORT:[^ ]+' | sed -E 's/^[^:]*://; s/^"?([^",]*)"?(,DATA)?.*/\1/'
}

# The C++ library here keeps its types in the inner namespace std::__1, which Microsoft's does not have. So names that
# contain a type of the library are compared undecorated and without it, all others as they are.
comparable() {
    local names
    names=$(cat)
    grep -v '@std@@' <<<"$names"
    grep '@std@@' <<<"$names" | llvm-undname-19 | grep -v '^$\|^?' | sed 's/std::__1::/std::/g'
}

git ls-files '*.cpp' | grep -E '^(commands|configuration|projection|uistrings|xml|platform/(mfc|host|console)|sdk|tools|trialhost|examples)/' |
    grep -vE '^(trialhost|platform/console)/native/' | xargs -P 2 -I {} bash -c 'compile {}' || exit 1
found=$(exported_names | comparable | LC_ALL=C sort -u)
differences=$(diff <(grep -v '^\(#\|$\)' "$list" | comparable | LC_ALL=C sort) <(echo "$found") |
    sed -n 's/^</missing:/p; s/^>/not in the list:/p')
if [ -n "$differences" ]; then
    echo "exported names in Microsoft's form:" >&2
    echo "$differences" >&2
    exit 1
fi
echo "$(wc -l <<<"$found") names, as listed"
