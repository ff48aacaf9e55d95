#pragma once

#include <string>
#include <vector>

#include "analysis/ClassBinomialTest.h"
#include "analysis/ConfidenceBounds.h"
#include "analysis/LocusDecisions.h"
#include "analysis/RoundMatrix.h"
#include "analysis/VerdictFractions.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// What the randomisation tests find at one locus: the observed and random counts, their bounds
// and the decisions drawn from them. The verdicts and graphs read this alone.
struct LocusTestResult {
    Int16 index = 0;
    std::string name;
    Int16 repeat = 0;
    Int16 lowest = 0;  // allele size of homozygote class 0
    Int16 highest = 0;
    Int16 range = 0;             // highest - lowest: the last class of every count array
    Int16 missingGenotypes = 0;  // both alleles missing
    GenotypeSet genotypes;       // the scored individuals, in sample order
    std::vector<Int16> sortedAlleles;

    CountArray observedHomozygotes;  // by allele size above the lowest
    CountArray observedDifferences;  // by size difference
    std::vector<double> meanHomozygotes;
    std::vector<double> meanDifferences;
    RoundMatrix randomHomozygotes;  // each class's counts over the rounds, ascending
    RoundMatrix randomDifferences;

    BoundsTable homozygoteBounds;
    BoundsTable differenceBounds;
    LocusDecisions decisions;
    VerdictFractions verdictFractions;  // how near each verdict stands to turning
    BinomialOutcome binomial;

    Int16 Scored() const { return static_cast<Int16>(genotypes.size()); }
};

}  // namespace tavrelle
