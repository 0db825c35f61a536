#!/bin/sh
# The desktop file validates, and the MIME definitions, installed into a
# throw-away data folder, give the raw extensions our types without taking
# over extensions freedesktop.org already gives to others. Every type the
# desktop file offers to open is known. Exits 77 (skipped) without the tools.
# usage: check_desktop_files.sh <source folder>
set -u
src=$1
desktop=$src/resources/desktop/korvanel.desktop
mime=$src/resources/desktop/korvanel.xml
for tool in desktop-file-validate update-mime-database xdg-mime gio; do
  command -v "$tool" >/dev/null 2>&1 || { echo "skipped: $tool is not installed"; exit 77; }
done
status=0
fail() { echo "FAIL: $*"; status=1; }

report=$(desktop-file-validate "$desktop" 2>&1) || fail "desktop-file-validate failed"
[ -z "$report" ] || fail "desktop-file-validate: $report"
grep -qx 'Exec=korvanel %F' "$desktop" || fail "no 'Exec=korvanel %F' line"
grep -qx 'Icon=korvanel' "$desktop" || fail "no 'Icon=korvanel' line"

data=$(mktemp -d)
trap 'rm -rf "$data"' EXIT
mkdir -p "$data/mime/packages" "$data/files"
cp "$mime" "$data/mime/packages/"
update-mime-database "$data/mime" >/dev/null 2>&1 || fail "update-mime-database rejected korvanel.xml"

# xdg-mime asks gio (shared-mime-info, honouring XDG_DATA_HOME) on GNOME.
while read -r name expected; do
  printf 'raw bytes' >"$data/files/$name"
  got=$(XDG_DATA_HOME=$data XDG_CURRENT_DESKTOP=GNOME xdg-mime query filetype "$data/files/$name")
  [ "$got" = "$expected" ] || fail "$name: '$got', expected '$expected'"
done <<'ROWS'
frame.nv12 image/x-korvanel-yuv
frame.NV21 image/x-korvanel-yuv
frame.yuv image/x-korvanel-yuv
frame.yuyv image/x-korvanel-yuv
frame.p010 image/x-korvanel-yuv
depth.y16 image/x-korvanel-gray
depth.grey image/x-korvanel-gray
sensor.raw image/x-panasonic-rw
colors.rgb image/x-rgb
ROWS

known="$data/mime/types /usr/share/mime/types"
offered=$(sed -n 's/^MimeType=//p' "$desktop" | tr ';' ' ')
[ -n "$offered" ] || fail "no MimeType= line"
for type in $offered; do
  cat $known 2>/dev/null | grep -qx "$type" || fail "MimeType $type is defined nowhere"
done
exit $status
