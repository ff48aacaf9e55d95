#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "run/EstimateColour.h"
#include "run/StudyTable.h"

namespace tavrelle {

// The names of the three flags in the totals' headers.
inline constexpr std::array<const char*, 3> kFlagTotalNames = {"Null allele", "Stutter",
                                                               "Drop-out"};

// One cell of the overview's grid as it is shown: where, what it says, its tooltip (empty for
// none) and its colours (none: the grid's own).
struct StudyGridCell {
    int row = 0;
    int column = 0;
    int span = 1;  // columns it covers
    std::string text;
    std::string tip;
    std::optional<Rgb> fill;
    std::optional<Rgb> ink;
    bool bold = false;
};

// The overview's grid: a row per population and a column per locus, then three columns and
// three rows of totals (null allele, stutter, drop-out). A stopped population's row is one grey
// cell with the reason across its loci.
struct StudyGridLayout {
    std::vector<std::string> columnNames;
    std::vector<std::string> rowNames;
    std::vector<StudyGridCell> cells;
};
StudyGridLayout LayOutStudyGrid(const StudyTable& table);

// The marks of a cell beyond its flags: a verdict that is borderline, and more than a fifth of
// the samples blank.
inline constexpr const char* kBorderlineMark = "~";
inline constexpr const char* kManyBlanksMark = "\u2020";

// "yes  0.123  S  D  ~  \u2020": the verdict, the estimate, the stutter and drop-out marks, then
// the borderline and blank marks.
std::string StudyCellText(const StudyCell& cell);
// The cell's tooltip: the population and locus, each flag in words (borderline ones said so),
// the estimate by name, and the share of blank samples where it is large.
std::string StudyCellTip(const std::string& population, const std::string& locus,
                         const StudyCell& cell, const std::string& estimateName);
// One line on each mark the table uses, for the legends under it; empty without marks.
std::string StudyMarksLegend(const StudyTable& table);
// The study's estimates to three decimals.
std::string StudyEstimateText(double estimate);

// The notes below the grid: each stopped population with its reason and locus, each population's
// suspect values, the marks used, and whether the run was cancelled (CancelledText).
std::string StudyNotes(const StudyTable& table);

}  // namespace tavrelle
