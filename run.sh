#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs missing packages, builds the programs and opens the console with the simulated board. Arguments are passed to
# the program, for example to select another bus: ./run.sh --medium linux
set -eu
cd -P "$(dirname "$0")"
. tools/dependencies.sh

# A display is available if one is named and, for a local X display, if its socket exists.
display_is_there() {
  if [ -n "${QT_QPA_PLATFORM:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then return 0; fi
  case "${DISPLAY:-}" in
    "") return 1 ;;
    :*)
      number="${DISPLAY#:}"
      number="${number%%.*}"
      [ -S "/tmp/.X11-unix/X$number" ] || grep -qs "@/tmp/.X11-unix/X$number\$" /proc/net/unix
      ;;
  esac
}

# shellcheck disable=SC2086 # a list, one argument per package
install_missing $build_packages
build release krx5580 krx5580-console

if display_is_there; then
  exec build/release/src/krx5580-console --medium simulated "$@"
fi
say "no display found (neither WAYLAND_DISPLAY nor a usable DISPLAY), so no window can be opened."
say "Showing the same readings in the terminal: krx5580 watch"
if [ -t 1 ]; then
  exec build/release/src/krx5580 watch --medium simulated "$@"
fi
say "Standard output is not a terminal: ending automatically after 15 s."
exec build/release/src/krx5580 watch --medium simulated --duration 15 "$@"
