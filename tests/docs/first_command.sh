#!/usr/bin/env bash
# Follows "Write your first command in ten minutes" of the guide: makes the files that it shows, runs its command, and
# compares the last lines.
# usage: first_command.sh SOURCE-FOLDER WORK-FOLDER
set -eu -o pipefail
source=$1 work=$2
guide=$source/docs/plugin-guide.md
block() { awk -v start="\`\`\`$1" '$0 == start { isIn = 1; next } /^```/ && isIn { exit } isIn' "$guide"; }

rm -rf "$work"
mkdir -p "$work/hello"
cd "$work"
block cmake >hello/CMakeLists.txt
block c++ >hello/main.cpp
expected=$(block text)
read -r program arguments < <(block sh)
[ "$program" = ./run ]
# shellcheck disable=SC2086 # the arguments of the command as the guide writes them
printed=$("$source/run" $arguments) || { echo "$printed"; exit 1; }
diff <(echo "$expected") <(echo "$printed" | tail -n "$(echo "$expected" | wc -l)")
