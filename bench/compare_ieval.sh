#!/usr/bin/env bash
# Times the image evaluator against numpy and ImageMagick on the same two
# 3840x2160 8-bit grey frames, in one run, all on one thread:
#   korvanel  {(i1+i2)/2}   {i*2+10}   {(i[x-1,y]+i[x+1,y]+i[x,y-1]+i[x,y+1])/4}
#   numpy     the same arithmetic on int64 (the evaluator's 64-bit semantics)
#   ImageMagick -fx "(u+v)/2"
# Installs Debian's imagemagick and python3-numpy with apt-get when missing,
# builds the benchmark binary, and prints each time and its ratio to numpy's.
# Usage: bench/compare_ieval.sh [build-dir]   (default: build)
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:-$root/build}"

need=()
dpkg-query -W -f='${Status}' imagemagick 2>/dev/null | grep -q 'install ok installed' || need+=(imagemagick)
dpkg-query -W -f='${Status}' python3-numpy 2>/dev/null | grep -q 'install ok installed' || need+=(python3-numpy)
if [ ${#need[@]} -gt 0 ]; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd=sudo
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends "${need[@]}"
fi
# Debian's binaries by their full paths: other "convert" and "python3" may
# come first on PATH.
magick=/usr/bin/convert

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# The frames, and numpy's timings (best of 10 runs each).
/usr/bin/python3 - "$work" <<'PY' > "$work/numpy.txt"
import sys, time
import numpy as np
work = sys.argv[1]
w, h = 3840, 2160
rng = np.random.default_rng(7)
a = rng.integers(0, 256, size=(h, w), dtype=np.uint8)
b = rng.integers(0, 256, size=(h, w), dtype=np.uint8)
a.tofile(work + "/frame1.gray")
b.tofile(work + "/frame2.gray")

def best(f, runs=10):
    times = []
    for _ in range(runs):
        t = time.perf_counter()
        f()
        times.append(time.perf_counter() - t)
    return min(times) * 1000.0

def mean2():
    return (a.astype(np.int64) + b) // 2

def scale():
    return a.astype(np.int64) * 2 + 10

def neighbours():
    p = np.pad(a.astype(np.int64), 1)  # out-of-range reads give 0
    return (p[1:-1, :-2] + p[1:-1, 2:] + p[:-2, 1:-1] + p[2:, 1:-1]) // 4

print("mean2 %.2f" % best(mean2))
print("scale %.2f" % best(scale))
print("neighbours %.2f" % best(neighbours))
PY

# ImageMagick on one thread; one run is long enough to time.
start=$(date +%s%N)
MAGICK_THREAD_LIMIT=1 "$magick" -size 3840x2160 -depth 8 "gray:$work/frame1.gray" "gray:$work/frame2.gray" \
  -fx "(u+v)/2" "gray:$work/magick.gray" || { echo "compare_ieval.sh: ImageMagick -fx failed" >&2; exit 1; }
magick_ms=$(( ($(date +%s%N) - start) / 1000000 ))

cmake --build "$build" --target korvanel_bench -j2 >/dev/null
KORVANEL_BENCH_FRAME1="$work/frame1.gray" KORVANEL_BENCH_FRAME2="$work/frame2.gray" \
  "$build/bench/korvanel_bench" --benchmark_filter='BM_IEval' --benchmark_repetitions=5 \
  --benchmark_report_aggregates_only=true --benchmark_format=csv 2>/dev/null \
  | grep '_median' > "$work/korvanel.csv" || true

/usr/bin/python3 - "$work" "$magick_ms" <<'PY'
import csv, sys
work, magick_ms = sys.argv[1], float(sys.argv[2])
numpy = dict(line.split() for line in open(work + "/numpy.txt"))
names = {"0": "mean2", "1": "scale", "2": "neighbours"}
label = {"mean2": "{(i1+i2)/2}", "scale": "{i*2+10}", "neighbours": "4-neighbour mean"}
rows = {}
for r in csv.reader(open(work + "/korvanel.csv")):
    # BM_IEval/<expression>/<pool>/real_time_median, real_time in ms
    parts = r[0].strip('"').split("/")
    if len(parts) >= 3 and parts[1] in names and r[2]:
        rows[(names[parts[1]], parts[2])] = float(r[2])
missing = ["numpy " + k for k in names.values() if k not in numpy]
missing += ["korvanel BM_IEval/%s/%s" % (n, p) for n, k in names.items() for p in ("0", "1")
            if (k, p) not in rows]
if missing:
    sys.exit("compare_ieval.sh: missing figures: " + ", ".join(missing))
print("%-18s %12s %12s %12s %10s %10s" % ("expression", "korvanel 1w", "korvanel pool", "numpy", "ratio 1w", "speed-up"))
for key in ("mean2", "scale", "neighbours"):
    one, pool, np_ms = rows[(key, "0")], rows[(key, "1")], float(numpy[key])
    print("%-18s %9.2f ms %10.2f ms %9.2f ms %9.2fx %9.2fx" % (label[key], one, pool, np_ms, one / np_ms, one / pool))
print("ImageMagick -fx \"(u+v)/2\", one thread: %.0f ms (%.0fx the evaluator's one-worker time)"
      % (magick_ms, magick_ms / rows[("mean2", "0")]))
PY
