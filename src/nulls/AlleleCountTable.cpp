#include "nulls/AlleleCountTable.h"

#include <span>

#include "analysis/ShellSort.h"

namespace tavrelle {

AlleleCountRows AlleleCountTable(const std::vector<Int16>& list) {
    AlleleCountRows table;
    std::vector<Int16> sorted = list;
    ShellSort(std::span<Int16>(sorted), [](Int16 v) { return v; });
    for (Int16 value : sorted) {
        if (table.empty() || table.back().allele != value) table.push_back({value, 0});
        table.back().count = Narrow16(table.back().count + 1);
    }
    return table;
}

Int16 FindAlleleCount(const AlleleCountRows& table, Int16 allele) {
    for (const AlleleCount& row : table)
        if (row.allele == allele) return row.count;
    return 0;
}

}  // namespace tavrelle
