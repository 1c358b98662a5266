#!/bin/sh
# emulated.sh SYSROOT COMMAND...: runs the command where Linux hands programs for 64-bit ARM to qemu-user, with the libraries
# in SYSROOT, and so do those that it starts. It is asked to in a namespace of its own, which takes Linux 6.7; nothing of
# this machine changes. Where that cannot be, and the machine has no such setting for all (Debian's qemu-user-binfmt), says so.
set -eu
QEMU_LD_PREFIX=$(cd "$1" && pwd)
export QEMU_LD_PREFIX
shift

if [ -e /proc/sys/fs/binfmt_misc/qemu-aarch64 ]; then
    exec "$@"
fi
exec unshare --user --map-root-user --mount sh -euc '
    formats=/proc/sys/fs/binfmt_misc
    mount -t binfmt_misc binfmt_misc "$formats" || {
        echo "emulated.sh: Linux older than 6.7 has no such setting for a namespace: install qemu-user-binfmt" >&2
        exit 1
    }
    # The head of an ELF file of 64 bits, lowest byte first, that is a program or a library, for processor 0xb7.
    head="\x7fELF\x02\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\xb7\x00"
    mask="\xff\xff\xff\xff\xff\xff\xff\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff"
    printf %s ":qemu-aarch64:M::$head:$mask:$(command -v qemu-aarch64):FP" >"$formats/register"
    exec "$@"' sh "$@"
