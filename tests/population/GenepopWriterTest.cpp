#include "population/GenepopWriter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "../support/TempFolder.h"

namespace tavrelle {
namespace {

using testing::FileRequest;
using testing::Lines;
using testing::TempFolder;
using Names = std::vector<std::string>;

class GenepopWrite : public ::testing::Test {
protected:
    InputDataSource Load(const std::string& name, const std::string& bytes) {
        return InputDataSource(FileRequest(folder.Write(name, bytes)), prompter);
    }
    SaveOutcome Save(InputDataSource& store, const std::string& name, bool isExcel = false) {
        return SaveGenepopFile(store, folder.File(name), name, false, isExcel, prompter);
    }

    TempFolder folder;
    RecordingPrompter prompter;
};

TEST_F(GenepopWrite, WritesTheLayoutByteForByte) {
    InputDataSource store =
        Load("in.txt",
             Lines({"t", "L1", "L2", "Pop", "a1, 098102 000104", "Pop", "b 1, 100100 102102"}));
    store.rsAlleleData.SetCell(2, 3, "0");
    store.rsAlleleData.SetCell(2, 5, " 7");
    ASSERT_EQ(Save(store, "out.txt"), SaveOutcome::Saved);
    EXPECT_EQ(folder.Read("out.txt"),
              "Title line:  \"out.txt\"\r\nL1\r\nL2\r\nPop\r\n"
              "a1\t,\t098000 000 7\r\nPop\r\nb 1\t,\t100100 102102\r\n");
    EXPECT_TRUE(prompter.messages.empty());
}

TEST_F(GenepopWrite, AWrittenFileLoadsBack) {
    InputDataSource store =
        Load("in.txt", Lines({"title", "L1", "L2", "Pop", "a1, 098102 104104", "a2, 000100 102102",
                              "Pop", "b1, 100100 106108"}));
    store.rsAlleleData.SetCell(3, 2, "0");
    store.rsAlleleData.SetCell(3, 0, "77");
    ASSERT_EQ(Save(store, "out.txt"), SaveOutcome::Saved);

    InputDataSource again(FileRequest(folder.File("out.txt")), prompter);
    EXPECT_EQ(again.TitleLine(), "Title line:  \"out.txt\"");
    EXPECT_EQ(again.LocusNames(), (Names{"L1", "L2"}));
    for (std::int64_t row = 2; row < store.rsAllData.RecordCount(); ++row) {
        for (int column = 1; column < 6; ++column) {
            std::string expected = store.rsAllData.Cell(row, column);
            if (expected == "0") expected = "000";
            EXPECT_EQ(again.rsAllData.Cell(row, column), expected) << row << "," << column;
        }
    }
    EXPECT_EQ(again.rsAllData.Cell(3, 0), "2");
    EXPECT_TRUE(again.IsAnotherPop());
    EXPECT_TRUE(prompter.examples.empty());
}

TEST_F(GenepopWrite, ATwoDigitAlleleShiftsItsNeighbourOnReading) {
    InputDataSource store = Load("in.txt", Lines({"t", "L1", "L2", "Pop", "a, 100102 104104"}));
    store.rsAlleleData.SetCell(2, 2, "98");
    ASSERT_EQ(Save(store, "out.txt"), SaveOutcome::Saved);
    InputDataSource again(FileRequest(folder.File("out.txt")), prompter);
    EXPECT_EQ(again.rsAllData.Cell(2, 2), "981");
    EXPECT_EQ(again.rsAllData.Cell(2, 3), "02");
    EXPECT_TRUE(prompter.examples.empty());

    // Alone on its line the short genotype is too short to be read.
    InputDataSource single = Load("one.txt", Lines({"t", "L1", "Pop", "a, 100102"}));
    single.rsAlleleData.SetCell(2, 2, "98");
    ASSERT_EQ(Save(single, "short.txt"), SaveOutcome::Saved);
    InputDataSource refused(FileRequest(folder.File("short.txt")), prompter);
    EXPECT_EQ(refused.LocusNames(), Names{""});
    EXPECT_EQ(prompter.examples, std::vector<ExampleScreen>{ExampleScreen::Genepop});
}

TEST_F(GenepopWrite, WorkbookDataLoseTheFirstSampleBehindEachSeparator) {
    InputDataSource store =
        Load("in.txt", Lines({"t", "L1", "Pop", "a1, 100100", "a2, 100100", "Pop", "b1, 100100",
                              "b2, 100100", "Pop", "c1, 100100"}));
    ASSERT_EQ(Save(store, "out.txt", true), SaveOutcome::Saved);
    EXPECT_EQ(folder.Read("out.txt"),
              Lines({"Title line:  \"out.txt\"", "L1", "Pop", "a1\t,\t100100", "a2\t,\t100100",
                     "Pop", "b2\t,\t100100", "Pop"}));
}

TEST_F(GenepopWrite, ATypedGridSavedTwiceIsWrittenTwice) {
    StoreRequest typed;
    typed.newGridLoaded = true;
    typed.gridIsNew = true;
    InputDataSource store(typed, prompter);
    store.LocusNames({"Locus 1"});
    for (Table* table : {&store.rsAllData, &store.rsAlleleData}) {
        store.SetColumnHeaders(*table);
        store.DisplayLociNames(*table);
    }
    store.rsAlleleData.AddNew();
    const std::vector<std::string> sample{"1", "s", "100", "0"};
    for (std::size_t column = 0; column < sample.size(); ++column)
        store.rsAlleleData.SetField(static_cast<int>(column), sample[column]);
    for (int save = 0; save < 2; ++save)
        ASSERT_EQ(
            SaveGenepopFile(store, folder.File("typed.txt"), "typed.txt", true, false, prompter),
            SaveOutcome::Saved);
    EXPECT_EQ(folder.Read("typed.txt"), Lines({"Title line:  \"typed.txt\"", "Locus 1", "Pop",
                                               "s\t,\t100000", "s\t,\t100000"}));
}

TEST_F(GenepopWrite, FailuresAreToldAndTheCallerRunsSaveAsAgain) {
    InputDataSource store = Load("in.txt", Lines({"t", "L1", "Pop", "a, 100100"}));
    EXPECT_EQ(
        SaveGenepopFile(store, folder.File("no/such/out.txt"), "out.txt", false, false, prompter),
        SaveOutcome::Failed);
    EXPECT_EQ(SaveGenepopFile(store, folder.File(""), "x", false, false, prompter),
              SaveOutcome::Failed);
    EXPECT_EQ(prompter.messages,
              (std::vector<Message>{{"The drive or path does not exist.", "",
                                     MessageIcon::Exclamation, MessageButtons::Ok},
                                    {"An error has occurred during the save operation.\r\n" +
                                         std::string(std::strerror(EISDIR)),
                                     "", MessageIcon::Exclamation, MessageButtons::Ok}}));
}

}  // namespace
}  // namespace tavrelle
