#!/usr/bin/env bash
# Times `make demo` on a bare Debian 12: a minimal system made with debootstrap, with only make, git and the
# certificates added (what it takes to fetch the project and call make), the project cloned from this
# repository's HEAD, then `make demo` run in it as a person would, apt-get installs included. Prints the
# demo's exit status and its wall time; the demo's output is kept in ROOT/root/demo.log.
# Needs root (debootstrap and chroot) and Debian's mirror. The folder is removed first when it exists.
# Usage: cmake/bare-demo.sh [ROOT]   (default /tmp/tavutil-bare)
set -eu
root=${1:-/tmp/tavutil-bare}
source_tree=$(git -C "$(dirname "$0")/.." rev-parse --show-toplevel)
mirror=http://deb.debian.org/debian

unmount_all() {
    for mount in dev/pts dev sys proc tmp; do
        mountpoint -q "$root/$mount" && umount -l "$root/$mount"
    done
    return 0
}
trap unmount_all EXIT

command -v debootstrap >/dev/null || apt-get install -y -qq debootstrap
unmount_all
rm -rf "$root"
debootstrap --variant=minbase bookworm "$root" "$mirror" >"$root.debootstrap.log" 2>&1
cp /etc/resolv.conf "$root/etc/resolv.conf"
cat >"$root/etc/apt/sources.list" <<EOF
deb $mirror bookworm main
deb $mirror bookworm-updates main
deb http://deb.debian.org/debian-security bookworm-security main
EOF
for mount in proc sys dev dev/pts; do mount --bind "/$mount" "$root/$mount"; done
mount -t tmpfs tmpfs "$root/tmp"
chroot "$root" bash -c 'apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
    --no-install-recommends make git ca-certificates >/dev/null 2>&1 && apt-get clean'
git clone -q "$source_tree" "$root/root/tavutil"

start=$(date +%s%N)
status=0
chroot "$root" env -i HOME=/root TERM=dumb PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
    bash -c 'cd /root/tavutil && make demo' >"$root/root/demo.log" 2>&1 || status=$?
milliseconds=$((($(date +%s%N) - start) / 1000000))
packages=$(grep -c '^Unpacking ' "$root/root/demo.log" || true)
echo "bare demo: exit status $status, $((milliseconds / 1000)).$(printf '%03d' $((milliseconds % 1000))) s," \
    "$packages packages installed, last line: $(tail -1 "$root/root/demo.log")"
[ "$status" -eq 0 ]
