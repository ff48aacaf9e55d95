#pragma once

#include <memory>
#include <string>

#include "formats/ExcelSheetReading.h"

namespace tavrelle {

// Excel 97-2003 workbooks (.xls), read through FreeXL.
class XlsSheetReader : public WorkbookSheetReader {
protected:
    std::unique_ptr<ExcelWorkbook> OpenWorkbook(const std::string& fileLocation) override;
};

// The workbook behind the reader, for tests and the fuzz target.
std::unique_ptr<ExcelWorkbook> OpenXlsWorkbook(const std::string& fileLocation);

}  // namespace tavrelle
