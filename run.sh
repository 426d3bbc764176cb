#!/usr/bin/env bash
# Builds the program and opens the editor on the first film; without a display renders it to out/first_film.mp4.
cd "$(dirname "$0")"
. ./setup.sh
install_missing "${packages[@]}"
build_preset release --target cinora
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec build/release/bin/cinora examples/first_film.zlo "$@"
fi
mkdir -p out
exec build/release/bin/cinora render examples/first_film.zlo -o out/first_film.mp4 "$@"
