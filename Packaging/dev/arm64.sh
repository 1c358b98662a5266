# What ./dev arm64 does; ./dev reads this file in.

arm64_sysroot=$root/build/arm64-sysroot

# The tests run emulated, and so do the programs that they start; those of the system that they start run as they are.
verb_arm64() {
    [ "$(uname -m)" != aarch64 ] || fail "this machine is one: ./dev test tests for it"
    need product tests arm64
    quietly "Laying out Debian's libraries for 64-bit ARM" sh "$root/Packaging/arm64/sysroot.sh" "$arm64_sysroot" product tests
    configure arm64-tests
    build arm64-tests
    in_root sh Packaging/arm64/emulated.sh "$arm64_sysroot" \
        ctest --preset arm64-tests --parallel "$jobs" --label-exclude native "$@"
}
