// Editing the grid, New, Save As and the exit, as a user would.
#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>

#include "population/InputDataSource.h"
#include "session/frmNewGrid.h"
#include "tests/gui/ScreenFixture.h"

namespace tavrelle {
namespace {

const std::string kSmall =
    "Small\nLocA\nLocB\nPop\ns1,  100102 150152\ns2,  102104 152154\ns3,  104104 150150\n"
    "s4,  100100 152152\ns5,  102102 150154\n";

QString Clipboard() {
    return QGuiApplication::clipboard()->text();
}

TEST_F(ScreenTest, CopyCutPasteAndDeleteWholeRows) {
    Open(WriteFile("small.gen", kSmall));
    Table& table = session.gInputData->rsAlleleData;
    // Rows are picked with Ctrl in an order the copy keeps.
    Pick({4, 2});
    Action("mnuCopy")->trigger();
    EXPECT_EQ(Clipboard(), "s3\t104\t104\t150\t150\r\ns1\t100\t102\t150\t152\r\n");
    // Copy with nothing picked leaves the clipboard empty: the toolbar's Copy stays on with no
    // rows picked once the graphs are closed or the grid is shown again.
    Pick({});
    Action("Copy")->setEnabled(true);
    Action("Copy")->trigger();
    EXPECT_TRUE(Clipboard().isEmpty());

    Pick({3});
    Action("mnuCut")->trigger();
    EXPECT_EQ(Clipboard(), "s2\t102\t104\t152\t154\r\n");
    EXPECT_EQ(table.RecordCount(), 6);
    EXPECT_TRUE(screen->DataChanged());
    // Paste numbers the new row from the row count, so a number can repeat.
    Action("mnuPaste")->trigger();
    ASSERT_EQ(table.RecordCount(), 7);
    EXPECT_EQ(table.Cell(6, 0), "5");
    EXPECT_EQ(table.Cell(6, 1), "s2");
    EXPECT_EQ(table.Cell(6, 5), "154");
    // Without a final line break the last line is lost; a wrong field count is refused.
    QGuiApplication::clipboard()->setText("x\t1\t2\t3\t4");
    Action("mnuPaste")->trigger();
    EXPECT_EQ(table.RecordCount(), 7);
    QGuiApplication::clipboard()->setText("x\t1\t2\r\n");
    Action("mnuPaste")->trigger();
    EXPECT_EQ(user.LastText(),
              "The number of loci to be pasted does not\r\nmatch the number of loci in the "
              "DataGrid.");
    EXPECT_EQ(user.messages.back().caption, "Invalid Paste");
    // A later line with fewer fields ends the paste where it stands, its row half filled.
    QGuiApplication::clipboard()->setText("y\t1\t2\t3\t4\r\nz\t1\r\n");
    Action("mnuPaste")->trigger();
    ASSERT_EQ(table.RecordCount(), 9);
    EXPECT_EQ(table.Cell(8, 1), "z");
    EXPECT_EQ(table.Cell(8, 3), "");

    // The grid's own deletion refuses when the first picked row is a heading row; the menu's
    // and the keys' deletion does not ask.
    Pick({1, 5});
    Action("GridDeleteAction")->trigger();
    EXPECT_EQ(user.LastText(), "This row cannot be deleted.");
    EXPECT_EQ(table.RecordCount(), 9);
    const auto messages = user.messages.size();
    screen->Grid().onKey(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_EQ(user.messages.size(), messages);  // the key deletes without asking
    EXPECT_EQ(table.RecordCount(), 7);
    Action("mnuSelectAll")->trigger();
    EXPECT_EQ(Enabled({Action("mnuCut"), Action("mnuCopy"), Action("Cut"), Action("Copy")}),
              "1111");
    Action("mnuDelete")->trigger();
    EXPECT_EQ(table.RecordCount(), 0);  // heading rows too
}

TEST_F(ScreenTest, KeysWorkOnlyWithCtrlAlone) {
    Open(WriteFile("small.gen", kSmall));
    Pick({2});
    QGuiApplication::clipboard()->clear();
    EXPECT_FALSE(screen->Grid().onKey(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier));
    EXPECT_TRUE(Clipboard().isEmpty());
    EXPECT_TRUE(screen->Grid().onKey(Qt::Key_C, Qt::ControlModifier));
    EXPECT_EQ(Clipboard(), "s1\t100\t102\t150\t152\r\n");
    screen->Grid().onShiftClick();
    EXPECT_EQ(user.messages.back().caption, "Possible input error");
}

TEST_F(ScreenTest, NewGridTypedSavedAndReadBack) {
    user.newGrids.push_back(std::vector<std::string>{"Locus 1", "Locus 2"});
    Action("mnuNew")->trigger();
    EXPECT_TRUE(session.gGridIsNew);
    EXPECT_EQ(Label("GridCaption")->text(), "New Population");
    EXPECT_EQ(MenuState(), "11 1111 1111 00 0 0000 11");
    EXPECT_EQ(Edit("LocusTextBox")->text(), "Locus 1");
    Grab("5-new-grid");
    // Typing in the blank row at the foot adds samples.
    QAbstractItemModel* model = screen->Grid().model();
    const char* rows[][5] = {{"a", "100", "102", "150", "152"}, {"b", "102", "104", "152", "0"}};
    for (const auto& row : rows) {
        const int at = model->rowCount() - 1;
        for (int c = 0; c < 5; ++c)
            ASSERT_TRUE(model->setData(model->index(at, c + 1), row[c]));
    }
    EXPECT_EQ(session.gInputData->rsAlleleData.RecordCount(), 4);
    EXPECT_EQ(session.gInputData->rsAlleleData.Cell(3, 0), "2");
    const std::string saved = (folder / "typed.txt").string();
    user.saveNames.push_back(saved);
    Action("mnuSaveAs")->trigger();
    RecordingPrompter quiet;
    StoreRequest request;
    request.fileLocation = saved;
    InputDataSource back(request, quiet);
    EXPECT_EQ(back.LocusNames(), (std::vector<std::string>{"Locus 1", "Locus 2"}));
    EXPECT_EQ(back.rsAlleleData.Cell(3, 1), "b");
    EXPECT_EQ(back.rsAlleleData.Cell(3, 5), "000");  // "0" is written as 000
    // Cancel in the dialog: the old store stands and nothing is made.
    Action("mnuNew")->trigger();
    EXPECT_FALSE(session.gGridIsNew);
}

TEST(NewGridDialog, CountsFromTheSpinAndTheText) {
    RecordingPrompter prompter;
    {
        frmNewGrid dialog(prompter);
        dialog.OKButton_Click();
        EXPECT_EQ(dialog.Loci(), (std::vector<std::string>{"Locus 1"}));
    }
    {
        frmNewGrid dialog(prompter);
        dialog.CountText->setText("12");
        dialog.OKButton_Click();
        ASSERT_TRUE(dialog.Loci());
        EXPECT_EQ(dialog.Loci()->back(), "Locus 12");
    }
    {
        frmNewGrid dialog(prompter);
        dialog.CountText->setText("2.5");
        dialog.OKButton_Click();
        EXPECT_FALSE(dialog.Loci());
        EXPECT_EQ(prompter.messages.back().text, "Please select a number between 1 and 200.");
    }
    {
        // The spin's far end shows 199 but holds 200: OK refuses and resets the text.
        frmNewGrid dialog(prompter);
        dialog.VScroll1->setValue(2);
        dialog.VScroll1->setValue(1);
        EXPECT_EQ(dialog.CountText->text(), "199");
        dialog.OKButton_Click();
        EXPECT_FALSE(dialog.Loci());
        EXPECT_EQ(dialog.CountText->text(), "1");
    }
    {
        frmNewGrid dialog(prompter);
        dialog.CountText->setText("250");  // the limit binds only the spin
        dialog.OKButton_Click();
        EXPECT_EQ(dialog.Loci()->size(), 250u);
    }
    {
        frmNewGrid dialog(prompter);
        dialog.CountText->setText("0");
        dialog.OKButton_Click();
        EXPECT_TRUE(dialog.Error());
    }
}

TEST_F(ScreenTest, NothingTypedIntoABoxEndsTheSession) {
    Open(WriteFile("small.gen", kSmall));
    SetAllMotifs(2);
    for (const char* text : {"", "999999", "1e999", "-0", "abc", "0x1F", "\t"}) {
        Edit("SizeTextBox")->setText(text);
        Button("ValidateButton")->click();
        Edit("RandTextBox")->setText(text);
        Button("RandButton")->click();
    }
    QAbstractItemModel* model = screen->Grid().model();
    model->setData(model->index(3, 2), QString(300, 'x'));  // longer than a cell takes
    model->setData(model->index(3, 2), "abc");
    user.defaultErrorChoice = ErrorDialogChoice::Proceed;
    Edit("SizeTextBox")->setText("350");
    Edit("RandTextBox")->setText("1000");
    Button("RandButton")->click();
    EXPECT_EQ(endedWith, -1) << user.LastText();
    EXPECT_TRUE(session.gAnalysis);
}

TEST_F(ScreenTest, ExitWithChangesAsksTwiceAndEnds) {
    Open(WriteFile("small.gen", kSmall));
    screen->Grid().model()->setData(screen->Grid().model()->index(2, 2), "106");
    user.answers = {MessageAnswer::Cancel, MessageAnswer::Cancel};
    Action("mnuFileExit")->trigger();
    EXPECT_EQ(user.Texts(),
              (std::vector<std::string>{"Do you want to save all the loaded populations?",
                                        "Do you want to save all the loaded populations?"}));
    EXPECT_FALSE(screen->isVisible());
}

}  // namespace
}  // namespace tavrelle
