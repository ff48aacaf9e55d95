// The graph windows of a run, the refresh at another interval, scales, saving and printing, and
// the result windows' texts against the batch report of the same seed.
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPrinter>
#include <QScrollBar>
#include <array>
#include <cstdio>
#include <sstream>

#include "nulls/GenotypeListText.h"
#include "nulls/screens/frmAllNulls.h"
#include "nulls/screens/frmGenotypes.h"
#include "nulls/screens/frmNullAllele.h"
#include "results/screens/frmDrawGraph.h"
#include "tests/gui/ScreenFixture.h"
#include "tests/support/Json.h"

namespace tavrelle {
namespace {

const std::string kDemo = std::string(TAVRELLE_DEMO_FILES) + "/DemoNullAlleles.gen";
const std::string kMotifs = "--repeat 2 --repeat Tav114=4 --repeat Tav131=3 --repeat Tav140=4";

class GraphTest : public ScreenTest {
protected:
    // Opens the demo, sets its motifs (Tav114 and Tav140 tetra-, Tav131 trinucleotide) and
    // runs, omitting the missing genotypes the check reports.
    void Analyse() {
        Open(kDemo);
        SetAllMotifs(2);
        for (int locus = 1; locus < 8; ++locus) {
            Button("NLocusButton")->click();
            if (locus == 2 || locus == 5) emit Combo("RepeatCombo")->activated(4);
            if (locus == 4) emit Combo("RepeatCombo")->activated(3);
        }
        user.defaultErrorChoice = ErrorDialogChoice::Omit;
        Button("RandButton")->click();
        ASSERT_TRUE(session.gAnalysis);
    }
    frmDrawGraph* Window(const std::string& locus, bool homozygotes) {
        for (frmDrawGraph* window : screen->GraphWindows())
            if (window->locus() == locus && window->IsHomozygoteGraph() == homozygotes)
                return window;
        throw std::runtime_error("no graph window for " + locus);
    }
    // Clicks a locus's first window: its partner comes forward with it.
    void BringForward(const std::string& locus) {
        if (auto* sub = qobject_cast<QMdiSubWindow*>(Window(locus, true)->parentWidget()))
            screen->GraphArea().setActiveSubWindow(sub);
        QApplication::processEvents();
    }
};

std::string FileStart(const std::string& path, std::size_t bytes) {
    std::ifstream in(path, std::ios::binary);
    std::string start(bytes, '\0');
    in.read(start.data(), static_cast<std::streamsize>(bytes));
    return start;
}

std::string FileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST_F(GraphTest, TwoWindowsPerLocusInPairs) {
    Analyse();
    const std::vector<frmDrawGraph*> windows = screen->GraphWindows();
    ASSERT_EQ(windows.size(), 16u);
    EXPECT_EQ(windows[0]->locus(), "Tav101");
    EXPECT_TRUE(windows[0]->IsHomozygoteGraph());
    EXPECT_EQ(windows[1]->locus(), "Tav101");
    EXPECT_FALSE(windows[1]->IsHomozygoteGraph());
    EXPECT_EQ(windows[0]->Graph().Title(), "Homozygote Frequencies  (CI: 95%)");
    EXPECT_EQ(windows[1]->Graph().Title(), "Frequency of Differences (bp)  (CI: 95%)");
    // The second of a pair stands to the right of the first.
    EXPECT_GT(windows[1]->parentWidget()->x(), windows[0]->parentWidget()->x());

    BringForward("Tav107");
    Grab("6-graphs-null-allele");
    // The panes show the locus last touched, and the partner window stands in front.
    EXPECT_NE(Pane("AnalysisTBox")->toPlainText().indexOf("Null alleles may be present"), -1);
    auto* partner = qobject_cast<QMdiSubWindow*>(Window("Tav107", false)->parentWidget());
    const QList<QMdiSubWindow*> stacking =
        screen->GraphArea().subWindowList(QMdiArea::StackingOrder);
    EXPECT_GE(stacking.indexOf(partner), stacking.size() - 2);
    BringForward("Tav163");
    Grab("7-graphs-no-null-allele");
    EXPECT_NE(Pane("AdvisoryTBox")->toPlainText().indexOf("Locus: Tav163"), -1);
    Action("CloseGraphs")->trigger();
    EXPECT_TRUE(screen->GraphWindows().empty());
}

TEST_F(GraphTest, AnotherIntervalRedecidesFromTheSameRounds) {
    Analyse();
    const AlleleAnalysis* engine = session.gAnalysis.get();
    const std::vector<double> means = engine->Loci()[1].meanHomozygotes;
    frmDrawGraph* window = Window("Tav107", true);
    window->CICombo->setCurrentIndex(ConfidenceCode(Confidence::FullRange));
    window->RefreshButton->click();
    EXPECT_EQ(session.gConfidenceCode, Confidence::FullRange);
    EXPECT_EQ(session.gAnalysis.get(), engine);  // no new run
    EXPECT_EQ(engine->Loci()[1].meanHomozygotes, means);

    // A fresh run with the session's seed at the full range decides and bounds the same.
    RecordingPrompter quiet;
    RunSettings settings = engine->Settings();
    settings.confidence = Confidence::FullRange;
    AlleleAnalysis fresh(session.gInputData->rsAlleleData, settings,
                         RunHooks{&quiet, {}, {}, {}, {}});
    for (std::size_t l = 0; l < fresh.Loci().size(); ++l) {
        EXPECT_EQ(engine->Loci()[l].decisions, fresh.Loci()[l].decisions) << l;
        frmDrawGraph* graph = Window(fresh.Loci()[l].name, true);
        EXPECT_EQ(graph->Graph().Bounds().upper, fresh.Loci()[l].homozygoteBounds.upper);
        EXPECT_EQ(graph->Graph().Title(), "Homozygote Frequencies  (CI: 100% (Range))");
    }
}

TEST_F(GraphTest, BothScalesAndTheScrollBars) {
    Analyse();
    frmDrawGraph* window = Window("Tav152", true);
    window->resize(420, 360);
    QApplication::processEvents();
    EXPECT_FALSE(window->View().expanded);
    EXPECT_NEAR(window->View().xScale * window->Graph().Classes(), window->View().panelWidth - 30,
                1e-9);
    EXPECT_TRUE(window->HScroll1->isHidden());
    window->mnuToggleScale->trigger();
    EXPECT_TRUE(window->View().expanded);
    EXPECT_EQ(window->View().xScale, 8);
    EXPECT_EQ(window->View().yScale, 6);
    EXPECT_EQ(window->ToggleScaleButton->toolTip(), "Contract graph scale");
    // Wider than the panel at 8 mm a class: the bar moves the drawing.
    ASSERT_FALSE(window->HScroll1->isHidden());
    window->HScroll1->setValue(window->HScroll1->maximum());
    EXPECT_GT(window->View().xOffset, 0);
    window->ToggleScaleButton->trigger();
    EXPECT_FALSE(window->View().expanded);
    EXPECT_EQ(window->ToggleScaleButton->toolTip(), "Expand graph scale");
    EXPECT_EQ(window->View().xOffset, 0);

    // View > Count Axis From Zero, off at first, puts a count of 0 on the plot's foot.
    EXPECT_FALSE(window->mnuCountFromZero->isChecked());
    const double classicScale = window->View().yScale;
    window->mnuCountFromZero->trigger();
    EXPECT_TRUE(window->View().countFromZero);
    EXPECT_NE(window->View().yScale, classicScale);
    EXPECT_NEAR(window->View().CountY(0), window->View().panelHeight - kGraphFootMargin, 1e-9);
    GrabWindow(*window, "graph-count-axis-from-zero");
}

TEST_F(GraphTest, SavedInEveryFormatAndPrintedAsVectors) {
    Analyse();
    frmDrawGraph* window = Window("Tav107", false);
    const std::string base = (folder / "graph").string();
    ASSERT_TRUE(window->SaveGraph(base + ".bmp"));
    EXPECT_EQ(FileStart(base + ".bmp", 2), "BM");
    ASSERT_TRUE(window->SaveGraph(base + ".png"));
    EXPECT_EQ(FileStart(base + ".png", 4), "\x89PNG");
    ASSERT_TRUE(window->SaveGraph(base + ".svg"));
    EXPECT_NE(FileText(base + ".svg").find("<svg"), std::string::npos);
    ASSERT_TRUE(window->SaveGraph(base + ".pdf"));
    EXPECT_EQ(FileStart(base + ".pdf", 4), "%PDF");
    // The save dialog offers the bitmap first, with the name Graph 1.
    user.saveNames.push_back(base + "-dialog.bmp");
    window->SaveGraphMenu->trigger();
    EXPECT_EQ(user.dialogs.back().proposedName, "Graph 1");
    EXPECT_EQ(user.dialogs.back().filter.substr(0, 29), "Bitmap Files (*.bmp)|*.bmp|PN");
    EXPECT_EQ(FileStart(base + "-dialog.bmp", 2), "BM");

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(base + "-printed.pdf"));
    window->Render(printer);
    const std::string printed = FileText(base + "-printed.pdf");
    EXPECT_EQ(printed.substr(0, 4), "%PDF");
    EXPECT_EQ(printed.find("/Subtype /Image"), std::string::npos);  // lines and text, no picture
}

TEST_F(GraphTest, ResultWindowsShowTheEnginesTextsAsTheBatchReportHasThem) {
    Analyse();
    // The batch program on the same file, seed and choices.
    const std::string command = std::string(TAVRELLE_BATCH) + " " + kDemo + " " + kMotifs +
                                " --on-suspect omit --json - --seed " +
                                std::to_string(session.gRandomSeed);
    std::string json;
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 65536> buffer{};
    for (std::size_t n; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        json.append(buffer.data(), n);
    pclose(pipe);
    const testing::Json report = testing::Json::Parse(json)["populations"][0];
    auto shown = [](const std::string& text) { return ShownText(text); };

    Action("mnuNulls")->trigger();
    auto* nulls = qobject_cast<frmAllNulls*>(screen->ResultWindows().back().data());
    ASSERT_TRUE(nulls);
    EXPECT_EQ(nulls->NullTextBox->toPlainText(),
              shown(std::get<std::string>(report["summary_text"].value)));
    EXPECT_EQ(nulls->windowTitle(), "Summary Statistics Null Allele Estimates");

    Action("mnuAnalysis")->trigger();
    auto* estimates = qobject_cast<frmNullAllele*>(screen->ResultWindows().back().data());
    ASSERT_TRUE(estimates);
    EXPECT_EQ(
        estimates->NullText->toPlainText(),
        shown(std::get<std::string>(report["loci"][0]["adjusted_frequencies_text"].value).empty()
                  ? frmNullAllele::kNoEvidence
                  : std::get<std::string>(report["loci"][0]["adjusted_frequencies_text"].value)));
    estimates->NextButton->click();  // Tav107, with its null allele
    EXPECT_EQ(estimates->NullText->toPlainText(),
              shown(std::get<std::string>(report["loci"][1]["adjusted_frequencies_text"].value)));
    ASSERT_TRUE(estimates->DisplayGenosButton->isEnabled());
    estimates->DisplayGenosButton->click();
    auto* genotypes = qobject_cast<frmGenotypes*>(screen->ResultWindows().back().data());
    ASSERT_TRUE(genotypes);
    AdjustedGenotypeList brookfield2;
    for (const testing::Json& row : std::get<testing::Json::Array>(
             report["loci"][1]["adjusted_genotypes"]["brookfield2"].value))
        brookfield2.push_back({static_cast<Int16>(std::get<double>(row[0].value)),
                               static_cast<Int16>(std::get<double>(row[1].value))});
    genotypes->AdjustCombo->setCurrentIndex(kBrookfield2);
    EXPECT_EQ(genotypes->GenotypesText->toPlainText(),
              shown(GenotypeListText("Tav107", brookfield2)));
    Grab("8-result-windows");
    for (QWidget* window : {static_cast<QWidget*>(nulls), static_cast<QWidget*>(estimates),
                            static_cast<QWidget*>(genotypes)}) {
        const char* folderName = std::getenv("TAVRELLE_SCREENSHOTS");
        if (folderName)
            window->grab().save(QString("%1/9-%2.png").arg(folderName, window->windowTitle()));
    }
}

}  // namespace
}  // namespace tavrelle
