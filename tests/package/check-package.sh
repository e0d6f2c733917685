#!/usr/bin/env bash
# Takes the package as its users do, the zip on Windows and the install tree elsewhere, and follows docs/deployment.md
# outside the source tree: builds the example and runs it in the package's trial host, twice over one storage file.
# usage: check-package.sh BUILD-FOLDER RUNNER [CMAKE-ARGUMENT...]      RUNNER: what runs the build's programs, as env does
set -eu -o pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
build=$1 runner=$2
shift 2
fail() { echo "$1" >&2; exit 1; }

place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
if [ -e "$build/bin/VeltranoCommands.dll" ]; then
    (cd "$build" && cpack -G ZIP -B "$place" >/dev/null)
    (cd "$place" && cmake -E tar xf ./*.zip)
    package=$(echo "$place"/*-win64)
    plugin=plugin.dll
else
    package=$place/package
    cmake --install "$build" --prefix "$package" >/dev/null
    plugin=plugin.so
fi
while read -r part licence; do
    [ ! -e "$package/$part" ] || [ -s "$package/share/VeltranoCommands/licences/$licence.txt" ] ||
        fail "the package holds $part without its licence"
done <<'END'
include/VeltranoCommands/boost boost
bin/libstdc++-6.dll gcc-runtime
bin/libgcc_s_seh-1.dll GPL-3
bin/libwinpthread-1.dll mingw-w64
bin/vltconfig cli11
bin/vltconfig.exe cli11
END

cd "$place"
cp -r "$package/share/VeltranoCommands/examples/plugin" plugin
cp "$source/trialhost/sample-storage.xml" storage.xml

# The commands of the page, with what belongs to this system put in: the compiler, the program that runs Windows programs.
page=$source/docs/deployment.md
commands=$(awk '/^```/ { inside = /^```sh/; next } inside' "$page")
[ -n "$commands" ] || fail "$page has no commands"
configure=(-DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Werror" -G Ninja "$@")
commands=${commands//PACKAGE\/bin\/trialhost/\"\$runner\" \"$package\"/bin/trialhost*}
commands=${commands//=PACKAGE/=\"$package\" \"\$\{configure[@]\}\"}
commands=${commands//build\/plugin.dll/build/$plugin}
for run in 1 2; do
    # Not as part of a condition, in which errors would not end the commands.
    set +e
    printed=$(set -eu -o pipefail; eval "$commands" 2>&1 | tr -d '\r')
    code=$?
    set -e
    [ $code -eq 0 ] || fail "run $run of the page's commands fails with code $code:
$printed"
    for expected in "this was run $run" 'next to Add: .*Projection' 'next to Pick an entity: .*Layer.*Entity'; do
        grep -q "$expected" <<<"$printed" || fail "$printed
the package's trial host does not print: $expected"
    done
done
if grep -aqr "$source/\(commands\|sdk\|platform\)" build/CMakeFiles/plugin.dir; then
    fail "the example took headers from the source tree"
fi
grep 'combo box\|this was run' <<<"$printed"
