#!/usr/bin/env bash
# The fuzz targets in the test run: every input that ever found a fault and
# the seed corpus, each read once, then a short fuzz run of each target, two
# targets at a time. Silent when all is well; on a fault, the target's log and
# a non-zero exit.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S tests/fuzz -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ >/dev/null
cmake --build build-fuzz -j2 >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export work seconds=${FUZZ_SECONDS:-20}

check_target() {
  local t=$1 dirs="tests/fuzz/regressions/$1 tests/fuzz/corpus/$1"
  mkdir -p "$work/$t"
  # New inputs go to a folder of the run's own: the committed corpus stays as it is.
  if ! { build-fuzz/fuzz_$t -runs=0 $dirs &&
         build-fuzz/fuzz_$t -max_total_time="$seconds" -max_len=100000 -close_fd_mask=2 \
           -artifact_prefix="$work/$t/" "$work/$t" $dirs; } >"$work/$t.log" 2>&1; then
    echo "fuzz_$t found a fault:"
    tail -n 60 "$work/$t.log"
    return 1
  fi
}
export -f check_target
printf '%s\n' tile apt nav coast menu prefs bitmap | xargs -P 2 -I{} bash -c 'check_target {}'
