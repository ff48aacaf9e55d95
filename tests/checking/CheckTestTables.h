#pragma once

#include <string>
#include <vector>

#include "population/Table.h"

namespace tavrelle::testing {

// A population as the grid holds it: two heading rows, then one row per sample with its
// allele texts, two per locus.
inline Table PopulationTable(const std::vector<std::vector<std::string>>& samples) {
    Table table;
    const std::size_t alleles = samples.empty() ? 2 : samples.front().size();
    for (std::size_t column = 0; column < alleles + 2; ++column)
        table.AppendColumn("Col_" + std::to_string(column + 1));
    table.AddNew();
    table.SetField(1, "Population");
    table.AddNew();
    table.SetField(0, "Sample no.");
    int number = 1;
    for (const auto& sample : samples) {
        table.AddNew();
        table.SetField(0, std::to_string(number));
        table.SetField(1, std::string("s").append(std::to_string(number++)));
        for (std::size_t i = 0; i < sample.size(); ++i)
            table.SetField(static_cast<int>(i) + 2, sample[i]);
    }
    return table;
}

}  // namespace tavrelle::testing
