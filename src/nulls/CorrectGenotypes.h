#pragma once

#include <array>
#include <vector>

#include "nulls/NullAlleleEstimates.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// A genotype of the adjusted list: a null allele is written as size 0.
struct AdjustedGenotype {
    Int16 low = 0;
    Int16 high = 0;

    bool operator==(const AdjustedGenotype&) const = default;
};
using AdjustedGenotypeList = std::vector<AdjustedGenotype>;

// The sorted genotypes of a locus rewritten for one method: for each class with a count c, the
// window of c rows that starts at the class's first row turns its homozygotes (low, low) into
// (low, 0). The window counts rows, not homozygotes: it runs on over the class's heterozygotes,
// which stay as they are, and into later classes, whose homozygotes it converts too.
AdjustedGenotypeList CorrectGenotypes(const GenotypeSet& sortedGenotypes,
                                      const std::vector<AdjustedCountRow>& adjustedCounts,
                                      int method);

// The four methods' lists of a locus, by NullMethod.
std::array<AdjustedGenotypeList, 4> CorrectGenotypesForAllMethods(
    const GenotypeSet& sortedGenotypes, const std::vector<AdjustedCountRow>& adjustedCounts);

}  // namespace tavrelle
