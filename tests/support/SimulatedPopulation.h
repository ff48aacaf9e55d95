#pragma once

#include <cstdio>
#include <string>

#include "Simulator.h"
#include "population/Table.h"

namespace tavrelle {

// One simulated population laid out as the store lays out the population on screen: two heading
// rows, then a row per sample with its alleles as three-digit text.
inline Table SimulatedPopulationTable(const simulate::SimulatedData& data,
                                      std::size_t population = 0) {
    Table table;
    const int columns = static_cast<int>(data.loci.size()) * 2 + 2;
    for (int c = 1; c <= columns; ++c)
        table.AppendColumn("Col_" + std::to_string(c));
    table.AddNew();
    table.SetField(1, "Population");
    for (int c = 2; c < columns; c += 2) {
        table.SetField(c, "Allele A");
        table.SetField(c + 1, "Allele B");
    }
    table.AddNew();
    table.SetField(0, "Sample no.");
    for (std::size_t l = 0; l < data.loci.size(); ++l)
        table.SetField(static_cast<int>(2 + 2 * l), data.loci[l].name);
    auto three = [](int allele) {
        char text[8];
        std::snprintf(text, sizeof text, "%03d", allele);
        return std::string(text);
    };
    int number = 1;
    for (const simulate::Sample& sample : data.populations.at(population).samples) {
        table.AddNew();
        table.SetField(0, std::to_string(number++));
        table.SetField(1, sample.name);
        for (std::size_t l = 0; l < sample.scored.size(); ++l) {
            table.SetField(static_cast<int>(2 + 2 * l), three(sample.scored[l].first));
            table.SetField(static_cast<int>(3 + 2 * l), three(sample.scored[l].second));
        }
    }
    return table;
}

}  // namespace tavrelle
