# What ./dev abi does, and its comparison in ./dev check; ./dev reads this file in.
#
# Packaging/abi/NAME.abi says what the library NAME offers to programs that were built earlier: its functions, and the
# types of its installed headers down to the layout.

abi_libraries=(liblineup libzelcore)

# write_abi FOLDER: the descriptions of the libraries as they are now.
write_abi() {
    local folder=$1 library headers
    headers=$(mktemp -d)
    configure clang
    build clang --target lineup zelcore debian_changelog  # what the part "development" is made of
    quietly "Installing the headers" in_root cmake --install build/clang --component development --prefix "$headers"
    mkdir -p "$folder"
    for library in "${abi_libraries[@]}"; do
        abidw --suppressions "$root/Packaging/abi/private.abignore" --headers-dir "$headers/include" --drop-private-types \
            --drop-undefined-syms --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed --no-parameter-names \
            --no-write-default-sizes --type-id-style hash "$root/build/clang/lib/$library.so" |
            grep -v "version='[A-Z]*_PARTS_" >"$folder/$library.abi"
    done
    rm -rf "$headers"
}

# compare_abi OLD NEW: shows how two descriptions differ; fails when they do.
compare_abi() {
    local status=0
    abidiff --no-default-suppression "$1" "$2" || status=$?
    if ((status & 8)); then
        say "   Programs that were built against the library would break: that takes a new minor version, or a major one."
    fi
    return "$status"
}

check_abi() {
    local library same=yes
    write_abi "$root/build/abi"
    for library in "${abi_libraries[@]}"; do
        compare_abi "$root/Packaging/abi/$library.abi" "$root/build/abi/$library.abi" || same=
    done
    [ -n "$same" ] || fail "the libraries' interface is not what Packaging/abi says; if it is meant so: ./dev abi --accept"
}

# verb_abi [--accept]
verb_abi() {
    need product desktop mlt benchmarks check abi
    case ${1:-} in
        '') check_abi ;;
        --accept) write_abi "$root/Packaging/abi" ;;
        *) fail "abi takes --accept, or nothing" ;;
    esac
}
