# What ./dev long-run does, and ./dev check --all; ./dev reads this file in.

# verb_long-run [MINUTES]
verb_long-run() {
    local minutes=${1:-60}
    [[ $minutes =~ ^[1-9][0-9]*$ ]] || fail "long-run takes a number of minutes"
    need product desktop tests mlt mlt-tests
    configure release-tests
    build release-tests --target lineup_cli BarsAndToneModule lineup-media lineup-check mltlineup playing_studio leaping_clock
    python3 -B "$root/Tests/LongRun/long_run.py" --build "$root/build/release" --minutes "$minutes"
}
