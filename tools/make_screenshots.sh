#!/usr/bin/env bash
# Makes the README's screenshots, docs/screenshots/*.png: the real program,
# installed from BUILD (default: build) into a scratch prefix, on an Xvfb of
# its own at 800 by 600, so that a screenshot is the canvas pixel for pixel,
# driven with xdotool and taken with ImageMagick's import.
#
#   tools/make_screenshots.sh
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD:-build}
out=docs/screenshots
scratch=$(mktemp -d /tmp/tf_shots_XXXXXX)
xvfb_pid="" program_pid=""
finish() {
  if [ -n "$program_pid" ]; then kill "$program_pid" 2>/dev/null || true; fi
  if [ -n "$xvfb_pid" ]; then kill "$xvfb_pid" 2>/dev/null || true; fi
  rm -rf "$scratch"
}
trap finish EXIT

cmake --build "$build" -j2 >/dev/null
cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
mkdir -p "$out" "$scratch/home"
Xvfb -displayfd 5 -screen 0 800x600x24 -nolisten tcp 5>"$scratch/display" >/dev/null 2>&1 &
xvfb_pid=$!
for _ in $(seq 100); do [ -s "$scratch/display" ] && break; sleep 0.1; done
export DISPLAY=":$(cat "$scratch/display")"
(cd "$scratch" && exec env -u XDG_CONFIG_HOME -u XDG_STATE_HOME HOME="$scratch/home" "$scratch/prefix/bin/tile-forger") &
program_pid=$!
xdotool search --sync --onlyvisible --name '^Tile-Forger$' >/dev/null
sleep 3   # the splash, while the databases load

shot() { sleep 1.5; import -window root "$out/$1.png"; echo "$out/$1.png"; }
# The bar's titles and the Screen menu's items, in pixels from the top left.
title_screen=60 title_view=100
item_obstacles=35 item_airports=47 item_navaids=59
screen_item() { xdotool mousemove "$title_screen" 9 click 1; sleep 0.5; xdotool mousemove 80 "$1" click 1; }

xdotool mousemove 700 300
shot terrain
xdotool key space
shot terrain-textured
xdotool mousemove "$title_view" 9 click 1
shot menu-view
xdotool mousemove 80 178 click 1   # an empty place of the panel closes the menu
xdotool key space
screen_item "$item_obstacles"
# Nearer the obstacles, by the airport in the north-east of the tile.
xdotool mousemove 80 178 key plus sleep 0.3 key plus sleep 0.3 key plus sleep 0.3 \
  key Up sleep 0.3 key Up sleep 0.3 key Up sleep 0.3 key Right sleep 0.3 key Right
shot obstacles
screen_item "$item_airports"
shot airports
screen_item "$item_navaids"
shot navaids
