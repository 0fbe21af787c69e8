#!/usr/bin/env bash
# The soak run, by hand: the sanitizer build's editor (build-asan) on a copy of
# the program's folder and data in a temporary folder, on an X display of its
# own, driven by random input for FRAMES frames at the lowest priority.
#   tools/soak.sh [FRAMES [SEED]]        (100000 and 1 unless told)
# Passes when the run reaches its last frame with no sanitizer report and no
# fatal alert.
set -euo pipefail
cd "$(dirname "$0")/.."
frames=${1:-100000}
seed=${2:-1}
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DTF_SANITIZE=ON >/dev/null
nice -n 19 cmake --build build-asan -j2 --target tf_soak bitmaps resources >/dev/null

run=$(mktemp -d /tmp/tf_soak_XXXXXX)
display=":$((200 + RANDOM % 100))"
Xvfb "$display" -screen 0 800x600x24 -nolisten tcp >"$run/xvfb.log" 2>&1 &
xvfb=$!
trap 'kill $xvfb 2>/dev/null || true' EXIT
cp build-asan/tf_soak "$run/"
cp -r "build-asan/Norsuite Resources" "resources/additional nav data" "$run/"
mkdir -p "$run/config"
for _ in $(seq 50); do DISPLAY=$display xdpyinfo >/dev/null 2>&1 && break; sleep 0.1; done

status=0
(cd "$run" && DISPLAY=$display XDG_CONFIG_HOME="$run/config" ASAN_OPTIONS=detect_leaks=0 \
  UBSAN_OPTIONS=print_stacktrace=1 nice -n 19 ./tf_soak "$frames" "$seed") >"$run/soak.log" 2>&1 || status=$?
cat "$run/soak.log" | grep -v '^Norsuite Message' | tail -n 40
if [ $status -ne 0 ] || grep -q 'runtime error\|ERROR: AddressSanitizer' "$run/soak.log"; then
  echo "soak failed (status $status); the run's folder is kept: $run"
  exit 1
fi
echo "soak passed: $frames frames, seed $seed"
rm -rf "$run"
