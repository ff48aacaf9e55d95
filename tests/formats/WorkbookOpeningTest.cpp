// A workbook is opened once for its sheet names and its sheet, and a refused sheet comes back as
// a located error with the boxes the desktop shows.
#include <gtest/gtest.h>

#include "formats/SheetReaders.h"
#include "formats/XlsxReader.h"

namespace tavrelle {
namespace {

const std::string kBook = std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.xlsx";

class CountingReader : public XlsxSheetReader {
public:
    int openings = 0;

protected:
    std::unique_ptr<ExcelWorkbook> OpenWorkbook(const std::string& fileLocation) override {
        ++openings;
        return XlsxSheetReader::OpenWorkbook(fileLocation);
    }
};

TEST(WorkbookOpening, SheetNamesAndTheSheetComeFromOneOpening) {
    CountingReader reader;
    EXPECT_EQ(reader.SheetNames(kBook), std::vector<std::string>{"Sheet1"});
    RecordingPrompter questions;
    OpenedDataFile opened = OpenDataFileWith(kBook, FileKind::Xlsx, "Sheet1", &reader, questions);
    ASSERT_TRUE(opened.store);
    EXPECT_TRUE(opened.store->IsAnotherPop());

    OpenedDataFile missing = OpenDataFileWith(kBook, FileKind::Xlsx, "Nope", &reader, questions);
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(missing.error->expected, "a sheet named Nope");
    ASSERT_EQ(missing.error->messages.size(), 1U);
    EXPECT_EQ(missing.error->messages[0].caption, "Not Found");
    EXPECT_EQ(missing.error->example, ExampleScreen::Excel);
    EXPECT_TRUE(questions.messages.empty());
    EXPECT_EQ(reader.openings, 1);
}

TEST(WorkbookOpening, AFileThatIsNoWorkbookIsTheOpenCommandsError) {
    RecordingPrompter questions;
    OpenedDataFile opened = OpenDataFile(std::string(TAVRELLE_DEMO_FILES) + "/DemoClean.gen",
                                         FileKind::Xlsx, "Sheet1", questions);
    ASSERT_TRUE(opened.error);
    ASSERT_EQ(opened.error->messages.size(), 1U);
    EXPECT_EQ(opened.error->messages[0].caption, "Error Opening File");
    EXPECT_EQ(opened.error->messages[0].text, "External table is not in the expected format.");
    EXPECT_FALSE(opened.error->example);
}

}  // namespace
}  // namespace tavrelle
