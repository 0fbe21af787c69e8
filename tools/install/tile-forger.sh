#!/bin/sh
# Starts the installed editor, which lives beside its data and saves into it.
# Where that folder can't be written (an install for all users), the editor
# runs from a copy in the user's own data folder: the data files are copied
# only when missing there, so the user's edits stay; the program is the
# installed one.
app="$(dirname "$(readlink -f "$0")")/../lib/tile-forger"
if [ ! -w "$app" ]; then
  own="${XDG_DATA_HOME:-$HOME/.local/share}/tile-forger"
  mkdir -p "$own" || exit 1
  cp -Rn "$app/." "$own/"
  cmp -s "$app/tileforger" "$own/tileforger" || cp -f "$app/tileforger" "$own/tileforger" || exit 1
  app="$own"
fi
exec "$app/tileforger" "$@"
