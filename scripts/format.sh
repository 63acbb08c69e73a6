#!/usr/bin/env bash
# Checks the format of all C++ sources against .clang-format; with --fix, formats them.
set -euo pipefail
cd "$(dirname "$0")/.."

case "${1:-}" in
    "") mode=(--dry-run --Werror) ;;
    --fix) mode=(-i) ;;
    *)
        echo "usage: scripts/format.sh [--fix]" >&2
        exit 2
        ;;
esac

command -v clang-format >/dev/null || {
    echo "format: clang-format is not installed" >&2
    exit 1
}

folders=()
for folder in src simulator tests bench fuzz; do
    [ -d "$folder" ] && folders+=("$folder")
done
find "${folders[@]}" -name '*.h' -print0 -o -name '*.cpp' -print0 |
    xargs -0 -r clang-format "${mode[@]}"
