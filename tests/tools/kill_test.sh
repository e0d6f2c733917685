#!/usr/bin/env bash
# Three programs save into one file, and one of them is killed at a random moment: file and backup stay whole, nobody
# else's save fails, and what the killed one leaves is in nobody's way.
# Goes on until so many were hit before they ended.
# usage: kill_test.sh KILLS COMMAND...   vltconfig, with the emulator before it where there is one
set -u
kills=$1
shift
memory=/dev/shm # a killed program's writes are not lost, so no disk is waited for
[ -w $memory ] || memory=${TMPDIR:-/tmp}
folder=$(mktemp -d -p $memory)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
fail() { echo "round $round: $1"; ls -l; exit 1; }
text() { printf "%0$((1000 + $1 % 7 * 9000))d" "$1"; } # of another length each time
save() { text "$2" >"text$1"; exec "${program[@]}" set storage.xml "W$1" <"text$1"; }
program=("$@")
RANDOM=4711 round=0 hits=0 last=(0 0 0 0)
start=${EPOCHREALTIME/./}
for writer in 1 2 3; do (save $writer 0) || fail "cannot save"; done
duration=$((${EPOCHREALTIME/./} - start)) # of three saves, in microseconds; measured anew, as the machine's load changes
while [ $hits -lt "$kills" ]; do
    round=$((round + 1))
    [ $round -le $((10 * kills)) ] || fail "only $hits were hit"
    start=${EPOCHREALTIME/./}
    pids=()
    for writer in 1 2 3; do
        save $writer $round &
        pids+=($!)
    done
    victim=$((RANDOM % 3))
    delay=$(((RANDOM * 32768 + RANDOM) % (duration + 1)))
    sleep $((delay / 1000000)).$(printf '%06d' $((delay % 1000000)))
    kill -9 "${pids[victim]}" 2>/dev/null
    for writer in 1 2 3; do
        wait "${pids[writer - 1]}" 2>/dev/null
        status=$?
        [ $status -eq 0 ] || [ $((writer - 1)) -eq $victim ] || fail "writer $writer: exit code $status"
        [ $status -ne 137 ] || hits=$((hits + 1))
    done
    duration=$((${EPOCHREALTIME/./} - start))
    for file in storage.xml storage.xml.bak; do
        "${program[@]}" check $file >message 2>&1 || fail "$(cat message)"
    done
    for writer in 1 2 3; do
        got=$("${program[@]}" get storage.xml W$writer)
        if [ "$got" = "$(text $round)" ]; then
            last[writer]=$round
        elif [ $((writer - 1)) -ne $victim ] || [ "$got" != "$(text "${last[writer]}")" ]; then
            fail "the text of writer $writer is lost"
        fi
    done
done
echo "$hits killed in $round rounds"
