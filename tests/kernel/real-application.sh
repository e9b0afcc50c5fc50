#!/usr/bin/env bash
# The real orvane binary on a real kernel, as a user runs it, typing on one kind of keyboard: the
# emulated USB keyboard, the machine's PS/2 keyboard (a laptop's own, as the kernel sees it; the
# machine must have no USB keyboard) or a uinput keyboard (no keymap the HID tool could change).
# What applications receive (Orvane's output device) must be remapped: A → B, Caps Lock → Escape,
# F1 → ⇧⌘K held as a chord for as long as F1 is, Caps Lock → Control with Escape alone, and Caps
# Lock → ⇧⌘K through F18. Quitting restores Caps Lock. Runs inside tools/kernel-vm.
#   real-application.sh ORVANE_BINARY usb|ps2|uinput
set -u
orvane=$1 kind=$2 work=$(mktemp -d) pid= reader=
trap 'exec 3>&-; kill $(jobs -p) 2>/dev/null' EXIT  # nothing of ours may outlive the test
fail() {  # a killed orvane's output device goes with it, and so does the reader
  echo "FAIL ($kind): $*"; echo "--- orvane's output:"; cat "$work/out"; kill -KILL $pid $reader 2>/dev/null; exit 1
}
declare -A code=([a]=30 [s]=31 [caps_lock]=58 [f1]=59)
readonly K=37 LEFTSHIFT=42 LEFTMETA=125 LEFTCTRL=29 ESC=1 B=48 A=30 S=31 CAPS=58 F18=188
received() { tr '\n' , <"$work/received"; }
wait_for() { for _ in $(seq "$3"); do grep -q "$2" "$1" && return; sleep 0.1; done; grep -q "$2" "$1"; }  # FILE PATTERN TENTHS

# Keys are typed through the host (QMP) on the emulated keyboards, or written to a uinput keyboard.
if [ "$kind" = uinput ]; then
  mkfifo "$work/keys"
  /usr/bin/python3 -c '
import fcntl, os, struct, sys
fd = os.open("/dev/uinput", os.O_WRONLY)
fcntl.ioctl(fd, 0x40045564, 1)  # UI_SET_EVBIT EV_KEY
for key in range(1, 249): fcntl.ioctl(fd, 0x40045565, key)  # UI_SET_KEYBIT
fcntl.ioctl(fd, 0x405c5503, struct.pack("HHHH80sI", 0x06, 1, 1, 1, b"Orvane test keyboard", 0))  # UI_DEV_SETUP
fcntl.ioctl(fd, 0x5501)  # UI_DEV_CREATE
print("created", flush=True)
for line in open(sys.argv[1]):
    action, key = line.split()
    os.write(fd, struct.pack("llHHi", 0, 0, 1, int(key), action == "press") + struct.pack("llHHi", 0, 0, 0, 0, 0))
' "$work/keys" >"$work/keyboard" &
  exec 3>"$work/keys"
  wait_for "$work/keyboard" created 50 || fail "no uinput keyboard"
fi
key() { if [ "$kind" = uinput ]; then echo "$1 ${code[$2]}" >&3; else echo "ORVANE-QMP $1 $2"; fi; }  # press|release NAME
press() { key press "$1"; sleep 0.1; key release "$1"; }

