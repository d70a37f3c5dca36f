#!/usr/bin/env bash
# Installs the library into a temporary folder and builds a small program with it, once by CMake and
# once by pkg-config, the way an application would.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
consumer="$root/tests/consumer"
source "$root/tools/build.sh"

place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT

install_library() {
    build release
    quietly "$place/install.log" cmake --install "$root/build/release" --prefix "$place/wq"
}

# From here on flex's own header must not be found: ours need none.
spoil_flex_header() {
    mkdir "$place/host"
    echo '#error the header of another scanner' >"$place/host/FlexLexer.h"
    export CPLUS_INCLUDE_PATH="$place/host"
}

by_cmake() {
    quietly "$place/configure.log" cmake -G Ninja -S "$consumer" -B "$place/by-cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_PREFIX_PATH="$place/wq"
    quietly "$place/build.log" cmake --build "$place/by-cmake"
    "$place/by-cmake/consumer"
}

by_pkg_config() {
    local flags
    local -a words
    flags=$(PKG_CONFIG_PATH=$(dirname "$(find "$place/wq" -name wq.pc)") pkg-config --cflags --libs wq)
    read -ra words <<<"$flags"
    "${CXX:-c++}" "$consumer/Main.cpp" -o "$place/by-pkg-config" "${words[@]}"
    "$place/by-pkg-config"
}

install_library
spoil_flex_header
echo 'by CMake:'
by_cmake
echo 'by pkg-config:'
by_pkg_config
