#include "nulls/SortedGenotypes.h"

#include <span>
#include <utility>

#include "base/ShellSort.h"

namespace tavrelle {

PreparedGenotypes PrepareLocusGenotypes(const GenotypeSet& set, CountWidth width) {
    PreparedGenotypes prepared;
    std::vector<Int16> alleles;
    for (GenotypeRow row : set) {
        alleles.push_back(row.first);
        alleles.push_back(row.second);
        if (row.first > row.second) std::swap(row.first, row.second);
        prepared.sorted.push_back(row);
    }
    GenotypeSet& rows = prepared.sorted;
    ShellSort(std::span<GenotypeRow>(rows), [](const GenotypeRow& r) { return r.first; });
    for (std::size_t start = 0; start < rows.size();) {
        std::size_t end = start;
        while (end < rows.size() && rows[end].first == rows[start].first)
            ++end;
        GenotypeSet scratch(rows.begin() + static_cast<std::ptrdiff_t>(start),
                            rows.begin() + static_cast<std::ptrdiff_t>(end));
        ShellSort(std::span<GenotypeRow>(scratch), [](const GenotypeRow& r) { return r.second; });
        for (std::size_t i = start; i < end; ++i)
            rows[i].second = scratch[i - start].second;
        start = end;
    }
    prepared.alleleCounts = AlleleCountTable(alleles, width);
    return prepared;
}

}  // namespace tavrelle
