// The sheet reader on workbooks written by other software: xlwt for .xls, hand-made packages for
// .xlsx. Every behaviour runs on both formats, since both follow the same rules and messages.
#include <gtest/gtest.h>

#include "ExcelTestTools.h"
#include "population/ExcelTexts.h"

namespace tavrelle {
namespace {

using testing::BodyRows;
using testing::LoadedWorkbook;
using testing::SheetRows;
using testing::WorkbookFolder;
using testing::WorkbookJson;
using testing::WorkbookTool;
using Rows = std::vector<std::vector<std::string>>;
using Names = std::vector<std::string>;

const Message kNumericBox{std::string(kNumericNamesText), "Possible input error", MessageIcon::None,
                          MessageButtons::OkCancel};

class SheetReading : public ::testing::TestWithParam<std::string> {
protected:
    // Writes the sheets into a workbook of the format under test and loads sheet `sheet`.
    LoadedWorkbook Load(const std::vector<SheetRows>& sheets, const std::string& sheet = "Sheet1",
                        bool prefixed = false) {
        std::string file = tool.Make("book" + GetParam(), WorkbookJson(sheets, prefixed));
        return LoadedWorkbook(file, sheet, prompter);
    }
    LoadedWorkbook Load(const Rows& rows) { return Load({{"Sheet1", rows}}); }

    void ExpectRefusedWithoutMessage(const LoadedWorkbook& book) {
        EXPECT_FALSE(book.Loaded());
        EXPECT_FALSE(book.store->ExcelFormatValid());
        EXPECT_TRUE(prompter.messages.empty());
        EXPECT_EQ(prompter.examples, std::vector<ExampleScreen>{ExampleScreen::Excel});
    }

