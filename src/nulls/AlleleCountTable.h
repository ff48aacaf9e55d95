#pragma once

#include <vector>

#include "base/Int16.h"

namespace tavrelle {

// (allele, copies) rows, alleles ascending.
struct AlleleCount {
    Int16 allele = 0;
    Int16 count = 0;

    bool operator==(const AlleleCount&) const = default;
};
using AlleleCountRows = std::vector<AlleleCount>;

// One row per distinct value of the list, ascending, with how often it occurs.
AlleleCountRows AlleleCountTable(const std::vector<Int16>& list);

// The count of an allele in a table, 0 when it is not there.
Int16 FindAlleleCount(const AlleleCountRows& table, Int16 allele);

}  // namespace tavrelle
