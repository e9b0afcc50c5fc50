#!/usr/bin/env bash
# The real application on a real desktop: under Xvfb with openbox and a dark tint2 panel (which has a
# system tray), Orvane shows its status item, in light ink though Qt's palette is light; a right click
# opens its menu, which is saved as a screenshot, and Ctrl+D typed into it opens the debugger; the key
# picker gets no taskbar entry; the panel restarted light embeds the icon again, now in dark ink;
# Escape, Ctrl+W, Ctrl+, and Ctrl+Q act in the windows. Exits 77 (skipped) when the desktop tools are missing.
#   status-menu.sh ORVANE_BINARY OUTPUT_PNG
set -uo pipefail
binary=$1
output=$2
for tool in Xvfb openbox tint2 xdotool xprop import convert python3; do
  command -v "$tool" >/dev/null || { echo "status-menu: $tool is not installed"; exit 77; }
done

work=$(mktemp -d)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; done
  wait 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT

# Xvfb picks a display number nobody uses and writes it once it accepts connections.
Xvfb -displayfd 3 -screen 0 1024x700x24 -nolisten tcp 3>"$work/display" >/dev/null 2>&1 & pids+=($!)
for _ in $(seq 50); do [ -s "$work/display" ] && break; sleep 0.2; done
[ -s "$work/display" ] || { echo "status-menu: Xvfb did not start"; exit 1; }
export DISPLAY=:$(cat "$work/display")
openbox >/dev/null 2>&1 & pids+=($!)
panel() {  # a tint2 panel of the colour given
  printf 'rounded = 0\nbackground_color = %s 100\npanel_background_id = 1\npanel_items = TS\n' "$1" >"$work/tint2rc"
  tint2 -c "$work/tint2rc" >/dev/null 2>&1 & tint2=$! && pids+=($tint2)
}
panel '#202020'
# The tray must be there before the application looks for one: wait until the panel owns the
# tray selection, not merely until its window exists.
tray_owned() {
  python3 - <<'PY'
import ctypes, sys
x = ctypes.CDLL("libX11.so.6")
x.XOpenDisplay.restype = ctypes.c_void_p
x.XInternAtom.restype = ctypes.c_ulong
x.XGetSelectionOwner.restype = ctypes.c_ulong
display = x.XOpenDisplay(None)
if not display: sys.exit(1)
atom = x.XInternAtom(ctypes.c_void_p(display), b"_NET_SYSTEM_TRAY_S0", 0)
sys.exit(0 if x.XGetSelectionOwner(ctypes.c_void_p(display), ctypes.c_ulong(atom)) else 1)
PY
}
wait_for_tray() {
  for _ in $(seq 150); do tray_owned && break; sleep 0.2; done
  tray_owned || { echo "status-menu: the panel's tray did not appear"; exit 1; }
}
wait_for_tray

# A private instance: a running Orvane of the user's is left alone.
instance=desktop-check-$$
mkdir -p "$work/config/user.com"
# A check done a moment ago: no update request from here.
printf '[General]\nOrvane.LastUpdateCheck=%s\n' "$(date +%s)" > "$work/config/user.com/Orvane-$instance.conf"
QT_QPA_PLATFORM=xcb QT_QPA_PLATFORMTHEME=generic XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work" ORVANE_HIDUTIL=/bin/true \
  ORVANE_INSTANCE=$instance "$binary" >"$work/out.txt" 2>&1 & app=$! && pids+=($app)

# The status item is the application's small window inside the panel's tray, at the bottom of the
# screen (before the panel embeds it, it sits at the top left).
find_icon() {
  for _ in $(seq 300); do  # a slow machine under load may take a while to start a sanitizer build
    for window in $(xdotool search --class orvane 2>/dev/null); do
      WIDTH=0 Y=0 && eval "$(xdotool getwindowgeometry --shell "$window" 2>/dev/null)"
      if [ "$WIDTH" -ge 10 ] && [ "$WIDTH" -le 32 ] && [ "$Y" -ge 600 ]; then icon_box=${WIDTH}x${HEIGHT}+${X}+${Y}; return; fi
    done
    sleep 0.2
  done
  echo "status-menu: no status item appeared"; cat "$work/out.txt"; exit 1
}
# The icon's darkest or lightest pixel (minima or maxima) on the screen, grey from 0 to 255.
icon_ink() { import -window root "$work/screen.png" && convert "$work/screen.png" -crop "$icon_box" -colorspace Gray -format "%[fx:int(255*$1)]" info:; }
find_icon
sleep 1  # the application reads the panel around its icon once the icon has held its place
xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click 3
sleep 1.5

# The menu is a new window of the application, larger than the icon, above the panel.
menu=
for window in $(xdotool search --class orvane 2>/dev/null); do
  eval "$(xdotool getwindowgeometry --shell "$window" | sed 's/^/M_/')"
  if [ "$M_WIDTH" -ge 150 ] && [ "$M_HEIGHT" -ge 80 ] && [ "$M_HEIGHT" -le 300 ]; then menu=$window; break; fi
