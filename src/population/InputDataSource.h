#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Int16.h"
#include "base/Prompter.h"
#include "population/ExcelSheetReader.h"
#include "population/LineInput.h"
#include "population/PopulationCells.h"
#include "population/Table.h"

namespace tavrelle {

// A Genepop population holds fewer samples than this: the last sample number would not fit.
inline constexpr Int16 kLargestSampleNumber = 32767;

// What the main screen and the session tell a new store: the file, its format, and whether a
// typed grid is on its way.
struct StoreRequest {
    std::string fileLocation;
    bool isExcel = false;
    std::string excelSheetName;
    // A new grid is being made: no file is expected and the store stays empty.
    bool newGridLoaded = false;
    // The data were typed into a new grid.
    bool gridIsNew = false;
    // Reads workbooks; without one, every workbook is refused as unreadable.
    ExcelSheetReader* excelReader = nullptr;
};

// The one store of loaded populations: tables of text, a population a run of rows, a locus a
// pair of columns. Construction does the whole load; a failed load leaves LocusNames as one
// empty element, which is how callers recognise it. The prompter must outlive the store.
class InputDataSource {
public:
    InputDataSource(const StoreRequest& request, Prompter& prompter);
    // The store of cells a reader has read, at its first population.
    InputDataSource(PopulationCells cells, Prompter& prompter);

    // Scratch (the sheet being read), the current population, all populations.
    Table rsTempData;
    Table rsAlleleData;
    Table rsAllData;

    // Who the store asks from now on (a load may have told its own boxes elsewhere).
    void SetPrompter(Prompter& prompter) { prompter_ = &prompter; }

    // True when the name is an existing file; reports look-up errors itself.
    bool CheckFileExists(const std::string& fileName);

    // First visit to the next population; the caller tests IsAnotherPop first.
    void NextPopulation();
    // Back to the next population visited before; nothing when IsAnotherPop is false.
    void NextPop();
    // The previous population; the caller keeps the number at 1 or above.
    void PrevPop();

    void SetColumnHeaders(Table& table);
    void DisplayLociNames(Table& table);
    void DisplayPopulation();
    void SavePopulation();
    void SaveNewPopulation();

    std::vector<std::string> LocusNames() const { return LocusNames_; }
    void LocusNames(std::vector<std::string> names) { LocusNames_ = std::move(names); }
    const std::string& TitleLine() const { return title_; }
    bool IsAnotherPop() const { return IsAnotherPop_; }
    Int16 CurrentPopulation() const { return CurrentPopulation_; }
    Int16 ColumnCount() const { return ColumnCount_; }
    bool ExcelFormatValid() const { return ExcelFormatValid_; }
    bool GenepopHeaderFound() const { return GenepopHeaderFound_; }
    bool GenepopBodyValid() const { return GenepopBodyValid_; }
    // The population whose samples ran past the sample numbers a population may have (a refused
    // Genepop file), or 0.
    Int16 PopulationOverSampleLimit() const { return populationOverSampleLimit_; }
    // Where a refused file was refused (a line or a cell; empty for the file as a whole) and
    // what was expected there; both empty when it loaded.
    const std::string& RefusalWhere() const { return refusalWhere_; }
    const std::string& RefusalExpected() const { return refusalExpected_; }
    Table& AllData() { return rsAllData; }
    const Table& AllData() const { return rsAllData; }

    // Binding names for the grid: "AllData" and "1AlleleData", "2AlleleData" ... as populations
    // are first visited. GetDataMember: nothing for "", rsAllData for "AllData", else
    // rsAlleleData.
    const std::vector<std::string>& DataMembers() const { return dataMembers_; }
    Table* GetDataMember(std::string_view dataMember);

private:
    void ResetLocusNames() { LocusNames_.assign(1, std::string()); }
    void AddDataMember(std::string name);
    void ShowFreshPopulation();
    void ReadGenepopHeader(LineInput& input);
    void ReadGenepopBody(LineInput& input);
    void ReadGenepopBodyLines(LineInput& input);
    std::string NextLine(LineInput& input);
    void LoadCells(PopulationCells cells);
    void Refuse(std::string where, std::string expected);

    Prompter* prompter_;
    std::vector<std::string> LocusNames_{std::string()};
    std::vector<Table::Bookmark> PopulationBookmarks_{Table::Bookmark{}};
    std::vector<std::string> dataMembers_;
    std::string title_;
    Int16 ColumnCount_ = 0;
    Int16 CurrentPopulation_ = 1;
    bool IsAnotherPop_ = false;
    bool ExcelFormatValid_ = true;
    bool GenepopHeaderFound_ = false;
    bool GenepopBodyValid_ = false;
    Int16 populationOverSampleLimit_ = 0;
    int lineNumber_ = 0;  // lines of a Genepop file read so far
    std::string refusalWhere_;
    std::string refusalExpected_;
};

}  // namespace tavrelle
