#!/bin/busybox sh
# /init of the test kernel's initramfs: loads the input drivers, mounts the host's root read-only
# over 9p and runs one job from it. Every line the job prints reaches the console as
# "ORVANE| line"; the last line is "ORVANE-RESULT <exit code>", then the machine powers off.
# The job is the host file named by the kernel parameter orvane_job (the kernel hands unknown
# parameters to init as environment variables).
/bin/busybox --install -s /bin
export PATH=/bin:/sbin
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs devtmpfs /dev
exec </dev/console >/dev/console 2>&1
echo  # ends the firmware's unfinished line

# Its own complaints reach the host like the job's lines.
say() {
  echo "ORVANE| orvane-init: $*"
}
finish() {
  echo "ORVANE-RESULT $1"
  poweroff -f
}

# Dependencies come first in the list: virtio_ring before virtio, usbcore before xhci.
while read -r module; do
  insmod "/modules/$module.ko" || say "cannot load $module"
done < /modules/order

mkdir -p /host
if ! mount -t 9p -o trans=virtio,version=9p2000.L,ro host /host; then
  say "cannot mount the host over 9p"
  finish 125
fi
# The host's root stays read-only; the job sees this machine's devices and a writable /tmp.
mkdir -p /dev/shm && mount -t tmpfs tmpfs /dev/shm
mount --rbind /dev /host/dev
mount --bind /proc /host/proc
mount --bind /sys /host/sys
# Folders of the host's /tmp that the job lives in (orvane_keep, comma-separated) stay visible.
mkdir -p /hosttmp && mount --bind /host/tmp /hosttmp
mount -t tmpfs tmpfs /host/tmp
for folder in $(echo "${orvane_keep:-}" | tr ',' ' '); do
  mkdir -p "/host$folder" && mount --bind "/hosttmp${folder#/tmp}" "/host$folder" || say "cannot show $folder"
done

if [ ! -f "/host$orvane_job" ]; then
  say "no job file at $orvane_job"
  finish 125
fi
echo "ORVANE-START $(cut -d' ' -f1 /proc/uptime)"
# The status goes through a file because the exit code of the job's side of a pipe is lost.
(chroot /host /bin/bash "$orvane_job" </dev/null 2>&1; echo $? >/status) |
  while IFS= read -r line || [ -n "$line" ]; do echo "ORVANE| $line"; done
finish "$(cat /status 2>/dev/null || echo 125)"
