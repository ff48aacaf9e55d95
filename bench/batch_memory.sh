#!/bin/sh
# Peak memory of tavrelle-batch, which should stay flat as populations are added (each is
# written and dropped as it finishes, in every report, the HTML study report too) and of reading
# a Genepop file and converting it, to Genepop or to .xlsx (at most 5 times its size).
#
#   bench/batch_memory.sh BUILD_DIR [GENEPOP_FILE]
#
# GENEPOP_FILE (default: a simulated study of 80 populations) is analysed at 10000
# randomisations as it is and doubled (its populations twice); then a simulated file of 10^6
# samples is read and converted, and one of its populations analysed. Prints the peak resident
# size of each run in MB. On the 2-core build machine: 80 MB read and converted at about 210 MB
# peak (810 MB before the cells were packed), one population of it analysed at about 235 MB.
# --report on 80 and 160 populations: 25 and 33 MB peak (170 and 317 MB while the page was
# kept whole until the end); a 34 MB Genepop file (60 populations of 2000 samples, 40 loci)
# converted to .xlsx: 83 MB peak, 2.4 times the file (1559 MB, 44 times, before the workbook
# was written row by row).
set -eu
build=${1:?usage: bench/batch_memory.sh BUILD_DIR [GENEPOP_FILE]}
batch=$build/bin/tavrelle-batch
simulate=$(find "$build" -name tavrelle-simulate -type f | head -n 1)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

peak() {  # peak RSS in MB of the command given
    /usr/bin/time -f %M -o "$work/rss" "$@" >/dev/null 2>"$work/err" || true
    echo $(( $(tail -n 1 "$work/rss") / 1024 ))
}

if [ $# -ge 2 ]; then
    cp "$2" "$work/study.gen"
else
    "$simulate" --seed 3 --samples 50 --populations 80 --loci 25 --out "$work/study.gen"
fi
# The same study twice over: the header once, then every population again.
{ cat "$work/study.gen"; awk '/^[Pp][Oo][Pp][[:space:]]*$/ { found = 1 } found { print }' \
    "$work/study.gen"; } > "$work/doubled.gen"

for file in study doubled; do
    pops=$(grep -ci '^pop[[:space:]]*$' "$work/$file.gen")
    echo "$file ($pops populations, $(( $(wc -c < "$work/$file.gen") / 1024 )) KB):" \
         "$(peak "$batch" "$work/$file.gen" --repeat 2 --seed 1 --randomisations 10000 \
              --json "$work/out.json" --csv "$work/out.csv") MB peak;" \
         "with --report: $(peak "$batch" "$work/$file.gen" --repeat 2 --seed 1 \
              --randomisations 1000 --bootstrap 0 --report "$work/out.html") MB peak"
done

# A Genepop file of about 30 MB converted to a workbook.
"$simulate" --seed 2 --samples 2000 --populations 60 --loci 40 --out "$work/wide.gen"
size=$(( $(wc -c < "$work/wide.gen") / 1048576 ))
echo "converting a $size MB Genepop file to .xlsx:" \
     "$(peak "$batch" convert "$work/wide.gen" "$work/wide.xlsx") MB peak"

# 100 populations of 10^4: a population holds at most 32766 samples.
"$simulate" --seed 1 --samples 10000 --populations 100 --loci 10 --out "$work/big.gen"
size=$(( $(wc -c < "$work/big.gen") / 1048576 ))
echo "reading a 10^6-sample file ($size MB) and writing it back:" \
     "$(peak "$batch" convert "$work/big.gen" "$work/copy.gen") MB peak"
echo "analysing population 1 of it:" \
     "$(peak "$batch" "$work/big.gen" --population 1 --repeat 2 --seed 1 --randomisations 1000 \
          --json "$work/out.json") MB peak"
