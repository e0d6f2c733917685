#!/usr/bin/env bash
# Compares the includes between the folders with the arrows in docs/architecture.md, between the lines ```layers and ```.
# A line there reads "FOLDER -> FOLDER, FOLDER": what the sources of the first folder may include. Fails if an include
# has no arrow, if an arrow has no include, or if the arrows form a cycle. usage: check-includes.sh, from anywhere
set -eu
cd "$(dirname "$0")/.."

git ls-files '*.cpp' '*.h' | awk -v page=docs/architecture.md '
function FolderOf(path,    folder) { # the listed folder that holds the file most closely
    for (folder = path; sub("/[^/]*$", "", folder);)
        if (folder in layer)
            return folder
    return ""
}
function Fail(text) { print text; failed = 1 }
function Visit(folder, trail,    i, next_, count, list) {
    if (index(trail, " " folder " "))
        return Fail(page ": the arrows form a cycle:" trail folder)
    if (folder in visited)
        return
    count = split(arrowsOf[folder], list, ",")
    for (i = 1; i <= count; i++)
        Visit(list[i], trail folder " ")
    visited[folder] = 1
}
BEGIN {
    while ((getline line < page) > 0) {
        if (line ~ /^```layers/) { inside = 1; continue }
        if (line ~ /^```/) inside = 0
        if (!inside || split(line, sides, " *-> *") != 2) continue
        gsub(" ", "", sides[1]); gsub(" ", "", sides[2])
        layer[sides[1]] = 1
        arrowsOf[sides[1]] = sides[2]
        count = split(sides[2], list, ",")
        for (i = 1; i <= count; i++) arrow[sides[1] " -> " list[i]] = 1
    }
    if (length(layer) == 0) Fail(page ": no block ```layers")
    for (name in layer) Visit(name, " ")
}
{
    file = $0
    from = FolderOf(file)
    while (from != "" && (getline line < file) > 0) {
        if (line !~ /^#include ["<]/) continue
        target = line
        sub(/^#include ["<]/, "", target); sub(/[">].*/, "", target)
        if (target ~ /^afx/) target = "platform/mfc/" target # by the include path, which is the vendor'"'"'s with the vendor'"'"'s framework
        else if (target !~ "/" && (getline probe < ("platform/host/" target)) > 0) target = "platform/host/" target # likewise
        to = FolderOf(target)
        if (to == "" || to == from) continue
        if (!((from " -> " to) in arrow)) Fail(file ": includes " target ", but " page " has no arrow " from " -> " to)
        used[from " -> " to] = 1
    }
    close(file)
}
END {
    for (name in arrow)
        if (!(name in used)) Fail(page ": no include needs the arrow " name)
    exit failed
}'
