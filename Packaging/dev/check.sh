# What ./dev check and ./dev format do; ./dev reads this file in.

# The project's own C++ files, each ended by a zero byte.
sources() {
    local folder
    for folder in include Src Host Apps Bridges Tests Benchmarks; do
        if [ -d "$root/$folder" ]; then
            find "$root/$folder" '(' -name '*.cpp' -o -name '*.h' ')' -print0
        fi
    done
}

# step TITLE COMMAND...: a heading, the command, its time.
step() {
    local title=$1 start=$SECONDS
    shift
    say "== $title"
    "$@"
    say "   $((SECONDS - start)) s"
}

check_layout() { sources | xargs -0 -P "$jobs" -n 20 clang-format-16 --dry-run -Werror; }

# Sources that a build makes, which others include.
made_sources() {
    ninja -C "$root/build/clang" -t targets all | sed -n 's/^\([a-z_-]*_autogen\): .*/\1/p'
}

# The product's files that the build compiles. Tests are left to the compilers' warnings and the
# sanitizers: linting the test library's macros again in every file takes longer than all the rest.
compiled_sources() {
    sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$root/build/clang/compile_commands.json" |
        grep -E "^$root/(Src|Host|Apps|Bridges)/" | sort -u
}

# Those of them that differ from the branch's upstream, committed or not; where nothing does, those of the last commit.
changed_sources() {
    local base
    base=$(in_root git merge-base HEAD '@{upstream}' 2>/dev/null) || base=$(in_root git rev-parse HEAD)
    if in_root git diff --quiet "$base" --; then
        base=$(in_root git rev-parse --verify --quiet 'HEAD~1') || base=$(in_root git hash-object -t tree /dev/null)
    fi
    compiled_sources | grep -Fx -f <(in_root git diff --name-only "$base" -- | sed "s|^|$root/|") || true
}

# check_tidy SOURCES: looks at those that the function SOURCES names, unless they are known to be clean.
check_tidy() {
    local -a made
    configure clang
    mapfile -t made < <(made_sources)
    build clang --target "${made[@]}"
    "$1" | python3 -B "$root/Packaging/dev/lint.py" "$root/build/clang" --root "$root" --jobs "$jobs"
}

check_headers() {
    configure release-tests
    build release-tests --target headers_compile_alone
}

# The thread sanitizer cannot map its memory where addresses are randomised widely.
check_threads() {
    local -a steady=()
    if setarch -R true 2>/dev/null; then
        steady=(setarch -R)
    fi
    configure tsan
    quietly "Building (tsan)" in_root "${steady[@]}" cmake --build --preset tsan -- --quiet
    in_root "${steady[@]}" ctest --preset tsan --parallel "$jobs"
}

check_memory() {
    configure asan
    build asan
    run_tests asan
}

check_mac() {
    if [ "$(uname -m)" = x86_64 ]; then
        verb_mac
    else
        say "   Left out: the toolchain and the bundle are for x86-64."
    fi
}

check_arm64() {
    if [ "$(uname -m)" = aarch64 ]; then
        say "   Left out: the tests run on this processor anyway."
    else
        verb_arm64
    fi
}

# A day of a stream's time that is read as fast as it comes, and half an hour of real time. Where the system allows it
# the sender has the processor when its time has come. How late anything came is printed, and fails nothing: it is this
# machine's as much as the sender's.
check_streams() {
    local -a soon=()
    configure release-tests
    build release-tests --target send_tests send_watch lineup_cli lineup-media BarsAndToneModule
    LINEUP_SEND_HOURS=24 "$root/build/release/tests/send_tests" --gtest_filter='LongStream.*:Send.NeitherGrows*:SendersClock.*'
    if chrt -f 10 true 2>/dev/null; then
        soon=(chrt -f 10)
    fi
    "${soon[@]}" "$root/build/release/tests/send_watch" 30 --others
}

# verb_check [--all]
verb_check() {
    local lint=changed_sources
    case ${1:-} in
        '') need product desktop tests mlt mlt-tests gstreamer gstreamer-tests benchmarks check ;;
        --all)
            need product desktop tests mlt mlt-tests gstreamer gstreamer-tests benchmarks check laboratory packages packages-tests roots
            lint=compiled_sources
            ;;
        *) fail "check takes --all, or nothing" ;;
    esac
    step "Layout (clang-format)" check_layout
    step "Lint (clang-tidy, Clang's warnings)" check_tidy "$lint"
    step "Headers compile alone" check_headers
    step "Thread sanitizer" check_threads
    if [ "$lint" = compiled_sources ]; then
        step "Fuzz targets, a few seconds each" check_fuzz
        step "Laboratory, 2,000 damaged line-ups" check_laboratory
        step "Streams: a day simulated, half an hour real" check_streams
        step "Long runs, ${LONG_RUN_MINUTES:=60} minutes" verb_long-run "$LONG_RUN_MINUTES"
        step "macOS bundle" check_mac
        step "64-bit ARM, emulated" check_arm64
        step "Packages" check_packages
        step "Packages, in a root that has nothing else" check_packages_alone
        step "Packages, made twice" check_reproducible
        step "Debian 12, in a root of its own" check_root bookworm
        step "Debian 13, in a root of its own" check_root trixie
    fi
    # Last, so that the run ends with the tally of every test.
    say "== Address and undefined-behaviour sanitizers"
    check_memory
}

verb_format() {
    need check
    sources | xargs -0 clang-format-16 -i "$@"
}
