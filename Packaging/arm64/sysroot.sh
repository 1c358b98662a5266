#!/bin/sh
# sysroot.sh FOLDER LIST...: lays Debian's arm64 libraries out in FOLDER, those that Packaging/dependencies/LIST.txt name
# and what they depend on, to build and run programs with. They are unpacked and not installed: nothing of this machine
# changes, and no rights are needed. Does nothing where FOLDER holds them already. Debian's mirror is MIRROR, and its release
# SUITE; what is downloaded stays in FOLDER.packages.
set -eu
lists=$(cd "$(dirname "$0")/../dependencies" && pwd)
folder=$1
shift
mkdir -p "$folder" "$folder.packages/lists/partial" "$folder.packages/archives/partial"
folder=$(cd "$folder" && pwd)
packages=$folder.packages
: "${MIRROR:=http://deb.debian.org/debian}" "${SUITE:=bookworm}"

# Programs that tests run are this machine's own, but the one that loads what is built.
needed=$(cd "$lists" && for list in "$@"; do
    sed 's/#.*//' "$list.txt"
done | grep -E '^((lib.*|nlohmann-json3)-dev|gstreamer1\.0-plugins-.*|melt) *$' | sort -u)
needed="libc6-dev libstdc++-12-dev $needed"
if [ "$(cat "$folder/needed" 2>/dev/null)" = "$SUITE $needed" ]; then
    exit 0
fi

cat >"$packages/apt.conf" <<END
Dir::State "$packages";
Dir::State::status "$packages/status";
Dir::Cache "$packages";
Dir::Etc::sourcelist "$packages/sources.list";
Dir::Etc::sourceparts "-";
APT::Architecture "arm64";
APT::Architectures { "arm64"; };
APT::Sandbox::User "";
END
: >"$packages/status"
echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $MIRROR $SUITE main" >"$packages/sources.list"
export APT_CONFIG="$packages/apt.conf"
apt-get -q update
apt-get -q install -y --no-install-recommends --download-only $needed

# Where every folder below / is one of /usr, and the links lead within.
rm -rf "$folder"
mkdir -p "$folder/usr/bin" "$folder/usr/sbin" "$folder/usr/lib"
for top in bin sbin lib; do
    ln -s "usr/$top" "$folder/$top"
done
for package in "$packages"/archives/*.deb; do
    dpkg-deb --fsys-tarfile "$package" |
        tar -x -C "$folder" --keep-directory-symlink --no-same-owner --exclude './usr/share/doc' --exclude './usr/share/man'
done
find "$folder" -type l -lname '/*' -printf '%l\t%p\n' | while IFS="$(printf '\t')" read -r target link; do
    ln -sfrT "$folder$target" "$link"
done
# Of two packages' libraries of one name, an installation chooses one.
for library in "$folder"/usr/lib/*/blas/*.so.* "$folder"/usr/lib/*/lapack/*.so.*; do
    ln -sfrt "$(dirname "$(dirname "$library")")" "$library"
done
printf '%s\n' "$SUITE $needed" >"$folder/needed"
