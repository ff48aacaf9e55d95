// The workbook writer: the sheet layout as independent readers see it (xlrd for .xls, the
// package's own XML for .xlsx), the record rules of the .xls stream, the outcome the main screen
// applies, and the failures it tells.
#include "formats/ExcelWorkbookWriter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "ExcelTestTools.h"
#include "formats/Biff8Writer.h"
#include "formats/XlsReader.h"

namespace tavrelle {
namespace {

using testing::CellList;
using testing::FileRequest;
using testing::Json;
using testing::Lines;
using testing::LoadedWorkbook;
using testing::WorkbookFolder;
using testing::WorkbookTool;
using Cells = std::vector<std::string>;

const std::string kTwoPopulations =
    Lines({"Two populations", "L1", "L2", "Pop", "a1, 098102 000104", "a 2, 100100 102102", "Pop",
           "b1, 104106 108110"});

class WorkbookWrite : public ::testing::TestWithParam<std::string> {
protected:
    InputDataSource Load(const std::string& bytes) {
        return InputDataSource(FileRequest(folder.Write("in.gen", bytes)), prompter);
    }
    ExcelSaveOutcome Save(InputDataSource& store, const std::string& name, bool typed = false) {
        return SaveExcelFile(store, folder.File(name), name, typed, prompter);
    }
    Cells Dumped(const std::string& name) {
        Json dump = tool.Dump(folder.File(name));
        const auto& sheets = std::get<Json::Array>(dump["sheets"].value);
        EXPECT_EQ(sheets.size(), 1U);
        EXPECT_EQ(std::get<std::string>(sheets.at(0)["name"].value), "Sheet1");
        return CellList(sheets.at(0));
    }

