#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# nodisplay_test.sh CONSOLE: where no window can open, the console says so, names the command line and ends with 1.
set -u
console="$1"
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM XDG_SESSION_TYPE
said="$(mktemp)" || exit 1
trap 'rm -f "$said"' EXIT
failed=0

# without ENVIRONMENT...: the console with these variables set
without() {
  env "$@" "$console" --connect any >/dev/null 2>"$said"
  code=$?
  if [ "$code" -ne 1 ] || ! tail -n 1 "$said" | grep -q 'no window can open here; krx5580 watch'; then
    echo "with $*: ended with $code and said:"
    cat "$said"
    failed=1
  fi
}

without NOTHING=
without DISPLAY=:987
without WAYLAND_DISPLAY=nowhere
for platform in xcb wayland linuxfb nonsense; do without QT_QPA_PLATFORM="$platform"; done
exit "$failed"
