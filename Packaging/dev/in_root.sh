#!/bin/sh
# in_root.sh FOLDER SUITE [TARGET...]: builds the product with its tests in a minimal root of a release of Debian that lies
# in FOLDER/SUITE and is made there at first, warnings as errors, and runs the tests; with TARGETs, builds those alone. Takes
# the rights of root, debootstrap and a mirror (MIRROR). The source tree is seen there read-only, and nothing else of this
# machine but FOLDER/SUITE.ccache, which keeps what was compiled for the next root. JOBS is how many run at once.
set -eu
source=$(cd "$(dirname "$0")/../.." && pwd)
suite=$2
mkdir -p "$1"
root=$(cd "$1" && pwd)/$suite
shift 2

sh "$source/Packaging/dev/make_root.sh" "$root" "$suite"
mkdir -p "$root/source" "$root/build" "$root/ccache" "$root.ccache"

# A mount namespace of its own: what is mounted in it goes when it ends.
exec unshare --mount sh -euc '
    root=$1 source=$2 jobs=$3
    shift 3
    mount --bind "$root" "$root"  # what is / there is a mount, as tests that mount a disk have it
    mount --bind "$source" "$root/source"
    mount -o remount,bind,ro "$root/source"
    mount --bind "$root.ccache" "$root/ccache"
    mount -t proc proc "$root/proc"
    mount -t sysfs -o ro sysfs "$root/sys"
    mount --rbind /dev "$root/dev"  # terminals too
    cd "$root"
    pivot_root . mnt  # in a root of chroot no process may make name spaces of its own, as tests do
    umount -l /mnt
    exec env -i HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive CCACHE_DIR=/ccache \
        CCACHE_SLOPPINESS=pch_defines,time_macros CMAKE_BUILD_PARALLEL_LEVEL="$jobs" CTEST_PARALLEL_LEVEL="$jobs" \
        PATH=/usr/sbin:/usr/bin:/sbin:/bin sh -euc '\''
        cd /source/Packaging/dependencies
        needed=$(cat product.txt desktop.txt mlt.txt mlt-tests.txt gstreamer.txt gstreamer-tests.txt packages.txt tests.txt | sed "s/#.*//" | sort -u)
        dpkg-query -W $needed >/dev/null 2>&1 || {
            apt-get -q update
            apt-get -q install -y --no-install-recommends $needed
        } >&2
        umask o-w
        cmake -S /source --preset release-tests -B /build -Wno-dev -D CMAKE_COMPILE_WARNING_AS_ERROR=ON \
            -D CMAKE_CXX_COMPILER_LAUNCHER=ccache >/dev/null
        cmake --build /build --target "${@:-all}" -- --quiet -k 0
        [ "$#" != 0 ] || ctest --test-dir /build --output-on-failure --timeout 300
    '\'' sh "$@"' sh "$root" "$source" "${JOBS:-$(nproc)}" "$@"
