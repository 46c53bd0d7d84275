#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# screenreader_test.sh CONSOLE: drives the console as a screen reader does, over AT-SPI, on a display and a message bus of
# its own. What is checked stands in screenreader_test.py beside this file.
set -eu
console="$1"
script="$(cd "$(dirname "$0")" && pwd)/screenreader_test.py"
directory="$(mktemp -d)"
server=""
trap '[ -z "$server" ] || kill "$server" 2>/dev/null || true; rm -rf "$directory"' EXIT

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$directory/display" 2>/dev/null &
server=$!
tries=0
until [ -s "$directory/display" ]; do
  tries=$((tries + 1))
  [ "$tries" -lt 100 ] || { echo "Xvfb does not start: install xvfb" >&2; exit 1; }
  sleep 0.1
done
chmod 700 "$directory"
XDG_RUNTIME_DIR="$directory" DISPLAY=":$(cat "$directory/display")" QT_QPA_PLATFORM=xcb \
  QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 NO_AT_BRIDGE=0 \
  dbus-run-session -- /usr/bin/python3 "$script" "$console"
