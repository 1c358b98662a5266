# What ./dev check-editors does; ./dev reads this file in.

# The hard limit, in seconds, besides those of each step.
editors_may_take=900

# verb_check-editors [EDITOR...]: the MLT producer in Kdenlive and in Shotcut, driven with mouse and keyboard on a
# screen of their own. The home folder is a fresh one in build/editors; nothing of the person's is read or written.
verb_check-editors() {
    local editor part folder=$root/build/editors
    for editor in "$@"; do
        [[ $editor =~ ^(kdenlive|shotcut)$ ]] || fail "check-editors takes kdenlive and shotcut, not $editor"
    done
    need product mlt editors
    quietly "Configuring (release, with the MLT producer)" in_root cmake --preset release -DLINEUP_MLT=ON
    build release --target lineup_cli mltlineup
    rm -rf "$folder"
    mkdir -p "$folder"
    for part in library plugin mlt mlt-run; do
        quietly "Installing into $folder/home ($part)" \
            cmake --install "$root/build/release" --component "$part" --prefix "$folder/home/.local"
    done
    say "Driving the editors (a few minutes) ..."
    # Debian's own interpreter: the module for accessibility is Debian's.
    timeout --kill-after=20 "$editors_may_take" /usr/bin/python3 -B "$root/Packaging/dev/editors/check.py" \
        "$folder" "$root/build/release/bin/lineup" "$@" ||
        fail "the editors do not do what they should (status $?)"
}
