#!/usr/bin/env bash
# Ends live runs by signals, at seeded moments of each flow and with each fault of the firmware, and
# checks what they leave behind. Options go to scripts/faults.py, such as --rounds 100.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh python3
cmake --preset release >/dev/null
cmake --build --preset release -j"$(nproc)" --target tavocal tavosim
exec python3 scripts/faults.py --bin build/release "$@"