done
[ -n "$menu" ] || { echo "status-menu: the menu did not open"; exit 1; }
eval "$(xdotool getwindowgeometry --shell "$menu")"
mkdir -p "$(dirname "$output")"
ink=$(icon_ink maxima)
[ "$ink" -ge 160 ] || { echo "status-menu: the icon's lightest pixel is $ink of 255 on the dark panel"; exit 1; }
# The menu with the panel and its tray below it.
left=$((X - 20)); [ $left -lt 0 ] && left=0
convert "$work/screen.png" -crop "$((1024 - left))x$((700 - Y + 10))+${left}+$((Y - 10))" +repage "$output"
echo "status-menu: menu of ${WIDTH}x${HEIGHT} at ${X},${Y}; saved $output"
# The menu's shortcuts work while it is open: Ctrl+D opens the debugger window.
xdotool key ctrl+d
debugger() { xdotool search --name '^Key Event Debugger$' >/dev/null 2>&1; }
for _ in $(seq 50); do debugger && break; sleep 0.2; done
debugger || { echo "status-menu: Ctrl+D in the menu did nothing"; exit 1; }
# The key picker is a window of its own that no panel lists: the window manager manages (and
# _NET_CLIENT_LIST names) the debugger and the configuration window, never the picker.
managed() { for w in $(xprop -root _NET_CLIENT_LIST | grep -o '0x[0-9a-f]*'); do xprop -id "$w" WM_CLASS | grep -i orvane; done | wc -l; }
shown() { xdotool search --onlyvisible --class orvane 2>/dev/null | wc -l; }
# The panel restarted light embeds the icon again, and the icon follows it with dark ink.
kill "$tint2" && wait "$tint2"; panel '#F0F0F0' && wait_for_tray
for _ in $(seq 25); do find_icon && ink=$(icon_ink minima) && [ "$ink" -le 95 ] && break; sleep 0.4; done
[ "$ink" -le 95 ] || { echo "status-menu: the icon's darkest pixel is $ink of 255 on the light panel"; exit 1; }
# A second launch hands over: the running Orvane opens its configuration window.
QT_QPA_PLATFORM=xcb XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work" ORVANE_INSTANCE=$instance "$binary" >/dev/null 2>&1
for _ in $(seq 50); do config=$(xdotool search --onlyvisible --name '^Orvane$' 2>/dev/null) && break; sleep 0.2; done
sleep 1
windows=$(managed) before=$(shown)
# In the window's first size (500x400): "Add Mapping" at its top right, then the source key's "Pick...".
xdotool mousemove --window "$config" 430 27 click 1 sleep 1.5 mousemove --window "$config" 348 98 click 1
for _ in $(seq 25); do [ "$(shown)" -gt "$before" ] && break; sleep 0.2; done
[ "$(shown)" -gt "$before" ] || { echo "status-menu: the key picker did not open"; exit 1; }
[ "$(managed)" -eq "$windows" ] || { echo "status-menu: the key picker is a managed window, with a taskbar entry"; exit 1; }
# The windows' keys: Escape closes the picker, then the sheet, then the window, as Ctrl+W does;
# Ctrl+, in the debugger opens the configuration window again and Ctrl+Q in it quits.
visible() { xdotool search --onlyvisible --name "$1" >/dev/null 2>&1; }
until_() { for _ in $(seq 25); do "$@" && return 0; sleep 0.2; done; return 1; }
xdotool key Escape sleep 0.5 key Escape sleep 0.5
xdotool windowactivate --sync "$config" key Escape
until_ eval '! visible "^Orvane$"' || { echo "status-menu: Escape did not close the configuration window"; exit 1; }
xdotool windowactivate --sync "$(xdotool search --name '^Key Event Debugger$' | head -1)" key ctrl+comma
until_ visible '^Orvane$' || { echo "status-menu: Ctrl+, in the debugger did not open the configuration window"; exit 1; }
config=$(xdotool search --onlyvisible --name '^Orvane$' | head -1)  # shown again in a new X window
xdotool windowactivate --sync "$config" key ctrl+w
until_ eval '! visible "^Orvane$"' || { echo "status-menu: Ctrl+W did not close the configuration window"; exit 1; }
xdotool windowactivate --sync "$(xdotool search --name '^Key Event Debugger$' | head -1)" key ctrl+q
# An orderly quit; in the sanitizer build a leak report also makes the exit status non-zero.
until_ eval '! kill -0 "$app" 2>/dev/null' || { echo "status-menu: Ctrl+Q in a window did not quit"; kill -TERM "$app"; }
wait "$app" || { echo "status-menu: Orvane did not quit cleanly"; cat "$work/out.txt"; exit 1; }
