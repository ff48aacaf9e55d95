#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavrelle {

// A worksheet as the sheet reader walks it: a table of rows and fields covering the sheet's used
// range from its first cell (A1), every cell either text or empty. Numbers arrive as their cell
// text; an empty cell, an error value or a formula without a result is empty (nullopt), which
// is not the same as a cell holding empty text.
class ExcelSheet {
public:
    virtual ~ExcelSheet() = default;
    virtual std::int64_t RecordCount() const = 0;
    virtual int FieldCount() const = 0;
    // Throws ProgramError when the row or field lies outside the table.
    virtual std::optional<std::string> Field(std::int64_t row, int field) const = 0;
};

// An open workbook: its sheets by name.
class ExcelWorkbook {
public:
    virtual ~ExcelWorkbook() = default;
    // The sheet of that name, with case ignored as the spreadsheet ignores it; nullptr when the
    // workbook has none. A sheet that cannot be read throws ProgramError.
    virtual std::unique_ptr<ExcelSheet> OpenSheet(const std::string& name) = 0;
    // The names of the worksheets, in the workbook's order, for the user to pick from.
    virtual std::vector<std::string> SheetNames() const { return {}; }
};

}  // namespace tavrelle
