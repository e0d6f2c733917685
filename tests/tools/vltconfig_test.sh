#!/usr/bin/env bash
# vltconfig as a user sees it: outputs and exit codes.
# usage: vltconfig_test.sh COMMAND...   the program, with the emulator before it where there is one
set -u
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failed=0

expect() { # EXIT-CODE OUTPUT-PART ARGUMENT...
    local code=$1 part=$2 output
    shift 2
    output=$("${program[@]}" "$@" 2>&1 </dev/null)
    local got=$?
    output=${output//$'\r'/}
    if [ $got -ne "$code" ] || [[ $output != *"$part"* ]]; then
        echo "vltconfig $*: exit code $got (wanted $code), wanted '$part' in: $output"
        failed=1
    fi
}

program=("$@")
printf '<storage>\n <configuration id="QQ==" cfg="Qg=="/>\n <b></c>\n</storage>' >faulty.xml
printf 'Kůň "<a>"\n second line' | "${program[@]}" set new.xml Pipe || failed=1
[ "$("${program[@]}" get new.xml Pipe | tr -d '\r')" = $'Kůň "<a>"\n second line' ] || { echo "set, then get"; failed=1; }
printf '<projectionRegistry><projectionDefinition name="UGlwZQ==" showInLS="1" isActive="7"/></projectionRegistry>' |
    "${program[@]}" set new.xml PRJ_REGISTRY || failed=1

expect 0 'Pipe          22' show new.xml
expect 0 '"cfg": "Kůň \"<a>\"\n second line"' show new.xml --json
expect 0 'Pipe  1   0   0                      7' definitions new.xml
expect 0 '"isActive": 7' definitions new.xml --json
expect 0 'faultless, 2 records' check new.xml
expect 0 '' remove new.xml Pipe
expect 1 "holds no record 'Pipe'" remove new.xml Pipe
expect 1 "holds no record 'Pipe'" get new.xml Pipe
expect 1 "faulty.xml:3:5: No start tag for end tag 'c' at offset 53; 1 records can be read" check faulty.xml
expect 1 '"line": 3' check faulty.xml --json
expect 1 'B' get faulty.xml A
expect 1 'left as it is' remove faulty.xml A
expect 1 'missing.xml' check missing.xml
expect 2 'usage:' get new.xml
expect 2 'unknown command' frobnicate new.xml
expect 0 'usage:' --help
grep -q '</c>' faulty.xml || { echo "the faulty file was changed"; failed=1; }
grep -q 'configuration id="UGlwZQ=="' new.xml.bak || { echo "no backup of the content before"; failed=1; }
exit $failed
