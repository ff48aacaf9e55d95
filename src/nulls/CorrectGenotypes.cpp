#include "nulls/CorrectGenotypes.h"

namespace tavrelle {

AdjustedGenotypeList CorrectGenotypes(const GenotypeSet& sortedGenotypes,
                                      const std::vector<AdjustedCountRow>& adjustedCounts,
                                      int method) {
    AdjustedGenotypeList g;
    for (const GenotypeRow& row : sortedGenotypes)
        g.push_back({row.first, row.second});
    for (const AdjustedCountRow& classRow : adjustedCounts) {
        const std::int32_t c = classRow.counts.at(static_cast<std::size_t>(method));
        if (c < 1) continue;
        AdjustedGenotypeList next(g.size());
        std::size_t j = 0;
        while (j < g.size() && g[j].low != classRow.size) {
            next[j] = g[j];
            ++j;
        }
        const std::size_t limit = j + static_cast<std::size_t>(c);
        for (; j < g.size() && j < limit; ++j)
            next[j] = g[j].low == g[j].high ? AdjustedGenotype{g[j].low, 0} : g[j];
        for (; j < g.size(); ++j)
            next[j] = g[j];
        g = std::move(next);
    }
    return g;
}

std::array<AdjustedGenotypeList, 4> CorrectGenotypesForAllMethods(
    const GenotypeSet& sortedGenotypes, const std::vector<AdjustedCountRow>& adjustedCounts) {
    std::array<AdjustedGenotypeList, 4> lists;
    for (int m = 0; m < 4; ++m)
        lists[static_cast<std::size_t>(m)] = CorrectGenotypes(sortedGenotypes, adjustedCounts, m);
    return lists;
}

}  // namespace tavrelle
