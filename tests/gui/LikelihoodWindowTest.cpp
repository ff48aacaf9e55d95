// Tools > Likelihood Estimates after a run: the window computes on its own thread, shows the
// seven estimates of every locus and the population's F, and saves its plot in three formats.
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QSpinBox>
#include <QTableWidget>

#include "ScreenFixture.h"
#include "Screenshot.h"
#include "nulls/screens/frmLikelihood.h"

namespace tavrelle {
namespace {

// Lets the window's worker finish and its result reach the window.
bool WaitForResult(const frmLikelihood& window) {
    QElapsedTimer clock;
    clock.start();
    while (window.Busy() && clock.elapsed() < 120000)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    return !window.Busy();
}

TEST_F(ScreenTest, LikelihoodEstimatesOpenAfterARun) {
    EXPECT_FALSE(Action("mnuLikelihood")->isEnabled()) << "nothing to estimate from yet";
    Open(std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen");
    SetAllMotifs(2);
    user.defaultErrorChoice = ErrorDialogChoice::Proceed;
    Button("RandButton")->click();
    ASSERT_TRUE(session.gAnalysis);
    ASSERT_TRUE(Action("mnuLikelihood")->isEnabled());

    Action("mnuLikelihood")->trigger();
    auto* window = qobject_cast<frmLikelihood*>(screen->ResultWindows().back().data());
    ASSERT_NE(window, nullptr);
    window->ReplicatesBox->setValue(100);
    ASSERT_TRUE(WaitForResult(*window));
    window->Compute();  // again with 100 replicates
    EXPECT_FALSE(window->ComputeButton->isEnabled()) << "one computation at a time";
    ASSERT_TRUE(WaitForResult(*window));

    const int loci = static_cast<int>(session.gAnalysis->Loci().size());
    EXPECT_EQ(window->EstimatesTable->rowCount(), loci);
    EXPECT_EQ(window->EstimatesTable->columnCount(), 9);  // eight estimates, the failure rate
    EXPECT_EQ(window->EstimatesTable->horizontalHeaderItem(4)->text(), "EM");
    EXPECT_EQ(window->EstimatesTable->horizontalHeaderItem(8)->text(), "Failure rate");
    EXPECT_TRUE(window->EstimatesTable->item(0, 6)->text().contains("["));
    EXPECT_TRUE(window->InbreedingLabel->text().contains("F = "));
    for (const char* suffix : {"png", "svg", "pdf"}) {
        const std::string path = (folder / ("forest." + std::string(suffix))).string();
        EXPECT_TRUE(window->SavePlot(path)) << suffix;
        EXPECT_GT(QFileInfo(QString::fromStdString(path)).size(), 1000) << suffix;
    }
    GrabWindow(*window, "likelihood-estimates");
}

}  // namespace
}  // namespace tavrelle
