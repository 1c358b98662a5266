#!/bin/sh
# make_root.sh ROOT SUITE: makes a minimal root of a release of Debian in the folder ROOT with debootstrap, from MIRROR. Does
# nothing where there is one.
set -eu
root=$1 suite=$2
if [ -e "$root/etc/debian_version" ]; then
    exit 0
fi
mkdir -p "$root"
printf '%s\n' "Making a root of Debian $suite ..." >&2
debootstrap --variant=minbase "$suite" "$root" "${MIRROR:-http://deb.debian.org/debian}" >"$root.log" 2>&1 || {
    cat "$root.log" >&2
    exit 1
}
# It is made anew where it is lost: nothing waits for the disk.
echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/unsafe-io"
