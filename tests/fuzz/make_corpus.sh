#!/bin/sh
# Seeds for the workbook fuzz targets: the demo files as .xls and .xlsx written by tavrelle-batch,
# and small sheets written by xlwt and by hand (tests/data/excel/workbook_tool.py).
#
# Usage: tests/fuzz/make_corpus.sh BUILD_FOLDER
# Writes BUILD_FOLDER/corpus/xls, corpus/xlsx and corpus/xlsx_parts (the workbook, shared strings
# and sheet XML of each .xlsx seed, parted by "|||").
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
mkdir -p "$build/corpus/xls" "$build/corpus/xlsx" "$build/corpus/xlsx_parts"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for demo in "$top"/DemoFiles/*.gen; do
    name=$(basename "$demo" .gen)
    "$batch" convert "$demo" "$build/corpus/xls/$name.xls" >/dev/null
    "$batch" convert "$demo" "$build/corpus/xlsx/$name.xlsx" >/dev/null
done

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
