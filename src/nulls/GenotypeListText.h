#pragma once

#include <string>

#include "nulls/CorrectGenotypes.h"

namespace tavrelle {

// The adjusted genotypes of a locus as the genotype window shows them: a note, the locus, and
// one numbered row per genotype (a null allele shows as 0).
std::string GenotypeListText(const std::string& locusName, const AdjustedGenotypeList& genotypes);

}  // namespace tavrelle
