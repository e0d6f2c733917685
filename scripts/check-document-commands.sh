#!/usr/bin/env bash
# Runs the commands that the documents show, as far as document-commands.txt leaves them to this script. The ```console
# blocks are left to tests/tools/transcript_test.sh.
# usage: check-document-commands.sh native|windows
# Exit code 0: each command is in the list, the list holds no other, and those of this part succeeded.
set -u
cd "$(dirname "$0")/.."
part=$1
list=scripts/document-commands.txt
failed=0
unset GTEST_OUTPUT # reports of the programs below are no reports of ./test
wrong() { echo "$1"; failed=1; }

# From all documents but the list of changes: lines of ```sh and ```text blocks and code within a line, as far as they start with a program; without comments.
commands() {
    git ls-files '*.md' ':!CHANGELOG.md' | xargs awk '
        /^ *```/ { inside = !inside; isCommands = inside && /```(sh|text)$/; next }
        isCommands { print }
        !inside { n = split($0, piece, "`"); for (i = 2; i <= n; i += 2) print piece[i] }' |
        sed -E 's/ +#.*//' |
        grep -E '^(\./[a-z]+|CXXFLAGS=|gdb |cmake -|cpack|ctest -|scripts/[a-z-]+\.sh [a-z]|build/[a-z]+/bin/|PACKAGE/bin/|vltconfig [a-zA-Z-]|trialhost -|git grep|xvfb-run|clang-)' |
        LC_ALL=C sort -u
}
listed() { grep -vE '^(#|$)' "$list" | sed 's/ | .*//' | LC_ALL=C sort; }
diff <(listed) <(commands) || wrong "the documents hold other commands than $list (< only there, > only in a document)"

folder=build/document-commands
rm -rf $folder
trap 'rm -rf $folder' EXIT
mkdir -p $folder/hello
cp trialhost/sample-storage.xml $folder/storage.xml
guide() { awk -v start="\`\`\`$1" '$0 == start { isIn = 1; next } /^```/ && isIn { exit } isIn' docs/plugin-guide.md; }
guide cmake >$folder/hello/CMakeLists.txt
guide c++ >$folder/hello/main.cpp

while IFS= read -r line <&3; do
    command=${line%% | *} by=${line#* | }
    case $by in
    "$part" | "$part | "*)
        [[ $by != *' | '* ]] || command=${by#* | }
        printed=$(eval "$command" 2>&1 </dev/null) || wrong "$command: exit code $?
$(tail -n 20 <<<"$printed")" ;;
    native* | windows* | 'not run: '*) ;;
    *) [ -f "$by" ] || wrong "$by: no such file" ;;
    esac
done 3< <(grep -vE '^(#|$)' "$list")
exit $failed
