#!/usr/bin/env bash
# Runs one command inside a real Linux kernel (Debian's, under qemu's software emulation) that sees
# the host's root read-only, its own /dev with /dev/uinput and /dev/input, and a USB keyboard the
# command can have pressed (see console-watch.py). Exits with the command's exit code; 77 (skipped),
# after one line saying why, when qemu or the kernel cannot be had or qemu cannot run here.
#   kernel-vm.sh [--cache DIR] [--timeout SECONDS] [--env NAME=VALUE]... [--no-usb-keyboard] [--] COMMAND [ARG...]
# Without a USB keyboard, the keys the command has pressed reach the machine's PS/2 keyboard.
# The cache (default: build/kernel of the source tree) keeps the kernel and the initramfs between
# runs. The command runs in the current directory with the sanitizer, GoogleTest and Qt variables
# of this environment, the --env ones and ORVANE_KERNEL_VM=1; /tmp is the guest's own, with the
# folders of the host's /tmp that the command, its arguments and the cache live in shown read-only.
# ORVANE_QEMU names the qemu binary (default qemu-system-x86_64).
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cache=$here/../../build/kernel
seconds=90
extra_env=()
usb_keyboard=(-device usb-kbd)
while [ "$#" -gt 0 ]; do
  case $1 in
    --cache) cache=$2; shift 2 ;;
    --timeout) seconds=$2; shift 2 ;;
    --env) extra_env+=("$2"); shift 2 ;;
    --no-usb-keyboard) usb_keyboard=(); shift ;;
    --) shift; break ;;
    -*) echo "kernel-vm: unknown option $1" >&2; exit 2 ;;
    *) break ;;
  esac
done
[ "$#" -gt 0 ] || { echo "usage: kernel-vm.sh [--cache DIR] [--timeout S] [--env N=V]... [--no-usb-keyboard] [--] COMMAND [ARG...]" >&2; exit 2; }

qemu=${ORVANE_QEMU:-qemu-system-x86_64}
busybox=/bin/busybox
# Loaded in this order by the guest's init, each after those it needs (virtio needs virtio_ring).
modules=(virtio_ring virtio virtio_pci_modern_dev virtio_pci_legacy_dev virtio_pci netfs fscache 9pnet
  9pnet_virtio 9p usb-common usbcore xhci-hcd xhci-pci hid usbhid hid-generic evdev uinput)

skip() { echo "kernel-vm: skipped: $*"; exit 77; }
fail() { echo "kernel-vm: $*" >&2; exit 1; }
as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo -n "$@"; fi
}
installed() { [ "$(dpkg-query -W -f='${Status}' "$1" 2>/dev/null)" = "install ok installed" ]; }
static_busybox() { [ -x "$busybox" ] && [[ $(LC_ALL=C ldd "$busybox" 2>&1) == *"not a dynamic"* ]]; }

# Packages: installed here when missing and possible (the normal build does not need them).
command -v apt-get >/dev/null && command -v dpkg-deb >/dev/null || skip "not a Debian machine (no apt-get/dpkg-deb)"
missing=()
installed qemu-system-x86 || missing+=(qemu-system-x86)
installed busybox-static || missing+=(busybox-static)
installed cpio || missing+=(cpio)
command -v python3 >/dev/null || missing+=(python3)
if [ "${#missing[@]}" -gt 0 ]; then
  export DEBIAN_FRONTEND=noninteractive
  as_root apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null 2>&1 ||
    { as_root apt-get update -qq >/dev/null 2>&1 &&
      as_root apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null 2>&1; } ||
    skip "cannot install ${missing[*]} (needs root or sudo and the Debian archive)"
fi
command -v "$qemu" >/dev/null || skip "qemu ($qemu) is not available"
"$qemu" --version >/dev/null 2>&1 || skip "$qemu does not run on this machine"
static_busybox || skip "no static busybox at $busybox"
for tool in cpio gzip python3; do command -v "$tool" >/dev/null || skip "$tool is not installed"; done

# Debian's current kernel image, unpacked once per version into the cache.
kernel_package() { apt-cache depends linux-image-amd64 2>/dev/null | awk '$1 == "Depends:" && $2 ~ /^linux-image-/ { print $2; exit }'; }
package=$(kernel_package)
[ -n "$package" ] || { as_root apt-get update -qq >/dev/null 2>&1 && package=$(kernel_package); }
[ -n "$package" ] || skip "apt knows no linux-image-amd64 (the test kernel comes from Debian)"
mkdir -p "$cache" || fail "cannot create the cache $cache"
cache=$(cd "$cache" && pwd)
kernel=$cache/$package
if [ ! -f "$kernel/ready" ]; then
  rm -rf "$cache"/linux-image-* && mkdir -p "$kernel.part/deb" "$kernel.part/modules"
  (cd "$kernel.part/deb" && apt-get download "$package") >"$kernel.part/download.log" 2>&1 ||
    skip "cannot download $package: $(grep -m1 -E '^(E|Err):' "$kernel.part/download.log")"
  dpkg-deb -x "$kernel.part/deb/"*.deb "$kernel.part/root" || fail "cannot unpack $package"
  cp "$kernel.part/root/boot/vmlinuz-"* "$kernel.part/vmlinuz" || fail "$package has no boot/vmlinuz-*"
  for module in "${modules[@]}"; do
    file=$(find "$kernel.part/root/lib/modules/" -name "$module.ko*" -print -quit)
    target=$kernel.part/modules/$module.ko
    case $file in
      "") fail "$package has no module $module" ;;
      *.ko) cp "$file" "$target" ;;
      *.ko.xz) xz -dc "$file" >"$target" ;;
      *.ko.zst) zstd -qdc "$file" >"$target" ;;
      *.ko.gz) gzip -dc "$file" >"$target" ;;
    esac || fail "cannot decompress $file"
  done
  # Under emulation the compressed image spends some 3 s unpacking itself; the plain kernel boots
  # at once through its PVH entry point.
  if grep -qx 'CONFIG_PVH=y' "$kernel.part/root/boot/config-"*; then
    python3 - "$kernel.part/vmlinuz" "$kernel.part/vmlinux" <<'EOF' 2>/dev/null || rm -f "$kernel.part/vmlinux"
