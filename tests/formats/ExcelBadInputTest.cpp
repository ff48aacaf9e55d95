// Files that are not what their names say, damaged workbooks and oversized sheets: each ends in
// the open command's "Error Opening File" box or in the example screen, never in a crash or a
// hang.
#include <gtest/gtest.h>

#include <random>

#include "ExcelTestTools.h"
#include "formats/Biff8Check.h"
#include "formats/Biff8Writer.h"
#include "formats/ExcelWorkbookWriter.h"
#include "formats/XlsxWriter.h"

namespace tavrelle {
namespace {

using testing::FileRequest;
using testing::Lines;
using testing::LoadedWorkbook;
using testing::WorkbookFolder;

const std::string kGenepop = Lines({"Title", "L1", "Pop", "a, 100102", "b, 100100"});

// Either the store's construction fails as the open command reports it, or the store refuses the
// sheet with the example screen, or the data load.
enum class Ending { OpenError, Refused, Loaded };

Ending LoadEnding(const std::string& file, RecordingPrompter& prompter) {
    try {
        LoadedWorkbook book(file, "Sheet1", prompter);
        if (book.Loaded()) return Ending::Loaded;
        EXPECT_FALSE(prompter.examples.empty());
        return Ending::Refused;
    } catch (const ProgramError& error) {
        EXPECT_FALSE(error.Description().empty());
        return Ending::OpenError;
    }
}

class BadWorkbook : public ::testing::TestWithParam<std::string> {
protected:
    std::string ValidWorkbook() {
        InputDataSource store(
            FileRequest(std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen"), prompter);
        WorksheetCells cells = SheetCellsOf(store.rsAllData);
        return GetParam() == ".xls" ? XlsWorkbookFile(cells, "Sheet1")
                                    : XlsxWorkbookFile(cells, "Sheet1");
    }

    WorkbookFolder folder;
    RecordingPrompter prompter;
};

TEST_P(BadWorkbook, AGenepopFileNamedAsAWorkbookCannotBeOpened) {
    std::string file = folder.Write("data" + GetParam(), kGenepop);
    try {
        LoadedWorkbook book(file, "Sheet1", prompter);
        ADD_FAILURE() << "the workbook was opened";
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.Description(), "External table is not in the expected format.");
    }
    EXPECT_TRUE(prompter.messages.empty());
    EXPECT_TRUE(prompter.examples.empty());
}

TEST_P(BadWorkbook, AnEmptyFileIsTheStoresOwnMessage) {
    LoadedWorkbook book(folder.Write("empty" + GetParam(), ""), "Sheet1", prompter);
    EXPECT_FALSE(book.Loaded());
    EXPECT_EQ(prompter.messages.at(0).text, "The file opened appears to be empty or invalid.");
}

TEST_P(BadWorkbook, TruncatedWorkbooksFailCleanly) {
    const std::string bytes = ValidWorkbook();
    std::map<Ending, int> endings;
    for (std::size_t length = 1; length < bytes.size(); length += bytes.size() / 97 + 1) {
        std::string file = folder.Write("cut" + GetParam(), bytes.substr(0, length));
        ++endings[LoadEnding(file, prompter)];
    }
    EXPECT_EQ(endings[Ending::Loaded], 0);
    EXPECT_GT(endings[Ending::OpenError], 0);
}

TEST_P(BadWorkbook, DamagedBytesFailCleanlyOrLoad) {
    const std::string bytes = ValidWorkbook();
    std::mt19937 random(20240611);
    std::map<Ending, int> endings;
    for (int trial = 0; trial < 150; ++trial) {
        std::string damaged = bytes;
        const int flips = 1 + trial % 8;
        for (int i = 0; i < flips; ++i) {
            std::size_t at = random() % damaged.size();
            damaged[at] = static_cast<char>(random() & 0xFF);
        }
        std::string file = folder.Write("bad" + GetParam(), damaged);
        ++endings[LoadEnding(file, prompter)];
    }
    EXPECT_EQ(endings[Ending::Loaded] + endings[Ending::Refused] + endings[Ending::OpenError], 150);
}

// 40000 samples in one population pass the 16-bit sample count: an overflow, which refuses the
// sheet.
TEST_P(BadWorkbook, AHugeSheetIsRefused) {
    WorksheetCells cells{{0, 0, "Population"}, {1, 1, "L1"}};
    for (std::int64_t row = 2; row < 40002; ++row) {
        cells.push_back({row, 0, "s" + std::to_string(row)});
        cells.push_back({row, 1, "100"});
        cells.push_back({row, 2, "102"});
    }
    std::string file =
        folder.Write("huge" + GetParam(), GetParam() == ".xls" ? XlsWorkbookFile(cells, "Sheet1")
                                                               : XlsxWorkbookFile(cells, "Sheet1"));
    LoadedWorkbook book(file, "Sheet1", prompter);
    EXPECT_FALSE(book.Loaded());
    EXPECT_TRUE(prompter.messages.empty());
    EXPECT_EQ(prompter.examples, std::vector<ExampleScreen>{ExampleScreen::Excel});
}

INSTANTIATE_TEST_SUITE_P(Formats, BadWorkbook, ::testing::Values(".xls", ".xlsx"),
                         [](const auto& format) { return format.param.substr(1); });

// Workbooks the fuzz target found to make FreeXL read past its buffers or lose memory, before the
// Workbook stream was checked and handed over in a fresh container.
TEST(BadXls, WorkbooksThatOnceMisledFreeXLCannotBeOpened) {
    RecordingPrompter prompter;
    for (const char* name :
         {"overlong-string.xls", "record-zero-in-sheet.xls", "sheet-without-eof.xls"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(LoadEnding(std::string(TAVRELLE_TEST_DATA) + "/excel/damaged/" + name, prompter),
                  Ending::OpenError);
    }
    EXPECT_TRUE(prompter.examples.empty());
}

// A package of a few hundred bytes can claim the sheet's far corner; its cells are kept sparse,
// and the first row without a name refuses it.
TEST(BadXlsx, ACellInTheFarCornerIsRefusedQuickly) {
    WorkbookFolder folder;
    testing::WorkbookTool tool(folder);
    RecordingPrompter prompter;
    std::string file = tool.Make(
        "corner.xlsx", testing::WorkbookJson(
                           {{"Sheet1", {{"\"P\""}, {"\"\"", "\"L1\""}, {"\"a\"", "100", "102"}}}}));
    // Moves the last cell to XFD1048576 by rewriting the sheet with the standard library's zip.
    std::string script =
        "import sys, zipfile\n"
        "src, dst = sys.argv[1], sys.argv[2]\n"
        "with zipfile.ZipFile(src) as a, zipfile.ZipFile(dst, 'w') as b:\n"
        "    for item in a.infolist():\n"
        "        data = a.read(item.filename)\n"
        "        if item.filename.endswith('sheet1.xml'):\n"
        "            data = data.replace(b'</sheetData>', b'<row r=\"1048576\"><c r=\"XFD1048576\">"
        "<v>1</v></c></row></sheetData>')\n"
        "        b.writestr(item, data)\n";
    std::string scriptFile = folder.Write("corner.py", script);
    testing::CommandResult moved =
        testing::RunCommand(testing::PythonWithXlrd() + " " + scriptFile + " " + file + " " +
                            folder.File("far.xlsx") + " 2>&1");
    ASSERT_EQ(moved.exitCode, 0) << moved.output;
    LoadedWorkbook book(folder.File("far.xlsx"), "Sheet1", prompter);
    EXPECT_FALSE(book.Loaded());
    EXPECT_TRUE(prompter.messages.empty());
    EXPECT_EQ(prompter.examples, std::vector<ExampleScreen>{ExampleScreen::Excel});
}

TEST(BadXlsx, ADocumentTypeDeclarationIsNotExpanded) {
    WorkbookFolder folder;
    RecordingPrompter prompter;
    std::string script =
        "import sys, zipfile\n"
        "laughs = '<!DOCTYPE l [<!ENTITY a \"aaaaaaaaaa\">' + ''.join("
        "'<!ENTITY %s \"%s\">' % (chr(98 + i), ('&' + chr(97 + i) + ';') * 10) for i in range(9))"
        " + ']>'\n"
        "with zipfile.ZipFile(sys.argv[1], 'w') as z:\n"
        "    z.writestr('_rels/.rels', '<Relationships xmlns=\"http://schemas.openxmlformats.org/"
        "package/2006/relationships\"/>')\n"
        "    z.writestr('xl/workbook.xml', laughs + '<workbook><sheets><sheet name=\"&j;\" "
        "sheetId=\"1\" r:id=\"rId1\" xmlns:r=\"r\"/></sheets></workbook>')\n";
    std::string scriptFile = folder.Write("laughs.py", script);
    testing::CommandResult made = testing::RunCommand(testing::PythonWithXlrd() + " " + scriptFile +
                                                      " " + folder.File("laughs.xlsx") + " 2>&1");
    ASSERT_EQ(made.exitCode, 0) << made.output;
    EXPECT_THROW(LoadedWorkbook(folder.File("laughs.xlsx"), "Sheet1", prompter), ProgramError);
}

TEST(BadXlsx, AZipWithoutAWorkbookCannotBeOpened) {
    WorkbookFolder folder;
    RecordingPrompter prompter;
    // The smallest zip archive: an end-of-central-directory record and nothing else.
    std::string empty("PK\x05\x06", 4);
    empty += std::string(18, '\0');
    EXPECT_THROW(LoadedWorkbook(folder.Write("empty.xlsx", empty), "Sheet1", prompter),
                 ProgramError);
    EXPECT_TRUE(prompter.examples.empty());
}

// The records of a written stream, to be damaged one at a time: FreeXL would believe them.
struct StreamRecord {
    std::size_t position;
    unsigned type;
    std::size_t length;
};

std::vector<StreamRecord> RecordsOf(const std::string& stream) {
    std::vector<StreamRecord> records;
    for (std::size_t at = 0; at + 4 <= stream.size();) {
        auto byte = [&](std::size_t i) { return unsigned{static_cast<unsigned char>(stream[i])}; };
        StreamRecord record{at, byte(at) | (byte(at + 1) << 8U),
                            byte(at + 2) | (byte(at + 3) << 8U)};
        if (record.type == 0 && record.length == 0) break;
        records.push_back(record);
        at += 4 + record.length;
    }
    return records;
}

void SetU16(std::string& stream, std::size_t at, unsigned value) {
    stream[at] = static_cast<char>(value & 0xFF);
    stream[at + 1] = static_cast<char>(value >> 8);
}

class Biff8Checks : public ::testing::Test {
protected:
    static std::string SmallStream() {
        WorksheetCells cells{
            {0, 0, "Population"}, {1, 1, "L1"}, {2, 0, "a"}, {2, 1, "100"}, {2, 2, "102"}};
        return Biff8WorkbookStream(cells, "Sheet1");
    }
    const StreamRecord& First(unsigned type) const {
        static const StreamRecord none{};
        for (const StreamRecord& record : records)
            if (record.type == type) return record;
        ADD_FAILURE() << "no record " << type;
        return none;
    }
    static bool Refused(const std::string& damaged) {
        try {
            CheckBiff8Stream(damaged);
        } catch (const ProgramError& error) {
            EXPECT_EQ(error.Description(), "External table is not in the expected format.");
            return true;
        }
        return false;
    }

    std::string stream = SmallStream();
    std::vector<StreamRecord> records = RecordsOf(stream);
};

TEST_F(Biff8Checks, AWrittenStreamPasses) {
    EXPECT_FALSE(Refused(stream));
}

TEST_F(Biff8Checks, LengthsThatLieAreRefused) {
    std::string sheetName = stream;  // BOUNDSHEET: more characters than the record holds
    sheetName[First(0x0085).position + 4 + 6] = 100;
    EXPECT_TRUE(Refused(sheetName));

    std::string strings = stream;  // SST: a string longer than the table
    SetU16(strings, First(0x00FC).position + 4 + 8, 5000);
    EXPECT_TRUE(Refused(strings));

    std::string label = stream;  // LABELSST: a string that is not in the table
    label[First(0x00FD).position + 4 + 6] = 99;
    EXPECT_TRUE(Refused(label));

    std::string dimensions = stream;  // more than 256 columns
    SetU16(dimensions, First(0x0200).position + 4 + 10, 300);
    EXPECT_TRUE(Refused(dimensions));

    std::string past = stream;  // a record running past the stream
    SetU16(past, records.back().position + 2, 8000);
    EXPECT_TRUE(Refused(past.substr(0, records.back().position + 10)));
}

TEST_F(Biff8Checks, TheSubstreamsMustBeWhereTheWorkbookSaysTheyAre) {
    std::string moved = stream;
    moved[First(0x0085).position + 4] += 4;
    EXPECT_TRUE(Refused(moved));

    std::string unclosed = stream;  // the sheet's EOF turned into padding
    SetU16(unclosed, records.back().position, 0);
    EXPECT_TRUE(Refused(unclosed));
}

TEST_F(Biff8Checks, OlderFormatsAndRecordsOfThemAreRefused) {
    std::string biff5 = stream;
    SetU16(biff5, 4, 0x0500);
    EXPECT_TRUE(Refused(biff5));

    // A record 0 inside the sheet would be taken for a second set of dimensions.
    std::string zero = stream;
    SetU16(zero, First(0x023E).position, 0x0000);
    EXPECT_TRUE(Refused(zero));
}

TEST_F(Biff8Checks, AnEncryptedWorkbookCannotBeDecrypted) {
    std::string encrypted = stream;
    SetU16(encrypted, First(0x0042).position, 0x002F);  // CODEPAGE becomes FILEPASS
    try {
        CheckBiff8Stream(encrypted);
        ADD_FAILURE() << "not refused";
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.Description(), "Could not decrypt file.");
    }
}

}  // namespace
}  // namespace tavrelle
