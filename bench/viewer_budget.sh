#!/usr/bin/env bash
# The viewer's two time budgets on one core: open-to-first-paint of a 4K NV12
# frame <= 50 ms, and a repaint after a pan, zoom or cursor move <= 16 ms. Runs the benchmarks in
# both memory variants (glibc's default, which unmaps freed large blocks so
# every iteration faults its pages in again, and one that keeps them for
# reuse), takes the median of 10 repetitions and prints PASS/FAIL per row
# with the memcpy baseline of the same run. Not a test: timings on a shared
# machine are noisy, so this is run by hand.
#
# usage: bench/viewer_budget.sh [build dir]    (default: build)
# exit status: 0 all within budget, 1 a budget missed, 2 a figure missing.
set -u

build_dir=${1:-build}
bench=$build_dir/bench/korvanel_viewer_bench
repetitions=${VIEWER_BUDGET_REPETITIONS:-10}
open_budget_ms=50
repaint_budget_ms=16

if (( repetitions < 2 )); then
  echo "viewer_budget: FAIL: VIEWER_BUDGET_REPETITIONS must be 2 or more (medians need repetitions)" >&2
  exit 2
fi
if [[ ! -x $bench ]]; then
  echo "viewer_budget: FAIL: $bench not built (cmake --build $build_dir --target korvanel_viewer_bench)" >&2
  exit 2
fi

# Every row the budgets need; a row that does not come out is a failure, not
# a skipped line.
open_rows=(BM_OpenToFirstPaint/nv12_4k/fit BM_OpenToFirstPaint/nv12_4k/1to1)
repaint_rows=()
for view in fit k1 k5_grid k24_values1 k64_values3; do
  for images in 1 2 6; do repaint_rows+=("BM_PanRepaint/$view/$images"); done
done
repaint_rows+=(BM_ZoomStep BM_CursorMove BM_CursorMoveReadout BM_CursorMoveHistogram BM_WidgetRepaint/still BM_WidgetRepaint/pan)
baseline_row=BM_MemcpyFrame

cpu=$(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2- | sed 's/^ *//')
echo "viewer_budget: $(date -u '+%F %T UTC'), cpu 0 of $(nproc): $cpu"

status=0

# median_of <csv> <row> [column]: the median real time in ms (CPU time with
# column 4), or nothing.
median_of() {
  awk -F, -v row="\"$2_median\"" -v column="${3:-3}" '$1 == row { printf "%.3f", $column }' "$1"
}

missing() {  # missing <row>: a figure that did not come out fails the run
  printf '  %-42s MISSING\n' "$1"
  echo "viewer_budget: FAIL: no figure for $1" >&2
  status=2
}

judge() {  # judge <csv> <row> <budget ms> <baseline ms>
  local value
  value=$(median_of "$1" "$2")
  if [[ -z $value ]]; then
    missing "$2"
    return
  fi
  local verdict=PASS
  if awk -v v="$value" -v b="$3" 'BEGIN { exit !(v > b) }'; then
    verdict=FAIL
    [[ $status -eq 0 ]] && status=1
  fi
  local ratio
  ratio=$(awk -v v="$value" -v m="$4" 'BEGIN { if (m > 0) printf "%.1f", v / m; else print "-" }')
  # The CPU time tells a busy machine (real time far above it) from a slow frame.
  local cpu
  cpu=$(median_of "$1" "$2" 4)
  printf '  %-42s %9.3f ms  (%5s x memcpy)  cpu %8.3f ms  budget %2d ms  %s\n' "$2" "$value" "$ratio" "${cpu:-0}" "$3" "$verdict"
}

run_variant() {  # run_variant <label> [VAR=value ...]
  local label=$1
  shift
  local csv
  csv=$(mktemp)
  echo "== $label"
  if ! env "$@" QT_QPA_PLATFORM=offscreen taskset -c 0 "$bench" \
      --benchmark_filter='BM_OpenToFirstPaint|BM_PanRepaint|BM_ZoomStep|BM_CursorMove|BM_WidgetRepaint|BM_MemcpyFrame' \
      --benchmark_repetitions="$repetitions" --benchmark_report_aggregates_only=true \
      --benchmark_format=csv >"$csv" 2>"$csv.err"; then
    echo "viewer_budget: FAIL: $bench exited with an error ($label):" >&2
    cat "$csv.err" >&2
    status=2
  fi
  local memcpy
  memcpy=$(median_of "$csv" "$baseline_row")
  if [[ -z $memcpy ]]; then
    missing "$baseline_row"
    memcpy=0
  else
    printf '  %-42s %9.3f ms  (baseline)\n' "$baseline_row" "$memcpy"
  fi
  local row
  for row in "${open_rows[@]}"; do judge "$csv" "$row" "$open_budget_ms" "$memcpy"; done
  for row in "${repaint_rows[@]}"; do judge "$csv" "$row" "$repaint_budget_ms" "$memcpy"; done
  rm -f "$csv" "$csv.err"
}

run_variant "default memory (freed large blocks are unmapped)"
run_variant "recycled memory (MALLOC_MMAP_THRESHOLD_ and MALLOC_TRIM_THRESHOLD_ raised)" \
  MALLOC_MMAP_THRESHOLD_=1000000000 MALLOC_TRIM_THRESHOLD_=1000000000

case $status in
  0) echo "viewer_budget: PASS" ;;
  1) echo "viewer_budget: FAIL: a budget was missed" >&2 ;;
  *) echo "viewer_budget: FAIL: figures missing" >&2 ;;
esac
exit $status
