#pragma once

#include "nulls/LocusGenotypeTally.h"

namespace tavrelle {

// `em`: the maximum likelihood null allele frequency of one locus under Hardy-Weinberg
// proportions, a blank counting as a null homozygote (p_n^2) and an apparent homozygote i/i as
// p_i^2 + 2 p_i p_n. NaN for a locus with no individual.
double EmNullFrequency(const LocusGenotypeTally& locus);

// `em_missing`: the same with the blanks left out, as missing at random.
double EmMissingNullFrequency(const LocusGenotypeTally& locus);

}  // namespace tavrelle
