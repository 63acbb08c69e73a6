#!/usr/bin/env bash
# Breaks each rule of check-source.sh in a tree of its own, beside lines that only look alike, and
# expects just the broken ones to be found: tests/scripts/check-source-test.sh <check-source.sh>
set -uo pipefail

check=$(realpath "$1")
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree"/{src/{base,platform,firmware},tests,simulator}

# Appends a line to a file of the tree.
put() {
    printf '%s\n' "$2" >>"$tree/$1"
}

# The words that no file of the project may hold, this one included.
word="sp""ec"
open="TO""DO"
chapter="Pa""rt 3.1"

put src/base/Good.h "#pragma once"
put src/base/Good.cpp "int special = printable;  // std::cout << std::regex, #ifdef"
put src/base/Good.cpp "std::snprintf(buffer, 4, text);"
put src/base/Good.cpp "$(seq 398)"
put src/platform/Good.cpp "#if 1"
put src/platform/Good.cpp "std::puts(text);"
put src/firmware/GoodWindows.cpp "reinterpret_cast<char*>(p);"
put src/firmware/Good.cpp "reinterpret_cast<char*>(p);  // rule-exception: looks alike"
put simulator/Good.cpp "std::fprintf(stderr, text);"
put tests/Good.cpp "std::cout << 1;"
good=$("$check" "$tree")
status=$?
[ "$status" -eq 0 ] && [ -z "$good" ] || {
    echo "FAILED: status $status for sources without a fault:"
    printf '%s\n' "$good"
    exit 1
}

put src/base/A.cpp "  #  ifdef _WIN32"
put tests/A.cpp "#elif 1"
put src/base/A.cpp "std::wregex pattern;"
put tests/A.cpp "using namespace std;"
put src/base/A.cpp "std::cerr << 1;"
put simulator/A.cpp "    std::fprintf(stdout, text);"
put src/base/A.cpp "std::ofstream file;"
put src/firmware/Good.cpp "reinterpret_cast<char*>(p);"
put tests/A.cpp "std::this_thread::sleep_for(1s);"
put src/base/A.h "#include <string>"
put src/base/Good.cpp "the 401st line"
put src/base/A.cpp "// as the $word says"
put README.md "See $chapter."
put src/base/A.cpp "// $open: more"

found=$("$check" "$tree" | sed -E 's/^(.*: [^ :]+:[0-9]+):.*/\1/')
expected="conditional compilation belongs to platform: src/base/A.cpp:1
conditional compilation belongs to platform: tests/A.cpp:1
recursive matchers overflow the stack: src/base/A.cpp:2
no using namespace: tests/A.cpp:2
the console belongs to platform: simulator/A.cpp:1
the console belongs to platform: src/base/A.cpp:3
files belong to platform: src/base/A.cpp:4
bytes go through the helpers of base: src/firmware/Good.cpp:2
tests never sleep: tests/A.cpp:3
missing #pragma once: src/base/A.h
too long, probably two things in one: src/base/Good.cpp has 401 lines
documents outside the project are not ours to cite: README.md:1
documents outside the project are not ours to cite: src/base/A.cpp:5
open ends belong into issues: src/base/A.cpp:6"

"$check" "$tree" >/dev/null && {
    echo "FAILED: the status tells nothing of the faults"
    exit 1
}
diff <(printf '%s\n' "$expected") <(printf '%s\n' "$found") || {
    echo "FAILED: what was expected (<) is not what was found (>)"
    exit 1
}
