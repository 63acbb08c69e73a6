#!/usr/bin/env bash
# Runs clang-tidy on one file: scripts/tidy-file.sh <build folder> <file>. clang-tidy counts on
# standard error the findings that it hid; that is dropped unless it fails.
set -uo pipefail
output=$(clang-tidy --quiet -p "$1" "$2" 2>&1) || {
    printf '%s\n' "$output"
    exit 1
}
