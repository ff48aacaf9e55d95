#pragma once

#include <cstddef>

#include "population/GenotypeData.h"
#include "population/InputDataSource.h"
#include "population/ReadProblems.h"
#include "population/Table.h"

namespace tavrelle {

// One population in the layout of the store's current population (rsAlleleData): a heading row
// ("Population", "Allele A", "Allele B", ...), a row of the title and locus names, then each
// sample: its number from 1, its name, its alleles as whole numbers ("0" missing). A run, the
// check and the estimators take it as they take a population the store read.
Table PopulationTable(const GenotypeData& data, std::size_t population);

// Every population the store holds (its current one saved back first), as data: the samples and
// alleles of every population, the locus names and the title. A cell that is no allele size (a
// whole number from 0 to kLargestAllele, blank for 0) is a problem located by its sheet row, so
// that nothing is lost or changed on the way.
GenotypeRead GenotypeDataOfStore(InputDataSource& store, const std::string& file);

// The population typed into a new grid (the store's current population), as data.
GenotypeRead GenotypeDataOfGrid(const InputDataSource& store, const std::string& file);

}  // namespace tavrelle
