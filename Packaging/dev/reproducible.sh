#!/bin/sh
# reproducible.sh FOLDER PRESET [CMAKE ARGUMENTS...]: makes the packages of the preset twice, in two folders of different
# lengths below FOLDER, at two times, in two languages and time zones, under two umasks, two homes and, for root, two users,
# and compares every byte. What differs is named, and left in place to be looked at.
set -eu
source=$(cd "$(dirname "$0")/../.." && pwd)
folder=$1 preset=$2
shift 2

# copy_to TREE: the files of the source tree, with the history that versions are named by.
copy_to() {
    rm -rf "$folder/$1"
    mkdir -p "$folder/$1"
    git clone --quiet --no-hardlinks "$source" "$folder/$1/source"
    (cd "$source" && git diff -z --name-only --diff-filter=d HEAD |
        xargs -0 --no-run-if-empty cp --parents -t "$folder/$1/source")
}

# make TREE [PROGRAM...]: the packages in it, by the program.
make() {
    tree=$folder/$1
    shift
    printf '%s\n' "Building in $tree ..." >&2
    env -C "$tree/source" HOME="$tree" "$@" sh -euc '
        preset=$1
        shift
        cmake --preset "$preset" -D CMAKE_CXX_COMPILER_LAUNCHER= "$@"  # no cache: it would give the first one twice
        cmake --build --preset "$preset" -- --quiet
        cd build/release
        cpack -B "$HOME/packages"
        rm -rf "$HOME/packages/_CPack_Packages"' sh "$preset" $arguments >"$tree/log" 2>&1 || {
        cat "$tree/log" >&2
        exit 1
    }
}
arguments=$*

copy_to one
copy_to a-second/with-a-longer-name
# Times of files are the second thing that differs: the first tree is a year old.
find "$folder/one/source" -not -path '*/.git/*' -exec touch --no-dereference --date '1 year ago' {} +
if [ "$(id -u)" = 0 ]; then
    chown -R nobody "$folder/a-second"
    as_another="setpriv --reuid nobody --regid nogroup --clear-groups"
fi
# Turkish, where the small letter of I has no dot.
mkdir -p "$folder/locales"
localedef -i tr_TR -f UTF-8 "$folder/locales/tr_TR.UTF-8" || echo "There is no Turkish locale to build in." >&2
(umask 022 && make one LC_ALL=C.UTF-8 TZ=UTC)
(umask 077 && make a-second/with-a-longer-name LOCPATH="$folder/locales" LC_ALL=tr_TR.UTF-8 LANGUAGE=tr TZ=Pacific/Kiritimati ${as_another:-})

first=$folder/one/packages second=$folder/a-second/with-a-longer-name/packages
status=0
for name in $({ ls "$first"; ls "$second"; } | sort -u); do
    cmp "$first/$name" "$second/$name" || status=1
done
if [ "$status" = 0 ]; then
    printf '%s\n' "$(ls "$first" | wc -l) files are the same, byte for byte"
    rm -rf "$folder"
fi
exit "$status"
