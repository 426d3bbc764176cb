# Sourced by run.sh and test.sh: installs what is missing (Debian 12) and builds a preset.
set -euo pipefail

packages=(build-essential g++-multilib cmake ninja-build ccache pkg-config git
  libavformat-dev libavcodec-dev libavutil-dev libswscale-dev libswresample-dev
  libhwy-dev libfreetype-dev libfontconfig-dev libcli11-dev nlohmann-json3-dev fonts-dejavu-core
  qt6-base-dev qt6-svg-dev qt6-multimedia-dev libxcb1-dev)
test_packages=(libgtest-dev libgmock-dev ffmpeg xvfb xdotool)
bench_packages=(libbenchmark-dev libopencv-dev melt ffmpeg time)

install_missing() {
  local missing=()
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local sudo=
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  echo "Installing ${missing[*]}"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

build_preset() {
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1" "${@:2}"
}
