#!/usr/bin/env bash
# Installs every Debian package the project needs. Idempotent: when all of them are
# present it only checks and returns (well under a second).
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config gettext
  clang-14 libclang-rt-14-dev
  libboost-dev libboost-filesystem-dev libboost-serialization-dev
  libboost-thread-dev libboost-chrono-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  g++-arm-linux-gnueabihf
  valgrind binutils util-linux python3 ccache
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
