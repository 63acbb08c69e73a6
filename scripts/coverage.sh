#!/usr/bin/env bash
# Tells which lines and branches of src the tests run: a summary on the screen, the lines that none
# runs in build/coverage/lines.txt. Branches that only an exception takes are left out.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh gcovr

build=build/coverage
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_CXX_FLAGS="-O0 -g1 --coverage" >/dev/null
cmake --build "$build" -j"$(nproc)" --target tavocal-tests
find "$build" -name '*.gcda' -delete
"$build/tests/tavocal-tests" --gtest_brief=1
gcovr -r . --filter 'src/' --exclude-throw-branches "$build" \
    --txt "$build/lines.txt" --print-summary
