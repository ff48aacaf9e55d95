#pragma once

#include <memory>
#include <string>

#include "formats/ExcelSheetReading.h"

namespace tavrelle {

// Office Open XML workbooks (.xlsx), read with libzip and expat.
class XlsxSheetReader : public WorkbookSheetReader {
protected:
    std::unique_ptr<ExcelWorkbook> OpenWorkbook(const std::string& fileLocation) override;
};

// The workbook behind the reader, from the file's bytes, for tests and the fuzz target. Throws
// WorkbookUnreadable when the bytes are no workbook.
std::unique_ptr<ExcelWorkbook> OpenXlsxWorkbook(std::string bytes);

}  // namespace tavrelle
