#!/usr/bin/env bash
# Installs what the build and the tests need, with apt-get. What is there stays as it is, and with
# everything there nothing is run and no rights are needed. Programs that are wanted besides, in
# packages of the same name, are arguments: scripts/setup.sh gcovr. So is libclang-rt-VERSION-dev,
# Clang's fuzzer and sanitizers.
set -euo pipefail

besides=("$@")

has_gtest() {
    echo '#include <gtest/gtest.h>' | g++ -E -x c++ - >/dev/null 2>&1
}

has_fuzzer() {
    echo 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }' |
        clang++ -fsanitize=fuzzer,address -x c++ - -o /dev/null 2>/dev/null
}

has_program() {
    case $1 in
    libclang-rt-*) has_fuzzer ;;
    *) command -v "$1" >/dev/null ;;
    esac
}

missing_packages() {
    command -v g++ >/dev/null || echo g++
    command -v cmake >/dev/null || echo cmake
    command -v ninja >/dev/null || echo ninja-build
    has_gtest || echo libgtest-dev
    for program in "${besides[@]}"; do
        has_program "$program" || echo "$program"
    done
}

fail() {
    echo "setup: $1" >&2
    exit 1
}

# Runs a command with the rights to install.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

mapfile -t missing < <(missing_packages)
if [ "${#missing[@]}" -eq 0 ]; then
    exit 0
fi

echo "setup: installing ${missing[*]}"
command -v apt-get >/dev/null ||
    fail "there is no apt-get here; please install by other means: ${missing[*]}"
[ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null ||
    fail "this needs root or sudo to install: ${missing[*]}"

as_root apt-get update -qq || fail "apt-get update failed"
as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" ||
    fail "apt-get could not install: ${missing[*]}"

mapfile -t missing < <(missing_packages)
[ "${#missing[@]}" -eq 0 ] || fail "still missing after the installation: ${missing[*]}"
