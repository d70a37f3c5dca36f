#!/usr/bin/env bash
# Writes the reference of the public headers to build/reference/html. A public declaration without a comment, and
# whatever else Doxygen warns of, is a failure.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
mkdir -p build/reference
log=build/reference/doxygen.log
doxygen docs/Doxyfile >"$log" 2>&1
if grep 'warning: ' "$log" | sort -u >build/reference/warnings.log; then
    cat build/reference/warnings.log >&2
    exit 1
fi
echo "build/reference/html/index.html"
