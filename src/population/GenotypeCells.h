#pragma once

#include "population/GenotypeData.h"
#include "population/PopulationCells.h"

namespace tavrelle {

// The data a reader has read (GenAlEx, STRUCTURE, tidy CSV, two-digit Genepop) as the cells a
// store is built from: every sample kept, each allele a whole number, "0" missing.
PopulationCells GenotypeCells(const GenotypeData& data);

}  // namespace tavrelle
