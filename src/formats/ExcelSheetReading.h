#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/ProgramError.h"
#include "formats/ExcelSheet.h"
#include "population/ExcelSheetReader.h"

namespace tavrelle {

// ReadExcelSheet for every workbook format: the sheet layout (row 2 the locus names, one per two
// columns from column B; samples from row 3 with the name in column A; a row whose first cell is
// "pop" closes a population), "*", blank and empty allele cells read as "0", the all-numeric
// names question, the refusals and the sheet-not-found box. A format supplies only the opening
// of its workbooks.
class WorkbookSheetReader : public ExcelSheetReader {
public:
    SheetRead ReadExcelSheet(const std::string& fileLocation, const std::string& sheetName,
                             Prompter& prompter) final;
    std::vector<std::string> SheetNames(const std::string& fileLocation) final;

protected:
    // Opens the workbook. A file that is no workbook of the format throws ProgramError, which
    // reaches the file command as "Error Opening File".
    virtual std::unique_ptr<ExcelWorkbook> OpenWorkbook(const std::string& fileLocation) = 0;

private:
    // The workbook at `fileLocation`, opened at its first use and kept for the next.
    ExcelWorkbook& Workbook(const std::string& fileLocation);
    // The sheet's rows as cells; any error it raises refuses the sheet.
    static SheetRead ReadSheet(const ExcelSheet& sheet, const std::string& sheetName,
                               Prompter& prompter);

    std::string openedLocation_;
    std::unique_ptr<ExcelWorkbook> workbook_;
};

// The error a workbook that cannot be opened raises, with the description the user sees.
ProgramError WorkbookUnreadable();

// A sheet with more cells than this is refused rather than loaded: a few hundred bytes of a
// crafted workbook can claim a sheet of a billion cells.
inline constexpr std::int64_t kMaxSheetCells = std::int64_t{1} << 23;

}  // namespace tavrelle
