#pragma once

#include <string>
#include <vector>

#include "analysis/ClassBinomialTest.h"
#include "analysis/ConfidenceBounds.h"
#include "analysis/GenotypeSet.h"
#include "analysis/LocusDecisions.h"
#include "analysis/RoundMatrix.h"
#include "nulls/CorrectGenotypes.h"
#include "nulls/NullAlleleEstimates.h"
#include "nulls/SortedGenotypes.h"

namespace tavrelle {

// Everything a run finds at one locus; the graphs and reports read it.
struct LocusResult {
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
    BinomialOutcome binomial;

    // The verdict texts: the probability table, the interpretation, and "yes" or "no".
    std::string probabilityText;
    std::string interpretationText;
    std::string nullPresent;
    bool nullSuspected = false;

    PreparedGenotypes prepared;  // genotypes by low, then high allele
    NullAlleleEstimates nulls;
    // By NullMethod; filled only when some locus of the population shows a null allele.
    std::array<AdjustedGenotypeList, 4> adjustedGenotypes;

    Int16 Scored() const { return static_cast<Int16>(genotypes.size()); }
};

}  // namespace tavrelle
