#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "population/WorksheetCells.h"

namespace tavrelle {

// The most an Office Open XML worksheet holds.
inline constexpr std::int64_t kXlsxMaxRows = 1048576;
inline constexpr std::int64_t kXlsxMaxColumns = 16384;

// Hands each cell of a sheet to its argument, in row order, columns ascending within a row.
using WorksheetCellSource =
    std::function<void(const std::function<void(const WorksheetCell&)>& cell)>;

// Writes an .xlsx workbook with one worksheet holding the cells to `fileName`, with
// libxlsxwriter in its constant-memory mode: each row goes to disk as the next one begins, so
// memory does not grow with the sheet. Throws ProgramError 1004 when a cell does not fit on a
// sheet or the library fails.
void WriteXlsxWorkbook(const std::string& fileName, const WorksheetCellSource& cells,
                       std::string_view sheetName);

// The bytes of such a workbook, for a caller that keeps the file in memory.
std::string XlsxWorkbookFile(const WorksheetCells& cells, std::string_view sheetName);

}  // namespace tavrelle
