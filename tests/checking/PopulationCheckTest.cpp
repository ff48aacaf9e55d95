#include "checking/PopulationCheck.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CheckTestTables.h"

namespace tavrelle {
namespace {

using testing::PopulationTable;
using Cells = std::vector<CellPosition>;

const char* const kLimitsBox =
    "The maximum allele size is set outside normal limits.\r"
    "The range is usually 100 to 500 but 50 to 700 is permitted.";

std::vector<Message> One(const std::string& text, MessageIcon icon) {
    return {Message{text, "", icon, MessageButtons::Ok}};
}

class Check : public ::testing::Test {
protected:
    CheckOutcome Run(Table& table, const std::string& size = "350",
                     std::vector<Int16> codes = {2}) {
        prompter.messages.clear();
        return ValidatePopulation(table, codes, size, flags, cells, prompter);
    }

    CheckFlags flags;
    SuspectCells cells;
    RecordingPrompter prompter;
};

TEST_F(Check, FourSamplesAreEnoughThreeAreNot) {
    Table four = PopulationTable({{"100", "102"}, {"104", "104"}, {"100", "106"}, {"102", "102"}});
    CheckOutcome outcome = Run(four);
    EXPECT_EQ(outcome.ending, CheckEnding::Clean);
    EXPECT_EQ(prompter.messages, One("No errors were found in the input data.\r\n"
                                     "Click 'Analyse' or 'Next Population' to continue.",
                                     MessageIcon::None));
    EXPECT_TRUE(CheckAllowsRun(outcome.ending));
    EXPECT_EQ(outcome.maximumSize, "350");
    EXPECT_TRUE(flags.CheckOk);
    EXPECT_TRUE(flags.CheckClean);
    EXPECT_FALSE(flags.UncheckedData);

    CheckFlags before;
    flags = before;
    Table three = PopulationTable({{"100", "102"}, {"104", "0"}, {"x", "106"}});
    outcome = Run(three);
    EXPECT_EQ(outcome.ending, CheckEnding::InsufficientData);
    EXPECT_EQ(prompter.messages,
              One("Insufficient data to perform analysis", MessageIcon::Exclamation));
    EXPECT_TRUE(flags.AbandonRun);
    EXPECT_TRUE(flags.CheckClean);
    EXPECT_TRUE(flags.UncheckedData);
    EXPECT_FALSE(CheckAllowsRun(outcome.ending));
    EXPECT_TRUE(cells.UnexpectedCells.empty() && cells.NonIntegerCells.empty());
}

TEST_F(Check, MaximumSizeIsClampedAndUnusualSizesAreTold) {
    Table table = PopulationTable({{"60", "60"}, {"60", "60"}, {"60", "60"}, {"60", "60"}});
    flags.AnalyseInProgress = true;
    struct Case {
        const char* typed;
        const char* shown;
        bool told;
    };
    for (Case c : {Case{"800", "700", true}, Case{"99", "99", true}, Case{"30", "50", true},
                   Case{"100", "100", false}, Case{"500", "500", false}}) {
        CheckOutcome outcome = Run(table, c.typed);
        EXPECT_EQ(outcome.maximumSize, c.shown) << c.typed;
        std::vector<Message> expected;
        if (c.told) expected.push_back({kLimitsBox, "", MessageIcon::None, MessageButtons::Ok});
        EXPECT_EQ(prompter.messages, expected) << c.typed;
    }
}

TEST_F(Check, SizeThatIsNoWholeNumberEndsTheCheck) {
    Table table = PopulationTable({{"100", "100"}, {"100", "100"}, {"100", "100"}, {"100", "100"}});
    for (const char* size : {"", "12.5", "abc"}) {
        CheckOutcome outcome = Run(table, size);
        EXPECT_EQ(outcome.ending, CheckEnding::SizeNotInteger);
        EXPECT_FALSE(outcome.maximumSize.has_value());
        EXPECT_EQ(prompter.messages,
                  One("The Maximum Allele Size must be an Integer", MessageIcon::None));
    }
    EXPECT_TRUE(flags.UncheckedData);
}

TEST_F(Check, AMissingMotifStopsBeforeTheCheck) {
    Table table = PopulationTable({{"1", "1", "1", "1"}});
    CheckOutcome outcome = Run(table, "350", {2, 0});
    EXPECT_EQ(outcome.ending, CheckEnding::MotifMissing);
    EXPECT_FALSE(CheckStarted(outcome.ending));
    EXPECT_FALSE(flags.CheckOk);
    EXPECT_TRUE(flags.CheckClean);
    EXPECT_EQ(prompter.messages,
              One("Please select a Repeat Motif for all Loci", MessageIcon::None));
}

TEST_F(Check, TheMaximumIsAcceptedAndAboveItIsUnexpectedEvenWhenTheMotifFits) {
    Table table = PopulationTable({{"100", "200"}, {"202", "102"}, {"104", "104"}, {"106", "106"}});
    CheckOutcome outcome = Run(table, "200");
    EXPECT_EQ(cells.UnexpectedCells, (Cells{{2, 3}}));
    EXPECT_TRUE(cells.InconsistentCells.empty());
    EXPECT_EQ(cells.UnexpectedBookmarks.size(), 1u);
    EXPECT_EQ(outcome.ending, CheckEnding::Suspect);
    EXPECT_EQ(outcome.listing, "Unexpected values:\r\nValue\tRow\tColumn\r\n202\t2\t3\r\n");
    EXPECT_EQ(prompter.messages, One("1 value(s) may be outside the expected "
                                     "range.\r\n",
                                     MessageIcon::Exclamation));
}

TEST_F(Check, TheFirstSampleSetsTheReferenceModulus) {
    Table even = PopulationTable({{"100", "102"}, {"104", "103"}, {"100", "100"}, {"0", "104"}});
    Run(even);
    EXPECT_EQ(cells.InconsistentCells, (Cells{{3, 3}}));
    EXPECT_EQ(cells.UnexpectedCells, (Cells{{2, 5}}));

    Table odd = PopulationTable({{"103", "100"}, {"102", "105"}, {"101", "104"}, {"100", "100"}});
    Run(odd);
    EXPECT_EQ(cells.InconsistentCells, (Cells{{3, 2}, {2, 3}, {3, 4}, {2, 5}, {3, 5}}));
}

TEST_F(Check, BothListsAreReportedInTheLeftPanelAsTheGridShowsThem) {
    Table table = PopulationTable({{"100", "102"}, {"202", "103"}, {"104", "0"}, {"106", "108"}});
    flags.AnalyseInProgress = true;
    CheckOutcome outcome = Run(table, "200");
    EXPECT_EQ(outcome.listing,
              "Unexpected values:\r\nValue\tRow\tColumn\r\n202\t2\t3\r\n0\t3\t4\r\n"
              "Inconsistent values:\r\nValue\tRow\tColumn\r\n103\t2\t4\r\n");
    EXPECT_TRUE(prompter.messages.empty());
    EXPECT_FALSE(flags.CheckClean);
    EXPECT_FALSE(flags.UncheckedData);
    EXPECT_TRUE(CheckAllowsRun(outcome.ending));

    flags.AnalyseInProgress = false;
    Run(table, "200");
    ASSERT_EQ(prompter.messages.size(), 1u);
    EXPECT_EQ(prompter.messages[0].icon, MessageIcon::Exclamation);
    EXPECT_EQ(prompter.messages[0].text,
              "2 value(s) may be outside the expected range.\r\n"
              "1 value(s) with inconsistent modulus.\r\n");
}

TEST_F(Check, NonIntegerCellsEndTheCheckBeforeTheModulusTest) {
    cells.InconsistentCells = {{9, 9}};
    flags.AnalyseInProgress = true;
    Table table = PopulationTable({{"1.5", "100"}, {"-2", "100"}, {"", "0"}, {"100", "103"}});
    CheckOutcome outcome = Run(table);
    EXPECT_EQ(outcome.ending, CheckEnding::NonInteger);
    EXPECT_EQ(prompter.messages, One("3 value(s) not positive integer.\r\n"
                                     "Please correct and try again.",
                                     MessageIcon::Critical));
    EXPECT_EQ(outcome.listing,
              "Non-integer values:\r\nValue\tRow\tColumn\r\n1.5\t1\t3\r\n-2\t2\t3\r\n\t3\t3\r\n");
    EXPECT_EQ(cells.NonIntegerCells, (Cells{{2, 2}, {2, 3}, {2, 4}}));
    EXPECT_EQ(cells.UnexpectedCells, (Cells{{3, 4}}));
    EXPECT_EQ(cells.InconsistentCells, (Cells{{9, 9}}));
    EXPECT_FALSE(CheckAllowsRun(outcome.ending));
    EXPECT_FALSE(flags.CheckClean);
    EXPECT_TRUE(flags.UncheckedData);
}

TEST_F(Check, ACleanCheckLeavesEarlierListsAsTheyWere) {
    Table table = PopulationTable({{"100", "102"}, {"202", "103"}, {"1.5", "104"}, {"106", "108"}});
    Run(table, "200");
    table.SetCell(4, 2, "104");
    Run(table, "200");
    table.SetCell(3, 2, "102");
    table.SetCell(3, 3, "104");
    EXPECT_EQ(Run(table, "200").ending, CheckEnding::Clean);
    EXPECT_EQ(cells.NonIntegerCells, (Cells{{2, 4}}));
    EXPECT_EQ(cells.UnexpectedCells, (Cells{{2, 3}}));
    EXPECT_EQ(cells.InconsistentCells, (Cells{{3, 3}}));
}

TEST_F(Check, AValueBeyondSixteenBitsIsAProgramError) {
    Table table = PopulationTable({{"100", "40000"}, {"1", "1"}, {"1", "1"}, {"1", "1"}});
    EXPECT_THROW(Run(table), ProgramError);
}

}  // namespace
}  // namespace tavrelle
