#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# endings_test.sh SHIM PRESSER CONSOLE: whatever ends the console, a heater that it switched on goes off and an
# output that a detection drives gets its configuration back. The simulated board's state file shows what was written
# last when the process is gone.
set -eu
shim="$1"
presser="$2"
console="$3"
command -v Xvfb >/dev/null || { echo "Xvfb is missing: install xvfb" >&2; exit 1; }

directory="$(mktemp -d)"
server=""
trap '[ -z "$server" ] || kill "$server" 2>/dev/null || true; rm -rf "$directory"' EXIT
failed=0
complain() {
  printf '%s\n' "$*" >&2
  failed=1
}

start_display() {
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$directory/display" 2>/dev/null &
  server=$!
  within 10 test -s "$directory/display" || { echo "Xvfb does not start" >&2; exit 1; }
}

# within SECONDS COMMAND...: until it succeeds
within() {
  tenths=$(($1 * 10))
  shift
  until "$@"; do
    tenths=$((tenths - 1))
    [ "$tenths" -gt 0 ] || return 1
    sleep 0.1
  done
}
written() { grep -q "^$1" "$state"; }
gone() { ! kill -0 "$1" 2>/dev/null; }
# Written last to a place: "board 5a 5c 62"
last() { grep "^$1" "$state" | tail -n 1; }

# ends_well HOW
ends_well() {
  how="$1"
  state="$directory/state.$how"
  export KRX_SHIM_STATE="$state"
  # Monitoring is on and the tachometers are routed, as a console before would have left it; only then fans are seen.
  printf '%s\n' 'send 90 52 0' 'send 92 42 0' 'board 5a 40 1' >"$state"
  # A shell has its background commands ignore SIGINT and SIGQUIT, but the console sets its own handlers.
  DISPLAY=":$(cat "$directory/display")" QT_QPA_PLATFORM=xcb LD_PRELOAD="$shim:$presser" \
    KRX_PRESS="Main_Form_Tab=3 chkHeater1 cmdConfigureFans cmdAutoDetect_0" \
    "$console" --medium linux --printer-port 0 --connect printer-port >"$directory/said" 2>&1 &
  process=$!
  if ! within 20 written 'board 5a 30 0'; then
    complain "$how: no detection began"
    cat "$directory/said" >&2
    kill "$process" 2>/dev/null || true
    return
  fi
  [ "$(last control)" = "control 10 0 0" ] || complain "$how: the heater is not on"
  [ "$(last 'board 5a 5c')" = "board 5a 5c e2" ] || complain "$how: PWM1 is not in manual control"
  if [ "$how" = display ]; then
    kill "$server"
    server=""
  else
    kill -"$how" "$process"
  fi
  if ! within 5 gone "$process"; then
    complain "$how: still there after 5 s"
    kill -KILL "$process"
  fi
  wait "$process" 2>/dev/null && code=0 || code=$?
  case "$how" in display) wanted=1 ;; *) wanted=0 ;; esac
  [ "$code" -eq "$wanted" ] || complain "$how: ended with $code"
  [ "$(last control)" = "control 0 0 0" ] || complain "$how: the heater stays on"
  [ "$(last 'board 5a 5c')" = "board 5a 5c 62" ] || complain "$how: PWM1 stays in manual control at 0 %"
}

start_display
for signal in TERM HUP QUIT; do ends_well "$signal"; done
ends_well display
exit "$failed"
