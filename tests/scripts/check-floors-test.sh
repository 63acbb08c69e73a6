#!/usr/bin/env bash
# Plants each fault that check-floors.sh knows in a house of its own, and expects just those to be
# found: tests/scripts/check-floors-test.sh <check-floors.sh>
set -uo pipefail

check=$(realpath "$1")
house=$(mktemp -d)
trap 'rm -rf "$house"' EXIT
mkdir -p "$house"/{src/{base,numerics,sensors/light,attic},simulator/device}

# Appends an include to a file of the house.
include() {
    printf '#include "%s"\n' "$2" >>"$house/$1"
}

cat >"$house/ARCHITECTURE.md" <<'END'
| Folder | What is in it |
|---|---|
| `src/base` | ground |
| `src/numerics` | |
| `src/sensors/light` | |
| `src/sensors` | |
| `simulator/device` | |
Beside them | `src/attic` | no row of the table
END

include src/base/A.cpp base/A.h
include src/sensors/light/A.cpp numerics/A.h
include src/sensors/A.cpp sensors/light/A.h
include simulator/device/A.cpp base/A.h
include simulator/device/A.cpp simulator/device/A.h
touch "$house"/src/base/{1..24}.h
good=$("$check" "$house")
status=$?
[ "$status" -eq 0 ] && [ -z "$good" ] || {
    echo "FAILED: status $status for a house without a fault:"
    printf '%s\n' "$good"
    exit 1
}

include src/base/A.cpp numerics/A.h
include src/sensors/light/A.cpp sensors/A.h
include simulator/device/A.cpp numerics/A.h
include src/attic/A.cpp base/A.h
touch "$house"/src/base/25.h

found=$("$check" "$house")
status=$?
expected="an include runs up: src/base/A.cpp:2: numerics/A.h
an include runs up: src/sensors/light/A.cpp:2: sensors/A.h
no floor in ARCHITECTURE.md: src/attic
the simulator works by its own maths: simulator/device/A.cpp:3: numerics/A.h
more than 25 files in a folder: src/base has 26"
diff <(sort <<<"$expected") <(sort <<<"$found") && [ "$status" -eq 1 ] || {
    echo "FAILED: status $status; what was expected (<) is not what was found (>)"
    exit 1
}
