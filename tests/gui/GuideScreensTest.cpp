// The worked example of the help, driven through the main screen as a user would; its pictures
// are the ones the help and the user guide show.
#include "tests/gui/ScreenFixture.h"
#include "tests/gui/Screenshot.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include "checking/screens/frmErrorDialog.h"
#include "nulls/screens/frmAllNulls.h"
#include "nulls/screens/frmNullAllele.h"
#include "population/screens/frmGenepopExample.h"

namespace tavrelle {
namespace {

class GuideScreensTest : public ScreenTest {
protected:
    void SetMotif(int locus, int listIndex) {
        while (screen->LocusOnScreen() < locus)
            Button("NLocusButton")->click();
        Combo("RepeatCombo")->setCurrentIndex(listIndex);
        emit Combo("RepeatCombo")->activated(listIndex);
    }
    // A window of the frame by its title, or nothing.
    template <class Window>
    Window* Find(const QString& title) {
        for (Window* window : screen->findChildren<Window*>())
            if (window->windowTitle().contains(title)) return window;
        return nullptr;
    }
    void GrabGraph(const QString& locus, const QString& kind, const std::string& name) {
        for (QMdiSubWindow* sub : screen->GraphArea().subWindowList()) {
            const QString title = sub->windowTitle() + " " + sub->widget()->windowTitle();
            if (!title.contains(locus) || !title.contains(kind)) continue;
            sub->showNormal();
            sub->resize(760, 520);
            GrabWindow(*sub->widget(), name);
        }
    }
};

TEST_F(GuideScreensTest, TheWorkedExample) {
    Open(std::string(TAVRELLE_DEMO_FILES) + "/DemoNullAlleles.gen");
    ASSERT_TRUE(screen->GridVisible());
    SetAllMotifs(2);  // Dinucleotide
    SetMotif(2, 4);   // Tav114 Tetranucleotide
    SetMotif(4, 3);   // Tav131 Trinucleotide
    SetMotif(5, 4);   // Tav140 Tetranucleotide
    // Leaving the locus and coming back shows the motif it keeps.
    Button("PLocusButton")->click();
    Button("NLocusButton")->click();
    EXPECT_EQ(screen->LocusOnScreen(), 5);
    EXPECT_EQ(Combo("RepeatCombo")->currentIndex(), 4);
    Grab("main-data");

    frmErrorDialog possibleErrors(screen.get());
    GrabWindow(possibleErrors, "possible-errors");
    frmGenepopExample example(screen.get());
    GrabWindow(example, "genepop-example");

    user.defaultErrorChoice = ErrorDialogChoice::Omit;
    Button("RandButton")->click();
    EXPECT_EQ(user.errorDialogs, 1);
    ASSERT_TRUE(session.gAnalysis);
    const std::vector<LocusResult>& loci = session.gAnalysis->Loci();
    ASSERT_EQ(loci.size(), 8u);
    // The estimates do not depend on the clock's seed.
    EXPECT_EQ(loci[1].nulls.estimatesLine, "0.1911\t\t0.2374\t\t0.1768\t\t0.2936");
    EXPECT_EQ(loci[4].nulls.estimatesLine, "0.0772\t\t0.0847\t\t0.0691\t\t0.1714");
    EXPECT_EQ(loci[1].nullPresent, "yes");
    EXPECT_EQ(loci[0].nullPresent, "no");

    const auto texts = session.gAnalysis->DisplayInitAnalysis("Tav107");
    ASSERT_TRUE(texts);
    Pane("AdvisoryTBox")->setPlainText(QString::fromStdString(texts->first).replace("\r\n", "\n"));
    Pane("AnalysisTBox")->setPlainText(QString::fromStdString(texts->second).replace("\r\n", "\n"));
    for (QMdiSubWindow* sub : screen->GraphArea().subWindowList())
        if (sub->windowTitle().contains("Tav107")) screen->GraphArea().setActiveSubWindow(sub);
    Grab("main-after-run");
    GrabGraph("Tav107", "Homozyg", "graph-homozygotes");
    GrabGraph("Tav122", "Differ", "graph-differences");

    Action("mnuAnalysis")->trigger();
    if (auto* estimates = Find<frmNullAllele>("Estimated Allele Frequencies")) {
        estimates->resize(720, 360);
        estimates->ShowLocus(1);
        GrabWindow(*estimates, "estimate-frequencies");
        estimates->close();
    }
    Action("mnuNulls")->trigger();
    if (auto* compare = Find<frmAllNulls>("Summary Statistics")) {
        EXPECT_TRUE(compare->NullTextBox->toPlainText().contains(
            "Several loci show evidence for a null allele."));
        compare->resize(880, 360);
        GrabWindow(*compare, "compare-loci");
        compare->close();
    }
}

}  // namespace
}  // namespace tavrelle
