#!/usr/bin/env bash
# Builds the benchmarks and runs them:
#   tools/bench.sh [GOOGLE BENCHMARK ARGUMENT...]
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
source "$root/tools/setup.sh"
source "$root/tools/build.sh"

install_packages build bench
build bench
for program in "$root"/build/bench/bench/Bench*; do
    if [[ -x "$program" && -f "$program" ]]; then "$program" "$@"; fi
done
