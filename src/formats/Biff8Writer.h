#pragma once

#include <string>
#include <string_view>

#include "population/WorksheetCells.h"

namespace tavrelle {

// The most a BIFF8 worksheet holds.
inline constexpr std::int64_t kXlsMaxRows = 65536;
inline constexpr std::int64_t kXlsMaxColumns = 256;

// The "Workbook" stream of an Excel 97-2003 workbook with one worksheet holding the cells: BIFF8
// records written by Tavrelle itself, since no library writes them. It carries the XF records
// readers look up for every cell, a shared string table split into CONTINUE records so that no
// record is longer than 8224 bytes, and it is padded to 4096 bytes so that the container keeps
// it out of the small-block stream. Throws ProgramError 1004 when the cells do not fit on a
// sheet.
std::string Biff8WorkbookStream(const WorksheetCells& cells, std::string_view sheetName);

// The whole .xls file: that stream in an OLE2 compound file.
std::string XlsWorkbookFile(const WorksheetCells& cells, std::string_view sheetName);

}  // namespace tavrelle
