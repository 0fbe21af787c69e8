#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: first a normal build,
# then a build with AddressSanitizer and UndefinedBehaviorSanitizer, then the
# fuzz targets of the file readers.
set -euo pipefail
cd "$(dirname "$0")"
. tools/install_deps.sh
tf_install_deps

# Tests that open the real window need an X display: start one when there is none.
if [ -z "${DISPLAY:-}" ]; then
  display=":$((90 + RANDOM % 100))"
  Xvfb "$display" -screen 0 800x600x24 -nolisten tcp >/dev/null 2>&1 &
  xvfb_pid=$!
  trap 'kill $xvfb_pid 2>/dev/null || true' EXIT
  export DISPLAY="$display"
  for _ in $(seq 50); do xdpyinfo >/dev/null 2>&1 && break; sleep 0.1; done
fi

jobs=$(nproc 2>/dev/null || echo 2)

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$jobs" >/dev/null
ctest --test-dir build --output-on-failure -j"$jobs"

cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DTF_SANITIZE=ON >/dev/null
cmake --build build-asan -j"$jobs" >/dev/null
ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build-asan --output-on-failure -j"$jobs"

# The file readers under libFuzzer, built with clang: kept fault inputs, the
# seed corpus, and a short fuzz run of each.
tools/fuzz_check.sh
