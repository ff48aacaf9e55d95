#pragma once

#include <array>
#include <vector>

#include "base/Int16.h"

namespace tavrelle {

// One scored individual at one locus: both alleles and their absolute size difference.
struct GenotypeRow {
    Int16 first = 0;
    Int16 second = 0;
    Int16 difference = 0;

    bool operator==(const GenotypeRow&) const = default;
};

// The valid genotypes of a locus in sample order; the draw order of the shuffle depends on it.
using GenotypeSet = std::vector<GenotypeRow>;

// Counts by class: index i is allele size i above the locus's lowest (homozygotes) or a size
// difference of i (pairs).
using CountArray = std::vector<Int16>;

// (class, count) rows, classes ascending.
struct ClassCount {
    Int16 classValue = 0;
    Int16 count = 0;

    bool operator==(const ClassCount&) const = default;
};
using ClassList = std::vector<ClassCount>;

}  // namespace tavrelle
