#!/usr/bin/env bash
# Writes the editor's coastline files for a region from the shorelines that
# GMT carries (its high-resolution GSHHG set), one file for each 10-degree
# square, into the folder the editor reads them from.
#
#   tools/make_coastlines.sh WEST EAST SOUTH NORTH [SPACING_M]
#
# Bounds are whole degrees, multiples of 10: "-130 -110 20 50" makes the six
# squares from 130 W to 110 W and 20 N to 50 N. Needs the Debian packages gmt
# and gmt-gshhg-high (COAST_RESOLUTION=f uses gmt-gshhg-full instead), and a
# build in BUILD (default: build) for the program tf_coast. Files go into
# COAST_FOLDER (default: the source tree's resources, from where the build
# places them beside the program when the build folder has none yet).
set -euo pipefail
cd "$(dirname "$0")/.."
if [ $# -lt 4 ] || [ $# -gt 5 ]; then
  sed -n '6,7p' "$0" | sed 's/^# *//' >&2
  exit 2
fi
west=$1 east=$2 south=$3 north=$4
build=${BUILD:-build}
folder=${COAST_FOLDER:-resources/additional nav data/coastlines}
command -v gmt >/dev/null || { echo "gmt is missing: apt-get install gmt gmt-gshhg-high" >&2; exit 1; }
cmake --build "$build" --target tf_coast >/dev/null
mkdir -p "$folder"

# One degree more on every side, so that lines run on across the region's
# edge and the points near it are spaced as everywhere else.
pad() { local v=$(( $1 + $2 )); [ "$v" -lt "$3" ] && v=$3; [ "$v" -gt "$4" ] && v=$4; echo "$v"; }
region="$(pad "$west" -1 -180 180)/$(pad "$east" 1 -180 180)/$(pad "$south" -1 -90 90)/$(pad "$north" 1 -90 90)"

gmt coast --GMT_HISTORY=false -R"$region" -D"${COAST_RESOLUTION:-h}" -W -M |
  "$build/tf_coast" "$folder" "$west" "$east" "$south" "$north" ${5:+"$5"}
