#pragma once

#include <array>
#include <string>

#include "analysis/LocusTestResult.h"
#include "nulls/CorrectGenotypes.h"
#include "nulls/NullAlleleEstimates.h"
#include "nulls/SortedGenotypes.h"

namespace tavrelle {

// Everything a run finds at one locus: the tests, their verdicts and the null allele estimates;
// the graphs and reports read it.
struct LocusResult : LocusTestResult {
    // The verdict texts: the probability table, the interpretation, and "yes" or "no".
    std::string probabilityText;
    std::string interpretationText;
    std::string nullPresent;
    bool nullSuspected = false;

    PreparedGenotypes prepared;  // genotypes by low, then high allele
    NullAlleleEstimates nulls;
    // By NullMethod; filled only when some locus of the population shows a null allele.
    std::array<AdjustedGenotypeList, 4> adjustedGenotypes;
};

}  // namespace tavrelle
