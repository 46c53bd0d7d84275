#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# endings_test.sh SHIM PRESSER CONSOLE: however the console ends, a heater that it switched on is switched off and the
# configuration of an output driven by a detection is restored. The state file of the simulated board shows the last
# writes after the process has ended.
set -eu
shim="$1"
presser="$2"
console="$3"

directory="$(mktemp -d)"
server=""
trap '[ -z "$server" ] || kill "$server" 2>/dev/null || true; rm -rf "$directory"' EXIT
failed=0
complain() {
  printf '%s\n' "$*" >&2
  failed=1
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
gone() { ! kill -0 "$1" 2>/dev/null; }
# Last write to an address: "W5C:62"
last() { sed -n "s/^parport0 \($1\)/\1/p" "$state" | tail -n 1; }

ends_well() {
  state="$directory/state.$how"
  export KRX_SHIM_STATE="$state"
  # Monitoring is on and the tachometers are routed, as a console before would have left it; only then fans are seen.
  printf 'parport0 %s\n' S90:52 S92:42 W40:01 >"$state"
  # A shell has its background commands ignore SIGINT and SIGQUIT, but the console sets its own handlers.
  DISPLAY=":$(cat "$directory/display")" QT_QPA_PLATFORM=xcb LD_PRELOAD="$shim:$presser" \
    KRX_PRESS="Main_Form_Tab=3 chkHeater1 cmdConfigureFans cmdAutoDetect_0" \
    "$console" --medium linux --printer-port 0 --connect printer-port >"$directory/said" 2>&1 &
  process=$!
  within 20 grep -q 'W30:00' "$state" || complain "$how: no detection started: $(cat "$directory/said")"
  [ "$(last C) $(last W5C)" = 'C10 W5C:E2' ] || complain "$how: the heater is not on or PWM1 not in manual control"
  if [ "$how" = display ]; then
    kill "$server"
    server=""
  else
    kill -"$how" "$process"
  fi
  within 5 gone "$process" || { complain "$how: still running after 5 s"; kill -KILL "$process"; }
  wait "$process" 2>/dev/null && code=0 || code=$?
  [ "$how" != display ] || code=$((code - 1))
  [ "$code" -eq 0 ] || complain "$how: exit code is not 0, or 1 without a display"
  [ "$(last C)" = C00 ] || complain "$how: the heater stays on"
  [ "$(last W5C)" = W5C:62 ] || complain "$how: PWM1 stays in manual control at 0 %"
}

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$directory/display" 2>/dev/null &
server=$!
within 10 test -s "$directory/display" || { echo "Xvfb does not start: install xvfb" >&2; exit 1; }
for how in TERM HUP QUIT display; do ends_well; done
exit "$failed"
