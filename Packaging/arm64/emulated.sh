#!/bin/sh
# emulated.sh SYSROOT COMMAND...: runs the command where Linux hands programs for 64-bit ARM to qemu-user, with the libraries
# in SYSROOT, and so do those that it starts. It is asked to in a namespace of its own, which takes Linux 6.7; nothing of
# this machine changes. On an older one the setting for the whole machine serves (Debian's qemu-user-binfmt), but for a program
# that is started with an environment of its own, as lineup starts its decoder: it finds no libraries.
set -eu
QEMU_LD_PREFIX=$(cd "$1" && pwd)
export QEMU_LD_PREFIX
shift

formats=/proc/sys/fs/binfmt_misc
if ! unshare --user --map-root-user --mount mount -t binfmt_misc binfmt_misc "$formats" 2>/dev/null; then
    [ -e "$formats/qemu-aarch64" ] || {
        echo "emulated.sh: Linux older than 6.7 has no such setting for a namespace: install qemu-user-binfmt" >&2
        exit 1
    }
    exec "$@"
fi

# What such a program is handed to: its file, the name that it is started by, and its arguments.
interpreter=$QEMU_LD_PREFIX/interpreter
cat >"$interpreter.$$" <<END
#!/bin/sh
file=\$1 name=\$2
shift 2
exec $(command -v qemu-aarch64) -L "\${0%/*}" -0 "\$name" "\$file" "\$@"
END
chmod +x "$interpreter.$$"
mv "$interpreter.$$" "$interpreter"

exec unshare --user --map-root-user --mount sh -euc '
    formats=$1 interpreter=$2
    shift 2
    mount -t binfmt_misc binfmt_misc "$formats"
    # The head of an ELF file of 64 bits, lowest byte first, that is a program or a library, for processor 0xb7.
    head="\x7fELF\x02\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\xb7\x00"
    mask="\xff\xff\xff\xff\xff\xff\xff\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff"
    printf %s ":qemu-aarch64:M::$head:$mask:$interpreter:P" >"$formats/register"
    exec "$@"' sh "$formats" "$interpreter" "$@"
