#!/usr/bin/env bash
# Builds the rpm packages from their recipe (the .spec file) as the platform's build does
# (real-platform build, every platform library through pkg-config), here against the emulated
# device's substitute libraries installed in PLATFORM_PREFIX, and checks the files each package
# holds:
# `packaging/build-rpm.sh PLATFORM_PREFIX`. --nodeps: the build requirements are not rpms here.
set -euo pipefail
cd "$(dirname "$0")/.."
platform=$(cd "${1:?usage: packaging/build-rpm.sh PLATFORM_PREFIX}" && pwd)
name=libOrvoMenuItemDataProvider
# The version is the project's (CMakeLists.txt); the recipe names it @PROJECT_VERSION@.
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
top=$PWD/build/rpm
rm -rf "$top"
mkdir -p "$top/SOURCES"
git ls-files -z | tar --null -T - --transform "s|^|$name-$version/|" -czf "$top/SOURCES/$name-$version.tar.gz"
cp packaging/$name.manifest "$top/SOURCES/"

# %manifest (the Smack manifest of a file list) is the platform's own rpm extension; Debian's rpm
# does not know it.
sed -e "s/@PROJECT_VERSION@/$version/" -e '/^%manifest /d' packaging/$name.spec > "$top/$name.spec"
PKG_CONFIG_PATH=$platform/lib/pkgconfig rpmbuild --nodeps -bb --quiet \
  --define "_topdir $top" --define "debug_package %{nil}" --define "_smp_mflags -j2" \
  "$top/$name.spec" > "$top/rpmbuild.log" 2>&1 || { tail -n 30 "$top/rpmbuild.log" >&2; exit 1; }

libdir=$(rpm --eval '%{_libdir}') includedir=$(rpm --eval '%{_includedir}')
check_files() {
  local package=$1 expected=$2 actual
  actual=$(rpm -qlp "$package" 2>/dev/null)
  [ "$actual" = "$expected" ] || {
    echo "build-rpm: $(basename "$package") holds:" >&2; echo "$actual" >&2
    echo "build-rpm: expected:" >&2; echo "$expected" >&2; exit 1; }
  echo "build-rpm: $(basename "$package"): $(tr '\n' ' ' <<<"$actual")"
}
rpms=$top/RPMS/$(rpm --eval '%{_arch}')
check_files "$rpms/$name-$version-1.$(rpm --eval '%{_arch}').rpm" "$libdir/settings-menu/$name.so"
check_files "$rpms/$name-devel-$version-1.$(rpm --eval '%{_arch}').rpm" \
  "$includedir/MenuItemDataProvider.h
$libdir/pkgconfig/OrvoMenuItemDataProvider.pc"
