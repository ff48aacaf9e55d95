#!/usr/bin/env bash
# Runs every fuzz target on its corpus for a while each (default 60 seconds), as CI does. The
# corpus folders grow with what the fuzzer finds; a crash leaves its input in the build folder's
# fuzz-findings/ and fails the run.
#
# Usage: tests/fuzz/run.sh BUILD_FOLDER [SECONDS]
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "$1" && pwd)
seconds=${2:-60}
findings=$build/fuzz-findings
mkdir -p "$findings"
[[ -d $build/corpus/genepop ]] || "$top/tests/fuzz/make_corpus.sh" "$build"

# target, corpus, dictionary (or none)
runs=(
    "tavrelle_fuzz_genepop genepop -"
    "tavrelle_fuzz_batch_options batch_options batch_options.dict"
    "tavrelle_fuzz_xls xls -"
    "tavrelle_fuzz_xlsx xlsx xlsx.dict"
    "tavrelle_fuzz_xlsx_parts xlsx_parts xlsx.dict"
    "tavrelle_fuzz_genepop_text genepop -"
    "tavrelle_fuzz_genalex genalex -"
    "tavrelle_fuzz_structure structure -"
    "tavrelle_fuzz_tidy tidy -"
)
failed=0
for run in "${runs[@]}"; do
    read -r target corpus dict <<<"$run"
    arguments=("$build/corpus/$corpus" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048
        -artifact_prefix="$findings/$target-" -print_final_stats=1)
    [[ $dict == - ]] || arguments+=(-dict="$top/tests/fuzz/$dict")
    log=$build/fuzz-$target.log
    if ASAN_OPTIONS=detect_leaks=1 "$build/bin/$target" "${arguments[@]}" >"$log" 2>&1; then
        echo "fuzz: $target: $(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" |
            grep -o '[0-9]*$') runs in ${seconds}s, no finding"
    else
        echo "fuzz: $target found a fault; its input is in $findings, the log in $log" >&2
        tail -n 40 "$log" >&2
        failed=1
    fi
done
exit $failed
