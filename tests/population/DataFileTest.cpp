// Opening a data file as a function: the store, or an error naming the file, the line and what
// was expected, with the boxes the desktop shows for it in their order.
#include "population/DataFile.h"

#include <gtest/gtest.h>

#include "../support/TempFolder.h"

namespace tavrelle {
namespace {

using testing::Lines;
using testing::TempFolder;

TEST(OpenDataFile, RefusalsAreLocatedAndKeepTheDesktopsBoxes) {
    struct Case {
        const char* name;
        std::string bytes;
        const char* where;     // "" for the file as a whole
        const char* expected;  // the start of it
        std::size_t boxes;
        bool example;
    };
    const Case cases[] = {
        {"no-pop.gen", Lines({"title", "L1", "L2"}), "line 3", "a line \"Pop\"", 0, true},
        {"short.gen", Lines({"title", "L1", "Pop", "a1, 100100", "a2, 1001"}), "line 5",
         "a sample: its name, a comma", 0, true},
        {"no-comma.gen", Lines({"title", "L1", "Pop", "a1 100100"}), "line 4",
         "a sample: its name, a comma", 0, true},
        {"empty.gen", "", "", "The file opened appears to be empty or invalid.", 1, false},
    };
    TempFolder folder;
    for (const Case& c : cases) {
        RecordingPrompter questions;
        const std::string path = folder.Write(c.name, c.bytes);
        OpenedDataFile opened = OpenDataFileWith(path, FileKind::Genepop, "", nullptr, questions);
        ASSERT_TRUE(opened.error) << c.name;
        EXPECT_FALSE(opened.store) << c.name;
        const DataFileError& error = *opened.error;
        EXPECT_EQ(error.file, path);
        EXPECT_EQ(error.where, c.where) << c.name;
        EXPECT_TRUE(error.expected.starts_with(c.expected)) << c.name << ": " << error.expected;
        EXPECT_EQ(error.messages.size(), c.boxes) << c.name;
        EXPECT_EQ(error.example == ExampleScreen::Genepop, c.example) << c.name;
        EXPECT_EQ(error.Located(),
                  path + (error.where.empty() ? "" : ", " + error.where) + ": " + error.expected);
        // Nothing is shown while opening: the caller shows the error.
        EXPECT_TRUE(questions.messages.empty()) << c.name;
    }
}

TEST(OpenDataFile, AMissingFileAndAWorkbookWithoutAReaderAreRefused) {
    TempFolder folder;
    RecordingPrompter questions;
    const std::string absent = folder.File("absent.gen");
    OpenedDataFile missing = OpenDataFileWith(absent, FileKind::Genepop, "", nullptr, questions);
    ASSERT_TRUE(missing.error);
    ASSERT_EQ(missing.error->messages.size(), 1U);
    EXPECT_EQ(missing.error->messages[0].text, "The file entered does not exist.\r\r" + absent);

    const std::string book = folder.Write("book.xls", "not really a workbook");
    OpenedDataFile workbook = OpenDataFileWith(book, FileKind::Xls, "Sheet1", nullptr, questions);
    ASSERT_TRUE(workbook.error);
    EXPECT_EQ(workbook.error->example, ExampleScreen::Excel);
}

TEST(OpenDataFile, ALoadedFileGivesTheStoreAtItsFirstPopulation) {
    TempFolder folder;
    RecordingPrompter questions;
    const std::string path = folder.Write(
        "two.gen", Lines({"t", "L1, L2", "Pop", "a1, 100100 102104", "Pop", "b1, 106106 000102"}));
    OpenedDataFile opened = OpenDataFileWith(path, FileKind::Genepop, "", nullptr, questions);
    ASSERT_TRUE(opened.store);
    EXPECT_FALSE(opened.error);
    EXPECT_EQ(opened.store->LocusNames(), (std::vector<std::string>{"L1", "L2"}));
    EXPECT_EQ(opened.store->TitleLine(), "t");
    EXPECT_TRUE(opened.store->IsAnotherPop());
    EXPECT_EQ(opened.store->rsAlleleData.Cell(2, 1), "a1");
}

// A reader's cells make the same store as the Genepop reader's own load.
TEST(OpenDataFile, CellsFromAReaderMakeTheSameStore) {
    TempFolder folder;
    RecordingPrompter prompter;
    const std::string path = folder.Write(
        "two.gen", Lines({"t", "L1", "Pop", "a1, 100102", "a2, 104104", "Pop", "b1, 106000"}));
    InputDataSource read(testing::FileRequest(path), prompter);
    PopulationCells cells;
    cells.title = "t";
    cells.locusNames = {"L1"};
    cells.rows = {{"1", "a1", "100", "102"},
                  {"2", "a2", "104", "104"},
                  {"", "Pop"},
                  {"1", "b1", "106", "000"}};
    InputDataSource made(cells, prompter);
    for (InputDataSource* store : {&read, &made}) {
        store->SavePopulation();
        store->NextPopulation();
    }
    EXPECT_EQ(made.rsAlleleData.RecordCount(), read.rsAlleleData.RecordCount());
    for (std::int64_t row = 0; row < read.rsAlleleData.RecordCount(); ++row)
        for (int column = 0; column < read.rsAlleleData.ColumnCount(); ++column)
            EXPECT_EQ(made.rsAlleleData.Cell(row, column), read.rsAlleleData.Cell(row, column))
                << row << "," << column;
    EXPECT_EQ(made.IsAnotherPop(), read.IsAnotherPop());
}

}  // namespace
}  // namespace tavrelle
