#pragma once

#include <vector>

#include "base/CountWidth.h"

namespace tavrelle {

// (allele, copies) rows, alleles ascending.
struct AlleleCount {
    Int16 allele = 0;
    std::int32_t count = 0;

    bool operator==(const AlleleCount&) const = default;
};
using AlleleCountRows = std::vector<AlleleCount>;

// One row per distinct value of the list, ascending, with how often it occurs; a count beyond
// `width` is an Overflow.
AlleleCountRows AlleleCountTable(const std::vector<Int16>& list,
                                 CountWidth width = CountWidth::Bits16);

// The count of an allele in a table, 0 when it is not there.
std::int32_t FindAlleleCount(const AlleleCountRows& table, Int16 allele);

}  // namespace tavrelle
