#!/usr/bin/env bash
# Runs the commands of README.md as it shows them, each in a folder of its own. Those of the checks themselves, ./test and
# what it calls, are left out; a command that is not known here is a failure.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
source "$root/tools/build.sh"

place=$(mktemp -d)

# The prefix was another for a while.
clean_up() {
    rm -rf "$place"
    cmake -S "$root" --preset release -DCMAKE_INSTALL_PREFIX=/usr/local >/dev/null 2>&1 || true
}
trap clean_up EXIT

# The lines of code that are commands, without what is said behind them.
commands() {
    sed -nE 's/^    ((\.\/(run|test)|cmake|tools\/)[^#]*)(#.*)?$/\1/p' "$root/README.md" | sed 's/ *$//'
}

# expect FILE...: what a command leaves behind.
expect() {
    local file
    for file in "$@"; do
        [[ -s "$file" ]] || {
            echo "there is no $file" >&2
            return 1
        }
    done
}

run_sample() {
    mkdir "$place/sample"
    (cd "$place/sample" && quietly "$place/sample.log" "$root/run" && expect out/manuscript.{pdf,html} out/manuscript-{edited.xml,edit.png,spread.png} out/manuscript-pages/page-01.png)
    (cd "$place/sample" && quietly "$place/sample.log" "$root/run")  # a second time
}

run_document() {
    mkdir "$place/document"
    cat >"$place/document/page.html" <<'END'
<!DOCTYPE html PUBLIC "-//W3C//DTD XHTML 1.0 Strict//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd">
<html xmlns="http://www.w3.org/1999/xhtml"><head><title>Two</title></head><body><h1>One &amp; two</h1><p>caf&eacute;</p></body></html>
END
    (cd "$place/document" && XML_CATALOG_FILES='' quietly "$place/document.log" "$root/run" page.html "$root/examples/html.css" && expect out/page.{pdf,html})
}

tour() {
    quietly "$place/tour.log" "$root/build/run/examples/manuscript-tour" "$root/examples/manuscript/manuscript.xml" \
        "$root/examples/manuscript/manuscript.css"
}

# The prefix is another, for the sake of who runs this.
run_cmake() {
    (cd "$root" && quietly "$place/cmake.log" bash -c "${1//\/usr\/local/$place/prefix}")
}

while read -r command; do
    echo "$command"
    case "$command" in
        './run') run_sample ;;
        './run DOCUMENT SHEET') run_document ;;
        './test' | './test --all') ;;
        'cmake --install '*) run_cmake "$command --prefix $place/prefix" && expect "$place/prefix/include/wq/wq.h" ;;
        'cmake '*) run_cmake "$command" ;;
        *)
            echo 'this command is not known here' >&2
            exit 1
            ;;
    esac
done < <(commands)
tour
