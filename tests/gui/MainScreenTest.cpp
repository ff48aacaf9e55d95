// The main screen driven as a user would: open, motifs, check, analyse, browse, close.
#include "tests/gui/ScreenFixture.h"

#include <QMdiArea>

#include "widgets/Twips.h"

namespace tavrelle {
namespace {

const std::string kThreePopulations =
    std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen";

TEST_F(ScreenTest, StartsWithNothingLoaded) {
    EXPECT_EQ(screen->windowTitle(), "Tavrelle");
    EXPECT_EQ(Label("StatusPanel1")->text(), "  Ready");
    EXPECT_EQ(MenuState(), "00 0000 0000 00 0 0000 00");
    EXPECT_TRUE(Action("mnuNew")->isEnabled());
    EXPECT_TRUE(Action("mnuFileOpen")->isEnabled());
    EXPECT_EQ(Enabled({Button("PLocusButton"), Edit("LocusTextBox"), Button("NLocusButton"),
                       Button("AllButton"), Edit("SizeTextBox"), Button("ValidateButton"),
                       Edit("RandTextBox"), Button("NextPopButton"), Button("PPopButton"),
                       Button("NPopButton")}),
              "0000000000");
    EXPECT_TRUE(Combo("RepeatCombo")->isHidden());
    EXPECT_TRUE(Combo("CICombo")->isHidden());
    EXPECT_EQ(Edit("SizeTextBox")->text(), "350");
    EXPECT_EQ(Edit("RandTextBox")->text(), "1000");
    EXPECT_FALSE(screen->GridVisible());
    Grab("1-no-data");
}

TEST_F(ScreenTest, OpenStartsInTheDemoFolderAndShowsTheFirstPopulation) {
    Open(kThreePopulations);
    ASSERT_FALSE(user.dialogs.empty());
    EXPECT_EQ(user.dialogs[0].title, "Open");
    EXPECT_TRUE(std::filesystem::equivalent(
                    user.dialogs[0].folder,
                    std::filesystem::path(TAVRELLE_TABLE_DIR) / ".." / "DemoFiles") ||
                user.dialogs[0].folder.find("DemoFiles") != std::string::npos);
    EXPECT_EQ(screen->windowTitle(), "Tavrelle - DemoThreePopulations.gen");
    EXPECT_EQ(Label("StatusPanel1")->text(), "  Ready");
    EXPECT_TRUE(screen->GridVisible());
    EXPECT_EQ(MenuState(), "11 1111 0000 00 0 0000 11");
    EXPECT_EQ(Enabled({Button("NextPopButton"), Button("PPopButton"), Button("NPopButton")}),
              "100");
    EXPECT_EQ(Edit("LocusTextBox")->text(), "Tav205");
    EXPECT_EQ(Enabled({Button("PLocusButton"), Button("NLocusButton")}), "01");
    EXPECT_EQ(Label("GridCaption")->text().toStdString().substr(0, 4), "pop1");
    EXPECT_TRUE(user.messages.empty());
    Grab("2-data");
}

TEST_F(ScreenTest, AnalyseRefusesWithoutMotifsAndBadCounts) {
    Open(kThreePopulations);
    Button("RandButton")->click();
    ASSERT_EQ(user.messages.size(), 1u);
    EXPECT_EQ(user.messages[0].text, "Please select a Repeat Motif for all Loci");
    EXPECT_EQ(user.errorDialogs, 0);

    SetAllMotifs(2);
    user.defaultErrorChoice = ErrorDialogChoice::Proceed;  // the demo's missing genotypes
    for (const char* bad : {"", "abc", "1000.0", "-5"}) {
        user.messages.clear();
        Edit("RandTextBox")->setText(bad);
        Button("RandButton")->click();
        EXPECT_EQ(user.LastText(), "Please enter an integer value.") << bad;
        EXPECT_EQ(Edit("RandTextBox")->text(), "1000");
        EXPECT_FALSE(Action("mnuAnalysis")->isEnabled());
    }
    // Out of range: no run, but the result commands open up all the same.
    user.messages.clear();
    Edit("RandTextBox")->setText("999");
    Button("RandButton")->click();
    EXPECT_EQ(user.LastText(),
              "The number of randomisations entered is outside normal values (1000 to 10000).");
    EXPECT_EQ(Edit("RandTextBox")->text(), "1000");
    EXPECT_TRUE(Action("mnuAnalysis")->isEnabled());
    EXPECT_FALSE(session.gAnalysis);
}

TEST_F(ScreenTest, AnalyseRunsTheCheckThenTheRun) {
    Open(kThreePopulations);
    SetAllMotifs(2);
    // Tav211 and Tav241 are tetranucleotides, Tav226 a trinucleotide.
    for (int locus : {1, 3, 5}) {
        while (screen->LocusOnScreen() < locus)
            Button("NLocusButton")->click();
        emit Combo("RepeatCombo")->activated(locus == 3 ? 3 : 4);
    }
    Edit("RandTextBox")->setText("1e3");  // numeric: counts as 1000
    user.errorChoices.push_back(ErrorDialogChoice::Proceed);
    Button("RandButton")->click();
    ASSERT_TRUE(session.gAnalysis) << (user.messages.empty() ? "" : user.messages.back().text);
    EXPECT_EQ(session.gAnalysis->Loci().size(), 6u);
    EXPECT_EQ(session.gRandomisations, 1000);
    EXPECT_EQ(session.gRepeatTable, (std::vector<Int16>{2, 4, 2, 3, 2, 4}));
    EXPECT_EQ(MenuState(), "11 1110 0000 11 1 1111 11");
    EXPECT_FALSE(screen->GridVisible());
    EXPECT_TRUE(Widget("LeftPanel")->isHidden());
    EXPECT_TRUE(Widget("MessageBar")->isVisible());
    EXPECT_EQ(Action("Toggle")->toolTip(), "Show the DataGrid");
    // The panes speak of the locus whose graphs stand in front, the last one.
    EXPECT_NE(Pane("AdvisoryTBox")->toPlainText().indexOf("Locus: Tav241"), -1);
    Grab("4-after-run");

    // The toggle brings the grid back, and the toolbar's editing buttons with it.
    Action("mnuToggle")->trigger();
    EXPECT_TRUE(screen->GridVisible());
    EXPECT_EQ(Action("Toggle")->toolTip(), "Show the results graphs");
    EXPECT_EQ(Enabled({Action("Cut"), Action("Copy"), Action("Paste")}), "111");
    // A second Analyse on unchanged data does not check again; the earlier answers stand, so
    // the Possible Errors dialog comes once more.
    const std::string report = Pane("LocationText")->toPlainText().toStdString();
    const int dialogs = user.errorDialogs;
    Button("RandButton")->click();
    EXPECT_EQ(user.errorDialogs, dialogs + 1);
    EXPECT_EQ(Pane("LocationText")->toPlainText().toStdString(), report);
}

TEST_F(ScreenTest, TheErrorDialogsThreeAnswers) {
    const std::string file =
        WriteFile("suspect.gen",
                  "Suspect values\nLocA\nLocB\nPop\n"
                  "s1,  100102 150152\ns2,  102104 152999\ns3,  104104 150150\n"
                  "s4,  100100 151152\ns5,  102102 150154\n");
    Open(file);
    SetAllMotifs(2);
    user.errorChoices = {ErrorDialogChoice::Correct};
    Button("RandButton")->click();
    EXPECT_EQ(user.errorDialogs, 1);
    EXPECT_FALSE(session.gAnalysis);
    EXPECT_TRUE(Widget("LeftPanel")->isVisible());
    const std::string report = Pane("LocationText")->toPlainText().toStdString();
    EXPECT_NE(report.find("Unexpected values:"), std::string::npos);
    EXPECT_NE(report.find("999\t2\t6"), std::string::npos);
    EXPECT_NE(report.find("Inconsistent values:"), std::string::npos);
    EXPECT_NE(report.find("151\t4\t5"), std::string::npos);
    Grab("3-check-findings");

    // Omit: the run takes the suspect cells as missing.
    user.errorChoices = {ErrorDialogChoice::Omit};
    Button("RandButton")->click();
    ASSERT_TRUE(session.gAnalysis);
    EXPECT_EQ(session.gInputData->rsAlleleData.Cell(3, 5), "0");
    EXPECT_EQ(session.gInputData->rsAlleleData.Cell(5, 4), "0");
}

TEST_F(ScreenTest, ProceedKeepsTheSuspectValues) {
    const std::string file =
        WriteFile("suspect2.gen",
                  "Suspect values\nLocA\nPop\n"
                  "s1,  100102\ns2,  102999\ns3,  104104\ns4,  100100\ns5,  102102\n");
    Open(file);
    SetAllMotifs(2);
    user.errorChoices = {ErrorDialogChoice::Proceed};
    Button("RandButton")->click();
    ASSERT_TRUE(session.gAnalysis);
    EXPECT_EQ(session.gAnalysis->Loci()[0].highest, 999);
}

TEST_F(ScreenTest, TheCheckButtonReportsAndClampsTheSize) {
    Open(kThreePopulations);
    SetAllMotifs(2);
    Edit("SizeTextBox")->setText("800");
    Button("ValidateButton")->click();
    EXPECT_EQ(Edit("SizeTextBox")->text(), "700");
    ASSERT_GE(user.messages.size(), 1u);
    EXPECT_EQ(user.messages[0].text.substr(0, 50),
              "The maximum allele size is set outside normal limi");
    user.messages.clear();
    Edit("SizeTextBox")->setText("x");
    Button("ValidateButton")->click();
    EXPECT_EQ(user.Texts(), std::vector<std::string>{"The Maximum Allele Size must be an Integer"});
    // A non-integer cell: the critical box, and no run until it is corrected.
    session.gInputData->rsAlleleData.SetCell(2, 2, "1.5");
    Edit("SizeTextBox")->setText("350");
    user.messages.clear();
    Button("ValidateButton")->click();
    EXPECT_EQ(user.messages.at(0).icon, MessageIcon::Critical);
    EXPECT_NE(Pane("LocationText")->toPlainText().indexOf("Non-integer values:"), -1);
}

TEST_F(ScreenTest, BrowsingPopulationsCarriesMotifsOver) {
    Open(kThreePopulations);
    SetAllMotifs(2);
    Button("NextPopButton")->click();
    EXPECT_EQ(screen->PopulationOnScreen(), 2);
    EXPECT_EQ(Combo("RepeatCombo")->currentIndex(), 2);  // same loci: motifs inherited
    EXPECT_EQ(Enabled({Button("NextPopButton"), Button("PPopButton"), Button("NPopButton")}),
              "110");
    EXPECT_TRUE(Label("TablesLabel")->isVisible());
    EXPECT_EQ(Enabled({Action("mnuDisplayGraphs")}), "0");
    Button("PPopButton")->click();
    EXPECT_EQ(screen->PopulationOnScreen(), 1);
    EXPECT_EQ(Enabled({Button("NextPopButton"), Button("PPopButton"), Button("NPopButton")}),
              "001");
    EXPECT_EQ(Label("GridCaption")->text().toStdString().substr(0, 4), "pop1");
    Button("NPopButton")->click();
    EXPECT_EQ(Enabled({Button("NextPopButton"), Button("PPopButton"), Button("NPopButton")}),
              "110");
    Button("NextPopButton")->click();
    EXPECT_EQ(screen->PopulationOnScreen(), 3);
    EXPECT_FALSE(Button("NextPopButton")->isEnabled());  // the last population
}

TEST_F(ScreenTest, ARefusedFileShowsTheExampleAndKeepsTheOldGrid) {
    Open(kThreePopulations);
    const std::string before = session.gInputData->rsAlleleData.Cell(2, 1);
    Open(WriteFile("notgenepop.txt", "just a title\nno pop line here\n"));
    EXPECT_EQ(user.examples, std::vector<ExampleScreen>{ExampleScreen::Genepop});
    EXPECT_EQ(Label("StatusPanel1")->text(), "  Loading...");
    EXPECT_EQ(screen->windowTitle(), "Tavrelle - notgenepop.txt");
    EXPECT_EQ(session.gInputData->rsAlleleData.Cell(2, 1), before);
    // A text file named .xls fails at the connection.
    user.sheetNames.push_back("Sheet1");
    Open(WriteFile("book.xls", "not really a workbook"));
    EXPECT_EQ(user.messages.back().caption, "Error Opening File");
    // Cancelling the dialog leaves the screen's controls off until the next open.
    user.openNames.push_back(std::nullopt);
    Action("mnuFileOpen")->trigger();
    EXPECT_FALSE(Action("mnuDisplayGraphs")->isEnabled());
}

TEST_F(ScreenTest, AFileNamedAtStartOpensAsFileOpenWouldWithoutTheDialog) {
    screen->OpenNamedFile(kThreePopulations);
    EXPECT_TRUE(user.dialogs.empty());
    EXPECT_EQ(screen->FileLocation(), kThreePopulations);
    EXPECT_EQ(screen->windowTitle(), "Tavrelle - DemoThreePopulations.gen");
    EXPECT_TRUE(screen->GridVisible());
    EXPECT_EQ(Label("StatusPanel1")->text(), "  Ready");
    // The next File > Open asks again.
    user.openNames.push_back(std::nullopt);
    Action("mnuFileOpen")->trigger();
    EXPECT_EQ(user.dialogs.size(), 1u);
}

TEST_F(ScreenTest, ClosingAsksAboutSavingOnlyAfterChanges) {
    Open(kThreePopulations);
    Widget<QToolButton>("CloseGridButton")->click();
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(MenuState(), "00 0000 0000 00 0 0000 00");

    Open(kThreePopulations);
    screen->Grid().model()->setData(screen->Grid().model()->index(2, 2), "102");
    EXPECT_TRUE(screen->DataChanged());
    user.answers = {MessageAnswer::Cancel};
    Widget<QToolButton>("CloseGridButton")->click();
    EXPECT_EQ(user.messages.back().text, "Do you want to save all the loaded populations?");
    EXPECT_EQ(user.messages.back().caption, "Save Populations");
    EXPECT_TRUE(screen->GridVisible());  // Cancel: nothing happens
    user.answers = {MessageAnswer::No};
    Widget<QToolButton>("CloseGridButton")->click();
    // No closes the graphs after hiding the grid, and closing the graphs shows the grid again:
    // it stays on screen, every command off.
    EXPECT_TRUE(screen->GridVisible());
    EXPECT_EQ(MenuState(), "00 0000 0000 00 0 0000 00");
    EXPECT_FALSE(screen->DataChanged());

    Open(kThreePopulations);
    screen->Grid().model()->setData(screen->Grid().model()->index(2, 2), "102");
    const std::string saved = (folder / "saved.gen").string();
    user.answers = {MessageAnswer::Yes};
    user.saveNames.push_back(saved);
    Widget<QToolButton>("CloseGridButton")->click();
    EXPECT_TRUE(std::filesystem::exists(saved));
    EXPECT_FALSE(screen->GridVisible());
}

TEST_F(ScreenTest, CancellingSaveAsEndsTheSessionWithARecoveryFile) {
    Open(kThreePopulations);
    user.saveNames.push_back(std::nullopt);
    Action("mnuSaveAs")->trigger();
    EXPECT_EQ(endedWith, 1);
    ASSERT_FALSE(user.messages.empty());
    const std::string text = user.messages.back().text;
    EXPECT_EQ(text.substr(0, 24), "Run-time error '32755':\r");
    const std::size_t at = text.find("saved to ");
    ASSERT_NE(at, std::string::npos);
    const std::string recovery = text.substr(at + 9, text.size() - at - 10);
    EXPECT_TRUE(std::filesystem::exists(recovery)) << recovery;
}

TEST_F(ScreenTest, ARunWithTooManySamplesResetsTheScreen) {
    std::string text = "Too many\nLocA\nPop\n";
    for (int i = 0; i < 160; ++i)
        text.append("h").append(std::to_string(i)).append(",  100100\n");
    for (int i = 0; i < 240; ++i)
        text.append("e").append(std::to_string(i)).append(",  102104\n");
    Open(WriteFile("many.gen", text));
    SetAllMotifs(2);
    Button("RandButton")->click();
    ASSERT_FALSE(user.messages.empty());
    EXPECT_EQ(user.messages.back().caption, "Too many samples");
    EXPECT_FALSE(session.gAnalysis);  // left as it was
    EXPECT_TRUE(Widget("LeftPanel")->isVisible());
    EXPECT_TRUE(screen->DataUnchecked());
    // The run's end still opens the result commands; they refer to the last finished run,
    // and there is none.
    EXPECT_TRUE(Action("mnuNulls")->isEnabled());
    Action("mnuNulls")->trigger();
    EXPECT_EQ(endedWith, -1);
}

TEST(MainFrame, OpensWhereTheLastSessionLeftIt) {
    QSettings("Tavrelle", "Tavrelle").clear();
    Session session;
    ScriptedInteraction user;
    {
        frmMain first(session, user, TAVRELLE_TABLE_DIR);
        // First session: 1000, 1000, 6500, 6500 twips.
        EXPECT_EQ(first.geometry(), QRect(TwipsToPixels(1000), TwipsToPixels(1000),
                                          TwipsToPixels(6500), TwipsToPixels(6500)));
        first.show();
        first.setGeometry(120, 90, 900, 650);
        first.close();
    }
    {
        frmMain second(session, user, TAVRELLE_TABLE_DIR);
        EXPECT_EQ(second.geometry().size(), QSize(900, 650));
        second.show();
        second.showMaximized();
        second.close();  // a maximised frame writes nothing
    }
    frmMain third(session, user, TAVRELLE_TABLE_DIR);
    EXPECT_EQ(third.geometry().size(), QSize(900, 650));
}

}  // namespace
}  // namespace tavrelle
