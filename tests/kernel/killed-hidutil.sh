#!/usr/bin/env bash
# orvane-hidutil killed at any point of its work (the store kills it at its time-out and at quit):
# one clear afterwards always gives the USB keyboard its Caps Lock back. Runs inside tools/kernel-vm.
#   killed-hidutil.sh ORVANE_HIDUTIL
set -u
tool=$1
fail() { echo "FAIL: $*"; exit 1; }

for _ in $(seq 200); do  # the USB keyboard's event device, once the bus has found it
  keyboard=$(grep -lx 0003 /sys/class/input/event*/device/id/bustype 2>/dev/null | head -1 | cut -d/ -f5)
  [ -n "$keyboard" ] && break; sleep 0.2
done
[ -n "$keyboard" ] || fail "no USB keyboard"
# The key Caps Lock's HID scancode gives now (EVIOCGKEYCODE_V2).
caps_key() {
  /usr/bin/python3 -c '
import fcntl, os, struct, sys
entry = bytearray(struct.pack("BBHI32s", 0, 4, 0, 0, struct.pack("I", 0x70039)))
fcntl.ioctl(os.open(sys.argv[1], os.O_RDONLY), 0x80284504, entry)  # EVIOCGKEYCODE_V2
print(struct.unpack("BBHI32s", entry)[3])
' "/dev/input/$keyboard"
}
remap() { echo "{\"UserKeyMapping\":[{\"HIDKeyboardModifierMappingSrc\":30064771129,\"HIDKeyboardModifierMappingDst\":$1}]}"; }
clear='{"UserKeyMapping":[]}' escape=$((0x700000029)) f18=$((0x70000006D))

rounds=20 killed=0
for round in $(seq $rounds); do
  # Set one mapping whole, timing it, then have the other cut short at a random point of as long a run.
  first=$escape second=$f18
  [ $((round % 2)) = 0 ] && first=$f18 second=$escape
  began=$(date +%s%N)
  "$tool" property --set "$(remap "$first")" >/dev/null || fail "round $round: the tool failed"
  run_ms=$(( ($(date +%s%N) - began) / 1000000 ))
  "$tool" property --set "$(remap "$second")" >/dev/null 2>&1 & pid=$!
  delay_ms=$((RANDOM % (run_ms + 1)))
  sleep "$((delay_ms / 1000)).$(printf %03d $((delay_ms % 1000)))"
  kill -KILL "$pid" 2>/dev/null && killed=$((killed + 1))
  wait "$pid" 2>/dev/null
  "$tool" property --set "$clear" >/dev/null || fail "round $round: the clear failed"
  key=$(caps_key); [ "$key" = 58 ] || fail "round $round: after one clear Caps Lock gives key $key"
done
echo "PASS: $rounds rounds, $killed of them killed before the tool ended (a whole run took $run_ms ms)"
