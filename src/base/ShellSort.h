#pragma once

#include <cstdint>
#include <span>

namespace tavrelle {

// The one sort of the engine. It is not stable, and rows with equal keys may change order
// between gaps: the shuffle's pairing depends on that, so wherever keys can be equal this sort,
// and no other, decides the order. Gaps 1, 4, 13, 40 ... below the row count, largest first.
template <class Row, class KeyOf>
void ShellSort(std::span<Row> rows, KeyOf keyOf) {
    const auto last = static_cast<std::int64_t>(rows.size()) - 1;
    if (last < 1) return;
    std::int64_t gap = 0;
    do {
        gap = 3 * gap + 1;
    } while (gap <= last);
    for (gap /= 3; gap > 0; gap /= 3) {
        for (std::int64_t i = gap; i <= last; ++i) {
            Row saved = rows[static_cast<std::size_t>(i)];
            const auto savedKey = keyOf(saved);
            std::int64_t j = i;
            while (keyOf(rows[static_cast<std::size_t>(j - gap)]) > savedKey) {
                rows[static_cast<std::size_t>(j)] = rows[static_cast<std::size_t>(j - gap)];
                j -= gap;
                if (j < gap) break;
            }
            rows[static_cast<std::size_t>(j)] = saved;
        }
    }
}

}  // namespace tavrelle
