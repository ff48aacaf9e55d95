#pragma once

#include <string>
#include <vector>

#include "population/Table.h"

namespace tavrelle {

// A genotype with one allele scored and the other missing: the run leaves it out (only whole
// genotypes are paired), so the check lists it on its own.
struct HalfMissingGenotype {
    std::string sample;
    std::string locus;
    std::string allele;  // the allele present, as the cell holds it

    bool operator==(const HalfMissingGenotype&) const = default;
};

// The half-missing genotypes of a population in the store's layout (rsAlleleData), in sample
// then locus order. A missing allele is an empty cell or a whole number 0 ("0", "000"); the
// other must hold a whole number above 0.
std::vector<HalfMissingGenotype> HalfMissingGenotypes(const Table& rsAlleleData);

// True when the populations' alleles look like allele indices rather than sizes in base pairs:
// every allele below 100, and at every locus the alleles found are consecutive whole numbers.
// Stutter and drop-out are judged on differences in base pairs, which indices do not carry.
bool AllelesLookLikeIndices(const std::vector<const Table*>& populations);

// What a user reads when AllelesLookLikeIndices holds.
inline constexpr const char* kIndexLikeAllelesText =
    "every allele is below 100 and each locus's alleles are consecutive: they look like allele "
    "numbers (indices), not sizes in base pairs. The stutter and large allele drop-out tests "
    "need allele sizes in base pairs.";

}  // namespace tavrelle
