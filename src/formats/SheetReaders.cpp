#include "formats/SheetReaders.h"

#include "formats/XlsReader.h"
#include "formats/XlsxReader.h"

namespace tavrelle {

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

namespace tavrelle {

OpenedDataFile OpenDataFile(const std::string& path, FileKind format, const std::string& sheet,
                            Prompter& questions) {
    const std::unique_ptr<ExcelSheetReader> reader = MakeExcelSheetReader(format);
    return OpenDataFileWith(path, format, sheet, reader.get(), questions);
}

}  // namespace tavrelle
