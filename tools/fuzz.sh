# Runs fuzz targets that are built. To be sourced, in the root of the tree.
# shellcheck shell=bash

# dictionary_of NAME prints the file of words that the inputs of a target are made of, if there is one.
dictionary_of() {
    case "$1" in
        document | markup | stream) echo fuzz/dictionaries/xml.dict ;;
        scanner | declarations | sheet | cascade) echo fuzz/dictionaries/css.dict ;;
    esac
}

# fuzz_for NAME SECONDS FOLDER: from the kept corpus, with the target's dictionary. New inputs go into the folder, failures
# into build/fuzz/findings. Prints how many inputs were tried; what failed goes to stderr.
fuzz_for() {
    local name=$1 seconds=$2 folder=$3 log=build/fuzz/fuzz_$1.log
    local -a arguments=(-max_total_time="$seconds" -print_final_stats=1 -close_fd_mask=3 -artifact_prefix="build/fuzz/findings/$name-")
    local dictionary
    dictionary=$(dictionary_of "$name")
    if [[ -n "$dictionary" ]]; then arguments+=(-dict="$dictionary"); fi
    mkdir -p build/fuzz/findings
    if ! "build/fuzz/fuzz/fuzz_$name" "${arguments[@]}" "$folder" "fuzz/corpus/$name" >"$log" 2>&1; then
        tail -n 100 "$log" >&2
        return 1
    fi
    grep -E 'number_of_executed_units|new_units_added' "$log"
}
