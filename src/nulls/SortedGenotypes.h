#pragma once

#include "nulls/AlleleCountTable.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// A locus's genotypes ordered by low allele, then high allele, and its allele counts: what the
// adjusted genotypes start from.
struct PreparedGenotypes {
    GenotypeSet sorted;  // first = low, second = high, difference as it stood in the set's order
    AlleleCountRows alleleCounts;
};

// Each genotype with its alleles in ascending order, sorted on the low allele with the Shell
// sort; then within each run of equal low alleles only the high alleles are sorted and written
// back, so the difference column keeps the order the first sort left.
PreparedGenotypes PrepareLocusGenotypes(const GenotypeSet& set,
                                        CountWidth width = CountWidth::Bits16);

}  // namespace tavrelle
