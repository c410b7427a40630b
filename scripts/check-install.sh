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

# Hardening, as readelf sees every installed binary: full RELRO (GNU_RELRO and BIND_NOW), the
# stack protector, fortified libc calls wherever the code calls a function that has a checked
# variant, position-independent executables, a non-executable stack and no empty RUNPATH element
# (which would mean the current directory). Prints one row per binary.
fortifiable='^(memcpy|memmove|memset|mempcpy|stpcpy|strcpy|strncpy|strcat|strncat|sprintf|snprintf|vsprintf|vsnprintf|fprintf|printf|vfprintf|vprintf|dprintf|read|pread64|readlink|getcwd|realpath|fgets|fread|wcscpy|wmemcpy|poll|ppoll|recv|recvfrom|ttyname_r|gethostname|confstr|getgroups|syslog)$'
check_hardening() {
  local file=$1 headers dynamic imports relro now ssp chk pie nx runpath failed=()
  headers=$(readelf -lW "$file") dynamic=$(readelf -dW "$file")
  imports=$(readelf --dyn-syms -W "$file" | awk '$7 == "UND" { sub(/@.*/, "", $8); print $8 }')
  relro=no now=no ssp=no chk=n/a pie=n/a nx=no
  grep -q GNU_RELRO <<<"$headers" && relro=yes
  grep -Eq 'BIND_NOW|FLAGS.*[[:space:]]NOW' <<<"$dynamic" && now=yes
  grep -qx __stack_chk_fail <<<"$imports" && ssp=yes
  if grep -Eq '^__.*_chk$' <<<"$imports"; then chk=yes; elif grep -Eq "$fortifiable" <<<"$imports"; then chk=no; fi
  if readelf -hW "$file" | grep -q 'Type:.*EXEC'; then pie=no
  elif [[ $file == "$bin"/* ]]; then pie=yes; fi
  grep -E 'GNU_STACK' <<<"$headers" | grep -Eqv 'RWE' && nx=yes
  runpath=$(sed -n 's/.*(RUNPATH).*\[\(.*\)\]/\1/p; s/.*(RPATH).*\[\(.*\)\]/\1/p' <<<"$dynamic")
  printf '%-36s %-5s %-5s %-5s %-5s %-5s %-5s %s\n' "${file#"$prefix"/}" "$now" "$relro" "$ssp" "$chk" "$pie" "$nx" "${runpath:--}"
  [ "$now" = yes ] || failed+=(BIND_NOW)
  [ "$relro" = yes ] || failed+=(GNU_RELRO)
  [ "$ssp" = yes ] || failed+=(stack-protector)
  [ "$chk" != no ] || failed+=(_FORTIFY_SOURCE)
  [ "$pie" != no ] || failed+=(PIE)
  [ "$nx" = yes ] || failed+=(non-executable-stack)
  [[ -z $runpath || ! $runpath =~ (^:|::|:$) ]] || failed+=(empty-RUNPATH-element)
  [ ${#failed[@]} -eq 0 ] || hardening_failures+=("${file#"$prefix"/}: ${failed[*]}")
}
hardening_failures=()
printf '%-36s %-5s %-5s %-5s %-5s %-5s %-5s %s\n' binary NOW RELRO SSP _chk PIE NX RUNPATH
while IFS= read -r -d '' file; do
  check_hardening "$file"
done < <(find "$bin" "$prefix/lib" -type f \( -perm -u+x -o -name '*.so*' \) -print0 | sort -z)
[ ${#hardening_failures[@]} -eq 0 ] || fail "not hardened: ${hardening_failures[*]}"

# The substitute libraries as the platform installs them: SONAME, header directory and the
# pkg-config file that points there, so that a consumer builds alike against either.
while read -r package soname header; do
  [ -e "$prefix/lib/$soname" ] || fail "$package: no lib/$soname"
  readelf -dW "$prefix/lib/$soname" | grep -q "(SONAME).*\[$soname\]" || fail "$package: SONAME is not $soname"
  read -r cflags < <(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --cflags "$package")
  [ -f "${cflags#-I}/$header" ] || fail "$package: $header is not in $cflags"
done <<'LIBRARIES'
vconf libvconf.so.0 vconf.h
dlog libdlog.so.0 dlog.h
capi-system-info libcapi-system-info.so.0 system_info.h
libtzplatform-config libtzplatform-config-2.0.so.2 tzplatform_config.h
libtzplatform-config libtzplatform-config-2.0.so.2 tzplatform_variables.h
LIBRARIES
readelf -VW "$prefix/lib/libvconf.so.0" | grep -q VCONF_BUXTON_1.0 || fail "libvconf: symbols not in VCONF_BUXTON_1.0"
[ "$(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --modversion libtzplatform-config)" = 2.0 ] \
  || fail "libtzplatform-config: version is not 2.0"

"$bin/orvo-device" create "$device" --profile tv
export ORVO_DEVICE_DIR=$device

"$bin/vconftool" set -t int db/menu/support/softwareupdate/autoupdate 0 -f
[ "$("$bin/vconftool" get db/menu/support/softwareupdate/autoupdate)" = \
  "db/menu/support/softwareupdate/autoupdate, value = 0 (Int32)" ] || fail "vconftool get after set"

"$bin/orvo-device" run --device "$device" -- "$bin/orvo-menu" show > "$work/show.txt"
grep -q . "$work/show.txt" || fail "orvo-menu show printed nothing"
"$bin/orvo-device" run --device "$device" -- "$bin/orvo-menu" show --json > "$work/show.json"
python3 -c 'import json,sys; json.load(open(sys.argv[1]))' "$work/show.json" || fail "orvo-menu --json is not JSON"
"$bin/orvo-device" run --device "$device" -- "$bin/orvo-menu" check > "$work/check.txt" || {
  cat "$work/check.txt"; fail "orvo-menu check found violations"; }

"$bin/dlogutil" -d -v brief '*:V' > "$work/log.txt"
"$bin/orvo-device" reboot "$device"
"$bin/vconftool" get memory/menu/support/softwareupdate/newest_version >/dev/null \
  && fail "a memory/ key survived the reboot"
echo "check-install: tools, menu host and plug-in run from $prefix"
