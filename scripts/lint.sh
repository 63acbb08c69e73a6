#!/usr/bin/env bash
# Runs clang-tidy, with the checks of .clang-tidy, over the sources that are built here; or over the
# files that are given. Silent if there is nothing to say.
set -euo pipefail
cd "$(dirname "$0")/.."

command -v clang-tidy >/dev/null || {
    echo "lint: clang-tidy is not installed" >&2
    exit 1
}

preset=debug
command -v clang++ >/dev/null && preset=clang
cmake --preset "$preset" >/dev/null

# A source of another platform is not built, so there is nothing to compile it with.
built_sources() {
    find src simulator tests -name '*.cpp' | sort | while read -r source; do
        grep -qF "\"file\": \"$PWD/$source\"" "build/$preset/compile_commands.json" && echo "$source"
    done || true
}

if [ $# -gt 0 ]; then
    printf '%s\n' "$@"
else
    built_sources
fi | xargs -r -n 1 -P "$(nproc)" scripts/tidy-file.sh "build/$preset"
