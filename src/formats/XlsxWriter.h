#pragma once

#include <string>
#include <string_view>

#include "population/WorksheetCells.h"

namespace tavrelle {

// The most an Office Open XML worksheet holds.
inline constexpr std::int64_t kXlsxMaxRows = 1048576;
inline constexpr std::int64_t kXlsxMaxColumns = 16384;

// The bytes of an .xlsx workbook with one worksheet holding the cells, written by libxlsxwriter.
// Throws ProgramError 1004 when the cells do not fit on a sheet or the library fails.
std::string XlsxWorkbookFile(const WorksheetCells& cells, std::string_view sheetName);

}  // namespace tavrelle
