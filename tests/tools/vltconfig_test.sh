#!/usr/bin/env bash
# vltconfig as a user sees it where something is wrong; docs/vltconfig.md shows it where all is well.
# usage: vltconfig_test.sh COMMAND...   the program, with the emulator before it where there is one
set -u
source=$(cd "$(dirname "$0")/../.." && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failed=0
wrong() { echo "$1"; failed=1; }

expect() { # EXIT-CODE OUTPUT-PART ARGUMENT...    standard input: the variable input
    local code=$1 part=$2 output
    shift 2
    output=$("${program[@]}" "$@" 2>&1 < <(printf "${input:-}"))
    local got=$?
    output=${output//$'\r'/}
    if [ $got -ne "$code" ] || [[ $output != *"$part"* ]] || [[ $output == *[$'\e\a']* ]]; then
        wrong "vltconfig $*: exit code $got (wanted $code), wanted '$part' in: $output"
    fi
}

program=("$@")
printf '<storage>\n <configuration id="QQ==" cfg="Qg=="/>\n <b></c>\n</storage>' >faulty.xml
printf '<storage><\e]0;title\a></storage>' >escape.xml
cp faulty.xml faulty.copy
input='one' expect 0 '' set new.xml One
expect 0 'faultless, 1 record' check new.xml
expect 1 "holds no record 'Pipe'" remove new.xml Pipe
expect 1 "holds no record 'x\\x1b;'" get new.xml $'x\e'
expect 1 'faulty.xml:3:5: No start tag for end tag' check faulty.xml
expect 1 '"line": 3' check faulty.xml --json
expect 0 'fault 3:5: ' text faulty.xml
expect 1 'left as it is' remove faulty.xml A
expect 1 'escape.xml:1:' check escape.xml
expect 1 'missing.xml: ' show missing.xml --json
[ -z "$("${program[@]}" show missing.xml --json 2>/dev/null)" ] || wrong 'output for a file that cannot be read'
expect 1 'is a folder, not a file' show .
input=x expect 1 'is a folder, not a file' set . One
expect 1 'the file name is empty' show ''
input='a\xffb' expect 1 'byte 1 of the text is not UTF-8' set new.xml One
input='a\0b' expect 1 'holds a NUL' set new.xml One
input='[{"id": "A", "cfg": "\\u0000"}]' expect 1 'which no record can hold, at byte 22' import new.xml
input='[{"id": "A"}]' expect 1 'a record without "id" or "cfg"' import new.xml
expect 2 "unknown command 'frob" $'frob\e' new.xml
expect 2 'required' get new.xml
expect 2 'missing.xml' diff new.xml missing.xml
[ "$("${program[@]}" get new.xml One)" = one ] || wrong 'a change that was refused changed the file'
input='a\xffb' expect 0 '' set --replace-invalid new.xml One
[ "$("${program[@]}" get new.xml One)" = 'a�b' ] || wrong 'an invalid byte was not replaced'
cmp -s faulty.xml faulty.copy || wrong 'the faulty file was changed'

units='[\n    {"id": "U\\ud83d", "cfg": "\\ude00\\ud83d, \\u0001\\u009b \\"\\\\ € 😀"},\n    {"id": "", "cfg": ""}\n]\n'
input=$units expect 0 '' import units.xml
"${program[@]}" export units.xml | tr -d '\r' | cmp - <(printf "$units") || wrong 'JSON comes back changed'

# A record outside the element that was cut off, a value that is cut off, and what is no record.
printf '<storage><configuration id="QQ==" cfg="QkND"/>junk<configuration id="Qg==" cfg="QkN!RA=="/><configuration id="Q' >cut.xml
expect 0 'cut.xml.repaired: 2 records, 3 pieces lost' repair cut.xml
expect 1 'exists already' repair cut.xml
expect 0 'B           2           BC' show cut.xml.repaired
# A tag that is longer than the element table tells.
head -c 5000000 /dev/zero | tr '\0' x | "${program[@]}" set long.xml Long
expect 0 'long.xml.repaired: 1 record, nothing lost' repair long.xml
cmp -s long.xml long.xml.repaired || wrong 'a long record was not repaired'
cp new.xml new.xml.unsaved-1
input=other expect 0 '' set new.xml One
input=two expect 0 '' set new.xml Two
expect 0 '~ record One' restore new.xml new.xml.unsaved-1 --yes
[ "$("${program[@]}" get new.xml One)$("${program[@]}" get new.xml Two)" = 'a�btwo' ] || wrong 'not one record restored'
cp faulty.xml broken.xml
cp new.xml broken.xml.bak
expect 0 '' restore broken.xml --yes
cmp -s new.xml broken.xml && cmp -s faulty.xml broken.xml.bak || wrong 'a faulty file was not restored'

for command in $("${program[@]}" --help | tr -d '\r' | sed -n '/^Subcommands/,/^$/s/^  \([a-z]*\) .*/\1/p'); do
    grep -q "^\.BI $command " "$source/tools/vltconfig/vltconfig.1" || wrong "the manual page lacks $command"
    grep -q "commands=.*\<$command\>" "$source/tools/vltconfig/completion.bash" || wrong "the completion lacks $command"
done

[ $# -eq 1 ] || exit $failed # what follows is about the system's own streams and names
for closed in '</dev/null/x' '<&-' '<.'; do
    eval "\"\$1\" set new.xml One $closed" 2>/dev/null && wrong "set with standard input $closed"
done
for full in '>/dev/full' '>&-'; do
    eval "\"\$1\" show new.xml $full" 2>/dev/null && wrong "show with standard output $full"
done
input=x expect 1 'is not UTF-8' set $'n\xff.xml' One
[ "$(echo n*.xml)" = new.xml ] || wrong "a file of another name was made: $(echo n*.xml)"
[ "$("$1" show <(cat new.xml) | wc -l)" -eq 3 ] || wrong 'a pipe cannot be read'
# One call that takes longer than a second: progress shows on a terminal, or when it is asked for.
slow() { sleep 3; cat new.xml; } # a busy machine can start a program late
[[ $("$1" --progress check <(slow) 2>&1 >/dev/null) == *'reading the file, '[1-9]' s'* ]] || wrong 'no progress'
[ -z "$("$1" check <(slow) 2>&1 >/dev/null)" ] || wrong 'progress into a file'
export TERM=xterm
shown=$(script -qec "bash -c \"'$1' check <(sleep 3; cat new.xml)\"" /dev/null </dev/null)
[[ $shown == *'reading the file, '[1-9]$' s\r\n/dev/fd/'*faultless* ]] || wrong "no progress on a terminal: $shown"
terminal=$(script -qec "stty cols 40; '$1' get escape.xml; '$1' show new.xml.bak" /dev/null </dev/null)
[[ $terminal == *$'\e[1midentifier'* ]] || wrong "no colours on a terminal: $terminal"
exit $failed
