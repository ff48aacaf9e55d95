#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Int16.h"
#include "base/Prompter.h"
#include "checking/CheckFlags.h"
#include "checking/SuspectCells.h"
#include "population/Table.h"

namespace tavrelle {

enum class CheckEnding {
    MotifMissing,      // a locus has no repeat motif; nothing was checked
    SizeNotInteger,    // the maximum allele size is no whole number
    InsufficientData,  // fewer than four samples; the run is abandoned
    NonInteger,        // a cell holds no whole number; no modulus test was made
    Suspect,           // unexpected or inconsistent values were listed
    Clean,             // nothing found
};

enum class PanelChange { Unchanged, Shown, Hidden };

// What the main screen must do after a check. The message boxes have already been shown
// through the prompter, in their order.
struct CheckOutcome {
    CheckEnding ending = CheckEnding::MotifMissing;
    // mnuToggle and toolbar button 10 disabled; LocationText, AnalysisTBox and AdvisoryTBox
    // emptied.
    bool PanesCleared = false;
    // The text SizeTextBox takes, when the check wrote the size back.
    std::optional<std::string> SizeText;
    // Shown: LeftPanel takes a sixth of MessageBar's width and shows LocationText. Hidden:
    // LeftPanel and MessageBar hidden, the grid takes the form's width less 100 twips.
    PanelChange LeftPanel = PanelChange::Unchanged;
    std::string LocationText;
    // RandButton and mnuDisplayGraphs enabled.
    bool EnableRunCommands = false;
    // The hourglass shown at the start stays until another command resets it.
    bool HourglassStays = false;
    bool RefreshLocusPanel = false;
};

// The Check button: every locus needs a repeat code other than 0, then the population check.
CheckOutcome ValidatePopulation(Table& rsAlleleData, const std::vector<Int16>& repeatCodes,
                                std::string_view sizeText, CheckFlags& flags, SuspectCells& cells,
                                Prompter& prompter);

// The check of the current population: whole numbers, the range 1 to the maximum allele size
// (clamped to 50..700), and the repeat motif against the first sample's Allele A. Changes no
// cell. A value beyond 16 bits ends as a program error.
CheckOutcome CheckPopulation(Table& rsAlleleData, const std::vector<Int16>& repeatCodes,
                             std::string_view sizeText, CheckFlags& flags, SuspectCells& cells,
                             Prompter& prompter);

}  // namespace tavrelle