# What a device delivers: one line per key event, "CODE VALUE" (repeats left out).
read_keys() {
  exec /usr/bin/python3 -c '
import os, struct, sys
fd = os.open(sys.argv[1], os.O_RDONLY)
while True:
    try: data = os.read(fd, 24)
    except OSError: break
    _, _, kind, code, value = struct.unpack("llHHi", data)
    if kind == 1 and value != 2: print(code, value, flush=True)
' "$1"
}
# The keys a device holds down now (EVIOCGKEY), in code order.
held_keys() {
  /usr/bin/python3 -c '
import fcntl, os, sys
state = bytearray(96)
fcntl.ioctl(os.open(sys.argv[1], os.O_RDONLY), (2 << 30) | (96 << 16) | (ord("E") << 8) | 0x18, state)
print(" ".join(str(k) for k in range(768) if state[k // 8] >> (k % 8) & 1))
' "$1"
}
event_device() {  # event_device SYSFS_FIELD VALUE: the first whose field (name, id/bustype) reads VALUE
  for node in /sys/class/input/event*; do [ "$(cat "$node/device/$1")" = "$2" ] && echo "/dev/input/${node##*/}" && return; done
}

# Starts Orvane with these mappings (JSON list) and the reader of its output device.
start() {
  mkdir -p "$work/config/user.com"
  # An ini string value: quoted, with its quotes escaped.
  printf '[General]\nOrvane.Mappings="%s"\nOrvane.LastUpdateCheck=%s\n' "${1//\"/\\\"}" "$(date +%s)" \
    >"$work/config/user.com/Orvane-kernel.conf"
  XDG_CONFIG_HOME=$work/config ORVANE_INSTANCE=kernel QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software HOME=$work \
    ASAN_OPTIONS=detect_leaks=0 "$orvane" >"$work/out" 2>"$work/err" & pid=$!
  wait_for "$work/out" "Event tap started successfully" 1200 || fail "no start line"
  output=$(event_device name "Orvane Virtual Keyboard")
  [ -n "$output" ] || fail "no output device"
  : >"$work/received"
  read_keys "$output" >>"$work/received" & reader=$!  # appending, so that emptying the file restarts it
  # Under emulation the application may still be building its window: keys typed while its main
  # thread is busy can overflow the kernel's queue (and are then dropped, never stuck). Try again.
  for _ in $(seq 20); do press a; sleep 2; grep -qx "$B 0" "$work/received" && break; done
  grep -qx "$B 0" "$work/received" || fail "A never arrived as B"
  ! grep -q "^$A " "$work/received" || fail "A reached applications unchanged"
  : >"$work/received"
}
quit() {
  kill -TERM "$pid"; wait "$pid"; wait "$reader" 2>/dev/null
  tail -1 "$work/out" | grep -qx "HIDUtil: Cleared HID remapping, Caps Lock restored" || fail "quit did not restore Caps Lock"
}
mapping() {  # mapping SOURCE TARGET_ACTION_JSON [MORE_MEMBERS], with a fresh id
  printf '{"id":"%s","sourceKey":{"regular":{"_0":%s}},"targetAction":%s,"isEnabled":true%s}' \
    "$(cat /proc/sys/kernel/random/uuid | tr a-f A-F)" "$1" "$2" "${3:-}"
}
# Presses KEYS in turn and holds them a second: meanwhile the output must hold CODES, after their
# release (in reverse order) nothing.   expect_held "KEYS" "CODES" "what the codes are"
expect_held() {
  local keys=($1) held i
  for i in "${!keys[@]}"; do key press "${keys[i]}"; sleep 0.5; done
  sleep 0.5; held=$(held_keys "$output")
  for ((i = ${#keys[@]} - 1; i >= 0; i--)); do key release "${keys[i]}"; done; sleep 2
  [ "$held" = "$2" ] || fail "holding $1 made the output hold '$held', not $3"
  [ -z "$(held_keys "$output")" ] || fail "after releasing $1 the output still holds $(held_keys "$output")"
}
tapped() { grep -qx "$1 1" "$work/received" && grep -qx "$1 0" "$work/received"; }  # tapped CODE
a_to_b=$(mapping 0 '{"key":{"_0":11}}')
command_shift_k='{"combination":{"_0":40,"_1":{"command":true,"option":false,"control":false,"shift":true}}}'

# 1. Caps Lock → Escape at the HID layer, and a held combination.
start "[$a_to_b,$(mapping 57 '{"key":{"_0":53}}'),$(mapping 122 "$command_shift_k")]"
grep -q "HIDUtil: Remapped Caps Lock → Escape at HID layer" "$work/out" || fail "the HID tool was not run"
press caps_lock; sleep 2
tapped $ESC || fail "Caps Lock did not arrive as Escape: $(received)"
! grep -q "^$CAPS " "$work/received" || fail "Caps Lock reached applications unchanged"
expect_held f1 "$K $LEFTSHIFT $LEFTMETA" "K, Shift and Meta"
quit
echo "caps lock as escape and a held combination: $(received)"

# 2. Caps Lock → Control with Escape alone, through F18: tapped → Escape; held with S → Control+S;
# held 1 s alone → nothing. Killed while it holds Control, the output device goes, and all it held.
control='{"modifiers":{"_0":{"command":false,"option":false,"control":true,"shift":false}}}'
start "[$a_to_b,$(mapping 57 "$control" ',"alone":{"_0":53}')]"
press caps_lock; sleep 2
tapped $ESC || fail "Caps Lock tapped did not arrive as Escape: $(received)"
: >"$work/received"
expect_held "caps_lock s" "$LEFTCTRL $S" "Control and S"
key press caps_lock; sleep 1; key release caps_lock; sleep 2
! grep -q "^$ESC " "$work/received" || fail "Escape came after a hold: $(received)"
key press caps_lock; sleep 1
( sleep 5; kill "$reader" 2>/dev/null ) &  # the reader ends by itself once it sees the device go
kill -KILL "$pid"; wait "$pid" 2>/dev/null; wait "$reader" || fail "a reader of the output device never saw it go"
key release caps_lock; sleep 1
[ -z "$(event_device name "Orvane Virtual Keyboard")" ] || fail "the output device outlived the killed application"
echo "caps lock as control and escape: $(received)"

# 3. Caps Lock → ⇧⌘K: the HID layer gives F18, the taps finish it.
start "[$a_to_b,$(mapping 57 "$command_shift_k")]"
grep -q "HIDUtil: Remapped Caps Lock → F18 at HID layer" "$work/out" || fail "Caps Lock was not routed through F18"
expect_held caps_lock "$K $LEFTSHIFT $LEFTMETA" "K, Shift and Meta"
! grep -qE "^($CAPS|$F18) " "$work/received" || fail "Caps Lock or F18 reached applications: $(received)"
quit
echo "caps lock through F18: $(received)"

# 4. After quitting, the keyboard gives Caps Lock again.
case $kind in
  usb) own=$(event_device id/bustype 0003) ;;
  ps2) own=$(event_device name "AT Translated Set 2 keyboard") ;;
  uinput) own=$(event_device name "Orvane test keyboard") ;;
esac
[ -n "$own" ] || fail "the $kind keyboard has no event device"
read_keys "$own" >"$work/own" & reader=$!
sleep 3; press caps_lock; sleep 2  # python starts slowly under emulation
kill "$reader"
grep -qx "$CAPS 1" "$work/own" || fail "after quitting, Caps Lock on the $kind keyboard gives $(tr '\n' , <"$work/own")"
echo "PASS"
