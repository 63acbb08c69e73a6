#!/usr/bin/env bash
# Builds the tool and shows its main job on a simulated device: a fresh device fails its test, is
# calibrated live, passes the same test, and the run is replayed from its own dumps.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release -j"$(nproc)" --target tavocal tavosim

bin="$PWD/build/release"
work=demo-out
rm -rf "$work"
mkdir -p "$work"
cd "$work"

say() { printf '\n=== %s\n' "$1"; }
device() { "$bin/simulator/tavosim" run --device device.txt --seed 7 -- "$bin/tavocal" "$@"; }

say "A fresh device is tested, and fails"
if device -TestCalibration AG -FourSteps; then
    echo "demo: the fresh device passed its test" >&2
    exit 1
fi

say "It is calibrated: one Enter, seven stages"
device -Calibrate AGM -UpdateTavo -ExportAllFiles out

say "The same test again"
device -TestCalibration AG -FourSteps

say "The run is replayed from its own dumps, with no device"
"$bin/tavocal" -CalibrateOffline AGM -ExportAllFiles replay -UseRawData out