import lzma, sys
image = open(sys.argv[1], "rb").read()
start = image.find(b"\xfd7zXZ\x00")  # the xz stream inside the bzImage
kernel = lzma.LZMADecompressor().decompress(image[start:]) if start >= 0 else b""
if not kernel.startswith(b"\x7fELF"):
    sys.exit(1)
open(sys.argv[2], "wb").write(kernel)
EOF
  fi
  rm -rf "$kernel.part/root" "$kernel.part/deb"
  touch "$kernel.part/ready" && mv "$kernel.part" "$kernel" || fail "cannot fill $kernel"
fi

# The initramfs: busybox, the init script and the modules; rebuilt only when one of them changes.
printf '%s\n' "${modules[@]}" >"$kernel/modules/order"
sum=$(cat "$busybox" "$here/guest-init.sh" "$kernel/modules/"* | sha256sum | cut -d' ' -f1)
if [ "$(cat "$kernel/initrd.sum" 2>/dev/null)" != "$sum" ]; then
  tree=$kernel/initrd.tree
  rm -rf "$tree" && mkdir -p "$tree/bin" "$tree/sbin" "$tree/dev" "$tree/proc" "$tree/sys" "$tree/host" || fail "cannot build the initramfs"
  cp "$busybox" "$tree/bin/busybox" && cp "$here/guest-init.sh" "$tree/init" && chmod 755 "$tree/init" &&
    cp -r "$kernel/modules" "$tree/modules" || fail "cannot build the initramfs"
  (cd "$tree" && find . -print0 | cpio --null -o -H newc -R 0:0 --quiet | gzip -1) >"$kernel/initrd.part" &&
    mv "$kernel/initrd.part" "$kernel/initrd.gz" || fail "cannot pack the initramfs"
  rm -rf "$tree"
  echo "$sum" >"$kernel/initrd.sum"
fi

# The job: a bash script on the host's disk that the guest runs through chroot.
case $cache in *[[:space:]]*) fail "the cache path $cache has white space, which the kernel command line cannot carry" ;; esac
# The guest covers /tmp with a tmpfs of its own; the folders of the host's /tmp that the job needs
# (a clone, its build, the cache) are shown again inside it, read-only like the rest of the host.
keep=()
keep_tmp_folder() {
  case $1 in
    /tmp/*) local rest=${1#/tmp/}; local top=/tmp/${rest%%/*}
            case " ${keep[*]} " in *" $top "*) ;; *) keep+=("$top") ;; esac ;;
  esac
}
keep_tmp_folder "$cache"; keep_tmp_folder "$PWD"
for word in "$@" "${extra_env[@]}"; do keep_tmp_folder "${word#*=}"; done
for folder in "${keep[@]}"; do
  case $folder in *[[:space:],]*) fail "the folder $folder has white space or a comma, which the kernel command line cannot carry" ;; esac
done
keep_list=$(IFS=,; echo "${keep[*]}")
run=$(mktemp -d "$cache/run.XXXXXX") || fail "cannot create a run folder in $cache"
socket_dir=$(mktemp -d) || fail "cannot create a folder for the QMP socket"
trap 'rm -rf "$run" "$socket_dir"' EXIT
{
  printf 'cd %q 2>/dev/null || cd /tmp\n' "$PWD"
  printf 'export ORVANE_KERNEL_VM=1 HOME=/tmp PATH=%q\n' "$PATH"
  while IFS= read -r name; do
    printf 'export %s=%q\n' "$name" "${!name}"
  done < <(compgen -e | grep -E '^((A|UB|L)SAN|GTEST|QT)_|^LANG$|^LC_ALL$')
  for assignment in "${extra_env[@]}"; do
    printf 'export %s=%q\n' "${assignment%%=*}" "${assignment#*=}"
  done
  printf 'exec'
  printf ' %q' "$@"
  printf '\n'
} >"$run/job.sh"

image=$kernel/vmlinux
[ -f "$image" ] || image=$kernel/vmlinuz
timeout --kill-after=10 "$seconds" "$qemu" -accel tcg -m 1024 -nographic -no-reboot -nic none \
  -kernel "$image" -initrd "$kernel/initrd.gz" \
  -append "console=ttyS0 quiet panic=-1 orvane_job=$run/job.sh orvane_keep=$keep_list" \
  -virtfs local,path=/,mount_tag=host,security_model=none,readonly=on,multidevs=remap \
  -device qemu-xhci "${usb_keyboard[@]}" -qmp "unix:$socket_dir/qmp,server=on,wait=off" \
  </dev/null 2>"$run/qemu.err" |
  python3 "$here/console-watch.py" "$socket_dir/qmp" "$run/console.log"
statuses=("${PIPESTATUS[@]}")
case ${statuses[0]} in
  0) ;;
  124|137) echo "kernel-vm: the machine was stopped after $seconds s" >&2 ;;
  *) echo "kernel-vm: qemu failed (${statuses[0]}): $(head -c 2000 "$run/qemu.err")" >&2 ;;
esac
exit "${statuses[1]}"
