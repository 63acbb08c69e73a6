#!/usr/bin/env bash
# Writes the transcripts of tests/runs anew, as the runs come out now; with names, only those:
# scripts/update-runs.sh [NAME ...]. What has changed is for a reviewer to read: git diff tests/runs
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release -j"$(nproc)" --target tavocal-tests

filter='Run/RunsTest.*'
if [ $# -gt 0 ]; then
    filter=$(printf 'Run/RunsTest.*/%s:' "${@//-/_}")
fi
TAVOCAL_UPDATE_RUNS=1 build/release/tests/tavocal-tests --gtest_brief=1 --gtest_filter="$filter"
git --no-pager diff --stat -- tests/runs
