#pragma once

#include "population/GenotypeSet.h"

namespace tavrelle {

// Homozygotes of a set counted by allele size; empty when the set has none.
ClassList HomozygoteClassList(const GenotypeSet& set);

// All rows of a set counted by allele size difference.
ClassList DifferenceClassList(const GenotypeSet& set);

// A count array from 0 to upperBound with each class at (class - classOffset).
CountArray ExpandClasses(const ClassList& classes, Int16 upperBound, Int16 classOffset);

}  // namespace tavrelle
