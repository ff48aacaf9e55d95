#!/bin/sh
# Seeds for the fuzz targets: the demo files as .xls and .xlsx written by tavrelle-batch, small
# sheets written by xlwt and by hand (tests/data/excel/workbook_tool.py), the demo Genepop files
# and small ones at the reader's edges, and the command lines of tavrelle-batch's help.
#
# Usage: tests/fuzz/make_corpus.sh BUILD_FOLDER
# Writes BUILD_FOLDER/corpus/xls, corpus/xlsx, corpus/xlsx_parts (the workbook, shared strings
# and sheet XML of each .xlsx seed, parted by "|||"), corpus/genepop and corpus/batch_options
# (arguments parted by NUL bytes).
set -eu
if [ $# -ne 1 ]; then
    echo "usage: $0 BUILD_FOLDER" >&2
    exit 2
fi
top=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "$1" && pwd)
batch=$build/bin/tavrelle-batch
if [ ! -x "$batch" ]; then
    cmake --build "$build" --target tavrelle-batch
fi
tool=$top/tests/data/excel/workbook_tool.py
python=/usr/bin/python3
[ -x "$python" ] || python=python3
mkdir -p "$build/corpus/xls" "$build/corpus/xlsx" "$build/corpus/xlsx_parts" \
    "$build/corpus/genepop" "$build/corpus/batch_options" "$build/corpus/genalex" \
    "$build/corpus/structure" "$build/corpus/tidy"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for demo in "$top"/DemoFiles/*.gen; do
    name=$(basename "$demo" .gen)
    "$batch" convert "$demo" "$build/corpus/xls/$name.xls" >/dev/null
    "$batch" convert "$demo" "$build/corpus/xlsx/$name.xlsx" >/dev/null
    cp "$demo" "$build/corpus/genepop/$name.gen"
    "$batch" convert "$demo" "$build/corpus/genalex/$name.csv" --to genalex >/dev/null
    "$batch" convert "$demo" "$build/corpus/structure/$name.str" --to structure >/dev/null
    "$batch" convert "$demo" "$build/corpus/tidy/$name.csv" --to tidy >/dev/null
done
# The other forms each reader takes: one-row STRUCTURE with and without populations, the wide
# tidy table, GenAlEx with semicolons and a count row that disagrees.
printf 's1 1 100 102 -9 98\ns2 2 100 100 98 98\n' >"$build/corpus/structure/onerow.str"
printf 'A B\ns1 100 -9\ns1 102 98\n' >"$build/corpus/structure/names.str"
printf 'sample,population,A_a,A_b\ns1,P,100,NA\n"s,2",Q,0,102\n' >"$build/corpus/tidy/wide.csv"
printf '1;3;1;2\nT;;;P\nInd;Pop;A;\na;P;100;102\nb;Q;;98\n' >"$build/corpus/genalex/semi.csv"

# Genepop at the edges: locus names one a line or comma separated, two- and three-digit alleles,
# missing alleles, "POP" in other cases, blank and short lines, CR LF endings, no final newline.
printf 'Title\nL1\nL2\nPop\na1 , 102104 098098\na2, 000102 104104\npop\nb1 , 0102 0000\n' \
    >"$build/corpus/genepop/lines.gen"
printf 'Title\r\nL1, L2, L3\r\nPOP\r\nx ,102102 104106 000000\r\n\r\nPoP\r\ny,  98 100' \
    >"$build/corpus/genepop/commas.gen"
printf 'T\nA\nPop\n,\n s ,  \nPop\nPop\n' >"$build/corpus/genepop/empty.gen"

# Command lines: the help's examples and every option with a value at its edges.
options() {
    printf '%s\0' "$@" | head -c -1 >"$build/corpus/batch_options/$1-$#-$(printf '%s' "$*" | cksum | cut -d' ' -f1)"
}
options DemoNullAlleles.gen --repeat 2 --seed 12345 --json report.json
options DemoThreePopulations.xlsx --repeat 2 --seed 7 --csv loci.csv
options samples.xls --sheet Run2 --repeat 2 --on-suspect omit
options convert DemoNullAlleles.gen DemoNullAlleles.xls
options convert field.xlsx field.gen --sheet Sheet2 --accept-numeric-names
options in.gen --repeat Loc3=4 --repeat "Loc 7=3" --randomisations 10000 --confidence bonferroni
options in.gen --repeat 6 --population 1,3-5 --threads 2 --max-allele-size 700 --confidence 99
options in.gen --repeat 1 --seed 0 --on-suspect proceed --json - --csv out.csv
options - --repeat 2 --repeats motifs.tsv --version
options --help

cat >"$scratch/small.json" <<'DESCRIPTION'
{"sheets": [{"name": "Sheet1", "cells": [[0, 0, "Population"], [1, 1, "L1"], [1, 3, 2],
  [2, 0, "a"], [2, 1, 102], [2, 2, "*"], [2, 3, "098"], [2, 4, null],
  [3, 0, "pop"], [4, 0, 12], [4, 1, 1.5], [4, 2, true], [4, 3, "  "], [4, 4, -3]]},
  {"name": "Other", "cells": [[0, 0, "x"]]}]}
DESCRIPTION
cat >"$scratch/numeric.json" <<'DESCRIPTION'
{"sheets": [{"name": "Sheet1", "cells": [[0, 0, "P"], [1, 1, 1], [1, 3, 2], [2, 0, "a"],
  [2, 1, 100], [2, 2, 102], [2, 3, 104], [2, 4, 106], [3, 0, "Pop"]]}]}
DESCRIPTION
"$python" "$tool" make "$build/corpus/xls/small.xls" "$scratch/small.json"
"$python" "$tool" make "$build/corpus/xls/numeric.xls" "$scratch/numeric.json"
"$python" "$tool" make "$build/corpus/xlsx/small.xlsx" "$scratch/small.json"
"$python" "$tool" make "$build/corpus/xlsx/numeric.xlsx" "$scratch/numeric.json"
"$python" - "$build/corpus/xlsx" "$build/corpus/xlsx_parts" <<'PARTS'
import os, sys, zipfile
source, target = sys.argv[1], sys.argv[2]
# Units the fuzzer added to the folder may be damaged packages: only whole ones give seeds.
for name in sorted(os.listdir(source)):
    try:
        with zipfile.ZipFile(os.path.join(source, name)) as package:
            parts = [package.read(part) for part in
                     ("xl/workbook.xml", "xl/sharedStrings.xml", "xl/worksheets/sheet1.xml")]
    except Exception:
        continue
    with open(os.path.join(target, name + ".parts"), "wb") as out:
        out.write(b"|||".join(parts))
PARTS
echo "corpus written to $build/corpus"
