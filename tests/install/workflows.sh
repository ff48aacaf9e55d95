#!/usr/bin/env bash
# The workflows of docs/workflows.md on two demo files and two seeds: the Slurm job array as a
# loop over SLURM_ARRAY_TASK_ID, then the Snakemake workflow. Both must give a merged table with
# one header and every row of the tables they merged.
#
# Usage: workflows.sh SOURCE_FOLDER BATCH_PROGRAM slurm|snakemake
set -euo pipefail
source=$1
batch=$2
kind=$3
workflows=$source/docs/workflows
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
    echo "workflows ($kind): $*" >&2
    exit 1
}
files=("$source/DemoFiles/DemoNullAlleles.gen" "$source/DemoFiles/DemoThreePopulations.xlsx")
cd "$scratch"

case $kind in
slurm)
    printf '%s\n' "${files[@]}" >files.txt
    for task in 0 1 2 3; do
        SLURM_ARRAY_TASK_ID=$task TAVRELLE_SEEDS="1 2" TAVRELLE_BATCH=$batch \
            bash "$workflows/tavrelle-array.sbatch"
    done
    # A task beyond files times seeds is refused, not run on a wrong file.
    if SLURM_ARRAY_TASK_ID=4 TAVRELLE_SEEDS="1 2" TAVRELLE_BATCH=$batch \
        bash "$workflows/tavrelle-array.sbatch" 2>/dev/null; then
        fail "task 4 of 4 ran"
    fi
    "$workflows/merge-csv.sh" results/merged.csv results/*/seed*.csv
    ;;
snakemake)
    snakemake -s "$workflows/Snakefile" --cores 2 --quiet \
        --config files="$(IFS=,; echo "${files[*]}")" seeds=1,2 batch="$batch" \
        >snakemake.log 2>&1 || { cat snakemake.log >&2; fail "snakemake failed"; }
    ;;
*) fail "unknown kind $kind" ;;
esac

tables=(results/*/seed*.csv)
((${#tables[@]} == 4)) || fail "expected 4 tables, found ${#tables[@]}"
for report in results/*/seed*.json; do
    grep -q '"populations"' "$report" || fail "$report is no report"
done
# One header, then every data row of every table, in order.
rows=0
for table in "${tables[@]}"; do
    cmp -s <(head -n1 "$table") <(head -n1 "${tables[0]}") || fail "$table has another header"
    rows=$((rows + $(wc -l <"$table") - 1))
done
merged=results/merged.csv
(($(wc -l <"$merged") == rows + 1)) || fail "merged.csv has $(wc -l <"$merged") lines, not $((rows + 1))"
((rows > 0)) || fail "the tables hold no rows"
(($(grep -cxF "$(head -n1 "${tables[0]}")" "$merged") == 1)) || fail "merged.csv repeats its header"
cmp -s <(head -n1 "$merged") <(head -n1 "${tables[0]}") || fail "merged.csv lost its header"
echo "workflows ($kind): 2 files x 2 seeds merged into $rows rows"
