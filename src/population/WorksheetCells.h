#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavrelle {

// A cell for a workbook writer: row and column from 0, and the store's text. A writer stores the
// text as a number when reading it back gives the same text (LosslessNumber), else as a string.
// Empty cells are not listed. Cells come in row order, columns ascending within a row.
struct WorksheetCell {
    std::int64_t row = 0;
    std::int64_t column = 0;
    std::string text;
};

using WorksheetCells = std::vector<WorksheetCell>;

}  // namespace tavrelle
