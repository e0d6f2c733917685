#!/usr/bin/env bash
# A storage file of 100 MB, of many small records: neither loading it nor vltconfig takes more than twelve times the
# file's size of memory. Address space is limited, which is more than what is resident.
# usage: large_file_test.sh VLTCONFIG
set -eu -o pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
records=2700000
{
    printf '<storage>'
    yes '<configuration id="QQ==" cfg="Qg==" />' | head -n $records | tr -d '\n'
    printf '</storage>'
} >large.xml 2>/dev/null || true # yes is cut off
size=$(stat -c %s large.xml)
[ "$size" -ge 100000000 ]
ulimit -v $((12 * size / 1024))
lines() { "$vltconfig" --progress "$@" 2>progress | wc -l; }
vltconfig=$1
[ "$(lines show large.xml)" -eq $((records + 1)) ] || { echo "show is cut off"; cat progress; exit 1; }
[ "$(lines text large.xml)" -eq $((2 * records)) ] || { echo "text is cut off"; cat progress; exit 1; }
[ "$(lines export large.xml)" -eq $((records + 2)) ] || { echo "export is cut off"; cat progress; exit 1; }
[ "$(lines diff large.xml large.xml)" -eq 0 ] || { echo "a file differs from itself"; exit 1; }
[ "$(lines repair large.xml)" -eq 1 ] && cmp large.xml large.xml.repaired || { cat progress; exit 1; }
# Changing goes through CStorage::Load.
"$vltconfig" remove large.xml unknown 2>message && exit 1
grep -q "holds no record 'unknown'" message || { cat message; exit 1; }
