#include "nulls/AlleleCountTable.h"

#include <algorithm>

namespace tavrelle {

namespace {
constexpr int kCountedSpan = 1024;
}  // namespace

AlleleCountRows AlleleCountTable(const std::vector<Int16>& list, CountWidth width) {
    AlleleCountRows table;
    if (list.empty()) return table;
    const auto [low, high] = std::minmax_element(list.begin(), list.end());
    const int span = *high - *low + 1;
    if (span <= kCountedSpan) {
        // Allele sizes lie close together: counting is faster than sorting.
        thread_local std::vector<int> counts;
        counts.assign(static_cast<std::size_t>(span), 0);
        for (Int16 value : list)
            ++counts[static_cast<std::size_t>(value - *low)];
        for (int offset = 0; offset < span; ++offset)
            if (counts[static_cast<std::size_t>(offset)] > 0)
                table.push_back({Narrow16(*low + offset),
                                 NarrowCount(counts[static_cast<std::size_t>(offset)], width)});
        return table;
    }
    std::vector<Int16> sorted = list;
    std::sort(sorted.begin(), sorted.end());
    for (Int16 value : sorted) {
        if (table.empty() || table.back().allele != value) table.push_back({value, 0});
        table.back().count = NarrowCount(table.back().count + 1, width);
    }
    return table;
}

std::int32_t FindAlleleCount(const AlleleCountRows& table, Int16 allele) {
    for (const AlleleCount& row : table)
        if (row.allele == allele) return row.count;
    return 0;
}

}  // namespace tavrelle
