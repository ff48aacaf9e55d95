#pragma once

#include <string>

#include "base/Prompter.h"
#include "population/GenepopWriter.h"
#include "population/InputDataSource.h"
#include "population/WorksheetCells.h"

namespace tavrelle {

// What the main screen does after an Excel save. Saved: ChangedData is cleared, the title bar
// reads titleBar, the grid is refreshed; rsAllData stands on its first row. Failed: the failure
// has been told (or given up at the disk question), nothing was written, ChangedData stays set,
// and the main screen refreshes the grid and runs Save As again.
struct ExcelSaveOutcome {
    SaveOutcome outcome = SaveOutcome::Failed;
    bool clearChangedData = false;
    std::string titleBar;
};

// Writes every population of the store as a workbook of one sheet, "Sheet1": as .xlsx when the
// name ends in ".xlsx", otherwise as an Excel 97-2003 workbook. The current population is saved
// into rsAllData first (appended when the grid was typed). Every row of rsAllData becomes a sheet
// row: column A takes table column 1, and the columns from B take the allele columns, so row 1
// reads "Population", "Allele A", "Allele B" ..., row 2 the title and the locus names, then the
// samples, with "Pop" alone in column A for each separator. The sample numbers are not written.
// fileTitle is the name without its folder, for the title bar.
ExcelSaveOutcome SaveExcelFile(InputDataSource& store, const std::string& fileName,
                               const std::string& fileTitle, bool gridIsNew, Prompter& prompter);

// The cells that layout puts on the sheet, from rsAllData as it stands.
WorksheetCells SheetCellsOf(const Table& rsAllData);

}  // namespace tavrelle
