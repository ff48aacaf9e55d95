#pragma once

#include "checking/CheckFlags.h"
#include "checking/SuspectCells.h"
#include "population/Table.h"

namespace tavrelle {

// The three buttons of the Possible Errors dialog.
enum class ErrorDialogChoice {
    Correct,  // back to the grid; the run does not start
    Omit,     // every listed cell becomes 0, the missing-allele mark; the run starts
    Proceed,  // only cells holding no whole number become 0; the run starts
};

// Sets AbandonRun.
void CorrectGrid(bool abandonRun, CheckFlags& flags);

// Sets the cells of NonIntegerCells to "0".
void FillMissingData(Table& rsAlleleData, const SuspectCells& cells);

// Sets the cells of all three lists to "0", then CheckClean.
void OmitSuspectValues(Table& rsAlleleData, const SuspectCells& cells, CheckFlags& flags);

// What the dialog's button does before the dialog closes.
void ApplyErrorDialogChoice(ErrorDialogChoice choice, Table& rsAlleleData,
                            const SuspectCells& cells, CheckFlags& flags);

}  // namespace tavrelle