    WorkbookFolder folder;
    WorkbookTool tool{folder};
    RecordingPrompter prompter;
};

TEST_P(WorkbookWrite, WritesTheLayoutAsAnotherReaderSeesIt) {
    InputDataSource store = Load(kTwoPopulations);
    ExcelSaveOutcome outcome = Save(store, "out" + GetParam());
    ASSERT_EQ(outcome.outcome, SaveOutcome::Saved);
    // Numbers are numbers where reading them back gives the same text; "098" and "000" stay
    // text so that the alleles come back as they were. Sample numbers are not written.
    EXPECT_EQ(Dumped("out" + GetParam()),
              (Cells{"0,0:s:Population", "0,1:s:Allele A", "0,2:s:Allele B",
                     "0,3:s:Allele A",   "0,4:s:Allele B", "1,0:s:Two populations",
                     "1,1:s:L1",         "1,3:s:L2",       "2,0:s:a1",
                     "2,1:s:098",        "2,2:n:102",      "2,3:s:000",
                     "2,4:n:104",        "3,0:s:a 2",      "3,1:n:100",
                     "3,2:n:100",        "3,3:n:102",      "3,4:n:102",
                     "4,0:s:Pop",        "5,0:s:b1",       "5,1:n:104",
                     "5,2:n:106",        "5,3:n:108",      "5,4:n:110"}));
    EXPECT_TRUE(prompter.messages.empty());
}

TEST_P(WorkbookWrite, ASavedWorkbookClearsChangedDataAndNamesTheFileInTheTitleBar) {
    InputDataSource store = Load(kTwoPopulations);
    store.rsAllData.MoveLast();
    ExcelSaveOutcome outcome = Save(store, "Saved" + GetParam());
    EXPECT_EQ(outcome.outcome, SaveOutcome::Saved);
    EXPECT_TRUE(outcome.clearChangedData);
    EXPECT_EQ(outcome.titleBar, "Tavrelle - Saved" + GetParam());
    EXPECT_EQ(store.rsAllData.Position(), 0);
}

TEST_P(WorkbookWrite, TheGridIsSavedIntoTheStoreFirst) {
    InputDataSource store = Load(kTwoPopulations);
    store.rsAlleleData.SetCell(2, 3, "777");
    ASSERT_EQ(Save(store, "edited" + GetParam()).outcome, SaveOutcome::Saved);
    Cells cells = Dumped("edited" + GetParam());
    EXPECT_NE(std::find(cells.begin(), cells.end(), "2,2:n:777"), cells.end());
}

TEST_P(WorkbookWrite, ATypedGridIsAppendedToTheStore) {
    StoreRequest request;
    request.newGridLoaded = true;
    InputDataSource store(request, prompter);
    store.LocusNames({"Typed"});
    store.SetColumnHeaders(store.rsAllData);
    store.SetColumnHeaders(store.rsAlleleData);
    store.DisplayLociNames(store.rsAllData);
    store.DisplayLociNames(store.rsAlleleData);
    store.rsAlleleData.AddNew();
    store.rsAlleleData.SetField(1, "s");
    store.rsAlleleData.SetField(2, "100");
    store.rsAlleleData.SetField(3, "0");
    ASSERT_EQ(Save(store, "typed" + GetParam(), true).outcome, SaveOutcome::Saved);
    EXPECT_EQ(Dumped("typed" + GetParam()),
              (Cells{"0,0:s:Population", "0,1:s:Allele A", "0,2:s:Allele B", "1,1:s:Typed",
                     "2,0:s:s", "2,1:n:100", "2,2:n:0"}));
}

TEST_P(WorkbookWrite, FailuresAreToldAndNothingIsWritten) {
    InputDataSource store = Load(kTwoPopulations);
    ExcelSaveOutcome missing = Save(store, "no/such/folder/out" + GetParam());
    EXPECT_EQ(missing.outcome, SaveOutcome::Failed);
    EXPECT_FALSE(missing.clearChangedData);
    EXPECT_EQ(missing.titleBar, "");
    EXPECT_EQ(SaveExcelFile(store, folder.File(""), "x", false, prompter).outcome,
              SaveOutcome::Failed);
    std::vector<Message> expected{
        {"The drive or path does not exist.", "", MessageIcon::Exclamation, MessageButtons::Ok},
        {"An error has occurred during the save operation.\r\n" +
             std::string(std::strerror(EISDIR)) + "\r\nPlease try saving in a different format.",
         "", MessageIcon::Exclamation, MessageButtons::Ok}};
    // A file nobody may write, not even the superuser.
    if (std::filesystem::exists("/sys/kernel/notes")) {
        EXPECT_EQ(SaveExcelFile(store, "/sys/kernel/notes", "notes", false, prompter).outcome,
                  SaveOutcome::Failed);
        expected.push_back(
            {"The selected drive media is read only.\r\n" + std::string(std::strerror(EACCES)), "",
             MessageIcon::Exclamation, MessageButtons::Ok});
    }
    EXPECT_EQ(prompter.messages, expected);
}

INSTANTIATE_TEST_SUITE_P(Formats, WorkbookWrite, ::testing::Values(".xls", ".xlsx"),
                         [](const auto& format) { return format.param.substr(1); });

// 128 loci need 257 columns: more than an Excel 97-2003 sheet has, so the user is sent to
// another format; .xlsx holds them.
TEST(WorkbookWriteLimits, TooManyColumnsForXlsSuggestAnotherFormat) {
    WorkbookFolder folder;
    RecordingPrompter prompter;
    std::vector<std::string> lines{"wide"};
    std::string genotypes;
    for (int locus = 0; locus < 128; ++locus) {
        lines.push_back("L" + std::to_string(locus));
        genotypes += " 100102";
    }
    lines.push_back("Pop");
    lines.push_back("a," + genotypes);
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    InputDataSource store(FileRequest(folder.Write("wide.gen", text)), prompter);
    ASSERT_EQ(store.LocusNames().size(), 128U);

    ExcelSaveOutcome xls =
        SaveExcelFile(store, folder.File("wide.xls"), "wide.xls", false, prompter);
    EXPECT_EQ(xls.outcome, SaveOutcome::Failed);
    EXPECT_FALSE(std::filesystem::exists(folder.File("wide.xls")));
    EXPECT_EQ(prompter.messages,
              (std::vector<Message>{
                  {"An error has occurred during the save operation.\r\nThe data need more than "
                   "65536 rows or 256 columns, the most an Excel 97-2003 sheet holds.\r\nPlease "
                   "try saving in a different format.",
                   "", MessageIcon::Exclamation, MessageButtons::Ok}}));

    prompter.messages.clear();
    EXPECT_EQ(SaveExcelFile(store, folder.File("wide.xlsx"), "wide.xlsx", false, prompter).outcome,
              SaveOutcome::Saved);
    LoadedWorkbook back(folder.File("wide.xlsx"), "Sheet1", prompter);
    ASSERT_TRUE(back.Loaded());
    EXPECT_EQ(back.store->LocusNames(), store.LocusNames());
    EXPECT_TRUE(prompter.messages.empty());
}

// The stream's own rules: records within 8224 bytes, every cell's XF there, the shared strings
// carried on in CONTINUE records, and at least 4096 bytes.
TEST(Biff8Stream, KeepsItsRecordsWithinTheLimitsReadersExpect) {
    WorksheetCells cells;
    for (std::int64_t row = 0; row < 400; ++row) {
        // Unique strings, some needing two bytes a character, enough for several CONTINUEs.
        std::string name = "sample " + std::to_string(row) + " " + std::string(150, 'x');
        if (row % 3 == 0) name += " \u03a9\u6728";
        cells.push_back({row, 0, name});
        cells.push_back({row, 1, std::to_string(100 + row)});
    }
    const std::string stream = Biff8WorkbookStream(cells, "Sheet1");
    EXPECT_GE(stream.size(), 4096U);
    std::map<unsigned, int> counts;
    std::size_t at = 0;
    std::size_t longest = 0;
    while (at + 4 <= stream.size()) {
        auto byte = [&](std::size_t i) { return unsigned{static_cast<unsigned char>(stream[i])}; };
        unsigned type = byte(at) | (byte(at + 1) << 8);
        std::size_t length = byte(at + 2) | (byte(at + 3) << 8);
        if (type == 0 && length == 0) break;  // the padding
        ++counts[type];
        longest = std::max(longest, length);
        at += 4 + length;
    }
    EXPECT_LE(longest, 8224U);
    EXPECT_EQ(counts[0x00E0], 16);   // XF records
    EXPECT_EQ(counts[0x00FC], 1);    // SST
    EXPECT_GE(counts[0x003C], 5);    // CONTINUE
    EXPECT_EQ(counts[0x00FD], 400);  // LABELSST
    EXPECT_EQ(counts[0x0203], 400);  // NUMBER
    EXPECT_EQ(counts[0x0200], 1);    // DIMENSIONS

    // Both readers find every string.
    WorkbookFolder folder;
    std::string file = folder.Write("strings.xls", XlsWorkbookFile(cells, "Sheet1"));
    WorkbookTool tool(folder);
    Json dump = tool.Dump(file);
    std::vector<std::string> dumped = CellList(std::get<Json::Array>(dump["sheets"].value).at(0));
    ASSERT_EQ(dumped.size(), cells.size());
    std::unique_ptr<ExcelSheet> sheet = OpenXlsWorkbook(file)->OpenSheet("Sheet1");
    ASSERT_TRUE(sheet);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const WorksheetCell& cell = cells[i];
        EXPECT_EQ(dumped[i], std::to_string(cell.row) + "," + std::to_string(cell.column) +
                                 (cell.column == 0 ? ":s:" : ":n:") + cell.text);
        EXPECT_EQ(sheet->Field(cell.row, static_cast<int>(cell.column)), cell.text);
    }
}

TEST(Biff8Stream, AnEmptySheetStillHasItsDimensions) {
    WorkbookFolder folder;
    std::string file = folder.Write("empty.xls", XlsWorkbookFile({}, "Sheet1"));
    std::unique_ptr<ExcelSheet> sheet = OpenXlsWorkbook(file)->OpenSheet("sheet1");
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->RecordCount(), 0);
    EXPECT_EQ(sheet->FieldCount(), 0);
}

// A Genepop file in another 8-bit encoding: what is not UTF-8 is taken as Latin-1, so the
// workbook holds the letters the user saw.
TEST(WorkbookText, Latin1NamesBecomeUnicode) {
    WorkbookFolder folder;
    RecordingPrompter prompter;
    InputDataSource store(
        FileRequest(folder.Write("latin.gen", "t\r\nL\xE9\r\nPop\r\n\xC9t\xE9, 100102\r\n")),
        prompter);
    ASSERT_EQ(SaveExcelFile(store, folder.File("latin.xls"), "latin.xls", false, prompter).outcome,
              SaveOutcome::Saved);
    WorkbookTool tool(folder);
    EXPECT_EQ(
        CellList(std::get<Json::Array>(tool.Dump(folder.File("latin.xls"))["sheets"].value).at(0))
            .at(5),
        "2,0:s:\u00c9t\u00e9");
    LoadedWorkbook back(folder.File("latin.xls"), "Sheet1", prompter);
    ASSERT_TRUE(back.Loaded());
    EXPECT_EQ(back.store->LocusNames(), std::vector<std::string>{"L\u00e9"});
}

}  // namespace
}  // namespace tavrelle
