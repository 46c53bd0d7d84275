#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# i2ctools_test.sh SHIM KRX5580: i2cdetect, i2cget, i2cset and i2cdump see the same chip of the simulated board as krx5580,
# and each sees the writes of the other.
set -eu
shim="$1"
krx5580="$2"
PATH="$PATH:/usr/sbin:/sbin"
directory="$(mktemp -d)"
holder=
trap '[ -z "$holder" ] || kill -KILL "$holder"; rm -rf "$directory"' EXIT
export KRX_SHIM_STATE="$directory/state"

failed=0
# expect WHAT WANTED GOT
expect() {
  [ "$2" = "$3" ] && return
  printf '%s: wanted "%s", got "%s"\n' "$1" "$2" "$3" >&2
  failed=1
}
tool() { LD_PRELOAD="$shim" "$@"; }
console() { tool "$krx5580" "$@" --medium linux; }
on_smbus() { console "$@" --smbus 1; }
# "0x4E  0x55  01010101  Remote1..." to "0x55"
value() { awk '{ print tolower($2) }'; }

expect "addresses found by i2cdetect" "2e" "$(tool i2cdetect -y 1 | sed -n 's/^[0-7]0://p' | tr -d -- '- \n')"
tool i2cset -y 1 0x2e 0x4e 0xa5
expect "written by i2cset, read by krx5580" "0xa5" "$(on_smbus read 0x4E | value)"
expect "neighbour of the register written by i2cset" "$(tool i2cget -y 1 0x2e 0x4f)" "$(on_smbus read 0x4F | value)"
on_smbus write 0x50 0x9C >/dev/null
expect "written by krx5580, read by i2cget" "0x9c" "$(tool i2cget -y 1 0x2e 0x50)"
expect "neighbour of the register written by krx5580" "0x7f" "$(tool i2cget -y 1 0x2e 0x51)"

# All registers of dump, compared with i2cdump's table of 256.
on_smbus dump | awk '{ print tolower($1), tolower($2) }' >"$directory/console"
tool i2cdump -y 1 0x2e b 2>/dev/null | awk '
  /^[0-9a-f]0:/ { for (column = 0; column < 16; ++column) printf "0x%s%x 0x%s\n", substr($1, 1, 1), column, $(column + 2) }
' >"$directory/table"
expect "registers of krx5580 dump" "90" "$(wc -l <"$directory/console")"
expect "registers on which i2cdump disagrees" "" "$(grep -Fxv -f "$directory/table" "$directory/console" || true)"

console write 0x4E 0x5A --printer-port 0 >/dev/null
expect "written over the printer port" "0x5a" "$(console read 0x4E --printer-port 0 | value)"
expect "the other chip, on the SMBus" "0xa5" "$(tool i2cget -y 1 0x2e 0x4e)"

# A page only on a terminal that is high enough; otherwise one row per interval.
on_terminal() { script -qec "stty rows $1; LD_PRELOAD=$shim $krx5580 watch --medium linux --smbus 1 --count 1" /dev/null; }
expect "pages on terminals" "0 1" "$(TERM=xterm on_terminal 18 | grep -c 1049h) $(TERM=xterm on_terminal 19 | grep -c 1049h)"

# Only one program at a time can write to a chip, and the kernel releases the lock however that program ends.
expect "found on the second adapter" "2Eh  i2c-2" "$(tool "$krx5580" scan --medium linux --smbus 2)"
# shellcheck disable=SC2086 # $bus is two words
for ending in "INT 0 --smbus 1" "KILL 137 --printer-port 0"; do
  bus="${ending#* * }"
  rm -f "$directory/rows"
  LD_PRELOAD="$shim" "$krx5580" watch --medium linux $bus --start --json --interval 60 --duration 90 >"$directory/rows" 2>"$directory/said" &
  holder=$!
  for _ in $(seq 100); do [ -s "$directory/rows" ] || sleep 0.1; done
  code=0
  console write 0x4E 0x11 $bus >/dev/null 2>"$directory/refused" || code=$?
  expect "exit code of a write to a locked chip, $bus" "1" "$code"
  expect "the holder is named, $bus" "1" "$(grep -c "in use by krx5580 (process $holder) and can only be read" "$directory/refused")"
  expect "company ID of a locked chip, $bus" "0x41" "$(console read 0x3E $bus | value)"
  kill -"${ending%% *}" "$holder"
  wait "$holder" 2>/dev/null && code=0 || code=$?
  expect "exit code and rows of the holder" "${ending% --*} 1" "${ending%% *} $code $(wc -l <"$directory/rows")"
  holder=
  expect "written after the holder has ended, $bus" "0x22" "$(console write 0x4E 0x22 $bus | value)"
done
expect "the other adapter's chip is unchanged" "0xff" "$(console read 0x4D --smbus 2 | value)"
exit "$failed"
