#!/bin/sh
# packages_in_root.sh FOLDER SUITE PACKAGES [TEST...]: runs the tests of the packages in the folder PACKAGES
# (Packaging/debian/tests), or those named, with autopkgtest's chroot runner, each in a minimal root of a release of Debian
# in which nobody has installed anything before: what a package does not depend on is not there. The root lies in
# FOLDER/SUITE-bare and is made at first; what a test installs goes into FOLDER/SUITE-bare.written, which is gone at the
# end. Takes the rights of root, debootstrap, autopkgtest and a mirror (MIRROR).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
tests=$here/../debian/tests
mkdir -p "$1"
root=$(cd "$1" && pwd)/$2-bare
packages=$(cd "$3" && pwd)
suite=$2
shift 3
[ "$#" != 0 ] || set -- $(sed -n 's/^Tests: //p' "$tests/control")
sh "$here/make_root.sh" "$root" "$suite"
mkdir -p "$root.archives/partial"
trap 'rm -rf "$root.written"' EXIT

for name; do
    rm -rf "$root.written"
    mkdir -p "$root.written/upper" "$root.written/work" "$root.written/root"
    # A mount namespace of its own: what is mounted in it goes when it ends.
    env -i HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive PATH=/usr/sbin:/usr/bin:/sbin:/bin TEST_NAME="$name" \
        unshare --mount sh -euc '
        root=$1
        merged=$root.written/root
        mount -t overlay -o "lowerdir=$root,upperdir=$root.written/upper,workdir=$root.written/work" overlay "$merged"
        mount --bind "$root.archives" "$merged/var/cache/apt/archives"
        mount -t proc proc "$merged/proc"
        mount --rbind /dev "$merged/dev"
        chroot "$merged" apt-get -q update
        sh "$2" "$3" chroot "$merged"' sh "$root" "$tests/run.sh" "$packages" || {
        status=$?
        printf '%s\n' "The test $name of the packages fails in a root that has nothing else." >&2
        exit "$status"
    }
done