    WorkbookFolder folder;
    WorkbookTool tool{folder};
    RecordingPrompter prompter;
};

TEST_P(SheetReading, ReadsTheLayoutWithBreaksStarsAndBlanks) {
    LoadedWorkbook book = Load(Rows{
        {"\"Population\"", "\"not\"", "\"read\""},
        {"\"the title\"", "\"L1\"", "\"ignored\"", "\"L2\""},
        {"\"a1\"", "102", "104", "\"098\"", "\"*\""},
        {"\" a2 x\"", "100", "null", "\"   \"", "106"},
        {"\"pop\""},
        {"\"b1\"", "98", "\"102\"", "", "\"\""},
    });
    ASSERT_TRUE(book.Loaded());
    InputDataSource& store = *book.store;
    EXPECT_EQ(store.LocusNames(), (Names{"L1", "L2"}));
    EXPECT_EQ(store.TitleLine(), "");
    EXPECT_EQ(store.rsAllData.Cell(1, 1), "");
    EXPECT_EQ(BodyRows(store.rsAllData), (Rows{{"1", "a1", "102", "104", "098", "0"},
                                               {"2", " a2 x", "100", "0", "0", "106"},
                                               {"", "Pop", "", "", "", ""},
                                               {"1", "b1", "98", "102", "0", "0"}}));
    EXPECT_EQ(store.CurrentPopulation(), 1);
    EXPECT_TRUE(store.IsAnotherPop());
    EXPECT_EQ(store.rsAlleleData.RecordCount(), 4);
    store.NextPopulation();
    EXPECT_EQ(store.rsAlleleData.Cell(2, 1), "b1");
    EXPECT_FALSE(store.IsAnotherPop());
    EXPECT_TRUE(prompter.messages.empty());
    EXPECT_TRUE(prompter.examples.empty());
}

TEST_P(SheetReading, NumbersReadAsTheirTextAndTextAsItStands) {
    LoadedWorkbook book = Load(Rows{
        {"\"Population\""},
        {"\"\"", "\"L1\"", "", "\"L2\"", "", "\"L3\""},
        {"12", "102", "\"102\"", "98", "\"098\"", "1.5", "-3"},
        {"\"s2\"", "123456789012", "true", "\" * \"", "\"*\"", "0", "\"000\""},
    });
    ASSERT_TRUE(book.Loaded());
    // A whole number is an integer however the workbook stores it; text keeps its zeros and
    // blanks, and only a cell that is exactly "*" is missing.
    EXPECT_EQ(BodyRows(book.store->rsAllData),
              (Rows{{"1", "12", "102", "102", "98", "098", "1.5", "-3"},
                    {"2", "s2", "123456789012", "1", " * ", "0", "0", "000"}}));
}

TEST_P(SheetReading, PopRowsOfAnyCaseAndBlanksCloseAPopulation) {
    LoadedWorkbook book = Load(Rows{
        {"\"P\""},
        {"\"T\"", "\"L1\""},
        {"\"a\"", "100", "100"},
        {"\"  POP \"", "\"x\""},
        {"\"b\"", "102", "102"},
        {"\"b2\"", "102", "102"},
        {"\"Pop\""},
        {"\"c\"", "104", "104"},
    });
    ASSERT_TRUE(book.Loaded());
    InputDataSource& store = *book.store;
    EXPECT_EQ(BodyRows(store.rsAllData), (Rows{{"1", "a", "100", "100"},
                                               {"", "Pop", "", ""},
                                               {"1", "b", "102", "102"},
                                               {"2", "b2", "102", "102"},
                                               {"", "Pop", "", ""},
                                               {"1", "c", "104", "104"}}));
    store.NextPopulation();
    store.NextPopulation();
    EXPECT_EQ(store.CurrentPopulation(), 3);
    EXPECT_EQ(store.rsAlleleData.Cell(2, 1), "c");
    store.PrevPop();
    EXPECT_EQ(store.rsAlleleData.RecordCount(), 4);
}

TEST_P(SheetReading, FindsTheNamedSheetAmongSeveralWithCaseIgnored) {
    LoadedWorkbook book =
        Load({{"Other", Rows{{"\"x\""}, {"\"\"", "\"Wrong\""}, {"\"w\"", "1"}}},
              {"Field Data", Rows{{"\"P\""}, {"\"\"", "\"Right\""}, {"\"r\"", "100", "102"}}}},
             "FIELD data");
    ASSERT_TRUE(book.Loaded());
    EXPECT_EQ(book.store->LocusNames(), Names{"Right"});
    EXPECT_EQ(BodyRows(book.store->rsAllData), (Rows{{"1", "r", "100", "102"}}));
}

TEST_P(SheetReading, AMissingSheetIsToldAndThenTheExampleShows) {
    LoadedWorkbook book =
        Load({{"Sheet1", Rows{{"\"P\""}, {"\"\"", "\"L\""}, {"\"a\"", "1", "1"}}}}, "Sheet 2");
    EXPECT_FALSE(book.Loaded());
    EXPECT_EQ(prompter.messages,
              (std::vector<Message>{{"The sheet named Sheet 2 has not been found.", "Not Found",
                                     MessageIcon::None, MessageButtons::Ok}}));
    EXPECT_EQ(prompter.examples, std::vector<ExampleScreen>{ExampleScreen::Excel});
    EXPECT_EQ(book.store->LocusNames(), Names{""});
}

TEST_P(SheetReading, SheetsOfTwoColumnsOrTwoRowsAreRefusedWithoutAMessage) {
    ExpectRefusedWithoutMessage(Load(Rows{{"\"P\""}, {"\"\"", "\"L1\""}, {"\"a\"", "100"}}));
    prompter = RecordingPrompter();
    ExpectRefusedWithoutMessage(Load(Rows{{"\"P\""}, {"\"\"", "\"L1\"", "\"x\""}}));
}

TEST_P(SheetReading, APopRowAsTheLastRowIsRefused) {
    ExpectRefusedWithoutMessage(
        Load(Rows{{"\"P\""}, {"\"\"", "\"L1\""}, {"\"a\"", "100", "102"}, {"\"pop\""}}));
}

TEST_P(SheetReading, ARowWhoseNameWasClearedIsRefused) {
    // "Clear Contents" leaves formatted empty cells, which the sheet still delivers.
    ExpectRefusedWithoutMessage(Load(
        Rows{{"\"P\""}, {"\"\"", "\"L1\""}, {"\"a\"", "100", "102"}, {"null", "null", "null"}}));
    prompter = RecordingPrompter();
    ExpectRefusedWithoutMessage(
        Load(Rows{{"\"P\""}, {"\"\"", "\"L1\""}, {"\"a\"", "100", "102"}, {"", "100", "102"}}));
}

TEST_P(SheetReading, AnEmptyLocusNameIsRefused) {
    ExpectRefusedWithoutMessage(Load(
        Rows{{"\"P\""}, {"\"\"", "\"L1\"", "", "null"}, {"\"a\"", "100", "102", "104", "106"}}));
}

TEST_P(SheetReading, AllNumericNamesAskAndCancelShowsTheExample) {
    const Rows rows{{"\"P\""}, {"\"\"", "1", "", "\"2\""}, {"\"a\"", "100", "102", "104", "106"}};
    LoadedWorkbook cancelled = Load(rows);
    EXPECT_FALSE(cancelled.Loaded());
    EXPECT_EQ(prompter.messages, std::vector<Message>{kNumericBox});
    EXPECT_EQ(prompter.examples, std::vector<ExampleScreen>{ExampleScreen::Excel});

    prompter = RecordingPrompter();
    prompter.answers.push_back(MessageAnswer::Ok);
    LoadedWorkbook accepted = Load(rows);
    ASSERT_TRUE(accepted.Loaded());
    EXPECT_EQ(accepted.store->LocusNames(), (Names{"1", "2"}));
    EXPECT_EQ(prompter.messages, std::vector<Message>{kNumericBox});
    EXPECT_TRUE(prompter.examples.empty());
}

TEST_P(SheetReading, ADecimalPointOrOneTextNameKeepsTheQuestionAway) {
    LoadedWorkbook decimal =
        Load(Rows{{"\"P\""}, {"\"\"", "1.5", "", "2"}, {"\"a\"", "100", "102", "104", "106"}});
    EXPECT_TRUE(decimal.Loaded());
    LoadedWorkbook text =
        Load(Rows{{"\"P\""}, {"\"\"", "1", "", "\"L2\""}, {"\"a\"", "100", "102", "104", "106"}});
    EXPECT_TRUE(text.Loaded());
    EXPECT_TRUE(prompter.messages.empty());
}

TEST_P(SheetReading, ANumericNameBeyond32BitsRefusesTheSheetWithoutAQuestion) {
    ExpectRefusedWithoutMessage(Load(Rows{{"\"P\""},
                                          {"\"\"", "\"L1\"", "", "\"99999999999\""},
                                          {"\"a\"", "100", "102", "104", "106"}}));
}

TEST_P(SheetReading, AnEvenFieldCountLeavesTheLastLocusEmpty) {
    LoadedWorkbook book = Load(Rows{{"\"P\""},
                                    {"\"\"", "\"L1\"", "", "\"L2\""},
                                    {"\"a\"", "100", "102", "104"},
                                    {"\"b\"", "100", "102"}});
    ASSERT_TRUE(book.Loaded());
    EXPECT_EQ(book.store->LocusNames(), (Names{"L1", "L2"}));
    EXPECT_EQ(BodyRows(book.store->rsAllData),
              (Rows{{"1", "a", "100", "102", "", ""}, {"2", "b", "100", "102", "", ""}}));
}

TEST_P(SheetReading, ACellLongerThanTheGridHoldsRefusesTheSheet) {
    ExpectRefusedWithoutMessage(Load(
        Rows{{"\"P\""}, {"\"\"", "\"L1\""}, {"\"" + std::string(256, 'n') + "\"", "100", "102"}}));
}

TEST_P(SheetReading, UnicodeTextArrivesAsUtf8) {
    LoadedWorkbook book = Load(
        Rows{{"\"P\""}, {"\"\"", "\"Locus \u03a9\""}, {"\"\u00e9t\u00e9 \u6728\"", "100", "102"}});
    ASSERT_TRUE(book.Loaded());
    EXPECT_EQ(book.store->LocusNames(), Names{"Locus \u03a9"});
    EXPECT_EQ(book.store->rsAllData.Cell(2, 1), "\u00e9t\u00e9 \u6728");
}

INSTANTIATE_TEST_SUITE_P(Formats, SheetReading, ::testing::Values(".xls", ".xlsx"),
                         [](const auto& format) { return format.param.substr(1); });

// What only a package can hold: inline strings, cached formula results, error values and
// namespace prefixes on every element.
TEST(XlsxSheetReading, InlineStringsFormulasErrorsAndPrefixes) {
    WorkbookFolder folder;
    WorkbookTool tool(folder);
    RecordingPrompter prompter;
    for (bool prefixed : {false, true}) {
        std::string file = tool.Make(
            prefixed ? "prefixed.xlsx" : "plain.xlsx",
            WorkbookJson({{"Sheet1",
                           Rows{{"\"P\""},
                                {"\"\"", "{\"inline\": \"Lx\"}"},
                                {"{\"inline\": \"a b\"}", "{\"formula\": \"50*2\", \"value\": 100}",
                                 "{\"error\": \"#N/A\"}"}}}},
                         prefixed));
        LoadedWorkbook book(file, "Sheet1", prompter);
        ASSERT_TRUE(book.Loaded());
        EXPECT_EQ(book.store->LocusNames(), Names{"Lx"});
        EXPECT_EQ(BodyRows(book.store->rsAllData), (Rows{{"1", "a b", "100", "0"}}));
    }
    EXPECT_TRUE(prompter.messages.empty());
}

// xlwt stores a formula without its result: the cell is empty, so a missing allele.
TEST(XlsSheetReading, AFormulaWithoutAResultIsAMissingAllele) {
    WorkbookFolder folder;
    WorkbookTool tool(folder);
    RecordingPrompter prompter;
    std::string file = tool.Make(
        "f.xls", WorkbookJson({{"Sheet1", Rows{{"\"P\""},
                                               {"\"\"", "\"L1\""},
                                               {"\"a\"", "{\"formula\": \"50*2\"}", "100"}}}}));
    LoadedWorkbook book(file, "Sheet1", prompter);
    ASSERT_TRUE(book.Loaded());
    EXPECT_EQ(BodyRows(book.store->rsAllData), (Rows{{"1", "a", "0", "100"}}));
}

}  // namespace
}  // namespace tavrelle
