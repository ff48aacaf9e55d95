#pragma once

#include <array>
#include <initializer_list>
#include <utility>
#include <vector>

#include "nulls/LocusGenotypeTally.h"

namespace tavrelle {

// A locus from genotype counts: {first, second, individuals}; {0, 0, n} are blanks.
inline LocusGenotypeTally Tally(std::initializer_list<std::array<int, 3>> genotypes) {
    std::vector<std::pair<Int16, Int16>> sizes;
    for (const auto& [a, b, n] : genotypes)
        for (int k = 0; k < n; ++k)
            sizes.emplace_back(static_cast<Int16>(a), static_cast<Int16>(b));
    return TallyLocus(CodeLocus(sizes), std::vector<int>(sizes.size(), 1));
}

}  // namespace tavrelle
