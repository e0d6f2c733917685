#!/usr/bin/env bash
# Installs what a part of the builds needs and does not find; does nothing when nothing is missing.
# usage: setup.sh PART...   with PART one of native, windows, coverage, checks, bench, reference, fuzz
# Exit code 0: all there. 1: something could not be installed; the message names it. Debian 12 package names.
set -u

declare -A packages=(
    [native]="g++ cmake ninja-build libboost-dev libcli11-dev libicu-dev googletest binutils-mingw-w64-x86-64"
    [windows]="g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 wine wine64 fonts-wine xvfb xauth cmake ninja-build libboost-dev libcli11-dev googletest"
    [coverage]="gcovr"
    [checks]="clang-format-14 clang-tidy-14 cppcheck clang-19 libc++-19-dev llvm-19 mingw-w64-x86-64-dev universal-ctags"
    [bench]="libpugixml-dev librapidxml-dev libtinyxml2-dev libxml2-dev libexpat1-dev libssl-dev libglib2.0-dev libmodpbase64-dev libicu-dev icu-devtools gettext pkg-config"
    [reference]="doxygen"
    [fuzz]="clang-14 libclang-rt-14-dev"
)

missing=()
for part in "$@"; do
    [ -n "${packages[$part]:-}" ] || { echo "setup: unknown part '$part'; parts: ${!packages[*]}" >&2; exit 1; }
    for package in ${packages[$part]}; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
done
[ ${#missing[@]} -eq 0 ] && exit 0

if ! command -v apt-get >/dev/null; then
    echo "setup: missing: ${missing[*]}; no apt-get here, install them by your system's means" >&2
    exit 1
fi
root=()
[ "$(id -u)" -eq 0 ] || root=(sudo)
echo "setup: installing ${missing[*]}"
log=$(mktemp)
if ! { "${root[@]}" apt-get update -qq && DEBIAN_FRONTEND=noninteractive "${root[@]}" apt-get install -y -qq \
       --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    echo "setup: could not install: ${missing[*]}" >&2
    tail -n 5 "$log" >&2
    rm -f "$log"
    exit 1
fi
rm -f "$log"
