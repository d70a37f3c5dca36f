# Runs the steps of a check one after another and keeps those that failed. To be sourced.
# shellcheck shell=bash

failed_steps=()
step_start=

# step NAME COMMAND... A step that fails does not keep the next one from running.
step() {
    local name=$1
    shift
    print_time_of_last_step
    printf '== %s\n' "$name"
    step_start=$SECONDS
    "$@" </dev/null || failed_steps+=("$name")
}

# Of the last step nothing is printed: its output closes with the closing lines of ctest.
print_time_of_last_step() {
    if [[ -n "$step_start" ]]; then
        printf '   %d s\n' "$((SECONDS - step_start))"
    fi
}

# The result of the whole, with a line on stderr if it is a failure.
finish_steps() {
    ((${#failed_steps[@]})) || return 0
    local list
    list=$(printf ', %s' "${failed_steps[@]}")
    echo "Failed: ${list:2}" >&2
    return 1
}
