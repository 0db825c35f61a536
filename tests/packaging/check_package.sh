#!/bin/sh
# Builds the .deb from a built tree with CPack and checks what it holds: the
# files in their standard places, the version, the section and the library
# dependencies; the packaged program runs. An install into a prefix that
# cannot be created fails with CMake's message. Exits 77 (skipped) without
# dpkg-deb or dpkg-shlibdeps.
# usage: check_package.sh <build folder>
set -u
build=$1
for tool in cpack dpkg-deb dpkg-shlibdeps; do
  command -v "$tool" >/dev/null 2>&1 || { echo "skipped: $tool is not installed"; exit 77; }
done
status=0
fail() { echo "FAIL: $*"; status=1; }
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

cpack -G DEB --config "$build/CPackConfig.cmake" -B "$out" >"$out/cpack.log" 2>&1 || {
  cat "$out/cpack.log"
  echo "FAIL: cpack"
  exit 1
}
deb=$(ls "$out"/*.deb 2>/dev/null)
[ "$(basename "$deb")" = "korvanel_1.4.1054_amd64.deb" ] || fail "package file '$deb'"

field() { dpkg-deb -f "$deb" "$1"; }
[ "$(field Package)" = korvanel ] || fail "Package: $(field Package)"
[ "$(field Version)" = 1.4.1054 ] || fail "Version: $(field Version)"
[ "$(field Section)" = graphics ] || fail "Section: $(field Section)"
for library in libc6 libstdc++6 libqt6core6 libqt6gui6 libqt6widgets6 libqt6network6; do
  field Depends | grep -q "$library" || fail "Depends lacks $library: $(field Depends)"
done
field Recommends | grep -q "fonts-liberation2" || fail "Recommends: $(field Recommends)"

dpkg-deb -c "$deb" | awk '{print $NF}' >"$out/files"
while read -r file; do
  grep -qx "$file" "$out/files" || fail "package lacks $file"
done <<'ROWS'
./usr/bin/korvanel
./usr/share/applications/korvanel.desktop
./usr/share/mime/packages/korvanel.xml
./usr/share/icons/hicolor/16x16/apps/korvanel.png
./usr/share/icons/hicolor/48x48/apps/korvanel.png
./usr/share/icons/hicolor/256x256/apps/korvanel.png
./usr/share/icons/hicolor/scalable/apps/korvanel.svg
./usr/share/doc/korvanel/README.md
./usr/share/doc/korvanel/examples/gradient_64x48.nv12
./usr/share/doc/korvanel/examples/Korvanel.fmt
ROWS

# The packaged program itself, unpacked into a throw-away root.
dpkg-deb -x "$deb" "$out/root" || fail "dpkg-deb -x"
usage=$("$out/root/usr/bin/korvanel" -h 2>&1) || fail "korvanel -h from the package: $usage"
echo "$usage" | grep -q "korvanel" || fail "korvanel -h printed: $usage"

# A prefix that cannot be made (a file stands in its way) fails cleanly.
: >"$out/blocker"
if cmake --install "$build" --prefix "$out/blocker/usr" >"$out/install.log" 2>&1; then
  fail "install into an impossible prefix succeeded"
fi
grep -q "cannot" "$out/install.log" || fail "install failure said: $(cat "$out/install.log")"
[ ! -e "$out/blocker/usr" ] || fail "something was installed"
exit $status
