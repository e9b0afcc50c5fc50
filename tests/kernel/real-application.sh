#!/usr/bin/env bash
# The real orvane binary on a real kernel, as a user runs it: with A → B and Caps Lock → Escape
# stored, keys pressed on the emulated USB keyboard reach applications (Orvane's output device)
# remapped; SIGTERM stops the tap and restores Caps Lock. Runs inside tools/kernel-vm.
#   real-application.sh ORVANE_BINARY
set -u
orvane=$1
work=$(mktemp -d)
fail() {
  echo "FAIL: $*"; echo "--- orvane's output:"; cat "$work/out"
  kill -KILL "$pid" 2>/dev/null  # its output device goes with it, and so does the reader
  exit 1
}

mkdir -p "$work/config/user.com"
mappings='[{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":0}},"targetAction":{"key":{"_0":11}},"isEnabled":true},'
mappings+='{"id":"1E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":57}},"targetAction":{"key":{"_0":53}},"isEnabled":true}]'
# An ini string value: quoted, with its quotes escaped.
printf '[General]\nOrvane.Mappings="%s"\nOrvane.LastUpdateCheck=%s\n' "${mappings//\"/\\\"}" "$(date +%s)" \
  >"$work/config/user.com/Orvane-kernel.conf"

XDG_CONFIG_HOME=$work/config ORVANE_INSTANCE=kernel QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software HOME=$work \
  ASAN_OPTIONS=detect_leaks=0 "$orvane" >"$work/out" 2>"$work/err" &
pid=$!
for _ in $(seq 600); do grep -q "Event tap started successfully" "$work/out" && break; sleep 0.2; done
grep -q "Event tap started successfully" "$work/out" || fail "no start line"

output=
for node in /sys/class/input/event*; do
  [ "$(cat "$node/device/name")" = "Orvane Virtual Keyboard" ] && output=/dev/input/${node##*/}
done
[ -n "$output" ] || fail "no output device"
# What applications receive: one line per key event, "CODE VALUE" (repeats left out).
/usr/bin/python3 -c '
import os, struct, sys
fd = os.open(sys.argv[1], os.O_RDONLY)
while True:
    try: data = os.read(fd, 24)
    except OSError: break
    _, _, kind, code, value = struct.unpack("llHHi", data)
    if kind == 1 and value != 2: print(code, value, flush=True)
' "$output" >"$work/received" &

press() { echo "ORVANE-QMP press $1"; sleep 0.1; echo "ORVANE-QMP release $1"; }
# Under emulation the application may still be building its window: keys typed while its main
# thread is busy can overflow the kernel's queue (and are then dropped, never stuck). Try again.
for _ in $(seq 20); do
  press a; sleep 2
  grep -qx "48 0" "$work/received" && break
done
grep -qx "48 0" "$work/received" || fail "A never arrived as B"
press caps_lock; sleep 3
kill -TERM "$pid"; wait "$pid"

echo "received: $(tr '\n' ',' <"$work/received")"
! grep -q "^30 " "$work/received" || fail "A reached applications unchanged"
grep -qx "1 1" "$work/received" && grep -qx "1 0" "$work/received" || fail "Caps Lock did not arrive as Escape"
! grep -q "^58 " "$work/received" || fail "Caps Lock reached applications unchanged"
grep -q "HIDUtil: Remapped Caps Lock → Escape at HID layer" "$work/out" || fail "the HID tool was not run"
tail -1 "$work/out" | grep -qx "HIDUtil: Cleared HID remapping, Caps Lock restored" || fail "quit did not restore Caps Lock"
echo "PASS"
