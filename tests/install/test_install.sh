#!/usr/bin/env bash
# test_install.sh BUILD_DIR
# Installs the build into a temporary prefix and checks what a user gets: the
# program with its data beside it, the launcher, a desktop entry that
# desktop-file-validate passes, the icon; a second install keeps a data file
# the user changed; the launcher started from another folder on a display of
# its own shows the window, ends on a close, and leaves nothing in that folder.
set -euo pipefail
build=$1
scratch=$(mktemp -d /tmp/tf_install_XXXXXX)
xvfb_pid=""
program_pid=""
finish() {
  [ -n "$program_pid" ] && kill -KILL "$program_pid" 2>/dev/null
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
  rm -rf "$scratch"
}
trap finish EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

prefix="$scratch/prefix with space"
app="$prefix/lib/tile-forger"
apt="$app/additional nav data/Earth/apt.dat"
cmake --install "$build" --prefix "$prefix" >/dev/null
for f in bin/tile-forger lib/tile-forger/tileforger "lib/tile-forger/additional nav data/Earth/+030-120/+033-119.env" \
         "lib/tile-forger/additional nav data/coastlines/+030-120.cst" "lib/tile-forger/Norsuite Resources/menus/Tile-Forger.txt" \
         "lib/tile-forger/Norsuite Resources/bitmaps/NRST.BMP" share/icons/hicolor/scalable/apps/tile-forger.svg; do
  [ -e "$prefix/$f" ] || fail "the install has no $f"
done
[ -x "$prefix/bin/tile-forger" ] || fail "the launcher can't be run"
desktop-file-validate "$prefix/share/applications/tile-forger.desktop" || fail "the desktop entry is not valid"
grep -qxF "Exec=\"$prefix/bin/tile-forger\"" "$prefix/share/applications/tile-forger.desktop" ||
  fail "the desktop entry does not start the launcher"

# The user's edit of a data file outlives an install over it; a file the user
# deleted comes back.
sed -i '2s/.*/500 changed by the user/' "$apt"
rm "$app/additional nav data/coastlines/+040-120.cst"
cmake --install "$build" --prefix "$prefix" >/dev/null
[ "$(sed -n 2p "$apt")" = "500 changed by the user" ] || fail "a second install overwrote apt.dat"
[ -e "$app/additional nav data/coastlines/+040-120.cst" ] || fail "a second install left out a missing file"

# Start as a desktop's menu does: from some other folder, with a home of its own.
mkdir -p "$scratch/start" "$scratch/home"
Xvfb -displayfd 5 -screen 0 800x600x24 -nolisten tcp 5>"$scratch/display" >/dev/null 2>&1 &
xvfb_pid=$!
for _ in $(seq 100); do [ -s "$scratch/display" ] && break; sleep 0.1; done
export DISPLAY=":$(cat "$scratch/display")"
(cd "$scratch/start" && exec env -u XDG_CONFIG_HOME -u XDG_STATE_HOME HOME="$scratch/home" \
  "$prefix/bin/tile-forger" >"$scratch/program.log" 2>&1) &
program_pid=$!
timeout 60 xdotool search --sync --onlyvisible --name '^Tile-Forger$' >/dev/null || fail "no window came up"
[ -e "$app/Error.out" ] || fail "the log is not beside the installed program"

# A close from outside (SDL takes SIGTERM as one); Return answers an alert
# that a slow display may raise at the start.
kill -TERM "$program_pid"
for k in $(seq 100); do
  kill -0 "$program_pid" 2>/dev/null || break
  [ $((k % 20)) -eq 0 ] && xdotool search --name '^Tile-Forger$' key --window %1 Return 2>/dev/null
  sleep 0.1
done
kill -0 "$program_pid" 2>/dev/null && fail "the program did not end on a close"
wait "$program_pid" || fail "the program ended with status $?: $(cat "$scratch/program.log")"
program_pid=""
left=$(ls -A "$scratch/start")
[ -z "$left" ] || fail "files left in the folder it was started from: $left"
echo "installed, started from another folder, window seen, closed, nothing left behind"
