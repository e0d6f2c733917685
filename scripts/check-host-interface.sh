#!/usr/bin/env bash
# Compares the names of the host that the module's sources use with the tables of docs/host-interface.md: the first cell
# of a row holds one name in backticks. A name of the host is one that the headers in platform/host declare; a member
# counts as used where it follows ->, . or ::. Prints the names instead with --list.
# usage: check-host-interface.sh [--list]
# Exit code 0: the same. 1: names are missing from the page, or the module no longer uses them.
set -eu -o pipefail
cd "$(dirname "$0")/.."
page=docs/host-interface.md

declared() { # NAME SCOPE for each type, function, enumerator and member
    ctags --language-force=C++ --kinds-C++=cefgmpsu --fields=as --sort=no -f - $(git ls-files 'platform/host/*.h' | grep -v 'HostControl\|HostState\|Export') |
        awk -F '\t' '
            $1 ~ /^(operator|~)/ || /access:private/ { next }
            {
                scope = "-"
                for (i = 4; i <= NF; i++)
                    if ($i ~ /^(class|struct|enum):/) { scope = $i; sub(/^[a-z]*:/, "", scope) }
                if (scope != $1 && scope !~ "::" $1 "$") print $1, scope
            }' | LC_ALL=C sort -u
}

# The module's sources that name a type of the host, without comments and texts.
sources() {
    local types
    types=$(declared | awk '$2 == "-" { print $1 }' | paste -sd '|')
    git ls-files 'commands/*' 'configuration/*' 'projection/*' 'uistrings/*' 'xml/*' 'sdk/*' | grep -E '\.(cpp|h)$' |
        xargs grep -lwE "$types" | xargs cat | sed -E 's/"([^"\\]|\\.)*"//g; s,//.*,,'
}

used() {
    local code name scope pattern
    code=$(sources)
    while read -r name scope; do
        pattern="\b$name\b"
        [ "$scope" = - ] || pattern="(->|\.|::)$name\b"
        if grep -qE "$pattern" <<<"$code"; then echo "$name"; fi
    done < <(declared) | LC_ALL=C sort -u
}

if [ "${1:-}" = --list ]; then
    used
    exit
fi
differences=$(diff <(sed -nE 's/^\| `([A-Za-z_0-9:]*::)?([A-Za-z_0-9]+)`.*/\2/p' "$page" | LC_ALL=C sort -u) <(used) |
    sed -n 's/^</not used by the module:/p; s/^>/missing:/p') || true
if [ -n "$differences" ]; then
    echo "$page:" >&2
    echo "$differences" >&2
    exit 1
fi
