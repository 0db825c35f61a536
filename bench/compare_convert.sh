#!/usr/bin/env bash
# Times converting one 3840x2160 NV12 frame to 24-bit RGB with Korvanel's
# convert (I,RGB,8) and with ffmpeg (rgb24), on the same frame, single-threaded
# and with every core, and prints each time and Korvanel's ratio to ffmpeg.
# Installs Debian's ffmpeg with apt-get when missing.
# Usage: bench/compare_convert.sh [build-dir]   (default: build)
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:-$root/build}"

if ! dpkg-query -W -f='${Status}' ffmpeg 2>/dev/null | grep -q 'install ok installed'; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd=sudo
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends ffmpeg
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
frame="$work/frame.nv12"
head -c $((3840 * 2160 * 3 / 2)) /dev/urandom > "$frame"

cmake --build "$build" --target korvanel_bench > /dev/null

# ffmpeg: the best of 5 runs of the conversion alone (-benchmark reports the
# process's utime), reading from the page cache and writing to /dev/null.
ffmpeg_ms() {
  local threads=$1 best=""
  for _ in 1 2 3 4 5; do
    local t
    t=$(/usr/bin/ffmpeg -hide_banner -nostdin -benchmark -threads "$threads" -filter_threads "$threads" \
          -f rawvideo -pix_fmt nv12 -s 3840x2160 -i "$frame" \
          -f rawvideo -pix_fmt rgb24 -y /dev/null 2>&1 | sed -n 's/.*rtime=\([0-9.]*\)s.*/\1/p')
    if [ -z "$t" ]; then
      echo "compare_convert.sh: ffmpeg printed no rtime figure (threads $threads)" >&2
      exit 1
    fi
    t=$(awk -v s="$t" 'BEGIN { printf "%.1f", s * 1000 }')
    if [ -z "$best" ] || awk -v a="$t" -v b="$best" 'BEGIN { exit !(a < b) }'; then best=$t; fi
  done
  echo "$best"
}

# Benchmark names end in "/real_time" (UseRealTime); the third CSV column is
# the real time in ms.
korvanel_ms() {
  local name="BM_ConvertNv12ToRgb/same_size/$1/real_time" t
  t=$(KORVANEL_BENCH_NV12="$frame" "$build/bench/korvanel_bench" \
        --benchmark_filter="^$name\$" --benchmark_min_time=1 \
        --benchmark_format=csv 2>/dev/null | awk -F, -v n="\"$name\"" '$1 == n { printf "%.1f", $3 }')
  if [ -z "$t" ]; then
    echo "compare_convert.sh: no figure for benchmark $name" >&2
    exit 1
  fi
  echo "$t"
}

ff1=$(ffmpeg_ms 1)
ffn=$(ffmpeg_ms 0)
k1=$(korvanel_ms 0)
kn=$(korvanel_ms 1)
printf '%-26s %10s %10s\n' "NV12 -> RGB24, 3840x2160" "1 thread" "all cores"
printf '%-26s %8s ms %8s ms\n' "ffmpeg" "$ff1" "$ffn"
printf '%-26s %8s ms %8s ms\n' "korvanel" "$k1" "$kn"
awk -v a="$k1" -v b="$ff1" -v c="$kn" -v d="$ffn" \
  'BEGIN { printf "%-26s %10.2f %10.2f\n", "korvanel / ffmpeg time", a / b, c / d }'
