#!/usr/bin/env bash
# Runs the commands of a document's ```console blocks, one after the other in one folder, and compares what they print.
# usage: transcript_test.sh DOCUMENT COMMAND...   vltconfig, with the emulator before it where there is one
set -u
document=$(realpath "$1")
shift
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/bin" "$folder/work"
printf '#!/bin/sh\nexec %s "$@"\n' "$(printf '%q ' "$@")" >"$folder/bin/vltconfig"
chmod +x "$folder/bin/vltconfig"
export PATH=$folder/bin:$PATH HOME=$folder GIT_CONFIG_NOSYSTEM=1
cd "$folder/work" || exit 1
expected=$(sed -n '/^```console$/,/^```$/ { /^```/d; p }' "$document")
printed=$(while IFS= read -r line <&3; do
    [[ $line == '$ '* ]] || continue
    echo "$line"
    [[ $# -gt 1 && $line == *EDITOR* ]] || eval "${line#\$ }" 2>&1 </dev/null # no editor under an emulator
done 3<<<"$expected" | tr -d '\r')
diff <(echo "$expected") <(echo "$printed")
