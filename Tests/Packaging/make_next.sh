#!/bin/sh
# make_next.sh SOURCE FOLDER CXX: the packages of the library, the plug-in and the program in the next minor version, made
# from the same sources, in FOLDER/packages.
set -eu
source=$1 folder=$2 cxx=$3

rm -rf "$folder"
mkdir -p "$folder/source"
(cd "$source" && git ls-files -z --deduplicate | xargs -0 cp --parents --no-dereference -p -t "$folder/source")
cd "$folder/source"
awk -F. '{ print $1 "." $2 + 1 ".0" }' "$source/VERSION" >VERSION
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_BASEDIR="$folder/source" CCACHE_NOHASHDIR=1
fi
cmake --preset release -D CMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build --preset release -- --quiet
cd build/release
cpack -B "$folder/packages" >/dev/null
