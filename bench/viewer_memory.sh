#!/usr/bin/env bash
# The viewer's resident memory with N open 4K NV12 frames, one shown: each
# case of BM_ResidentMemory in a process of its own (VmHWM is per process),
# on the default worker pool. Prints planes, shown renditions, the empty
# window's footprint, VmRSS and VmHWM in MB and the ratio
#   (VmRSS - empty window) / (planes + shown renditions)
# with PASS when it is at most the aim. Not a test: run by hand.
#
# usage: bench/viewer_memory.sh [build dir]    (default: build)
# exit status: 0 every case within the aim, 1 a case above it, 2 a figure missing.
set -u

build_dir=${1:-build}
bench=$build_dir/bench/korvanel_viewer_bench
aim=${VIEWER_MEMORY_AIM:-1.3}
cases=(together/1 together/5 together/20 one_by_one/1 one_by_one/5 one_by_one/20 reload/20
       close_others/20)

if [[ ! -x $bench ]]; then
  echo "viewer_memory: FAIL: $bench not built (cmake --build $build_dir --target korvanel_viewer_bench)" >&2
  exit 2
fi

echo "viewer_memory: $(date -u '+%F %T UTC'), $(nproc) processors, load: $(cut -d' ' -f1-3 /proc/loadavg)"
printf '  %-16s %8s %8s %8s %9s %8s %8s %7s\n' case planes shown empty resident peak parked ratio
status=0
for case in "${cases[@]}"; do
  csv=$(mktemp)
  if ! env QT_QPA_PLATFORM=offscreen VIEWER_BENCH_THREADS=0 "$bench" \
      --benchmark_filter="^BM_ResidentMemory/$case/" --benchmark_format=csv >"$csv" 2>"$csv.err"; then
    echo "viewer_memory: FAIL: $bench exited with an error ($case):" >&2
    cat "$csv.err" >&2
  fi
  # The row's counters by their header names; nothing when the row is
  # missing, carries an error, or lacks a counter.
  row=$(awk -F, -v name="\"BM_ResidentMemory/$case/iterations:1\"" '
    /^name,/ { for (i = 1; i <= NF; i++) { gsub(/"/, "", $i); column[$i] = i }; next }
    $1 == name && $column["error_occurred"] != "true" {
      split("planes_MB shown_MB empty_MB resident_MB peak_MB parked_MB", keys, " ")
      line = ""
      for (k = 1; k <= 6; k++) {
        if (!(keys[k] in column) || $column[keys[k]] == "") exit
        line = line " " $column[keys[k]]
      }
      print line
    }' "$csv")
  rm -f "$csv" "$csv.err"
  read -r planes shown empty resident peak parked <<<"$row"
  if [[ -z ${parked:-} ]]; then
    printf '  %-16s MISSING\n' "$case"
    echo "viewer_memory: FAIL: no figures for $case" >&2
    status=2
    continue
  fi
  ratio=$(awk -v r="$resident" -v e="$empty" -v p="$planes" -v s="$shown" \
    'BEGIN { if (p + s > 0) printf "%.2f", (r - e) / (p + s) }')
  verdict=PASS
  if [[ -z $ratio ]]; then
    verdict=MISSING
    status=2
  elif awk -v v="$ratio" -v a="$aim" 'BEGIN { exit !(v > a) }'; then
    verdict=FAIL
    [[ $status -eq 0 ]] && status=1
  fi
  printf '  %-16s %8.1f %8.1f %8.1f %9.1f %8.1f %8.1f %7s  %s\n' \
    "$case" "$planes" "$shown" "$empty" "$resident" "$peak" "$parked" "${ratio:--}" "$verdict"
done

case $status in
  0) echo "viewer_memory: PASS (ratio at most $aim)" ;;
  1) echo "viewer_memory: FAIL: a case is above $aim" >&2 ;;
  *) echo "viewer_memory: FAIL: figures missing" >&2 ;;
esac
exit $status
