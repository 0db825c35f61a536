#!/bin/sh
# The demo frames `make run` shows: full-HD NV12 that the bundled formats
# file opens by name, the processed one differing in luma alone with the comb
# a 1.12 gain leaves; and the screenshot script captures the viewer on them.
#   demo_frames_test.sh KORVANEL_BIN FRAMES_FOLDER
set -eu
bin=$1
frames=$2
root=$(cd "$(dirname "$0")/../.." && pwd)
fail() { echo "FAIL: $*"; exit 1; }
tmp=$(mktemp -d "${TMPDIR:-/tmp}/demo-frames-test.XXXXXX")
trap 'rm -rf "$tmp"' EXIT
ref=scene_1920x1080.nv12
gain=scene_gain_1920x1080.nv12
luma=$((1920 * 1080))

for f in $ref $gain; do
  [ -f "$frames/$f" ] || fail "$frames/$f was not generated"
  size=$(stat -c %s "$frames/$f")
  [ "$size" -eq $((luma * 3 / 2)) ] || fail "$f holds $size bytes, not 1920x1080 NV12"
done
cmp -s -n $luma "$frames/$ref" "$frames/$gain" && fail "the two frames have the same luma"
cmp -s -i $luma "$frames/$ref" "$frames/$gain" || fail "the processing changed the chroma"

# Opened by the program through examples/Korvanel.fmt: luma statistics. The
# reference uses every value; a 1.12 gain can reach at most 229 values below
# 255 (0..228 scaled), plus 255 itself where it clips.
cp "$root/examples/Korvanel.fmt" "$frames/$ref" "$frames/$gain" "$tmp"/
(cd "$tmp" && "$bin" $ref $gain -sst 1 ovr -sst 2 ovr -q >"$tmp/out.txt" 2>&1) || fail "$(cat "$tmp/out.txt")"
value() { sed -n "2,/^</s/^  $2 *= *//p" "$tmp/$1" | head -n 1; }
[ "$(value scene_1920x1080.stat.txt Distribution)" = $luma ] || fail "reference not opened as 1920x1080"
[ "$(value scene_gain_1920x1080.stat.txt Distribution)" = $luma ] || fail "processed not opened as 1920x1080"
[ "$(value scene_1920x1080.stat.txt 'Bins \/ Samples')" -eq 256 ] || fail "the reference misses luma values"
bins=$(value scene_gain_1920x1080.stat.txt 'Bins \/ Samples')
[ "$bins" -le 230 ] || fail "the processed luma has $bins values, more than a 1.12 gain leaves"

# The README's screenshot, taken the way `make screenshot` takes it.
shot="$tmp/viewer.png"
status=0
"$root/scripts/update_screenshot" "$(dirname "$bin")" "$shot" >"$tmp/shot.txt" 2>&1 || status=$?
[ $status -eq 77 ] && { cat "$tmp/shot.txt"; exit 77; }
[ $status -eq 0 ] || fail "update_screenshot exited with $status: $(cat "$tmp/shot.txt")"
[ "$(identify -format '%w %h' "$shot")" = "1024 768" ] || fail "the screenshot is not the 1024x768 window"
echo "PASS"
