#pragma once

#include <string_view>

namespace tavrelle {

// FreeXL trusts the lengths inside a workbook and reads past its buffers when a damaged or crafted
// file lies about them. Before it sees a Workbook stream, every record is checked here: the
// stream is a BIFF8 workbook (Excel 97-2003), no record runs past the stream or over 8224 bytes,
// the strings of sheet names, formats, labels and the shared string table fit their records, a
// label names a shared string that exists, and the sheet dimensions stay within 65536 rows and
// 256 columns. A stream that fails throws ProgramError (a workbook that cannot be opened); an
// encrypted one fails too, since it cannot be read.
void CheckBiff8Stream(std::string_view stream);

}  // namespace tavrelle
