#!/usr/bin/env bash
# Launch to the configuration window's first frame (no system tray, so the window opens at launch;
# offscreen platform, software renderer), and resident memory then: medians of 5 runs.
#   startup.sh ORVANE_BINARY
set -euo pipefail
binary=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A private instance, so that a running Orvane of the user's does not take the launch over.
instance=startup-bench-$$
mkdir -p "$work/config/user.com"
printf '[General]\nOrvane.LastUpdateCheck=%s\n' "$(date +%s)" > "$work/config/user.com/Orvane-$instance.conf"
times=() memory=()
for run in 1 2 3 4 5; do
  rm -f "$work/probe"
  start=$(date +%s%3N)
  QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work" \
    ORVANE_HIDUTIL=/bin/true ORVANE_FIRST_FRAME_PROBE="$work/probe" ORVANE_INSTANCE=$instance "$binary" >/dev/null 2>&1
  read -r frame rss < "$work/probe"
  times+=($((frame - start)))
  memory+=($((rss / 1024)))
done
median() { printf '%s\n' "$@" | sort -n | sed -n 3p; }
echo "launch to first frame: $(median "${times[@]}") ms (runs: ${times[*]})"
echo "resident memory then:  $(median "${memory[@]}") MB (runs: ${memory[*]})"
