#pragma once

#include <string_view>

namespace tavrelle {

// The formats of data files, told by the name's ending alone, whatever filter a dialog used.
enum class FileKind { Genepop, Xls, Xlsx };

// ".xlsx" in any case is an Office Open XML workbook; otherwise a name whose last three
// characters are "xls" in any case is an Excel 97-2003 workbook (the open and save commands
// have always tested those three characters, dot or not); everything else is read as Genepop.
FileKind KindOfFile(std::string_view fileName);

inline bool IsExcelKind(FileKind kind) {
    return kind != FileKind::Genepop;
}

}  // namespace tavrelle
