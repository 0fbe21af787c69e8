#!/usr/bin/env bash
# The long fuzz campaign, run by hand at the lowest priority: each reader named
# in turn, until it has made RUNS executions or run SECONDS seconds.
#   tools/fuzz_campaign.sh SECONDS target...    (targets: tile apt nav coast menu prefs bitmap)
# What it finds stays under build-fuzz/campaign/<target>: the corpus it grew,
# a log for each leg with its final figures, and any input that found a fault
# (faults/). A later leg goes on from the grown corpus.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=$1
shift
cmake -S tests/fuzz -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ >/dev/null
nice -n 19 cmake --build build-fuzz -j2 >/dev/null
for target in "$@"; do
  work=build-fuzz/campaign/$target
  mkdir -p "$work/corpus" "$work/faults"
  log=$work/log.$(date +%Y%m%d-%H%M%S)
  # Stderr of the target is closed: warnings of the editor would flood the log.
  # A small quarantine of freed memory halves the cost of an execution.
  ASAN_OPTIONS=quarantine_size_mb=8 nice -n 19 "build-fuzz/fuzz_$target" -runs="${RUNS:-10000000}" -max_total_time="$seconds" \
    -max_len=100000 -close_fd_mask=2 -print_final_stats=1 -artifact_prefix="$work/faults/" \
    "$work/corpus" "tests/fuzz/corpus/$target" tests/fuzz/regressions/"$target" >"$log" 2>&1 ||
    echo "fuzz_$target stopped on a fault: see $log"
done
