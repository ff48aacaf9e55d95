#pragma once

#include <string>
#include <vector>

#include "base/Int16.h"
#include "base/Prompter.h"
#include "population/Table.h"

namespace tavrelle {

class InputDataSource;

// The workbook step of the store's construction (ReadExcelSheet). The store hands itself over
// while it is being built: the reader fills rsTempData, rsAllData (with SetColumnHeaders and
// DisplayLociNames), the locus names, the population bookmarks and CurrentPopulation, and
// clears ExcelFormatValid when it refuses the sheet. An exception it throws (a workbook that
// cannot be opened) leaves the construction and reaches the file command.
class ExcelSheetReader {
public:
    virtual ~ExcelSheetReader() = default;
    virtual void ReadExcelSheet(InputDataSource& store, const std::string& fileLocation,
                                const std::string& sheetName, Prompter& prompter) = 0;
    // The worksheets of the workbook, for the sheet dialog to offer; none when it cannot be
    // read (opening it then says why).
    virtual std::vector<std::string> SheetNames(const std::string& /*fileLocation*/) { return {}; }

protected:
    // The store's private load state, reachable only from a sheet reader.
    static std::vector<std::string>& LocusNamesOf(InputDataSource& store);
    static std::vector<Table::Bookmark>& PopulationBookmarksOf(InputDataSource& store);
    static Int16& CurrentPopulationOf(InputDataSource& store);
    static void SetExcelFormatValid(InputDataSource& store, bool valid);
};

}  // namespace tavrelle
