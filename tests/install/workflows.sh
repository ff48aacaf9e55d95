#!/usr/bin/env bash
# The workflows of docs/workflows.md on data shaped as real studies are: a file with a population
# that stops (three samples, too few to analyse: exit status 3), a workbook, and two files whose
# names share a stem. The Slurm job array runs as a loop over SLURM_ARRAY_TASK_ID and its merge
# step; then the Snakemake workflow. Both must give a merged table with one header, every row of
# the tables they merged and the stopped population's reason, and both must refuse the two
# files of the same stem, naming both.
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
cd "$scratch"
mkdir -p data/a data/b
# Three populations of a demo file and a fourth of three samples taken from it.
cp "$source/DemoFiles/DemoThreePopulations.gen" data/stopped.gen
{
    echo Pop
    tail -n 3 "$source/DemoFiles/DemoThreePopulations.gen" | sed 's/^pop3_/pop4_/'
} >>data/stopped.gen
cp "$source/DemoFiles/DemoNullAlleles.gen" data/a/pop.gen
cp "$source/DemoFiles/DemoNullAlleles.gen" data/b/pop.gen
files=(data/stopped.gen "$source/DemoFiles/DemoThreePopulations.xlsx" data/a/pop.gen)
colliding=(data/a/pop.gen data/b/pop.gen)
# A merge program on the PATH, as the package installs it.
mkdir bin
cp "$workflows/merge-csv.sh" bin/tavrelle-merge-csv
export PATH=$scratch/bin:$PATH

names_both() {
    grep -qF data/a/pop.gen "$1" && grep -qF data/b/pop.gen "$1"
}

case $kind in
slurm)
    run_array() {
        local task=0 tasks=$(($(wc -l <files.txt) * 2))
        for ((task = 0; task < tasks; ++task)); do
            SLURM_ARRAY_TASK_ID=$task TAVRELLE_SEEDS="1 2" TAVRELLE_BATCH=$batch \
                bash "$workflows/tavrelle-array.sbatch" 2>>array.log || true
        done
        TAVRELLE_SEEDS="1 2" bash "$workflows/tavrelle-array.sbatch" merge 2>merge.log
    }
    printf '%s\n' "${colliding[@]}" >files.txt
    if SLURM_ARRAY_TASK_ID=0 TAVRELLE_SEEDS="1 2" TAVRELLE_BATCH=$batch \
        bash "$workflows/tavrelle-array.sbatch" 2>collide.log; then
        fail "two files of the same stem ran"
    fi
    names_both collide.log || fail "the refusal does not name both files: $(cat collide.log)"

    # A task that fails (a file that is not there) fails the merge, which names it and still
    # merges the rest.
    printf '%s\n' "${files[@]}" data/missing.gen >files.txt
    if run_array; then fail "the merge passed over a failed task"; fi
    grep -qF "data/missing.gen, seed 1: 1" merge.log || fail "the merge did not name the failed task"
    rm -rf results
    printf '%s\n' "${files[@]}" >files.txt
    # A task beyond files times seeds is refused, not run on a wrong file.
    if SLURM_ARRAY_TASK_ID=6 TAVRELLE_SEEDS="1 2" TAVRELLE_BATCH=$batch \
        bash "$workflows/tavrelle-array.sbatch" 2>/dev/null; then
        fail "task 6 of 6 ran"
    fi
    run_array || { cat array.log merge.log >&2; fail "the job array or its merge failed"; }
    ;;
snakemake)
    run_snakemake() {
        snakemake -s "$workflows/Snakefile" --cores 2 --quiet \
            --config files="$(IFS=,; echo "$*")" seeds=1,2 batch="$batch"
    }
    if run_snakemake "${colliding[@]}" >collide.log 2>&1; then
        fail "two files of the same stem ran"
    fi
    names_both collide.log || fail "the refusal does not name both files: $(cat collide.log)"
    run_snakemake "${files[@]}" >snakemake.log 2>&1 || { cat snakemake.log >&2; fail "snakemake failed"; }
    ;;
*) fail "unknown kind $kind" ;;
esac

tables=(results/*/seed*.csv)
((${#tables[@]} == 6)) || fail "expected 6 tables, found ${#tables[@]}"
for report in results/*/seed*.json; do
    grep -q '"populations"' "$report" || fail "$report is no report"
done
grep -q 'population 4 (pop4_058).*not analysed' results/stopped/seed1.log ||
    fail "the log of the stopped population does not say so"
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
(($(grep -c ',stopped,Insufficient' "$merged") == 2)) ||
    fail "merged.csv lacks the stopped population's reason at both seeds"
echo "workflows ($kind): 3 files x 2 seeds merged into $rows rows, a stopped population kept"
