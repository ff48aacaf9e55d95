#include "checking/SuspectValues.h"

#include "base/ProgramError.h"

namespace tavrelle {

namespace {

// Walks a list by row differences from the first row. The lists outlive the checks that made
// them, so an entry may lie beyond the current table: the error ends the walk of that list, and
// the cells before it stay changed.
void SetCellsToZero(Table& table, const std::vector<CellPosition>& cells) {
    if (cells.empty()) return;
    try {
        table.MoveFirst();
        table.Move(cells.front().row);
        table.SetField(cells.front().column, "0");
        for (std::size_t i = 1; i < cells.size(); ++i) {
            table.Move(cells[i].row - cells[i - 1].row);
            table.SetField(cells[i].column, "0");
        }
    } catch (const ProgramError&) {
    }
}

}  // namespace

void CorrectGrid(bool abandonRun, CheckFlags& flags) {
    flags.AbandonRun = abandonRun;
}

void FillMissingData(Table& rsAlleleData, const SuspectCells& cells) {
    SetCellsToZero(rsAlleleData, cells.NonIntegerCells);
}

void OmitSuspectValues(Table& rsAlleleData, const SuspectCells& cells, CheckFlags& flags) {
    SetCellsToZero(rsAlleleData, cells.UnexpectedCells);
    SetCellsToZero(rsAlleleData, cells.InconsistentCells);
    FillMissingData(rsAlleleData, cells);
    flags.CheckClean = true;
}

void ApplyErrorDialogChoice(ErrorDialogChoice choice, Table& rsAlleleData,
                            const SuspectCells& cells, CheckFlags& flags) {
    switch (choice) {
        case ErrorDialogChoice::Correct:
            CorrectGrid(true, flags);
            return;
        case ErrorDialogChoice::Omit:
            OmitSuspectValues(rsAlleleData, cells, flags);
            return;
        case ErrorDialogChoice::Proceed:
            FillMissingData(rsAlleleData, cells);
            CorrectGrid(false, flags);
            return;
    }
}

}  // namespace tavrelle
