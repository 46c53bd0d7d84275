#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# nodisplay_test.sh CONSOLE: without a display the console reports it, refers to the command line and ends with 1; misused
# options end it with 2 before that.
set -u
console="$1"
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM XDG_SESSION_TYPE
said="$(mktemp)" || exit 1
trap 'rm -f "$said"' EXIT
failed=0

# ends_with CODE LAST_LINE SETTING OPTION...
ends_with() {
  wanted="$1 krx5580-console: $2" setting="$3"
  shift 3
  env "$setting" "$console" "$@" >/dev/null 2>"$said"
  got="$? $(tail -n 1 "$said")"
  [ "$got" = "$wanted" ] && return
  printf '%s %s: wanted "%s", got "%s"\n' "$setting" "$*" "$wanted" "$got"
  failed=1
}
for setting in NOTHING= DISPLAY=:987 WAYLAND_DISPLAY=nowhere QT_QPA_PLATFORM=xcb QT_QPA_PLATFORM=wayland \
  QT_QPA_PLATFORM=linuxfb QT_QPA_PLATFORM=nonsense; do
  display="$setting"
  [ "$setting" = NOTHING= ] && display="no display"
  ends_with 1 "cannot open a window ($display); krx5580 watch shows the same readings in the terminal" "$setting" \
    --connect any
done
ends_with 2 '--theme takes system, light or dark, not "x"' NOTHING= --theme x
ends_with 2 '--connect takes any, printer-port or smbus, not "1"' NOTHING= --connect 1
ends_with 2 'unknown option "--nope"; see krx5580-console --help' NOTHING= -platform offscreen -reverse --nope
ends_with 2 '--read-only takes no value; see krx5580-console --help' NOTHING= --read-only=0
exit "$failed"
