#include "run/StudyGridLayout.h"

#include <cstdio>
#include <utility>

namespace tavrelle {

namespace {

constexpr Rgb kStoppedGrey{221, 221, 221};

std::array<int, 3> Counts(const FlagTotals& totals) {
    return {totals.nullAllele, totals.stutter, totals.dropout};
}

std::string CountText(int count, int analysed) {
    return std::to_string(count) + " of " + std::to_string(analysed);
}

StudyGridCell Plain(int row, int column, std::string text) {
    StudyGridCell cell;
    cell.row = row;
    cell.column = column;
    cell.text = std::move(text);
    return cell;
}

}  // namespace

std::string StudyEstimateText(double estimate) {
    char text[16];
    std::snprintf(text, sizeof text, "%.3f", estimate);
    return text;
}

std::string StudyCellText(const StudyCell& cell) {
    std::string text = cell.verdict + "  " + StudyEstimateText(cell.estimate);
    if (cell.flags.stutter) text += "  S";
    if (cell.flags.dropout) text += "  D";
    if (cell.AnyBorderline()) text += std::string("  ") + kBorderlineMark;
    if (cell.ManyBlanks()) text += std::string("  ") + kManyBlanksMark;
    return text;
}

namespace {

std::string FlagWords(bool flag, bool borderline) {
    return std::string(flag ? "yes" : "no") +
           (borderline ? " (borderline: more randomisations could turn it)" : "");
}

std::string Percent(int part, int whole) {
    return std::to_string((200 * part + whole) / (2 * whole)) + "%";
}

}  // namespace

std::string StudyCellTip(const std::string& population, const std::string& locus,
                         const StudyCell& cell, const std::string& estimateName) {
    std::string tip =
        population + " at " + locus +
        "\nNull allele: " + FlagWords(cell.flags.nullAllele, cell.borderline.nullAllele) +
        "\nStutter: " + FlagWords(cell.flags.stutter, cell.borderline.stutter) +
        "\nLarge allele drop-out: " + FlagWords(cell.flags.dropout, cell.borderline.dropout) +
        "\n" + estimateName + " estimate: " + StudyEstimateText(cell.estimate);
    if (cell.ManyBlanks())
        tip += "\n" + std::to_string(cell.blanks) + " of " + std::to_string(cell.samples) +
               " samples (" + Percent(cell.blanks, cell.samples) +
               ") are blank here. EM and Brookfield 2 read every blank as a null homozygote; EM "
               "with failures tells failed amplifications from null alleles.";
    return tip + "\n\nDouble-click for the graphs.";
}

std::string StudyMarksLegend(const StudyTable& table) {
    int borderline = 0;
    int blanks = 0;
    for (const StudyRow& row : table.Rows())
        for (const auto& cell : row.cells)
            if (cell) {
                borderline += cell->AnyBorderline() ? 1 : 0;
                blanks += cell->ManyBlanks() ? 1 : 0;
            }
    std::string legend;
    if (borderline > 0)
        legend += std::string(kBorderlineMark) + " " + std::to_string(borderline) +
                  (borderline == 1 ? " cell has" : " cells have") +
                  " a verdict within two Monte Carlo standard errors of the line that decides it: "
                  "another "
                  "set of randomisations could turn it. Run again with more randomisations "
                  "(up to 10000) before relying on it.\n";
    if (blanks > 0)
        legend += std::string(kManyBlanksMark) + " " + std::to_string(blanks) +
                  (blanks == 1 ? " cell has" : " cells have") +
                  " more than a fifth of the samples blank: EM and Brookfield 2 read blanks as "
                  "null homozygotes, EM with failures tells failed amplifications apart.\n";
    return legend;
}

StudyGridLayout LayOutStudyGrid(const StudyTable& table) {
    StudyGridLayout grid;
    const std::vector<std::string>& loci = table.Loci();
    const std::vector<StudyRow>& rows = table.Rows();
    const int lociCount = static_cast<int>(loci.size());
    grid.columnNames = loci;
    for (const char* name : kFlagTotalNames)
        grid.columnNames.push_back(std::string(name) + " (loci)");
    for (const StudyRow& row : rows)
        grid.rowNames.push_back(std::to_string(row.number) + " " + row.name);
    for (const char* name : kFlagTotalNames)
        grid.rowNames.push_back(std::string(name) + " (populations)");

    for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
        const StudyRow& row = rows[static_cast<std::size_t>(r)];
        if (row.stopReason) {
            StudyGridCell stopped = Plain(r, 0, "stopped: " + *row.stopReason);
            stopped.span = lociCount > 1 ? lociCount : 1;
            stopped.tip = *row.stopReason;
            stopped.fill = kStoppedGrey;
            grid.cells.push_back(std::move(stopped));
            continue;
        }
        for (int c = 0; c < lociCount; ++c) {
            const auto& cell = row.cells[static_cast<std::size_t>(c)];
            if (!cell) continue;
            StudyGridCell shown = Plain(r, c, StudyCellText(*cell));
            shown.tip = StudyCellTip(row.name, loci[static_cast<std::size_t>(c)], *cell,
                                     StudyEstimateName(table.Estimate()));
            shown.fill = EstimateColour(cell->estimate);
            shown.ink = TextColourOn(*shown.fill);
            shown.bold = cell->verdict == "yes";
            grid.cells.push_back(std::move(shown));
        }
        const std::array<int, 3> n = Counts(row.totals);
        for (int k = 0; k < 3; ++k)
            grid.cells.push_back(Plain(
                r, lociCount + k, CountText(n[static_cast<std::size_t>(k)], row.totals.analysed)));
    }
    for (int c = 0; c < lociCount; ++c) {
        const FlagTotals& totals = table.LocusTotals()[static_cast<std::size_t>(c)];
        const std::array<int, 3> n = Counts(totals);
        for (int k = 0; k < 3; ++k)
            grid.cells.push_back(Plain(static_cast<int>(rows.size()) + k, c,
                                       CountText(n[static_cast<std::size_t>(k)], totals.analysed)));
    }
    return grid;
}

std::string StudyNotes(const StudyTable& table) {
    std::string notes;
    for (const StudyRow& row : table.Rows()) {
        if (row.stopReason)
            notes += row.name + ": stopped: " + *row.stopReason +
                     (row.stopLocus.empty() ? "" : " (at locus " + row.stopLocus + ")") + "\n";
        const std::string suspects = SuspectSummary(row);
        if (!suspects.empty()) notes += row.name + ": " + suspects + "\n";
        const std::string coding = AlleleCodingSummary(row);
        if (!coding.empty()) notes += row.name + ": " + coding + "\n";
    }
    notes += StudyMarksLegend(table);
    const std::string cancelled = CancelledText(table);
    if (!cancelled.empty()) notes += cancelled + "\n";
    return notes;
}

}  // namespace tavrelle
