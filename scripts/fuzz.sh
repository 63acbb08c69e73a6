#!/usr/bin/env bash
# Runs the fuzz targets from a bare machine on, each for a time of one core:
#     scripts/fuzz.sh [TARGET [SECONDS]]
# Without a target, or with "all", all of them; without a time 60 seconds each. New inputs go to out/fuzz/TARGET,
# findings, which end it with a status other than 0, to out/fuzz/findings.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${2:-60}
scripts/setup.sh clang
scripts/setup.sh "libclang-rt-$(clang -dumpversion | cut -d. -f1)-dev"

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j"$(nproc)"
targets=("${1:-all}")
if [ "${targets[0]}" = all ]; then
    mapfile -t targets < <(basename -s .cpp fuzz/*Fuzz.cpp)
fi

# The targets change their working folder. Theirs lie in memory where there is some.
root=$PWD
scratch=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo /tmp)" tavocal-fuzz.XXXXXX)
trap 'rm -rf "$scratch"' EXIT
export TMPDIR=$scratch

fuzz() {
    local target=$1 log=$root/out/fuzz/$1.log corpus=$root/out/fuzz/$1 limits=()
    [ -x "build/fuzz/fuzz/$target" ] || { echo "fuzz: there is no target $target" >&2; exit 1; }
    mkdir -p "$corpus" out/fuzz/findings
    # The log of the program stays in memory, so a longer run begins anew from time to time.
    if [ "$seconds" -gt 60 ]; then
        limits+=(-fork=1)
    fi
    if ! "$root/build/fuzz/fuzz/$target" "${limits[@]}" -max_total_time="$seconds" \
        -rss_limit_mb=4096 -timeout=60 -max_len=4096 -print_final_stats=1 \
        -dict="$root/fuzz/$(dictionary "$target")" -artifact_prefix="$root/out/fuzz/findings/$target-" \
        "$corpus" "$root/fuzz/seeds/$target" >/dev/null 2>"$log"; then
        tail -n 30 "$log" >&2
        echo "fuzz: $target found something; its input is in out/fuzz/findings" >&2
        exit 1
    fi
    echo "$target: $(grep -oE 'number_of_executed_units: [0-9]+|^#[0-9]+: cov.*' "$log" | tail -n 1)," \
        "$(grep -oE 'cov: [0-9]+' "$log" | tail -n 1)"
}

dictionary() {
    case $1 in
    *Xml* | *Config* | CalibrationFile*) echo xml.dict ;;
    *) echo text.dict ;;
    esac
}

for target in "${targets[@]}"; do
    fuzz "$target"
done
