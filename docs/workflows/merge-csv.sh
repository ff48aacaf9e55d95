#!/bin/sh
# Concatenates the CSV tables of tavrelle-batch into one, keeping the first file's header and
# dropping the header line of every other file. It looks at no column, so it holds whatever
# columns the tables have, as long as they all have the same.
#
# Usage: merge-csv.sh OUT.csv IN.csv...
set -eu
if [ $# -lt 2 ]; then
    echo "usage: $0 OUT.csv IN.csv..." >&2
    exit 2
fi
out=$1
shift
awk 'FNR == 1 && NR != 1 { next } { print }' "$@" >"$out.part"
mv "$out.part" "$out"
