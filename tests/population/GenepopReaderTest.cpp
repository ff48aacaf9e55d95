#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../support/TempFolder.h"
#include "population/InputDataSource.h"

namespace tavrelle {
namespace {

using testing::FileRequest;
using testing::Lines;
using testing::TempFolder;
using Names = std::vector<std::string>;
using Row = std::vector<std::string>;

Row RowOf(const Table& table, std::int64_t row) {
    Row cells;
    for (int column = 0; column < table.ColumnCount(); ++column)
        cells.push_back(table.Cell(row, column));
    return cells;
}

std::vector<Row> Rows(const Table& table) {
    std::vector<Row> rows;
    for (std::int64_t row = 0; row < table.RecordCount(); ++row)
        rows.push_back(RowOf(table, row));
    return rows;
}

class GenepopRead : public ::testing::Test {
protected:
    InputDataSource Load(const std::string& bytes) {
        return InputDataSource(FileRequest(folder.Write("data.txt", bytes)), prompter);
    }

    TempFolder folder;
    RecordingPrompter prompter;
};

TEST_F(GenepopRead, LoadsTitleLociAndPopulationsWithSeparatorRows) {
    InputDataSource store = Load(Lines({" My title ", "Loc1", "Loc2", "Pop", "A1 , 098102 104104",
                                        "A2, 000100 102102", "POP", "B1, 100100 102104"}));
    EXPECT_EQ(store.TitleLine(), " My title ");
    EXPECT_EQ(store.LocusNames(), (Names{"Loc1", "Loc2"}));
    EXPECT_EQ(Rows(store.rsAllData),
              (std::vector<Row>{{"", "Population", "Allele A", "Allele B", "Allele A", "Allele B"},
                                {"Sample no.", " My title ", "Loc1", "", "Loc2", ""},
                                {"1", "A1", "098", "102", "104", "104"},
                                {"2", "A2", "000", "100", "102", "102"},
                                {"", "Pop", "", "", "", ""},
                                {"1", "B1", "100", "100", "102", "104"}}));
    EXPECT_EQ(store.rsAlleleData.RecordCount(), 4);
    EXPECT_EQ(RowOf(store.rsAlleleData, 3), RowOf(store.rsAllData, 3));
    EXPECT_TRUE(prompter.messages.empty() && prompter.examples.empty());
}

TEST_F(GenepopRead, FilesWithLfCrLfAndCrEndsLoadTheSame) {
    std::vector<std::vector<Row>> loaded;
    for (const char* end : {"\r\n", "\n", "\r"})
        loaded.push_back(
            Rows(Load(Lines({"t", "L1", "Pop", "a, 100102", "pop", "c, 108110"}, end)).rsAllData));
    EXPECT_EQ(loaded[0].size(), 5u);
    EXPECT_EQ(loaded[0], loaded[1]);
    EXPECT_EQ(loaded[0], loaded[2]);
}

TEST_F(GenepopRead, ToleratesBlanksExtraGenotypesCaseTabsAndShortGenotypes) {
    InputDataSource store =
        Load(Lines({"t", "L1", "L2", "  pop ", "Ind 1\t\t,\t  098102     104104 999999",
                    "Ind2 \t, 98102 104104"}));
    EXPECT_EQ(RowOf(store.rsAllData, 2), (Row{"1", "Ind 1", "098", "102", "104", "104"}));
    // Five characters shift the split.
    EXPECT_EQ(RowOf(store.rsAllData, 3), (Row{"2", "Ind2", "981", "02", "104", "104"}));
    // With one locus a tab behind the genotype does no harm.
    InputDataSource single = Load(Lines({"t", "L1", "Pop", "a, 098102\t104104"}));
    EXPECT_EQ(RowOf(single.rsAllData, 2), (Row{"1", "a", "098", "102"}));
    EXPECT_TRUE(prompter.examples.empty());
}

TEST_F(GenepopRead, LocusNamesSplitAtCommasAndTheNextLineOverwritesTheLastName) {
    EXPECT_EQ(Load(Lines({"t", "A, B,C", "Pop", "a, 100100 100100 100100"})).LocusNames(),
              (Names{"A", "B", "C"}));
    EXPECT_EQ(Load(Lines({"t", "A,B", "C,D", "Pop", "a, 100100 100100 100100"})).LocusNames(),
              (Names{"A", "C", "D"}));
    // A blank line is a locus without a name; text behind the word Pop makes no Pop line.
    EXPECT_EQ(Load(Lines({"t", "A", "", "Pop 2", "Pop", "a, 100100 100100 100100"})).LocusNames(),
              (Names{"A", "", "Pop 2"}));
}

TEST_F(GenepopRead, RefusalsShowTheExampleAndLoadNothing) {
    const std::vector<std::pair<const char*, std::string>> refused{
        {"no Pop line", Lines({"t", "L1", "a, 100100"})},
        {"four digits", Lines({"t", "L1", "L2", "Pop", "a, 1010 1212"})},
        {"four digits, one locus", Lines({"t", "L1", "Pop", "a, 1010"})},
        {"too few genotypes", Lines({"t", "L1", "L2", "L3", "Pop", "a, 100100 102102"})},
        {"tabs between genotypes", Lines({"t", "L1", "L2", "Pop", "a, 100100\t102102"})},
        {"blank line at the end", Lines({"t", "L1", "Pop", "a, 100100", ""})},
        {"Pop at the end", Lines({"t", "L1", "Pop", "a, 100100", "Pop"})},
        {"Pop after Pop", Lines({"t", "L1", "Pop", "a, 100100", "Pop", "Pop", "b, 100100"})},
        {"Pop without samples", Lines({"t", "L1", "Pop"})},
        {"line without comma", Lines({"t", "L1", "Pop", "a, 100100", "b 100100"})}};
    for (const auto& [label, bytes] : refused) {
        RecordingPrompter refusal;
        InputDataSource store(FileRequest(folder.Write("refused.txt", bytes)), refusal);
        EXPECT_EQ(store.LocusNames(), Names{""}) << label;
        EXPECT_TRUE(refusal.messages.empty()) << label;
        EXPECT_EQ(refusal.examples, std::vector<ExampleScreen>{ExampleScreen::Genepop}) << label;
    }
}

}  // namespace
}  // namespace tavrelle
