#!/usr/bin/env bash
# Checks that each header compiles by itself, with nothing included before it.
set -uo pipefail
cd "$(dirname "$0")/.."

failed=0
while read -r header; do
    "${CXX:-g++}" -std=c++20 -fsyntax-only -Wall -Wextra -Isrc -Itests -I. \
        -include "$header" -x c++ /dev/null || {
        echo "check-headers: $header does not stand alone"
        failed=1
    }
done < <(find src simulator tests -name '*.h' ! -name '*Windows.h' | sort)
exit "$failed"
