#pragma once

#include <array>
#include <string>
#include <vector>

#include "analysis/RoundMatrix.h"
#include "analysis/StatisticalTables.h"
#include "base/CountWidth.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// Per allele class: size, binomial probability, its natural logarithm, randomisation probability.
using ClassProbability = std::array<double, 4>;

// What the homozygote class test leaves for a locus. The label and the significance keep what
// they held when no class contributes to the combined probability.
struct BinomialOutcome {
    std::vector<ClassProbability> classProbabilities;
    std::string combinedProbabilityLabel;
    bool combinedSignificant = false;
    std::string binomialNote;
    // Observed homozygotes, expected homozygotes, chi-square of the two; `totalsComputed` tells
    // how many of the three were computed (0, 2 or 3).
    std::array<double, 3> homozygoteTotals{};
    int totalsComputed = 0;
    // The arithmetic left the range of the numbers: too many samples for this test.
    bool overflowed = false;
};

// n! in doubles; 1 below 2. Overflow from 171 on.
double Factorial(Int16 n);

// Binomial and randomisation probabilities of the observed homozygotes of each allele class,
// their combination by Fisher's method, and the homozygote totals. `sortedAlleles` holds both
// alleles of every valid genotype, ascending; `rounds` the sorted homozygote round matrix.
// An overflow ends the class loop early with `overflowed` set; the caller reports it. The copies
// of an allele are counted in `width`.
void ClassBinomialTest(const CountArray& observedHomozygotes,
                       const std::vector<Int16>& sortedAlleles, const RoundMatrix& rounds,
                       const ChiSquareTable& chiTable, BinomialOutcome& outcome,
                       CountWidth width = CountWidth::Bits16);

}  // namespace tavrelle
