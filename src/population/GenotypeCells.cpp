#include "population/GenotypeCells.h"

#include <string>

#include "population/Table.h"

namespace tavrelle {

PopulationCells GenotypeCells(const GenotypeData& data) {
    PopulationCells cells;
    cells.title = data.title;
    cells.locusNames = data.loci;
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        if (p > 0) cells.rows.push_back({"", "Pop"});
        int number = 1;
        for (const GenotypeSample& sample : data.populations[p].samples) {
            std::vector<std::string> row = {std::to_string(number++),
                                            sample.name.substr(0, Table::kMaxCellLength)};
            for (const auto& [first, second] : sample.genotypes) {
                row.push_back(std::to_string(first));
                row.push_back(std::to_string(second));
            }
            cells.rows.push_back(std::move(row));
        }
    }
    return cells;
}

}  // namespace tavrelle
