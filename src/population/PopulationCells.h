#pragma once

#include <string>
#include <vector>

namespace tavrelle {

// What a reader finds in a data file, as text, before the store takes it: the reader hands it
// back and never writes into the store.
struct PopulationCells {
    std::string title;  // the data set's title line ("" for a workbook)
    std::vector<std::string> locusNames;
    // Every row below the two heading rows, in file order: a population break is the row
    // {"", "Pop"}; a sample is its number (from 1 in each population), its name, then Allele A
    // and Allele B of each locus ("0" for a missing allele).
    std::vector<std::vector<std::string>> rows;
};

}  // namespace tavrelle
