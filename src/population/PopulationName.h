#pragma once

#include <string>

#include "population/Table.h"

namespace tavrelle {

// The population's displayed name, as the grid's caption shows it: column 1 of the first sample
// row, trimmed and cut before the name's first blank. The cut is measured in the untrimmed cell,
// so a name with leading blanks keeps that many more characters.
std::string GridCaptionName(const Table& rsAlleleData);

// Derives the name and writes it into column 1 of the locus heading row, where the cursor is
// left. The heading rows never go back to rsAllData, so the name is not saved.
std::string ShowPopulationName(Table& rsAlleleData);

}  // namespace tavrelle
