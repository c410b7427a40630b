#!/usr/bin/env bash
# Runs the emulated device's tools, the menu host and the plug-in from an installed prefix, with
# no other settings: `scripts/check-install.sh PREFIX`. Exits non-zero at the first failure.
set -euo pipefail
prefix=${1:?usage: scripts/check-install.sh PREFIX}
bin=$prefix/bin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
device=$work/device
fail() { echo "check-install: $*" >&2; exit 1; }

"$bin/orvo-device" create "$device" --profile tv
export ORVO_DEVICE_DIR=$device

"$bin/vconftool" set -t int db/menu/support/softwareupdate/autoupdate 0
[ "$("$bin/vconftool" get db/menu/support/softwareupdate/autoupdate)" = \
  "db/menu/support/softwareupdate/autoupdate, value = 0 (int)" ] || fail "vconftool get after set"

"$bin/orvo-device" run --device "$device" -- "$bin/orvo-menu" show > "$work/show.txt"
grep -q . "$work/show.txt" || fail "orvo-menu show printed nothing"
"$bin/orvo-device" run --device "$device" -- "$bin/orvo-menu" show --json > "$work/show.json"
python3 -c 'import json,sys; json.load(open(sys.argv[1]))' "$work/show.json" || fail "orvo-menu --json is not JSON"
"$bin/orvo-device" run --device "$device" -- "$bin/orvo-menu" check > "$work/check.txt" || {
  cat "$work/check.txt"; fail "orvo-menu check found violations"; }

"$bin/dlogutil" -d -v brief '*:V' > "$work/log.txt"
"$bin/orvo-device" reboot "$device"
"$bin/vconftool" get memory/menu/support/softwareupdate/newest_version 2>/dev/null \
  && fail "a memory/ key survived the reboot"
echo "check-install: tools, menu host and plug-in run from $prefix"
