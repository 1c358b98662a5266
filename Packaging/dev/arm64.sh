# What ./dev arm64 does; ./dev reads this file in.

arm64_sysroot=$root/build/arm64-sysroot

# Programs for 64-bit ARM run emulated, also those that others start; the system's own run as they are.
emulated() { in_root sh "$root/Packaging/arm64/emulated.sh" "$arm64_sysroot" "$@"; }

# What the plug-in answers there and here, bit for bit.
compare_arm64() {
    local answers=tests/linux_answers bundle=BarsAndTone.bundle
    configure release-tests
    build release-tests --target linux_answers BarsAndToneModule
    say "Asking the plug-in for both processors ..."
    emulated python3 -B Packaging/arm64/same_answers.py \
        "LC_ALL=C build/release/$answers build/release/$bundle" "LC_ALL=C build/arm64/$answers build/arm64/$bundle"
}

# verb_arm64 [CTEST ARGUMENTS...]
verb_arm64() {
    [ "$(uname -m)" != aarch64 ] || fail "this machine is one: ./dev test tests for it"
    need product desktop tests mlt mlt-tests gstreamer gstreamer-tests arm64
    quietly "Laying out Debian's libraries for 64-bit ARM" \
        sh "$root/Packaging/arm64/sysroot.sh" "$arm64_sysroot" product tests mlt mlt-tests gstreamer gstreamer-tests
    configure arm64-tests
    build arm64-tests
    emulated python3 -B Packaging/arm64/run_tests.py --parallel "$jobs" "$@"
    compare_arm64
}
