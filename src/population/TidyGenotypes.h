#pragma once

#include <string>
#include <string_view>

#include "population/ReadProblems.h"
#include "population/TextRecords.h"

namespace tavrelle {

// The tidy CSV tables, told by their header: long, `sample,population,locus,allele1,allele2`,
// one row per sample and locus in any order (samples, populations and loci in the order they
// first appear; a genotype with no row is missing); or wide, `sample,population,L1_a,L1_b,...`,
// one row per sample (`_1`/`_2` serve as well as `_a`/`_b`). A missing allele is empty, `0` or
// `NA`. A name may stand for several samples (the k-th row of a name at a locus is the k-th
// sample of that name), each then given every locus; a name in two populations is a problem.
GenotypeRead ReadTidyCsv(std::string_view bytes, const std::string& file);

// True when the row is the header of either tidy table.
bool IsTidyHeader(const CellRow& row);

// The long table, comma separated, LF line ends, a missing allele empty (NA in R and pandas).
std::string TidyCsv(const GenotypeData& data);

}  // namespace tavrelle
