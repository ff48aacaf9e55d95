#!/bin/sh
# Regenerates Tavrelle's demo data sets with tavrelle-simulate. The files are deterministic: run
# again with the same program and they come out byte for byte the same. docs/simulator.md lists
# what each file holds (which locus has a null allele, stutter or drop-out, and at which rate).
#
# Usage: tools/simulate/make_demos.sh PATH/TO/tavrelle-simulate [OUTPUT_DIRECTORY]
# The output directory defaults to DemoFiles/ at the top of the repository.

set -eu

if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: $0 PATH/TO/tavrelle-simulate [OUTPUT_DIRECTORY]" >&2
    exit 2
fi
simulate=$1
if [ ! -x "$simulate" ]; then
    echo "$0: '$simulate' is not an executable program" >&2
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
out=${2:-$here/../../DemoFiles}
mkdir -p "$out"
out=$(cd "$out" && pwd)

# One population of 80; null alleles at Tav107 (0.25) and Tav131 (0.15), stutter at Tav122,
# large allele drop-out at Tav140, the other four loci clean; 1% missing genotypes everywhere.
"$simulate" --seed 1218 --samples 80 --names coded \
    --locus "Tav101:repeat=2,alleles=10,base=112" \
    --locus "Tav107:repeat=2,alleles=12,base=150,null=0.25" \
    --locus "Tav114:repeat=4,alleles=8,base=210" \
    --locus "Tav122:repeat=2,alleles=9,base=96,stutter=0.6" \
    --locus "Tav131:repeat=3,alleles=7,base=180,null=0.15" \
    --locus "Tav140:repeat=4,alleles=11,base=250,dropout=0.6" \
    --locus "Tav152:repeat=2,alleles=13,base=300" \
    --locus "Tav163:repeat=2,alleles=8,base=130" \
    --default missing=0.01 \
    --out "$out/DemoNullAlleles.gen"

# Three populations of 45, 52 and 60 with clearly different allele frequencies; a null allele
# (0.2) at Tav218 only; 2% missing genotypes everywhere.
"$simulate" --seed 2302 --samples 45,52,60 --differentiation 0.5 --names numbered \
    --locus "Tav205:repeat=2,alleles=11,base=128" \
    --locus "Tav211:repeat=4,alleles=9,base=232" \
    --locus "Tav218:repeat=2,alleles=8,base=94,null=0.2" \
    --locus "Tav226:repeat=3,alleles=10,base=171" \
    --locus "Tav233:repeat=2,alleles=14,base=276" \
    --locus "Tav241:repeat=4,alleles=7,base=340" \
    --default missing=0.02 \
    --out "$out/DemoThreePopulations.gen"

# One population of 120, dinucleotide and tetranucleotide loci; strong stutter at two
# dinucleotides (Tav302 keeps the larger allele, Tav320 the smaller) and strong large allele
# drop-out at two wide tetranucleotides; 1% missing genotypes everywhere.
"$simulate" --seed 3403 --samples 120 --names coded \
    --locus "Tav302:repeat=2,alleles=12,base=102,stutter=0.5" \
    --locus "Tav309:repeat=4,alleles=12,base=180,dropout=0.7" \
    --locus "Tav315:repeat=2,alleles=10,base=144" \
    --locus "Tav320:repeat=2,alleles=9,base=222,stutter=0.4,stutter_keep=smaller" \
    --locus "Tav327:repeat=4,alleles=14,base=300,dropout=0.8" \
    --locus "Tav334:repeat=4,alleles=8,base=122" \
    --default missing=0.01 \
    --out "$out/DemoStutterDropout.gen"

# A clean control: two populations of 50, ten loci with sizes, repeats and frequencies drawn
# from the seed; no null alleles, stutter, drop-out or missing genotypes.
"$simulate" --seed 4504 --samples 50 --populations 2 --loci 10 --names coded \
    --out "$out/DemoClean.gen"

echo "demo files written to $out"
