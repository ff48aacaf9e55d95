#include "run/StudyGridLayout.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "../support/AnalysedStudy.h"

namespace tavrelle {
namespace {

StudyCell Cell(const char* verdict, bool stutter, bool dropout, double estimate) {
    StudyCell cell;
    cell.verdict = verdict;
    cell.flags.nullAllele = std::string(verdict) == "yes";
    cell.flags.stutter = stutter;
    cell.flags.dropout = dropout;
    cell.estimate = estimate;
    return cell;
}

TEST(StudyCellTextTest, VerdictEstimateAndMarks) {
    const std::pair<StudyCell, const char*> cases[] = {
        {Cell("no", false, false, 0), "no  0.000"},
        {Cell("yes", false, false, 0.12345), "yes  0.123"},
        {Cell("yes", true, false, 0.2), "yes  0.200  S"},
        {Cell("no", false, true, -0.0456), "no  -0.046  D"},
        {Cell("no", true, true, 0.0005), "no  0.001  S  D"},  // 0.0005 is just above in binary
        {Cell("no", false, false, kNoValue), "no  nan"},
    };
    for (const auto& [cell, expected] : cases)
        EXPECT_EQ(StudyCellText(cell), expected);
}

TEST(StudyCellTextTest, TipSpellsOutEachFlag) {
    EXPECT_EQ(StudyCellTip("Ridge", "Tav107", Cell("yes", true, false, 0.25)),
              "Ridge at Tav107\nNull allele: yes\nStutter: yes\nLarge allele drop-out: no\n"
              "EM estimate: 0.250\n\nDouble-click for the graphs.");
    EXPECT_EQ(StudyCellTip("2", "L", Cell("no", false, true, 0)),
              "2 at L\nNull allele: no\nStutter: no\nLarge allele drop-out: yes\n"
              "EM estimate: 0.000\n\nDouble-click for the graphs.");
}

class StudyGridLayoutTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        for (const PopulationResult& result : AnalysedStudy())
            table_.Add(result);
    }
    static StudyTable table_;
};
StudyTable StudyGridLayoutTest::table_;

TEST_F(StudyGridLayoutTest, HeadersNameLociPopulationsAndTotals) {
    const StudyGridLayout grid = LayOutStudyGrid(table_);
    std::vector<std::string> columns = table_.Loci();
    columns.insert(columns.end(), {"Null allele (loci)", "Stutter (loci)", "Drop-out (loci)"});
    EXPECT_EQ(grid.columnNames, columns);
    ASSERT_EQ(grid.rowNames.size(), 5U + 3U);
    EXPECT_EQ(grid.rowNames[4], "5 Ridge, north");
    EXPECT_EQ(grid.rowNames[5], "Null allele (populations)");
    EXPECT_EQ(grid.rowNames[7], "Drop-out (populations)");
}

TEST_F(StudyGridLayoutTest, EveryCellOnceWithItsTextsAndColours) {
    const StudyGridLayout grid = LayOutStudyGrid(table_);
    const int loci = static_cast<int>(table_.Loci().size());
    std::map<std::pair<int, int>, const StudyGridCell*> at;
    for (const StudyGridCell& cell : grid.cells)
        EXPECT_TRUE(at.emplace(std::pair(cell.row, cell.column), &cell).second)
            << "twice: " << cell.row << ", " << cell.column;
    // Four analysed rows of loci and row totals, one stopped cell, three rows of locus totals.
    EXPECT_EQ(grid.cells.size(), static_cast<std::size_t>(4 * (loci + 3) + 1 + 3 * loci));
    for (int r = 0; r < 4; ++r) {
        const StudyRow& row = table_.Rows()[static_cast<std::size_t>(r)];
        for (int c = 0; c < loci; ++c) {
            const StudyCell& source = *row.cells[static_cast<std::size_t>(c)];
            const StudyGridCell& cell = *at.at({r, c});
            EXPECT_EQ(cell.text, StudyCellText(source));
            EXPECT_EQ(cell.tip,
                      StudyCellTip(row.name, table_.Loci()[static_cast<std::size_t>(c)], source));
            ASSERT_TRUE(cell.fill && cell.ink);
            EXPECT_EQ(*cell.fill, EstimateColour(source.estimate));
            EXPECT_EQ(*cell.ink, TextColourOn(*cell.fill));
            EXPECT_EQ(cell.bold, source.verdict == "yes");
            EXPECT_EQ(cell.span, 1);
        }
        EXPECT_EQ(at.at({r, loci})->text, std::to_string(row.totals.nullAllele) + " of " +
                                              std::to_string(row.totals.analysed));
        EXPECT_EQ(at.at({r, loci + 2})->text, std::to_string(row.totals.dropout) + " of " +
                                                  std::to_string(row.totals.analysed));
        EXPECT_FALSE(at.at({r, loci})->fill);
    }
    for (int c = 0; c < loci; ++c) {
        const FlagTotals& totals = table_.LocusTotals()[static_cast<std::size_t>(c)];
        EXPECT_EQ(at.at({6, c})->text,
                  std::to_string(totals.stutter) + " of " + std::to_string(totals.analysed));
    }
    const StudyGridCell& stopped = *at.at({4, 0});
    EXPECT_EQ(stopped.text, "stopped: Please select a Repeat Motif for all Loci");
    EXPECT_EQ(stopped.tip, "Please select a Repeat Motif for all Loci");
    EXPECT_EQ(stopped.span, loci);
    EXPECT_EQ(stopped.fill, (Rgb{221, 221, 221}));
    EXPECT_FALSE(stopped.ink);
}

TEST_F(StudyGridLayoutTest, NotesListStopsSuspectsAndACancelledRun) {
    const std::string notes = StudyNotes(table_);
    EXPECT_EQ(notes, "Ridge, north: stopped: Please select a Repeat Motif for all Loci\n");
    EXPECT_EQ(StudyNotes(table_, 5, 9), notes + "Cancelled: 5 of 9 populations were analysed.\n");
    EXPECT_EQ(StudyNotes(StudyTable(), 0, 3), "Cancelled: 0 of 3 populations were analysed.\n");
}

}  // namespace
}  // namespace tavrelle
