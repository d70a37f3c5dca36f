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

# The last lines of a failed step: who sees only the end of a long run learns there what failed.
tell_step_again() {
    local log=$step_logs/${1//\//-}
    if [[ -s "$log" ]]; then
        printf '== failed: %s\n' "$1"
        tail -n 40 "$log"
    fi
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
