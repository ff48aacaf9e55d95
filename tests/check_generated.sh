#!/usr/bin/env bash
# Remakes every generated file of the repository from its script into a temporary folder and
# fails, naming the file, when one differs from the committed one or is missing on either side:
# the statistical tables (tools/make_tables.py), the demo files (tools/simulate/make_demos.sh,
# tools/make_excel_demos.sh) and the golden reports (tests/data/make_golden.sh).
#
# Usage: tests/check_generated.sh BUILD_FOLDER   (with bin/tavrelle-simulate and tavrelle-batch)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:?usage: $0 BUILD_FOLDER}" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$top"

# The tables take the longest and need nothing else: they are made beside the rest.
python3 tools/make_tables.py "$work/tables" >"$work/tables.log" 2>&1 &
tables=$!
run() {
    "$@" >/dev/null || {
        echo "generated_files: $1 failed" >&2
        exit 1
    }
}
run tools/simulate/make_demos.sh "$build/bin/tavrelle-simulate" "$work/DemoFiles"
run tools/make_excel_demos.sh "$build/bin/tavrelle-batch" "$work/DemoFiles"
run tests/data/make_golden.sh "$build" "$work/golden"
if ! wait "$tables"; then
    cat "$work/tables.log" >&2
    echo "tools/make_tables.py failed" >&2
    exit 1
fi

# An .xlsx records when it was made (docProps/core.xml): its other parts are compared.
same_workbook() {
    python3 - "$1" "$2" <<'PY'
import sys, zipfile
def parts(path):
    with zipfile.ZipFile(path) as book:
        return {name: book.read(name) for name in book.namelist() if name != "docProps/core.xml"}
sys.exit(0 if parts(sys.argv[1]) == parts(sys.argv[2]) else 1)
PY
}

failed=0
compare() {  # committed folder, made folder
    local committed=$1 made=$2 name
    for name in $( (ls "$committed"; ls "$made") | sort -u); do
        case $name in manifest.txt) continue ;; esac
        if [ ! -e "$committed/$name" ] || [ ! -e "$made/$name" ]; then
            echo "generated_files: $committed/$name: not both committed and made by its script"
            failed=1
        elif [[ $name == *.xlsx ]]; then
            if ! same_workbook "$committed/$name" "$made/$name"; then
                echo "generated_files: $committed/$name differs from what its script makes"
                failed=1
            fi
        elif ! cmp -s "$committed/$name" "$made/$name"; then
            echo "generated_files: $committed/$name differs from what its script makes:"
            diff "$committed/$name" "$made/$name" | head -n 10 || true
            failed=1
        fi
    done
}
compare src/tables "$work/tables"
compare DemoFiles "$work/DemoFiles"
compare tests/data/golden "$work/golden"
if [ "$failed" = 0 ]; then echo "generated_files: every generated file matches its script"; fi
exit "$failed"
