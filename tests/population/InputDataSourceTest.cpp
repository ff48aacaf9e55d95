#include "population/InputDataSource.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "../support/TempFolder.h"
#include "population/FileErrors.h"
#include "population/PopulationName.h"

namespace tavrelle {
namespace {

using testing::FileRequest;
using testing::Lines;
using testing::TempFolder;
using Names = std::vector<std::string>;

std::vector<std::string> SampleNames(const Table& table) {
    std::vector<std::string> names;
    for (std::int64_t row = 2; row < table.RecordCount(); ++row)
        names.push_back(table.Cell(row, 1));
    return names;
}

class Store : public ::testing::Test {
protected:
    InputDataSource Load(const std::string& bytes) {
        return InputDataSource(FileRequest(folder.Write("data.txt", bytes)), prompter);
    }
    const std::string twoPopulations = Lines({"t", "L1", "Pop", "a1, 100100", "a2, 102102",
                                              "a3, 104104", "Pop", "b1, 106106", "b2, 108108"});

    TempFolder folder;
    RecordingPrompter prompter;
};

TEST_F(Store, MissingFileIsToldWithItsNameUnlessANewGridIsBeingMade) {
    std::string name = folder.File("absent.txt");
    InputDataSource store(FileRequest(name), prompter);
    EXPECT_EQ(store.LocusNames(), Names{""});
    ASSERT_EQ(prompter.messages.size(), 1u);
    EXPECT_EQ(prompter.messages[0], (Message{"The file entered does not exist.\r\r" + name, "",
                                             MessageIcon::None, MessageButtons::Ok}));

    RecordingPrompter quiet;
    StoreRequest newGridRequest;
    newGridRequest.newGridLoaded = true;
    InputDataSource newGrid(newGridRequest, quiet);
    EXPECT_TRUE(quiet.messages.empty());
    EXPECT_EQ(newGrid.LocusNames(), Names{""});
}

TEST_F(Store, EmptyFileIsToldAndLoadsNothing) {
    InputDataSource store = Load("");
    EXPECT_EQ(store.LocusNames(), Names{""});
    const Message empty{"The file opened appears to be empty or invalid.", "", MessageIcon::None,
                        MessageButtons::Ok};
    EXPECT_EQ(prompter.messages, std::vector<Message>{empty});
}

TEST_F(Store, FileErrorsMapOntoTheProgramsNumbers) {
    EXPECT_EQ(FileError(EROFS).Number(), 70);
    EXPECT_EQ(FileError(EACCES).Number(), 70);
    EXPECT_EQ(FileError(ENOENT).Number(), 68);
    EXPECT_EQ(FileError(ENOTDIR).Number(), 68);
    EXPECT_EQ(FileError(ENOMEDIUM).Number(), 71);
    EXPECT_EQ(FileError(EISDIR).Description(), "Is a directory");
}

TEST_F(Store, OnePopulationHasNoNext) {
    InputDataSource store = Load(Lines({"t", "L1", "Pop", "a, 100100", "b, 102102"}));
    EXPECT_FALSE(store.IsAnotherPop());
    store.NextPop();
    EXPECT_EQ(store.CurrentPopulation(), 1);
    EXPECT_EQ(SampleNames(store.rsAlleleData), (Names{"a", "b"}));
}

TEST_F(Store, TwoPopulationsLeaveTheCursorOnTheSeparator) {
    InputDataSource store = Load(twoPopulations);
    EXPECT_TRUE(store.IsAnotherPop());
    EXPECT_EQ(store.rsAllData.Field(1), "Pop");
    EXPECT_EQ(SampleNames(store.rsAlleleData), (Names{"a1", "a2", "a3"}));
    EXPECT_EQ(store.DataMembers(), (Names{"1AlleleData", "AllData"}));
    EXPECT_EQ(store.GetDataMember(""), nullptr);
    EXPECT_EQ(store.GetDataMember("AllData"), &store.rsAllData);
    EXPECT_EQ(store.GetDataMember("7AlleleData"), &store.rsAlleleData);
}

TEST_F(Store, EditsSurviveMovingAwayAndBack) {
    InputDataSource store = Load(twoPopulations);
    store.rsAlleleData.SetCell(3, 2, "555");
    store.NextPopulation();
    EXPECT_EQ(store.CurrentPopulation(), 2);
    EXPECT_FALSE(store.IsAnotherPop());
    EXPECT_EQ(SampleNames(store.rsAlleleData), (Names{"b1", "b2"}));
    EXPECT_EQ(store.rsAlleleData.Cell(2, 0), "1");
    store.rsAlleleData.SetCell(2, 3, "777");

    store.PrevPop();
    EXPECT_EQ(store.rsAlleleData.Cell(3, 2), "555");
    EXPECT_TRUE(store.IsAnotherPop());
    store.NextPop();
    EXPECT_EQ(store.rsAlleleData.Cell(2, 3), "777");
}

TEST_F(Store, AnAddedRowOverwritesTheSeparatorAndMergesThePopulations) {
    InputDataSource store = Load(twoPopulations);
    store.rsAlleleData.AddNew();
    store.rsAlleleData.SetField(1, "x");
    store.NextPop();
    EXPECT_EQ(SampleNames(store.rsAlleleData), (Names{"b1", "b2"}));
    store.PrevPop();
    EXPECT_EQ(SampleNames(store.rsAlleleData), (Names{"a1", "a2", "a3", "x", "b1", "b2"}));
    EXPECT_FALSE(store.IsAnotherPop());
}

TEST_F(Store, ASampleCalledPopEndsThePopulation) {
    InputDataSource store =
        Load(Lines({"t", "L1", "Pop", "a, 100100", "pop , 102102", "c, 104104"}));
    EXPECT_EQ(SampleNames(store.rsAlleleData), Names{"a"});
    EXPECT_TRUE(store.IsAnotherPop());
}

TEST_F(Store, PopulationNameIsCutAtTheNamesFirstBlank) {
    InputDataSource store = Load(Lines({"t", "L1", "Pop", "North Bay 1, 100100"}));
    EXPECT_EQ(ShowPopulationName(store.rsAlleleData), "North");
    EXPECT_EQ(store.rsAlleleData.Cell(1, 1), "North");
    EXPECT_EQ(store.rsAlleleData.Position(), 1);
    EXPECT_EQ(store.rsAllData.Cell(1, 1), "t");

    store.rsAlleleData.SetCell(2, 1, "Solo ");
    EXPECT_EQ(GridCaptionName(store.rsAlleleData), "Solo");
    // The cut is measured in the untrimmed cell: a leading blank moves it one character on.
    store.rsAlleleData.SetCell(2, 1, " AB CD");
    EXPECT_EQ(GridCaptionName(store.rsAlleleData), "AB ");
}

TEST_F(Store, WorkbookWithoutReaderIsRefusedWithTheExcelExample) {
    StoreRequest book = FileRequest(folder.Write("book.xls", "not empty"));
    book.isExcel = true;
    InputDataSource store(book, prompter);
    EXPECT_FALSE(store.ExcelFormatValid());
    EXPECT_EQ(store.LocusNames(), Names{""});
    EXPECT_EQ(prompter.examples, std::vector<ExampleScreen>{ExampleScreen::Excel});
}

// Stands in for the workbook reader: one locus, two populations of one sample each.
class TwoRowSheet : public ExcelSheetReader {
public:
    SheetRead ReadExcelSheet(const std::string&, const std::string& sheetName, Prompter&) override {
        sheetSeen = sheetName;
        SheetRead read;
        read.cells = PopulationCells{
            "", {"S1"}, {{"1", "x", "100", "0"}, {"", "Pop"}, {"1", "y", "100", "0"}}};
        return read;
    }
    std::string sheetSeen;
};

TEST_F(Store, WorkbookReaderHandsItsCellsToTheStore) {
    TwoRowSheet sheet;
    StoreRequest book = FileRequest(folder.Write("book.xls", "x"));
    book.isExcel = true;
    book.excelSheetName = "Data";
    book.excelReader = &sheet;
    InputDataSource store(book, prompter);
    EXPECT_EQ(sheet.sheetSeen, "Data");
    EXPECT_EQ(store.LocusNames(), Names{"S1"});
    EXPECT_EQ(store.CurrentPopulation(), 1);
    EXPECT_EQ(SampleNames(store.rsAlleleData), Names{"x"});
    EXPECT_EQ(store.TitleLine(), "");
    EXPECT_TRUE(store.IsAnotherPop());
    EXPECT_TRUE(prompter.examples.empty());
}

}  // namespace
}  // namespace tavrelle
