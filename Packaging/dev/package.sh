# What ./dev package does, and the tests of the packages in ./dev check; ./dev reads this file in.

# verb_package: the Debian packages, in build/packages.
verb_package() {
    [ "$#" = 0 ] || fail "package takes no arguments"
    need product desktop mlt gstreamer packages
    configure release-packages
    build release-packages
    rm -rf "$root/build/packages"
    (cd "$root/build/release" && quietly "Making the packages" cpack)
    rm -rf "$root/build/packages/_CPack_Packages"
    ls "$root"/build/packages/*.deb
}

check_packages() {
    configure release-package-tests
    build release-package-tests
    run_tests release-package-tests
}

# Twice, on two sides of everything that a build may take up from where it runs.
check_reproducible() { sh "$root/Packaging/dev/reproducible.sh" "$root/build/reproducible" release-packages; }

# as_root COMMAND...
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# check_root SUITE: everything built and tested with what that release of Debian has.
check_root() { as_root sh "$root/Packaging/dev/in_root.sh" "$root/build/roots" "$1"; }

# The packages that check_packages has made, where there is nothing but what they depend on.
check_packages_alone() {
    as_root sh "$root/Packaging/dev/packages_in_root.sh" "$root/build/roots" "$(. /etc/os-release && echo "$VERSION_CODENAME")" \
        "$root/build/release/packaging-tests/packages"
}
