#!/usr/bin/env bash
# Remakes the golden reports in tests/data/golden/ from the manifest there, with the batch
# program of the given build folder, or writes them into OUTPUT_FOLDER instead (the
# `generated_files` test compares such a folder with the committed one). Remake the committed
# ones only when a change of results is intended, and say why in the commit.
#
# The goldens hold the prescribed fields: prescribed_fields.py takes the likelihood estimates
# out of each report, which GoldenReportTest checks apart.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "${1:?usage: $0 BUILD_FOLDER [OUTPUT_FOLDER]}" && pwd)
out=${2:-$top/tests/data/golden}
mkdir -p "$out"
out=$(cd "$out" && pwd)
report=$(mktemp)
said=$(mktemp)
trap 'rm -f "$report" "$said"' EXIT
cd "$top"
grep -v '^#' tests/data/golden/manifest.txt | while IFS=$'\t' read -r demo arguments; do
    for confidence in 95 99 100 bonferroni; do
        # The bootstrap's intervals are taken out with the other estimates: none are drawn.
        # shellcheck disable=SC2086
        if ! "$build/bin/tavrelle-batch" "DemoFiles/$demo.gen" $arguments --seed 12345 \
            --randomisations 1000 --bootstrap 0 --confidence "$confidence" \
            --json "$report" >/dev/null 2>"$said"; then
            cat "$said" >&2  # the notes on suspect values only when the run failed
            echo "$0: the run of $demo at $confidence failed" >&2
            exit 1
        fi
        python3 tests/data/prescribed_fields.py "$report" >"$out/$demo.$confidence.json"
    done
done
echo "golden reports written to $out"
