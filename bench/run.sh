#!/usr/bin/env bash
# Builds and runs every benchmark: kernels as ratios to a library or to memcpy, then whole films.
cd "$(dirname "$0")/.."
. ./setup.sh
install_missing "${packages[@]}" "${bench_packages[@]}"
build_preset bench
for program in build/bench/bin/*_bench; do "$program"; done
bench/films.sh "$@"
