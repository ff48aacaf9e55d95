// Data through workbooks and back: the same loci, populations, names and genotypes, with the
// losses the formats define (the title in a workbook; the first sample behind each separator when
// workbook data are written as Genepop).
#include <gtest/gtest.h>

#include "ExcelTestTools.h"
#include "formats/ExcelWorkbookWriter.h"
#include "population/GenepopWriter.h"

namespace tavrelle {
namespace {

using testing::BodyRows;
using testing::FileRequest;
using testing::Lines;
using testing::LoadedWorkbook;
using testing::WorkbookFolder;
using Rows = std::vector<std::vector<std::string>>;

class RoundTrip : public ::testing::TestWithParam<std::string> {
protected:
    WorkbookFolder folder;
    RecordingPrompter prompter;
};

TEST_P(RoundTrip, EveryDemoFileComesBackCellForCell) {
    for (const char* demo :
         {"DemoClean", "DemoNullAlleles", "DemoStutterDropout", "DemoThreePopulations"}) {
        SCOPED_TRACE(demo);
        InputDataSource original(
            FileRequest(std::string(TAVRELLE_DEMO_FILES) + "/" + demo + ".gen"), prompter);
        ASSERT_FALSE(original.LocusNames().front().empty());
        const std::string book = folder.File(demo + GetParam());
        ASSERT_EQ(SaveExcelFile(original, book, demo + GetParam(), false, prompter).outcome,
                  SaveOutcome::Saved);

        LoadedWorkbook back(book, "Sheet1", prompter);
        ASSERT_TRUE(back.Loaded());
        EXPECT_EQ(back.store->LocusNames(), original.LocusNames());
        EXPECT_EQ(BodyRows(back.store->rsAllData), BodyRows(original.rsAllData));
        EXPECT_EQ(back.store->TitleLine(), "");
        EXPECT_EQ(back.store->IsAnotherPop(), original.IsAnotherPop());
        EXPECT_EQ(BodyRows(back.store->rsAlleleData), BodyRows(original.rsAlleleData));
    }
    EXPECT_TRUE(prompter.messages.empty());
    EXPECT_TRUE(prompter.examples.empty());
}

TEST_P(RoundTrip, GenepopThroughAWorkbookBackToGenepop) {
    const std::string genepop =
        Lines({"Title", "L1", "L2", "Pop", "a1, 098102 000104", "a2, 100100 102102", "Pop",
               "b1, 104106 108110", "b2, 100102 104106", "pop", "c1, 100100 100100"});
    InputDataSource original(FileRequest(folder.Write("in.gen", genepop)), prompter);
    const std::string book = folder.File("mid" + GetParam());
    ASSERT_EQ(SaveExcelFile(original, book, "mid", false, prompter).outcome, SaveOutcome::Saved);
    LoadedWorkbook middle(book, "Sheet1", prompter);
    ASSERT_TRUE(middle.Loaded());
    ASSERT_EQ(
        SaveGenepopFile(*middle.store, folder.File("out.gen"), "out.gen", false, true, prompter),
        SaveOutcome::Saved);
    // Workbook data lose the first sample behind each separator in the Genepop writer.
    EXPECT_EQ(folder.Read("out.gen"),
              Lines({"Title line:  \"out.gen\"", "L1", "L2", "Pop", "a1\t,\t098102 000104",
                     "a2\t,\t100100 102102", "Pop", "b2\t,\t100102 104106", "Pop"}));

    // Without that pass-over every sample returns.
    ASSERT_EQ(
        SaveGenepopFile(*middle.store, folder.File("all.gen"), "all.gen", false, false, prompter),
        SaveOutcome::Saved);
    InputDataSource again(FileRequest(folder.File("all.gen")), prompter);
    EXPECT_EQ(BodyRows(again.rsAllData), BodyRows(original.rsAllData));
    EXPECT_TRUE(prompter.messages.empty());
}

TEST_P(RoundTrip, WorkbookToWorkbookOfTheOtherKind) {
    InputDataSource original(
        FileRequest(std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen"), prompter);
    const std::string other = GetParam() == ".xls" ? ".xlsx" : ".xls";
    ASSERT_EQ(SaveExcelFile(original, folder.File("a" + GetParam()), "a", false, prompter).outcome,
              SaveOutcome::Saved);
    LoadedWorkbook first(folder.File("a" + GetParam()), "Sheet1", prompter);
    ASSERT_EQ(SaveExcelFile(*first.store, folder.File("b" + other), "b", false, prompter).outcome,
              SaveOutcome::Saved);
    LoadedWorkbook second(folder.File("b" + other), "Sheet1", prompter);
    ASSERT_TRUE(second.Loaded());
    EXPECT_EQ(BodyRows(second.store->rsAllData), BodyRows(original.rsAllData));
}

TEST_P(RoundTrip, EditedCellsKeepTheirText) {
    InputDataSource original(
        FileRequest(folder.Write("in.gen", Lines({"t", "L1", "Pop", "a, 100102", "b, 100102"}))),
        prompter);
    // Whatever the grid holds comes back as it was typed.
    const Rows typed{{"1", " lead", "1.5", "1e3"}, {"2", "12", "-0", "0"}};
    for (std::size_t row = 0; row < typed.size(); ++row)
        for (int column = 1; column < 4; ++column)
            original.rsAlleleData.SetCell(static_cast<std::int64_t>(row) + 2, column,
                                          typed[row][static_cast<std::size_t>(column)]);
    ASSERT_EQ(SaveExcelFile(original, folder.File("e" + GetParam()), "e", false, prompter).outcome,
              SaveOutcome::Saved);
    LoadedWorkbook back(folder.File("e" + GetParam()), "Sheet1", prompter);
    ASSERT_TRUE(back.Loaded());
    EXPECT_EQ(BodyRows(back.store->rsAllData), typed);
}

INSTANTIATE_TEST_SUITE_P(Formats, RoundTrip, ::testing::Values(".xls", ".xlsx"),
                         [](const auto& format) { return format.param.substr(1); });

}  // namespace
}  // namespace tavrelle
