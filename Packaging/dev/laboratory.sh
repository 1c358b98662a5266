# What ./dev laboratory does, and what ./dev check --all has of it; ./dev reads this file in.

# A Python that has NumPy: the first one on the path may be another than Debian's.
laboratory_python() {
    local python
    for python in python3 /usr/bin/python3; do
        if "$python" -c 'import numpy' 2>/dev/null; then
            echo "$python"
            return
        fi
    done
    fail "the laboratory needs NumPy: the package python3-numpy"
}

run_laboratory() {
    local python
    python=$(laboratory_python)
    configure release-tests
    build release-tests --target lineup_cli lineup-check BarsAndToneModule
    "$python" -B "$root/Tests/Check/laboratory.py" --lineup "$root/build/release/bin/lineup" "$@"
}

check_laboratory() { run_laboratory all --page "$root/Docs/checking-laboratory.md"; }

verb_laboratory() {
    local -a lists=(product desktop tests)
    case " $* " in
        *' all '* | *' --packages '*) lists+=(laboratory) ;;
    esac
    need "${lists[@]}"
    run_laboratory "$@"
}
