#!/usr/bin/env bash
# Installs the library, static and shared, into temporary folders, moves them, and builds a small program with each, once
# by CMake and once by pkg-config, the way an application would. Then does the same with the Debian package, unpacked.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
consumer="$root/tests/consumer"
source "$root/tools/build.sh"

place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export XML_CATALOG_FILES=  # not the system's

# From here on flex's own header must not be found: ours need none.
spoil_flex_header() {
    mkdir "$place/host"
    echo '#error the header of another scanner' >"$place/host/FlexLexer.h"
    export CPLUS_INCLUDE_PATH="$place/host"
}

# install_and_move PRESET PREFIX
install_and_move() {
    build "$1"
    quietly "$place/install.log" cmake --install "$root/build/$1" --prefix "$place/elsewhere"
    mv "$place/elsewhere" "$2"
}

# run_in PREFIX PROGRAM: a program finds what belongs to a static library beside itself.
run_in() {
    mkdir -p "$1/bin"
    cp "$2" "$1/bin/consumer"
    LD_LIBRARY_PATH=$(dirname "$(find "$1" -name 'libwq.*' | head -n 1)") "$1/bin/consumer"
}

# use_by_cmake PREFIX
use_by_cmake() {
    rm -rf "$place/by-cmake"
    quietly "$place/configure.log" cmake -G Ninja -S "$consumer" -B "$place/by-cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_PREFIX_PATH="$1"
    quietly "$place/build.log" cmake --build "$place/by-cmake"
    run_in "$1" "$place/by-cmake/consumer"
}

# use_by_pkg_config PREFIX
use_by_pkg_config() {
    local flags
    local -a words
    flags=$(PKG_CONFIG_PATH=$(dirname "$(find "$1" -name wq.pc)") pkg-config --cflags --libs wq)
    read -ra words <<<"$flags"
    "${CXX:-c++}" "$consumer/Main.cpp" -o "$place/by-pkg-config" "${words[@]}"
    run_in "$1" "$place/by-pkg-config"
}

# use PREFIX WHAT
use() {
    echo "$2, by CMake:"
    use_by_cmake "$1"
    echo "$2, by pkg-config:"
    use_by_pkg_config "$1"
}

# A shared library shows its interface, and nothing of the libraries and helpers inside.
check_exports() {
    local library unwanted
    library=$(find "$1" -name 'libwq.so.*.*.*')
    [[ "$(readelf -d "$library")" == *'Library soname: [libwq.so.0.1]'* ]]
    unwanted=$(nm -DC --defined-only "$library" | cut -c20- |
        grep -vE '^(vtable for |typeinfo for |typeinfo name for |VTT for |non-virtual thunk to |guard variable for )?(WQ|NS|CSS::|wq::|wqCSSFlexLexer|FlexLexer)' |
        grep -vE '^((Default[A-Z][a-z]+Class|g?[cC]heckNode|setRegisterNode|gRegisterNode|printIDHashEntry|wqStructuredErrorFunc)\b|xml(Der|R)egisterNode|Create(Style|CSSFont)|stringRelativeToURL|standardizedFileURL)' || true)
    [[ -z "$unwanted" ]] || {
        printf 'the shared library shows:\n%s\n' "$unwanted" >&2
        return 1
    }
}

# For what else is installed here, a package that names too little would do as well.
hide_other_libraries() {
    mkdir "$place/pc"
    local name
    for name in libxml-2.0 icu-uc icu-i18n icu-data zlib liblzma; do
        cp "$(pkg-config --variable pcfiledir $name 2>/dev/null || echo /nonexistent)/$name.pc" "$place/pc" 2>/dev/null || true
    done
    export PKG_CONFIG_LIBDIR=$place/pc
}

make_package() {
    (cd "$root/build/package" && quietly "$place/cpack.log" cpack -B "$place/package")
    dpkg-deb -x "$place"/package/*.deb "$place/unpacked"
}

spoil_flex_header
install_and_move release "$place/static"
use "$place/static" 'static library'
install_and_move package "$place/shared"
use "$place/shared" 'shared library'
check_exports "$place/shared"
make_package
hide_other_libraries
use "$place/unpacked/usr" 'Debian package'
