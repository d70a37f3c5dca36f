# Runs the steps of a check one after another and keeps those that failed. To be sourced.
# shellcheck shell=bash

failed_steps=()
step_start=
step_logs=$(mktemp -d)
trap 'rm -rf "$step_logs"' EXIT

# step NAME COMMAND... A step that fails does not keep the next one from running.
step() {
    local name=$1
    shift
    print_time_of_last_step
    printf '== %s\n' "$name"
    step_start=$SECONDS
    run_step "$step_logs/${name//\//-}" "$@" || failed_steps+=("$name")
}

# run_step LOG COMMAND... A terminal shows the command's own progress; elsewhere its output is kept, to be told again at the end.
run_step() {
    local log=$1
    shift
    if [[ -t 2 ]]; then
        "$@" </dev/null
    else
        "$@" </dev/null 2>&1 | tee "$log"
    fi
}

# Of the last step nothing is printed: its output closes with the closing lines of ctest.
print_time_of_last_step() {
    if [[ -n "$step_start" ]]; then
        printf '   %d s\n' "$((SECONDS - step_start))"
    fi
}

# Of a failed step what tells why: who sees only the end of a long run learns it there.
tell_step_again() {
    local log=$step_logs/${1//\//-}
    [[ -s "$log" ]] || return 0
    printf '== failed: %s\n' "$1"
    if grep -q '^The following tests FAILED:' "$log"; then
        tell_failed_tests "$log"
    else
        tail -n 40 "$log"
    fi
}

# tell_failed_tests LOG: of what ctest printed, the first and last lines of each failed test, and the list at the end.
tell_failed_tests() {
    awk '
        function tell_test(  i) {
            for (i = 1; i <= count; ++i)
                if (i <= 8 || i > count - 15) print line[i]
            count = 0
        }
        /^ *[0-9]+\/[0-9]+ +Test +#/ || /^ +Start +[0-9]+:/ || /^[0-9]+% tests passed/ { tell_test(); has_failed = 0 }
        /^ *[0-9]+\/[0-9]+ +Test +#.*\*\*\*/ && !/\*\*\*Skipped/ { has_failed = 1 }
        /^[0-9]+% tests passed/ { is_list = 1 }
        has_failed && NF { line[++count] = $0 }
        is_list && NF
    ' "$1"
}

# The result of the whole, with a line on stderr if it is a failure.
finish_steps() {
    ((${#failed_steps[@]})) || return 0
    local name list
    for name in "${failed_steps[@]}"; do tell_step_again "$name"; done
    list=$(printf ', %s' "${failed_steps[@]}")
    echo "Failed: ${list:2}" >&2
    return 1
}
