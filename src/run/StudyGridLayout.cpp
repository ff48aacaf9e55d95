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
    return text;
}

std::string StudyCellTip(const std::string& population, const std::string& locus,
                         const StudyCell& cell) {
    return population + " at " + locus + "\nNull allele: " + cell.verdict +
           "\nStutter: " + (cell.flags.stutter ? "yes" : "no") +
           "\nLarge allele drop-out: " + (cell.flags.dropout ? "yes" : "no") + "\n" +
           kStudyEstimateName + " estimate: " + StudyEstimateText(cell.estimate) +
           "\n\nDouble-click for the graphs.";
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
            shown.tip = StudyCellTip(row.name, loci[static_cast<std::size_t>(c)], *cell);
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

std::string StudyNotes(const StudyTable& table, std::optional<int> cancelledAfter,
                       int populations) {
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
    if (cancelledAfter)
        notes += "Cancelled: " + std::to_string(*cancelledAfter) + " of " +
                 std::to_string(populations) + " populations were analysed.\n";
    return notes;
}

}  // namespace tavrelle
