#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/CountWidth.h"
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

// What a check found. The message boxes have already been shown through the prompter, in their
// order; what the screen makes of the ending is the screen's to decide.
struct CheckOutcome {
    CheckEnding ending = CheckEnding::MotifMissing;
    // The maximum allele size the check took, clamped, once the size was read.
    std::optional<std::string> maximumSize;
    // The cells listed by a NonInteger or Suspect ending, a section per list, rows and columns
    // as the grid shows them.
    std::string listing;
};

// The check began, so that what earlier checks and runs left on the screen no longer holds.
bool CheckStarted(CheckEnding ending);
// The population can go on to a run: the check ended with values that are whole numbers.
bool CheckAllowsRun(CheckEnding ending);
// The check read the motifs of the loci; the locus panel shows them again.
bool CheckReadTheMotifs(CheckEnding ending);

// The Check button: every locus needs a repeat code other than 0, then the population check.
// The check counts its findings in `width`: 16 bits for the desktop's check, where more is an
// Overflow, 32 for a study's.
CheckOutcome ValidatePopulation(Table& rsAlleleData, const std::vector<Int16>& repeatCodes,
                                std::string_view sizeText, CheckFlags& flags, SuspectCells& cells,
                                Prompter& prompter, CountWidth width = CountWidth::Bits16);

// The check of the current population: whole numbers, the range 1 to the maximum allele size
// (clamped to 50..700), and the repeat motif against the first sample's Allele A. Changes no
// cell. A value beyond 16 bits ends as a program error.
CheckOutcome CheckPopulation(Table& rsAlleleData, const std::vector<Int16>& repeatCodes,
                             std::string_view sizeText, CheckFlags& flags, SuspectCells& cells,
                             Prompter& prompter, CountWidth width = CountWidth::Bits16);

}  // namespace tavrelle
