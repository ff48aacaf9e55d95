#!/usr/bin/env bash
# cmake --install into a fresh prefix, then the installed batch program, started from another
# folder and through a link elsewhere, analyses an installed demo file: it must find its tables
# in ../share/tavrelle, since nothing lies beside it.
#
# Usage: install-tree.sh BUILD_FOLDER
set -euo pipefail
build=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix

cmake --install "$build" --prefix "$prefix" >"$scratch/install.log"

fail() {
    echo "install-tree: $*" >&2
    exit 1
}
share=$prefix/share/tavrelle
expected=(
    bin/tavrelle-batch bin/tavrelle-simulate
    share/tavrelle/ChiSquareTable.txt share/tavrelle/NormalCurveTable.txt
    share/tavrelle/RankCorrelationTable.txt
    share/tavrelle/DemoFiles/DemoNullAlleles.gen share/tavrelle/DemoFiles/DemoThreePopulations.xlsx
    bin/tavrelle-merge-csv share/man/man1/tavrelle-batch.1.gz share/man/man1/tavrelle-simulate.1.gz
    share/man/man1/tavrelle-merge-csv.1.gz share/doc/tavrelle/copyright
    share/doc/tavrelle/changelog.gz share/doc/tavrelle/CITATION.cff
    share/tavrelle/workflows/Snakefile
)
if [[ -e $build/bin/tavrelle ]]; then
    expected+=(
        bin/tavrelle share/tavrelle/TavrelleHelp share/tavrelle/User_Guide.pdf
        share/applications/org.tavrelle.Tavrelle.desktop share/mime/packages/tavrelle.xml
        share/man/man1/tavrelle.1.gz
        share/metainfo/org.tavrelle.Tavrelle.metainfo.xml
        share/icons/hicolor/48x48/apps/org.tavrelle.Tavrelle.png
        share/icons/hicolor/scalable/apps/org.tavrelle.Tavrelle.svg
    )
fi
for path in "${expected[@]}"; do
    [[ -e $prefix/$path ]] || fail "missing from the installed tree: $path"
done
leftovers=$(find "$prefix/bin" -type f ! -name 'tavrelle*')
[[ -z $leftovers ]] || fail "bin/ holds more than the programs: $leftovers"
# The scripts are run, so they keep their run bits.
for script in bin/tavrelle-merge-csv share/tavrelle/workflows/merge-csv.sh \
    share/tavrelle/workflows/tavrelle-array.sbatch; do
    [[ -x $prefix/$script ]] || fail "$script lost its run bit"
done

# From another folder, and through a link in a third one.
mkdir -p "$scratch/work" "$scratch/links"
ln -s "$prefix/bin/tavrelle-batch" "$scratch/links/tavrelle-batch"
cd "$scratch/work"
for batch in "$prefix/bin/tavrelle-batch" "$scratch/links/tavrelle-batch"; do
    status=0
    "$batch" "$share/DemoFiles/DemoNullAlleles.gen" --repeat 2 --seed 1 --on-suspect proceed \
        --json report.json --csv loci.csv >report.txt 2>errors.txt || status=$?
    if ((status != 0)); then
        cat errors.txt >&2
        fail "$batch ended with status $status"
    fi
    grep -q '"populations"' report.json || fail "$batch wrote no JSON report"
    [[ -s report.txt ]] || fail "$batch wrote no text report"
    # Rows of loci come only from an analysis, which reads the tables.
    (($(wc -l <loci.csv) > 1)) || fail "$batch analysed no population: $(cat errors.txt report.txt)"
done
echo "install-tree: installed into a fresh prefix; the installed batch program found its tables"
