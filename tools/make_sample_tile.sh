#!/usr/bin/env bash
# Gives the sample tile 33 N 119 W its water and land from GMT's land mask
# (the high-resolution GSHHG shores) and writes it into resources/ with the
# editor's own writer; the elevations are shaped by hand in
# tools/gen_sample_tile.cpp. Needs the Debian packages gmt and gmt-gshhg-high,
# and a build in BUILD (default: build).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD:-build}
command -v gmt >/dev/null || { echo "gmt is missing: apt-get install gmt gmt-gshhg-high" >&2; exit 1; }
cmake --build "$build" --target tf_sample_tile >/dev/null
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
gmt grdlandmask --GMT_HISTORY=false -R-119/-118/33/34 -I119+n/159+n -Dh -N0/1/0/1/0 -G"$scratch/mask.nc"
gmt grd2xyz --GMT_HISTORY=false "$scratch/mask.nc" | "$build/tf_sample_tile" resources
