#!/usr/bin/env bash
# Installs the Debian packages the editor and its tests need, only those that
# are missing, and says nothing when all are there.
tf_packages="cmake g++ make pkg-config libsdl2-dev libgl-dev libgl1-mesa-dri libgtest-dev \
libbenchmark-dev xvfb xauth xdotool imagemagick x11-utils openbox desktop-file-utils \
clang libclang-rt-14-dev"

tf_install_deps() {
  local missing=()
  local p
  for p in $tf_packages; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  echo "Installing: ${missing[*]}"
  $sudo apt-get update -qq >/dev/null
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
