# What ./dev fuzz does, and the short run of it in ./dev check; ./dev reads this file in.

# Each target has a folder of seeds.
fuzz_targets() { (cd "$root/Tests/Fuzz/seeds" && printf '%s\n' *); }

build_fuzzers() {
    need product desktop tests gstreamer check
    configure fuzz
    build fuzz
}

# fuzz_one SECONDS TARGET: lets a target search, from the inputs it has collected in build/fuzz-corpus; prints a
# line. An input that breaks something is kept in build/fuzz-findings.
fuzz_one() {
    local seconds=$1 target=$2 kept=$root/Tests/Fuzz log status=0
    local corpus=$root/build/fuzz-corpus/$target findings=$root/build/fuzz-findings/$target-
    local -a inputs=("$corpus" "$kept/seeds/$target")
    if [ -d "$kept/regressions/$target" ]; then
        inputs+=("$kept/regressions/$target")
    fi
    if [ -f "$kept/dictionaries/$target" ]; then
        inputs+=("-dict=$kept/dictionaries/$target")
    fi
    mkdir -p "$corpus" "$root/build/fuzz-findings"
    log=$(mktemp)
    # The files that targets write for each input go to memory, where there is such a place.
    TMPDIR=$([ -w /dev/shm ] && echo /dev/shm || echo /tmp) "$root/build/fuzz/fuzz/$target" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=2560 -max_len=16384 \
        -artifact_prefix="$findings" -print_final_stats=1 "${inputs[@]}" >"$log" 2>&1 || status=$?
    if [ "$status" = 0 ]; then
        say "   $(sed -n 's/^Done \([0-9]*\) runs in \([0-9]*\) second.*/\1 executions in \2 s/p' "$log"): $target"
    else
        cat "$log" >&2
        say "   A finding: $target. Run it again with build/fuzz/fuzz/$target FILE."
    fi
    rm -f "$log"
    return "$status"
}

# fuzz_all SECONDS TARGET...: as many at once as there are processors.
fuzz_all() {
    local seconds=$1 target running=0 failed=0
    shift
    for target in "$@"; do
        if [ "$running" = "$jobs" ]; then
            wait -n || failed=1
            running=$((running - 1))
        fi
        fuzz_one "$seconds" "$target" &
        running=$((running + 1))
    done
    for (( ; running > 0; running--)); do
        wait -n || failed=1
    done
    return "$failed"
}

check_fuzz() {
    local -a targets
    build_fuzzers
    mapfile -t targets < <(fuzz_targets)
    fuzz_all 5 "${targets[@]}"
}

# verb_fuzz MINUTES [TARGET...]
verb_fuzz() {
    local minutes=${1:-} seconds target
    local -a targets
    [[ $minutes =~ ^[1-9][0-9]*$ ]] || fail "fuzz takes a number of minutes, and targets: $(fuzz_targets | xargs)"
    shift
    mapfile -t targets < <(fuzz_targets)
    if [ "$#" != 0 ]; then
        targets=("$@")
    fi
    for target in "${targets[@]}"; do
        [ -d "$root/Tests/Fuzz/seeds/$target" ] || fail "no such target: $target; there are $(fuzz_targets | xargs)"
    done
    build_fuzzers
    seconds=$((minutes * 60 * (jobs < ${#targets[@]} ? jobs : ${#targets[@]}) / ${#targets[@]}))
    say "== ${#targets[@]} targets, $seconds s each"
    fuzz_all "$seconds" "${targets[@]}"
}
