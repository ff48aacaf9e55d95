#!/usr/bin/env bash
# Remakes the golden reports in tests/data/golden/ from the manifest there, with the batch
# program of the given build folder. Run it only when a change of results is intended, and
# say why in the commit.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "${1:?usage: $0 BUILD_FOLDER}" && pwd)
cd "$top"
grep -v '^#' tests/data/golden/manifest.txt | while IFS=$'\t' read -r demo arguments; do
    for confidence in 95 99 100 bonferroni; do
        # shellcheck disable=SC2086
        "$build/bin/tavrelle-batch" "DemoFiles/$demo.gen" $arguments --seed 12345 \
            --randomisations 1000 --confidence "$confidence" \
            --json "tests/data/golden/$demo.$confidence.json" >/dev/null
    done
done
echo "golden reports written to tests/data/golden/"
