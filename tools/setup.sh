# Installs what packages.txt lists. To be sourced.
# shellcheck shell=bash

package_list="$(dirname "${BASH_SOURCE[0]}")/../packages.txt"

# packages_of SECTION... prints the packages of the sections, one a line.
packages_of() {
    awk -v wanted=" $* " '
        { sub(/#.*/, "") }
        /^\[/ { section = substr($1, 2, length($1) - 2); next }
        NF && index(wanted, " " section " ") { print $1 }' "$package_list"
}

is_installed() {
    [[ "$(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null)" == ?i* ]]
}

as_root() {
    if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@"
}

# install_packages SECTION... installs the packages of the sections that are missing, and says
# nothing when none is. What it says goes to stderr.
install_packages() {
    local package log
    local -a missing=()
    while read -r package; do
        is_installed "$package" || missing+=("$package")
    done < <(packages_of "$@")
    ((${#missing[@]})) || return 0

    if ! command -v apt-get >/dev/null; then
        echo "These packages are missing, and there is no apt-get to install them: ${missing[*]}" >&2
        return 1
    fi
    echo "Installing ${missing[*]}" >&2
    log=$(mktemp)
    if ! { apt_get update && apt_get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        rm -f "$log"
        echo "apt-get could not install ${missing[*]}" >&2
        return 1
    fi
    rm -f "$log"
}
