#!/usr/bin/env bash
# Checks the project's own rules that no compiler knows: scripts/check-source.sh [root]. Prints each
# line that breaks one. A line that has to break one says so with "rule-exception: " and the reason.
set -uo pipefail
export LC_ALL=C
cd "${1:-$(dirname "$0")/..}" || exit 2

failed=0
code=$(mktemp)
trap 'rm -f "$code"' EXIT

existing() {
    for path in "$@"; do
        [ -e "$path" ] && echo "$path"
    done
}

# C++ sources below the given folders.
sources() {
    existing "$@" | xargs -r -I{} find {} -name '*.h' -o -name '*.cpp' | sort
}

# Reads "file:line:text" lines and reports those that match the pattern behind the place.
report() {
    local rule=$1 pattern=$2 hits
    hits=$(grep -E "^[^:]+:[0-9]+:.*($pattern)" | grep -v 'rule-exception: ')
    if [ -n "$hits" ]; then
        printf '%s\n' "$hits" | cut -c1-160 | sed "s/^/$rule: /"
        failed=1
    fi
}

# The code of files, with the comments at line ends taken off.
code_of() {
    xargs -r awk '{
        if ($0 !~ /rule-exception: /) sub(/(^|[ \t])\/\/.*/, "")
        print FILENAME ":" FNR ":" $0
    }'
}

# --- Code -----------------------------------------------------------------------------------------

above_platform() {
    sources src simulator | grep -v '^src/platform/'
}

sources src simulator tests bench fuzz | grep -v '^src/platform/' | code_of >"$code"
report "conditional compilation belongs to platform" '#[[:space:]]*(el)?if(n?def)?\b' <"$code"
report "recursive matchers overflow the stack" 'std::w?c?s?regex\b|<regex>' <"$code"
report "no using namespace" '\busing namespace\b' <"$code"

above_platform | code_of >"$code"
# The simulator is a program of its own and may tell its user what is wrong.
report "the console belongs to platform" \
    'std::w?(cout|cerr|clog|cin)\b|\b(v?f?w?printf|f?puts|putchar|getchar|f?gets|w?scanf)\(|<iostream>' \
    < <(grep -v '^simulator/.*\bfprintf(stderr,' "$code")
report "files belong to platform" 'std::w?[io]?fstream\b|<fstream>|<filesystem>|\bfopen\(' <"$code"

# Bodies for one system talk to its interfaces, which take untyped memory.
above_platform | grep -vE '(Windows|Posix|Linux)\.(h|cpp)$' | code_of >"$code"
report "bytes go through the helpers of base" '\breinterpret_cast<' <"$code"

sources tests | code_of >"$code"
report "tests never sleep" '\bsleep_(for|until)\b|\bu?sleep\(' <"$code"

while read -r header; do
    grep -q '^#pragma once$' "$header" || {
        echo "missing #pragma once: $header"
        failed=1
    }
done < <(sources src simulator tests bench fuzz | grep '\.h$')

# --- Everything that a person wrote ---------------------------------------------------------------

texts() {
    find . \( -path ./.git -o -path './build*' -o -path ./out -o -path ./demo-out \) -prune -o \
        -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.sh' -o -name '*.cmake' -o -name '*.md' \
        -o -name '*.json' -o -name '*.yml' -o -name '*.py' -o -name 'CMakeLists.txt' \
        -o -name '.clang*' -o -path './.ci/*' \) -print | sed 's,^\./,,' | sort
}

while read -r count file; do
    if [ "$file" != total ] && [ "$count" -gt 400 ]; then
        echo "too long, probably two things in one: $file has $count lines"
        failed=1
    fi
done < <(texts | grep -E '\.(h|cpp|sh|py|cmake)$' | xargs -r wc -l)

# The words are put together here, so that this file does not hold them itself.
document='[Ss]pec'
report "documents outside the project are not ours to cite" \
    "\\b${document}s?\\b|\\b${document}ifications?\\b|\\b[Pp]arts? [0-9]+\\.[0-9]|[Ss]eed docu""ment|[Oo]rder of buil""ding|[Ll]eft to the implemen""ter" \
    < <(texts | xargs -r grep -nHE '.' --)
report "open ends belong into issues" "\\bTO""DO\\b|\\bFIX""ME\\b|\\bX""XX\\b" \
    < <(texts | xargs -r grep -nHE '.' --)

exit "$failed"
