#include "run/StudyGridLayout.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "../support/AnalysedStudy.h"

namespace tavrelle {
namespace {

StudyCell Cell(const char* verdict, bool stutter, bool dropout, double estimate,
               LocusFlags borderline = {}, int blanks = 0, int samples = 40) {
    StudyCell cell;
    cell.verdict = verdict;
    cell.flags.nullAllele = std::string(verdict) == "yes";
    cell.flags.stutter = stutter;
    cell.flags.dropout = dropout;
    cell.borderline = borderline;
    cell.estimate = estimate;
    cell.blanks = blanks;
    cell.samples = samples;
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
        {Cell("yes", false, false, 0.1, {.nullAllele = true}), "yes  0.100  ~"},
        {Cell("no", true, false, 0, {.stutter = true}), "no  0.000  S  ~"},
        // more than a fifth blank: 9 of 40 is, 8 of 40 is not
        {Cell("no", false, false, 0, {}, 9), "no  0.000  \u2020"},
        {Cell("no", false, false, 0, {}, 8), "no  0.000"},
        {Cell("no", false, true, 0, {.dropout = true}, 30), "no  0.000  D  ~  \u2020"},
        {Cell("no", false, false, 0, {}, 0, 0), "no  0.000"},
    };
    for (const auto& [cell, expected] : cases)
        EXPECT_EQ(StudyCellText(cell), expected);
}

TEST(StudyCellTextTest, TipSpellsOutEachFlagTheEstimateAndTheBlanks) {
    EXPECT_EQ(StudyCellTip("Ridge", "Tav107", Cell("yes", true, false, 0.25), "EM"),
              "Ridge at Tav107\nNull allele: yes\nStutter: yes\nLarge allele drop-out: no\n"
              "EM estimate: 0.250\n\nDouble-click for the graphs.");
    EXPECT_EQ(StudyCellTip("2", "L", Cell("no", false, true, 0, {.dropout = true}, 10, 30),
                           "EM with failures"),
              "2 at L\nNull allele: no\nStutter: no\nLarge allele drop-out: yes (borderline: "
              "more randomisations could turn it)\nEM with failures estimate: 0.000\n10 of 30 "
              "samples (33%) are blank here. EM and Brookfield 2 read every blank as a null "
              "homozygote; EM with failures tells failed amplifications from null "
              "alleles.\n\nDouble-click for the graphs.");
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
            EXPECT_EQ(cell.tip, StudyCellTip(row.name, table_.Loci()[static_cast<std::size_t>(c)],
                                             source, "EM with failures"));
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

TEST_F(StudyGridLayoutTest, NotesListStopsSuspectsMarksAndACancelledRun) {
    StudyTable table = table_;
    const std::string notes = StudyNotes(table);
    EXPECT_EQ(notes.substr(0, notes.find('\n') + 1),
              "Ridge, north: stopped: Please select a Repeat Motif for all Loci\n");
    EXPECT_EQ(notes.substr(notes.find('\n') + 1), StudyMarksLegend(table));
    table.SetRun(7, 5);
    EXPECT_EQ(StudyNotes(table), notes);
    table.SetRun(7, 9);
    EXPECT_EQ(StudyNotes(table), notes +
                                     "Run cancelled after 5 of 9 populations: the totals count "
                                     "those 5 only.\n");
    StudyTable none;
    none.SetRun(1, 3);
    EXPECT_EQ(StudyNotes(none),
              "Run cancelled after 0 of 3 populations: the totals count those 0 only.\n");
}

}  // namespace
}  // namespace tavrelle
