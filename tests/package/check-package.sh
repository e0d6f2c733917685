#!/usr/bin/env bash
# Installs the package, builds the example against it as a stranger's project, and runs that twice over one file.
# usage: check-package.sh BUILD-FOLDER RUNNER [CMAKE-ARGUMENT...]      RUNNER: what runs the build's programs, as env does
set -eu -o pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
build=$1 runner=$2
shift 2
rm -rf "$build/install" "$build/plugin"
cmake --install "$build" --prefix "$build/install" --component sdk >/dev/null
cmake -S "$source/examples/plugin" -B "$build/plugin" -G Ninja -DCMAKE_PREFIX_PATH="$build/install" \
      -DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Werror" "$@" >/dev/null
cmake --build "$build/plugin"
if grep -aqr "$source/\(commands\|sdk\|platform\)" "$build/plugin/CMakeFiles/plugin.dir"; then
    echo "the example took headers from the source tree" >&2
    exit 1
fi

cd "$build/plugin"
program=./plugin
[ -e "$program" ] || program=./plugin.exe
for run in 1 2; do
    expected="  this was run $run
CMD_COUNT_RUNS: running
  completed
CMD_DEFINE_PROJ_ENTITIES: running"
    printed=$("$runner" "$program" storage.xml | tr -d '\r')
    diff <(echo "$expected") <(echo "$printed")
done
echo "$printed"
