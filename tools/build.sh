# Configures and builds the presets of CMakePresets.json. To be sourced.
# shellcheck shell=bash

source_folder="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

# quietly LOG COMMAND... shows the command's output only if it fails, on stderr.
quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 </dev/null && return
    cat "$log" >&2
    return 1
}

# Where a build folder stands, ninja itself sees to it that CMake runs again; except for the presets.
is_configured() {
    [[ "$source_folder/build/$1/build.ninja" -nt "$source_folder/CMakePresets.json" ]]
}

configure() {
    is_configured "$1" || quietly "$source_folder/build/$1/configure.log" cmake -S "$source_folder" --preset "$1"
}

# build PRESET [TARGET...] configures where needed and builds into build/PRESET. On a terminal it
# shows ninja's progress, elsewhere nothing but the log of a build that failed.
build() {
    local preset=$1
    shift
    configure "$preset" || return
    local -a command=(cmake --build "$source_folder/build/$preset")
    if (($#)); then command+=(--target "$@"); fi
    if [[ -t 2 ]]; then
        "${command[@]}" >&2
    else
        quietly "$source_folder/build/$preset/build.log" "${command[@]}"
    fi
}
