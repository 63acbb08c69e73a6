#!/usr/bin/env bash
# Builds everything as it is released and runs all tests, from a bare machine on. CTest's summary is
# the last that it prints, and its result is the exit status.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release
cmake --build --preset release -j"$(nproc)"
ctest --preset release -j"$(nproc)"
