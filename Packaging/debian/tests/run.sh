#!/bin/sh
# run.sh PACKAGES [RUNNER...]: runs the tests of this folder on the packages of a folder with autopkgtest, by default on the
# system that it is called on, where packages are installed then: call it where that does no harm, or name another runner,
# such as "chroot build/roots/bookworm". TEST_NAME is that of the one test to run; without it, all are run.
set -eu
packages=$(cd "$1" && pwd)
tests=$(cd "$(dirname "$0")" && pwd)
shift
[ "$#" != 0 ] || set -- null
source=$(mktemp -d)
trap 'rm -rf "$source"' EXIT
mkdir "$source/debian"
cp -r "$tests" "$source/debian/tests"
# What a source package of these would say of itself.
{
    printf 'Source: lineup\nMaintainer: %s\n' "$(dpkg-deb -f "$(ls "$packages"/lineup_*.deb)" Maintainer)"
    for package in "$packages"/*.deb; do
        printf '\nPackage: %s\nArchitecture: any\n' "$(dpkg-deb -f "$package" Package)"
    done
} >"$source/debian/control"
dpkg-deb --fsys-tarfile "$packages"/lineup_*.deb | tar -xO ./usr/share/doc/lineup/changelog.gz | gunzip >"$source/debian/changelog"
autopkgtest ${TEST_NAME:+--test-name "$TEST_NAME"} --no-built-binaries "$packages"/*.deb "$source/" -- "$@"
