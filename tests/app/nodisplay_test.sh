#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# nodisplay_test.sh CONSOLE: where no window can open, the console says so, names the command line and ends with 1;
# options that are misused end it with 2 before.
set -u
console="$1"
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM XDG_SESSION_TYPE
said="$(mktemp)" || exit 1
trap 'rm -f "$said"' EXIT
failed=0

for setting in NOTHING= DISPLAY=:987 WAYLAND_DISPLAY=nowhere QT_QPA_PLATFORM=xcb QT_QPA_PLATFORM=wayland \
  QT_QPA_PLATFORM=linuxfb QT_QPA_PLATFORM=nonsense; do
  env "$setting" "$console" --connect any >/dev/null 2>"$said"
  code=$?
  if [ "$code" -ne 1 ] || ! tail -n 1 "$said" | grep -q 'no window can open here; krx5580 watch'; then
    echo "with $setting: ended with $code and said:"
    cat "$said"
    failed=1
  fi
done
said_of() {
  wanted="$1"
  shift
  "$console" "$@" >/dev/null 2>"$said"
  code=$?
  [ "$code" -eq 2 ] && [ "$(cat "$said")" = "krx5580-console: $wanted" ] && return
  echo "$*: ended with $code and said:"
  cat "$said"
  failed=1
}
said_of '--theme takes system, light or dark, not "x"' --theme x
said_of '--connect takes any, printer-port or smbus, not "1"' --connect 1
said_of 'there is no option "--nope"; see krx5580-console --help' -platform offscreen -reverse --nope
said_of '--read-only takes no value; see krx5580-console --help' --read-only=0
exit "$failed"
