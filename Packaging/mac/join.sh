#!/bin/sh
# join.sh BUNDLE TREE...: makes BUNDLE of the bundles in the build trees, one for each processor: their executables in one
# file, and what they share. Looks it over then (check_bundle.py).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
bundle=$1
shift
executable=Contents/MacOS/BarsAndTone

# setting NAME TREE: what a build tree was configured with.
setting() { sed -n "s/^$1:[^=]*=//p" "$2/CMakeCache.txt"; }

rm -rf "$bundle"
mkdir -p "$(dirname "$bundle")"
cp -R "$1/BarsAndTone.bundle" "$bundle"
executables= processors=
for tree; do
    executables="$executables $tree/BarsAndTone.bundle/$executable"
    processors="$processors --processor $(setting LINEUP_MAC_PROCESSOR "$tree")=$(setting CMAKE_OSX_DEPLOYMENT_TARGET "$tree")"
    diff -r -x MacOS "$bundle" "$tree/BarsAndTone.bundle"
done
/usr/lib/llvm-16/bin/llvm-lipo -create $executables -output "$bundle/$executable"
python3 -B "$here/check_bundle.py" "$bundle" $processors --identifier org.barsandtone.importer \
    --version "$(head -n 1 "$here/../../VERSION")"
