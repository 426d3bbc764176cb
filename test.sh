#!/usr/bin/env bash
# Builds everything and runs every test. --asan: under the address and undefined-behaviour sanitizers.
cd "$(dirname "$0")"
. ./setup.sh
preset=release
[ "${1:-}" = --asan ] && preset=asan
install_missing "${packages[@]}" "${test_packages[@]}"
g++ -std=c++20 -m32 -I. -fsyntax-only zenlay/host/host_layout.cpp
build_preset "$preset"
export LSAN_OPTIONS=suppressions=$PWD/tests/lsan.supp:print_suppressions=0
ctest --preset "$preset" -j "$(nproc)"
