#!/usr/bin/env bash
# Installs the Debian packages the project needs. Idempotent: when all of them are present it
# only checks and returns (well under a second).
#
# Usage: scripts/setup.sh [--tests]
#   without options: what building and running the emulated television needs (scripts/run)
#   --tests:         that plus what only the test suite needs (scripts/test)
set -euo pipefail

build_packages=(
  build-essential cmake ninja-build pkg-config gettext
  clang-14 libclang-rt-14-dev
  libboost-dev libboost-filesystem-dev libboost-serialization-dev
  libboost-thread-dev libboost-chrono-dev
  libcpp-httplib-dev nlohmann-json3-dev
  binutils util-linux python3 ccache
)

test_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev
  clang-format-14 valgrind rpm
  g++-arm-linux-gnueabihf qemu-user qemu-user-binfmt binfmt-support
  chromium chromium-driver python3-selenium
)

packages=("${build_packages[@]}")
case "${1:-}" in
  --tests) packages+=("${test_packages[@]}") ;;
  "") ;;
  -h|--help) sed -n '5,7p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
  *) echo "setup: unknown option '$1' (try --help)" >&2; exit 2 ;;
esac

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

# apt's progress goes to a log, shown only when the installation fails.
log="${TMPDIR:-/tmp}/orvo-setup.log"
echo "setup: installing ${#missing[@]} Debian packages (${missing[*]}); apt's output in $log"
sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
if ! { "${sudo_cmd[@]}" apt-get update &&
       "${sudo_cmd[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
  tail -n 30 "$log" >&2
  echo "setup: the installation failed (the whole output: $log)" >&2
  exit 1
fi
