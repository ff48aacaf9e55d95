#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace tavrelle {

// A wide table's columns cut into groups of at most `perGroup`, as even as can be, so that each
// group prints within the page: [first, last) of each group, in order. None for no columns.
inline std::vector<std::pair<std::size_t, std::size_t>> ColumnGroups(std::size_t columns,
                                                                     std::size_t perGroup) {
    std::vector<std::pair<std::size_t, std::size_t>> groups;
    if (columns == 0 || perGroup == 0) return groups;
    const std::size_t count = (columns + perGroup - 1) / perGroup;
    const std::size_t size = (columns + count - 1) / count;
    for (std::size_t first = 0; first < columns; first += size)
        groups.emplace_back(first, std::min(columns, first + size));
    return groups;
}

}  // namespace tavrelle
