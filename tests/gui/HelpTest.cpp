// Help topics, the user guide, the questionnaire and the about box, and the help viewer itself.
#include "tests/gui/ScreenFixture.h"
#include "tests/gui/Screenshot.h"

#include <QListWidget>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>

#include "session/DesktopInteraction.h"
#include "session/HelpViewer.h"
#include "session/frmAbout.h"

namespace tavrelle {
namespace {

const std::filesystem::path kHelpSource =
    std::filesystem::path(TAVRELLE_DEMO_FILES).parent_path() / "docs" / "help";

TEST_F(ScreenTest, EachHelpRoutineOpensItsTopic) {
    const std::string bundle =
        (std::filesystem::path(TAVRELLE_TABLE_DIR) / "TavrelleHelp").string();
    EXPECT_EQ(screen->HelpFile(), bundle);
    Action("mnuHelpContents")->trigger();
    Action("mnuHelpIndex")->trigger();
    screen->DisplayAlleleFreqHelp();
    screen->DisplayNullCalcHelp();
    screen->DisplayAdjGenoHelp();
    ASSERT_EQ(user.help.size(), 5u);
    const std::vector<std::pair<std::string, int>> expected{{"", 1},
                                                            {"", 2},
                                                            {"::/CorrectedInfo.htm", 1},
                                                            {"::/NullAllelesAL.htm", 1},
                                                            {"::/AdjustGenos.htm", 1}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(user.help[i].file, bundle);
        EXPECT_EQ(user.help[i].topic, expected[i].first);
        EXPECT_EQ(user.help[i].command, expected[i].second);
    }
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(ScreenTest, NoHelpFileGivesTheMessages) {
    screen->SetHelpFile("");
    Action("mnuHelpContents")->trigger();
    Action("mnuHelpIndex")->trigger();
    screen->DisplayAlleleFreqHelp();
    screen->DisplayNullCalcHelp();
    screen->DisplayAdjGenoHelp();
    EXPECT_TRUE(user.help.empty());
    ASSERT_EQ(user.messages.size(), 5u);
    EXPECT_EQ(user.messages[0].text,
              "Unable to display Help Contents. There is no Help associated with this project.");
    for (std::size_t i = 1; i < 5; ++i)
        EXPECT_EQ(user.messages[i].text,
                  "Unable to display Help Index. There is no Help associated with this project.");
    for (const Message& message : user.messages) {
        EXPECT_EQ(message.caption, "Tavrelle");
        EXPECT_EQ(message.icon, MessageIcon::Information);
        EXPECT_EQ(message.buttons, MessageButtons::Ok);
    }
}

TEST_F(ScreenTest, GuideAndQuestionnaireOpenThroughTheDesktop) {
    const std::filesystem::path program(TAVRELLE_TABLE_DIR);
    Action("mnuHelpPDF")->trigger();
    Action("mnuHelpQ")->trigger();
    EXPECT_EQ(user.documents, (std::vector<std::string>{(program / "User_Guide.pdf").string(),
                                                        (program / "Questionnaire.xls").string()}));
    EXPECT_TRUE(user.messages.empty());

    // Not found: told for the guide only.
    user.documents.clear();
    user.documentCode = 2;
    Action("mnuHelpPDF")->trigger();
    Action("mnuHelpQ")->trigger();
    ASSERT_EQ(user.messages.size(), 1u);
    EXPECT_EQ(user.messages[0], (Message{"The requested file has not been found.", "File Not Found",
                                         MessageIcon::Exclamation, MessageButtons::Ok}));
}

TEST_F(ScreenTest, NoReaderOffersTheDownloadPage) {
    user.documentCode = 3;
    Action("mnuHelpPDF")->trigger();  // the scripted user presses Cancel
    ASSERT_EQ(user.messages.size(), 1u);
    EXPECT_EQ(user.messages[0],
              (Message{"Adobe Acrobat Reader may not be installed on this machine.\r\nClick OK to "
                       "go to the Web site to download a free copy or click Cancel.",
                       "Get Adobe Acrobat Reader", MessageIcon::None, MessageButtons::OkCancel}));
    EXPECT_EQ(user.documents.size(), 1u);

    user.answers.push_back(MessageAnswer::Ok);
    Action("mnuHelpPDF")->trigger();
    ASSERT_EQ(user.documents.size(), 3u);
    EXPECT_EQ(user.documents[2].rfind("https://", 0), 0u);
}

TEST(DesktopInteractionTest, DocumentCodes) {
    DesktopInteraction desktop;
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    EXPECT_EQ(desktop.OpenDocument((folder / "no-such-guide.pdf").string()), 2);
    EXPECT_EQ(desktop.OpenDocument((folder / "no-such-folder" / "User_Guide.pdf").string()), 3);
}

TEST_F(ScreenTest, AboutBoxIsModalOverTheFrame) {
    bool seen = false;
    QTimer::singleShot(0, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        auto* about = qobject_cast<frmAbout*>(modal);
        if (!about) {
            if (modal) modal->close();
            return;
        }
        seen = true;
        EXPECT_EQ(about->parentWidget(), screen.get());
        EXPECT_EQ(about->windowTitle(), "About Tavrelle");
        EXPECT_EQ(about->lblTitle->text(), "Tavrelle");
        EXPECT_EQ(about->lblVersion->text(), "Version 1.0.0");
        EXPECT_EQ(about->lblDescription->text().toStdString(),
                  "Checks for microsatellite null alleles and scoring errors due to stuttering "
                  "and large allele drop-out ( i.e. short allele dominance) in samples of "
                  "panmictic populations of diploid organisms.  Tavrelle can also adjust allele "
                  "and genotype frequencies if null alleles are detected.");
        EXPECT_EQ(about->cmdSysInfo->text(), "&System Info...");
        EXPECT_TRUE(about->SystemInformation().contains(qVersion()));
        EXPECT_TRUE(about->SystemInformation().contains(
            QDir::toNativeSeparators(QFileInfo(QString(TAVRELLE_TABLE_DIR)).absoluteFilePath())));
        GrabWindow(*about, "about");
        about->cmdOK->click();
    });
    Action("mnuHelpAbout")->trigger();
    EXPECT_TRUE(seen);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

// The help viewer the desktop opens, on the bundle in the sources.
class HelpViewerTest : public ::testing::Test {
protected:
    void TearDown() override { delete &SessionHelpViewer(nullptr); }
    HelpViewer& Show(const std::string& topic, int command = 1) {
        desktop.ShowHelp(kHelpSource.string(), topic, command);
        return SessionHelpViewer(nullptr);
    }
    DesktopInteraction desktop;
};

TEST_F(HelpViewerTest, OpensAtTheTopicTheContentsAndTheIndex) {
    HelpViewer& viewer = Show("::/NullAllelesAL.htm");
    EXPECT_TRUE(viewer.isVisible());
    EXPECT_EQ(viewer.CurrentPage(), "NullAllelesAL.htm");
    EXPECT_EQ(viewer.Tabs->currentIndex(), 0);
    ASSERT_NE(viewer.ContentsTree->currentItem(), nullptr);
    EXPECT_EQ(viewer.ContentsTree->currentItem()->text(0), "Estimating null allele frequencies");
    EXPECT_EQ(&Show("::/CorrectedInfo.htm"), &viewer);  // one viewer for the session
    EXPECT_EQ(viewer.CurrentPage(), "CorrectedInfo.htm");
    EXPECT_EQ(Show("").CurrentPage(), "index.html");
    Show("", 2);
    EXPECT_EQ(viewer.CurrentPage(), "Keywords.htm");
    EXPECT_EQ(viewer.Tabs->currentIndex(), 1);
    viewer.IndexFilter->setText("brookfield");
    int shown = 0;
    for (int i = 0; i < viewer.IndexList->count(); ++i)
        shown += viewer.IndexList->item(i)->isHidden() ? 0 : 1;
    EXPECT_EQ(shown, 3);  // Brookfield 1, Brookfield 2 and its entry below it

    viewer.BackAction->trigger();
    EXPECT_EQ(viewer.CurrentPage(), "index.html");
    viewer.ForwardAction->trigger();
    EXPECT_EQ(viewer.CurrentPage(), "Keywords.htm");
}

TEST_F(HelpViewerTest, AMissingBundleSaysSo) {
    HelpViewer& viewer = Show("::/AdjustGenos.htm");
    desktop.ShowHelp("/no/such/TavrelleHelp", "::/AdjustGenos.htm", 1);
    EXPECT_TRUE(viewer.Browser->toPlainText().contains("The help pages were not found"));
    EXPECT_EQ(viewer.ContentsTree->topLevelItemCount(), 0);
}

TEST_F(HelpViewerTest, EveryPageIsListedAndEveryLinkAndImageIsThere) {
    const HelpBundle bundle(QString::fromStdString(kHelpSource.string()));
    ASSERT_TRUE(bundle.Exists());
    QStringList listed;
    for (const HelpLink& link : bundle.Contents() + bundle.Keywords()) {
        const QString page = link.page.section('#', 0, 0);
        EXPECT_TRUE(QFileInfo::exists(QDir(bundle.Folder()).filePath(page))) << page.toStdString();
        listed << page;
    }
    EXPECT_GE(bundle.Keywords().size(), 60);
    const QRegularExpression reference(R"re((?:href|src)="([^"#:]+)[^"]*")re");
    for (const QFileInfo& file : QDir(bundle.Folder()).entryInfoList({"*.htm", "*.html"})) {
        if (file.fileName() != HelpBundle::kContentsPage) {
            EXPECT_TRUE(listed.contains(file.fileName())) << file.fileName().toStdString();
        }
        QFile page(file.absoluteFilePath());
        ASSERT_TRUE(page.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(page.readAll());
        for (auto it = reference.globalMatch(html); it.hasNext();) {
            const QString target = it.next().captured(1);
            EXPECT_TRUE(QFileInfo::exists(file.dir().filePath(target)))
                << file.fileName().toStdString() << " -> " << target.toStdString();
        }
    }
}

}  // namespace
}  // namespace tavrelle
