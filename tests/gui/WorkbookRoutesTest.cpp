// Workbooks through File Open and Save As, and the sheet dialog.
#include "population/screens/frmSheetDialog.h"
#include "tests/gui/ScreenFixture.h"

#include <QComboBox>

#include "formats/SheetReaders.h"
#include "population/FileKind.h"

namespace tavrelle {
namespace {

TEST_F(ScreenTest, WorkbooksOpenThroughTheSheetDialogAndSaveAsXlsx) {
    user.sheetNames.push_back("Sheet1");
    Open(std::string(TAVRELLE_DEMO_FILES) + "/DemoNullAlleles.xls");
    ASSERT_TRUE(screen->ReadsWorkbook());
    EXPECT_TRUE(screen->GridVisible());
    EXPECT_EQ(session.gInputData->LocusNames().size(), 8u);
    EXPECT_EQ(session.gInputData->TitleLine(), "");

    // Cancel in the sheet dialog: nothing is loaded and no file is named.
    user.sheetNames.push_back(std::nullopt);
    Open(std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.xlsx");
    EXPECT_TRUE(screen->FileLocation().empty());

    user.sheetNames.push_back("Sheet1");
    Open(std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.xlsx");
    EXPECT_TRUE(Button("NextPopButton")->isEnabled());
    const std::string saved = (folder / "copy.xlsx").string();
    user.saveNames.push_back(saved);
    Action("mnuSaveAs")->trigger();
    EXPECT_TRUE(std::filesystem::exists(saved));
    EXPECT_NE(user.dialogs.back().filter.find("Excel 2007+ File (*.xlsx)|*.xlsx"),
              std::string::npos);

    // A sheet that is not there: its box, then the Excel example.
    user.sheetNames.push_back("NoSuchSheet");
    Open(saved);
    EXPECT_EQ(user.LastText(), "The sheet named NoSuchSheet has not been found.");
    EXPECT_EQ(user.examples.back(), ExampleScreen::Excel);
    // A Genepop file named .xls cannot be opened as a workbook.
    user.sheetNames.push_back("Sheet1");
    Open(WriteFile("text.xls", "Title\nL1\nPop\na, 100102\n"));
    EXPECT_EQ(user.messages.back().caption, "Error Opening File");
}

TEST(SheetDialog, RefusesAnEmptyName) {
    RecordingPrompter prompter;
    frmSheetDialog dialog(prompter);
    EXPECT_EQ(dialog.SheetText->text(), "Sheet1");
    dialog.SheetText->clear();
    dialog.OKButton_Click();
    ASSERT_EQ(prompter.messages.size(), 1u);
    EXPECT_EQ(prompter.messages[0].text, "Please enter a sheet name.");
    EXPECT_EQ(prompter.messages[0].caption, "Excel Sheet Name");
    dialog.SheetText->setText("Data");
    dialog.OKButton_Click();
    EXPECT_EQ(dialog.SheetName(), "Data");
}

TEST(SheetDialog, OffersTheSheetsOfTheWorkbook) {
    for (const char* demo : {"/DemoNullAlleles.xls", "/DemoThreePopulations.xlsx"}) {
        const std::string path = std::string(TAVRELLE_DEMO_FILES) + demo;
        EXPECT_EQ(MakeExcelSheetReader(KindOfFile(path))->SheetNames(path),
                  std::vector<std::string>{"Sheet1"})
            << demo;
    }
    // A file that is no workbook offers nothing; opening it says why.
    EXPECT_TRUE(MakeExcelSheetReader(FileKind::Xlsx)->SheetNames(TAVRELLE_BATCH).empty());

    RecordingPrompter prompter;
    frmSheetDialog dialog(prompter, {"Data", "Notes"});
    ASSERT_EQ(dialog.SheetList->count(), 2);
    EXPECT_EQ(dialog.SheetText->text(), "Sheet1");
    dialog.SheetList->setCurrentIndex(1);
    dialog.OKButton_Click();
    EXPECT_EQ(dialog.SheetName(), "Notes");
}

}  // namespace
}  // namespace tavrelle
