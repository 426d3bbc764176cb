#!/usr/bin/env bash
# Builds the program and renders the first film to out/first_film.mp4.
cd "$(dirname "$0")"
. ./setup.sh
install_missing "${packages[@]}"
build_preset release --target cinora
mkdir -p out
exec build/release/bin/cinora render examples/first_film.zlo -o out/first_film.mp4 "$@"
