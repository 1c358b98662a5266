# What ./dev coverage and ./dev mutate do; ./dev reads this file in.

# Lines and branches, in per cent, that the tests must reach.
src_must_reach=98
host_must_reach=90

# What the tests are made of: a header's functions are found in the program that uses them.
covered_objects() {
    find "$root/build/coverage" -type f '(' -name '*.so' -o -name '*.so.*' -o -path '*/bin/*' -o -path '*/tests/*' ')' -perm -u+x
}

# coverage_of FOLDER PERCENT: a table of the folder's files, what is not reached, and whether that is enough.
coverage_of() {
    local folder=$1 percent=$2 object
    local -a objects=()
    while read -r object; do
        objects+=(-object "$object")
    done < <(covered_objects)
    local -a export=(llvm-cov-16 export "${objects[@]}" --instr-profile="$root/build/coverage/all.profdata")
    "${export[@]}" --format=lcov --sources "$root/$folder" >"$root/build/coverage/$folder.info"
    "${export[@]}" --format=text --skip-functions --skip-expansions --sources "$root/$folder" >"$root/build/coverage/$folder.json"
    python3 "$root/Packaging/dev/uncovered.py" "$root" "$folder" "$percent" "$root/build/coverage/$folder".{info,json}
}

# What is left out: a profile must not be torn by killing the program that writes it, nor kept small by a limit on the
# size of files; and the counters are code that the instruction levels share.
left_out='KilledProgram|AFileThatMayNotGrow|ShareNoCodeBetweenInstructionLevels'

verb_coverage() {
    local enough=yes
    [ "$#" = 0 ] || fail "coverage takes no arguments"
    need product desktop tests coverage
    configure coverage
    build coverage
    rm -rf "$root/build/coverage/profiles"
    quietly "Running the tests" run_tests coverage -E "$left_out" || fail "the tests must pass first"
    quietly "Merging what they reached" llvm-profdata-16 merge --sparse \
        -o "$root/build/coverage/all.profdata" "$root"/build/coverage/profiles/*.profraw
    coverage_of Src "$src_must_reach" || enough=
    coverage_of Host "$host_must_reach" || enough=
    [ -n "$enough" ] || fail "the tests do not reach enough"
}

# mutate [N] [OPTIONS]: N mistakes drawn at random, 100 unless told otherwise; mutate.py --help lists the options.
verb_mutate() {
    local -a sample=(--sample 100)
    need product desktop tests mlt mlt-tests gstreamer gstreamer-tests
    if [ "$#" != 0 ] && [[ $1 =~ ^[0-9]+$ ]]; then
        sample=(--sample "$1")
        shift
    elif [ "$#" != 0 ]; then
        sample=()
    fi
    nice -n 19 python3 "$root/Packaging/dev/mutation/mutate.py" "${sample[@]}" "$@"
}
