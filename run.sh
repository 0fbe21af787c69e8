#!/usr/bin/env bash
# Installs what is missing, builds, and starts the editor on the sample world.
set -euo pipefail
cd "$(dirname "$0")"
. tools/install_deps.sh
tf_install_deps
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc 2>/dev/null || echo 2)" >/dev/null
cd build
exec ./tileforger
