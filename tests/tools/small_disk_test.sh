#!/usr/bin/env bash
# A disk of 64 kB that is too small for the new text, or for the backup of the old one: the file stays as it was, no
# half-written file is left, and once there is room the next change succeeds.
# Exit code 77 where no disk may be mounted, even in a namespace of its own.
# usage: small_disk_test.sh VLTCONFIG
set -eu -o pipefail
if [ -z "${2:-}" ]; then
    unshare -rm true 2>/dev/null || exit 77
    exec unshare -rm "$0" "$1" mounted
fi
disk=$(mktemp -d)
message=$(mktemp)
mount -t tmpfs -o size=64k tmpfs "$disk" || exit 77
trap 'umount "$disk"; rmdir "$disk"; rm -f "$message"' EXIT
file=$disk/storage.xml
fail() { echo "$1"; ls -l "$disk"; exit 1; }
text() { head -c "$1" /dev/zero | tr '\0' "$2"; }

text 18000 a | "$1" set "$file" A
sum=$(cksum <"$file")
for size in 60000 17000; do
    text $size b | "$1" set "$file" A 2>"$message" && fail "$size bytes were written"
    grep -q 'the storage is as it was' "$message" || { cat "$message"; fail "no clear error"; }
    [ "$sum" = "$(cksum <"$file")" ] || fail "the file is not as it was"
    [ ! -e "$file.new" ] && [ ! -e "$file.bak.new" ] || fail "something half-written is left"
done
rm -f "$file".bak "$file".unsaved-*
text 10 c | "$1" set "$file" A || fail "nothing can be written any more"
[ "$("$1" get "$file" A)" = cccccccccc ] || fail "the text is another"
