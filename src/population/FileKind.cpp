#include "population/FileKind.h"

#include "base/Numbers.h"
#include "population/XlsReader.h"
#include "population/XlsxReader.h"

namespace tavrelle {

FileKind KindOfFile(std::string_view fileName) {
    const std::string upper = UpperCase(fileName);
    if (upper.ends_with(".XLSX")) return FileKind::Xlsx;
    if (upper.ends_with("XLS")) return FileKind::Xls;
    return FileKind::Genepop;
}

std::unique_ptr<ExcelSheetReader> MakeExcelSheetReader(FileKind kind) {
    switch (kind) {
        case FileKind::Xls:
            return std::make_unique<XlsSheetReader>();
        case FileKind::Xlsx:
            return std::make_unique<XlsxSheetReader>();
        case FileKind::Genepop:
            break;
    }
    return nullptr;
}

}  // namespace tavrelle
