#!/usr/bin/env bash
# Compares what the engine makes of the corpora of its fuzz targets with hard assertions and without: whatever does not end the
# process with them must be the same without. Besides the kept inputs, those that fuzzing has found on this machine.
set -euo pipefail

root="$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")"
cd "$root"
source tools/build.sh

export ASAN_OPTIONS=detect_leaks=0:handle_abort=0
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

build asan report
build noassert report
for kind in scanner declarations sheet cascade; do
    inputs=$folder/$kind
    mkdir "$inputs"
    for corpus in fuzz/corpus build/fuzz/found build/fuzz/latest; do
        if [[ -d "$corpus/$kind" ]]; then find "$corpus/$kind" -type f -exec cp -t "$inputs" {} +; fi
    done
    for preset in asan noassert; do
        "build/$preset/fuzz/report" "$kind" "$inputs" >"$folder/$preset"
    done
    python3 tools/compare-reports.py "$kind" "$folder/asan" "$folder/noassert"
done
