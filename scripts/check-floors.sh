#!/usr/bin/env bash
# Checks the order of the house: scripts/check-floors.sh [root]. The table of ARCHITECTURE.md lists
# the folders of src and simulator from the ground up; a folder includes itself and those above it
# in the table, nothing else, so that no two know each other. Prints each include that runs up, each
# folder without a line in the table, and each folder with more than 25 files.
set -uo pipefail
export LC_ALL=C
cd "${1:-$(dirname "$0")/..}" || exit 2

most_files=25
found=$(mktemp)
trap 'rm -f "$found"' EXIT

# The folders of the table's first column, in its order.
floors() {
    sed -nE 's/^\| `((src|simulator)[^`]*)` \|.*/\1/p' ARCHITECTURE.md
}

# "file:line:include" of every include of the project's own.
includes() {
    find src simulator -name '*.h' -o -name '*.cpp' | sort | xargs -r grep -nE '^#include "' /dev/null |
        sed -E 's/#include "([^"]*)".*/\1/'
}

awk -F: '
    function folder(path) {
        sub(/\/[^\/]*$/, "", path)
        return path
    }
    NR == FNR { floor[$1] = NR; next }
    {
        to = folder($3)
        if (to !~ /^simulator(\/|$)/) to = "src/" to
        from = folder($1)
        if (!(from in floor)) missing[from] = 1
        else if (!(to in floor)) missing[to] = 1
        else if (floor[to] > floor[from]) print "an include runs up: " $1 ":" $2 ": " $3
        else if (from ~ /^simulator/ && to ~ /^src/ && to !~ /^src\/(base|platform|vocabulary|firmware)$/)
            print "the simulator works by its own maths: " $1 ":" $2 ": " $3
    }
    END { for (name in missing) print "no floor in ARCHITECTURE.md: " name | "sort" }
' <(floors) <(includes) >"$found"

while read -r count name; do
    [ "$count" -gt "$most_files" ] && echo "more than $most_files files in a folder: $name has $count"
done < <(find src simulator -type f -printf '%h\n' | sort | uniq -c) >>"$found"

cat "$found"
[ ! -s "$found" ]
