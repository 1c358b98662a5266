# What ./dev mac does; ./dev reads this file in.

mac_tools=$root/build/mac-tools

# The toolchain that package-lock.json pins; fetched anew when that changes.
fetch_mac_tools() {
    local pinned=$root/Packaging/mac/package-lock.json
    if ! cmp -s "$pinned" "$mac_tools/fetched"; then
        command -v npm >/dev/null || need npm
        rm -rf "$mac_tools" "$root"/build/mac "$root"/build/mac-*
        mkdir -p "$mac_tools"
        cp "$root/Packaging/mac/package.json" "$pinned" "$mac_tools"
        quietly "Fetching the Zig toolchain" npm ci --prefix "$mac_tools" --ignore-scripts --no-audit --no-fund
        cp "$pinned" "$mac_tools/fetched"
    fi
    quietly "Laying out the headers and stubs of macOS" \
        cmake -D TOOLS="$mac_tools" -P "$root/Packaging/mac/MakeSdk.cmake"
}

verb_mac() {
    [ "$#" = 0 ] || fail "mac takes no arguments"
    [ "$(uname -sm)" = "Linux x86_64" ] || fail "mac builds on x86-64 Linux; Docs/macos.md says what to do on a Mac"
    need product mac
    fetch_mac_tools
    local processor
    for processor in x86_64 arm64; do
        configure "mac-$processor"
        build "mac-$processor"
        quietly "Seeing each check fail ($processor)" run_tests "mac-$processor"
    done
    in_root sh Packaging/mac/join.sh build/mac/BarsAndTone.bundle build/mac-x86_64 build/mac-arm64
    configure release-mac
    build release-mac
    say "Running the bundle for x86-64 beside the one for Linux ..."
    LINEUP_MAC_BUNDLE=$root/build/mac/BarsAndTone.bundle "$root/build/release/tests/mac_bundle_tests" --gtest_brief=1
    say "The bundle is in build/mac/BarsAndTone.bundle."
}
