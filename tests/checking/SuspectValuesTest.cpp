#include "checking/SuspectValues.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CheckTestTables.h"
#include "checking/PopulationCheck.h"

namespace tavrelle {
namespace {

using testing::PopulationTable;

Table FourSamples() {
    return PopulationTable({{"100", "102"}, {"202", "103"}, {"x", "104"}, {"106", "108"}});
}

SuspectCells Listed() {
    SuspectCells cells;
    cells.UnexpectedCells = {{2, 3}};
    cells.InconsistentCells = {{3, 3}, {2, 5}};
    cells.NonIntegerCells = {{2, 4}};
    return cells;
}

TEST(SuspectValues, CorrectChangesNoCellAndProceedZeroesOnlyNonIntegers) {
    Table table = FourSamples();
    CheckFlags flags;
    ApplyErrorDialogChoice(ErrorDialogChoice::Correct, table, Listed(), flags);
    EXPECT_TRUE(flags.AbandonRun);
    EXPECT_EQ(table.Cell(4, 2), "x");
    ApplyErrorDialogChoice(ErrorDialogChoice::Proceed, table, Listed(), flags);
    EXPECT_FALSE(flags.AbandonRun);
    EXPECT_EQ(table.Cell(4, 2), "0");
    EXPECT_EQ(table.Cell(3, 2), "202");
    EXPECT_EQ(table.Cell(3, 3), "103");
}

TEST(SuspectValues, OmitZeroesEveryListedCell) {
    Table table = FourSamples();
    CheckFlags flags;
    ApplyErrorDialogChoice(ErrorDialogChoice::Omit, table, Listed(), flags);
    EXPECT_TRUE(flags.CheckClean);
    EXPECT_FALSE(flags.AbandonRun);
    EXPECT_EQ(table.Cell(3, 2), "0");
    EXPECT_EQ(table.Cell(3, 3), "0");
    EXPECT_EQ(table.Cell(5, 2), "0");
    EXPECT_EQ(table.Cell(4, 2), "0");
    EXPECT_EQ(table.Cell(2, 2), "100");
}

TEST(SuspectValues, StaleEntriesBeyondTheTableEndTheirListsWalkOnly) {
    Table table = FourSamples();
    SuspectCells cells;
    cells.UnexpectedCells = {{2, 2}, {3, 9}, {2, 10}};
    cells.InconsistentCells = {{3, 2}};
    cells.NonIntegerCells = {{3, 4}, {7, 5}, {3, 5}};
    CheckFlags flags;
    OmitSuspectValues(table, cells, flags);
    EXPECT_EQ(table.Cell(2, 2), "0");
    EXPECT_EQ(table.Cell(2, 3), "0");
    EXPECT_EQ(table.Cell(4, 3), "0");
    EXPECT_EQ(table.Cell(5, 3), "108");
    EXPECT_TRUE(flags.CheckClean);

    Table untouched = FourSamples();
    OmitSuspectValues(untouched, SuspectCells(), flags);
    EXPECT_EQ(untouched.Cell(4, 2), "x");
}

TEST(SuspectValues, OmittedCellsAreUnexpectedAtTheNextCheck) {
    Table table = PopulationTable({{"100", "102"}, {"202", "103"}, {"104", "104"}, {"106", "108"}});
    CheckFlags flags;
    SuspectCells cells;
    RecordingPrompter prompter;
    ValidatePopulation(table, {2}, "200", flags, cells, prompter);
    ApplyErrorDialogChoice(ErrorDialogChoice::Omit, table, cells, flags);
    ValidatePopulation(table, {2}, "200", flags, cells, prompter);
    EXPECT_EQ(cells.UnexpectedCells, (std::vector<CellPosition>{{2, 3}, {3, 3}}));
    EXPECT_EQ(cells.InconsistentCells, (std::vector<CellPosition>{{3, 3}}));
}

}  // namespace
}  // namespace tavrelle
