#!/bin/sh
# Remakes the Excel demo workbooks from the Genepop demos with tavrelle-batch convert, so that
# they hold exactly the same populations, loci, names and genotypes (a workbook keeps no title).
# The .xls files come out byte for byte the same every time; an .xlsx records when it was made.
#
# Usage: tools/make_excel_demos.sh PATH/TO/tavrelle-batch [DEMO_DIRECTORY]
# The demo directory defaults to DemoFiles/ at the top of the repository.

set -eu

if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: $0 PATH/TO/tavrelle-batch [DEMO_DIRECTORY]" >&2
    exit 2
fi
batch=$1
if [ ! -x "$batch" ]; then
    echo "$0: '$batch' is not an executable program" >&2
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
demos=${2:-$here/../DemoFiles}
demos=$(cd "$demos" && pwd)

"$batch" convert "$demos/DemoNullAlleles.gen" "$demos/DemoNullAlleles.xls"
"$batch" convert "$demos/DemoThreePopulations.gen" "$demos/DemoThreePopulations.xlsx"
