#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Prompter.h"
#include "population/PopulationCells.h"

namespace tavrelle {

// What a sheet reader hands back: the sheet's cells, or where it refused the sheet and what it
// expected there.
struct SheetRead {
    std::optional<PopulationCells> cells;
    std::string where;
    std::string expected;
};

// The workbook step of opening a file. A reader opens a workbook once: the sheet names and then
// the sheet come from the same opening. It returns what it read and never writes into the store.
class ExcelSheetReader {
public:
    virtual ~ExcelSheetReader() = default;
    // The sheet's cells. A workbook that cannot be opened throws ProgramError, which the open
    // command shows as "Error Opening File"; a missing sheet shows its box on `prompter`, and
    // the all-numeric names question is asked there.
    virtual SheetRead ReadExcelSheet(const std::string& fileLocation, const std::string& sheetName,
                                     Prompter& prompter) = 0;
    // The worksheets of the workbook, for the sheet dialog to offer; none when it cannot be
    // read (opening it then says why).
    virtual std::vector<std::string> SheetNames(const std::string& /*fileLocation*/) { return {}; }
};

}  // namespace tavrelle
