#!/usr/bin/env bash
# Takes the package as its users do, the zip on Windows and the install tree elsewhere; builds the example in it as a
# stranger's project, and runs it twice over one file in the trial host.
# usage: check-package.sh BUILD-FOLDER RUNNER [CMAKE-ARGUMENT...]      RUNNER: what runs the build's programs, as env does
set -eu -o pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
build=$1 runner=$2
shift 2
fail() { echo "$1" >&2; exit 1; }

package=$build/install
rm -rf "$package" "$build/plugin"
if [ -e "$build/bin/VeltranoCommands.dll" ]; then
    (cd "$build" && cpack -G ZIP -B install >/dev/null)
    (cd "$package" && cmake -E tar xf ./*.zip)
    package=$(echo "$package"/*-win64)
else
    cmake --install "$build" --prefix "$package" >/dev/null
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

cmake -S "$package/share/VeltranoCommands/examples/plugin" -B "$build/plugin" -G Ninja -DCMAKE_PREFIX_PATH="$package" \
      -DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Werror" "$@" >/dev/null
cmake --build "$build/plugin"
if grep -aqr "$source/\(commands\|sdk\|platform\)" "$build/plugin/CMakeFiles/plugin.dir"; then
    fail "the example took headers from the source tree"
fi

cd "$build/plugin"
plugin=plugin.so
[ -e "$plugin" ] || plugin=plugin.dll
trialhost=$build/bin/trialhost
[ -e "$trialhost" ] || trialhost=$trialhost.exe
cp "$source/trialhost/sample-storage.xml" storage.xml
for run in 1 2; do
    expected="report        this was run $run
command       CMD_COUNT_RUNS has run
report        the count is complete
command       completed"
    printed=$("$runner" "$trialhost" --script --plugin "$plugin" storage.xml | tr -d '\r') || fail "the trial host failed:
$printed"
    diff <(echo "$expected") <(echo "$printed" | tail -n 4)
done
echo "$printed"
