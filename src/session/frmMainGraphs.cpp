// The graph windows of a run, their pairing, and the refresh at another confidence interval.
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>

#include "results/screens/frmDrawGraph.h"
#include "session/frmMain.h"
#include "widgets/ShownText.h"
#include "widgets/Twips.h"

namespace tavrelle {

std::vector<frmDrawGraph*> frmMain::GraphWindows() const {
    std::vector<frmDrawGraph*> windows;
    for (QMdiSubWindow* sub : mdiArea->subWindowList(QMdiArea::CreationOrder))
        if (auto* graph = qobject_cast<frmDrawGraph*>(sub->widget())) windows.push_back(graph);
    return windows;
}

void frmMain::ShowLocusGraphs() {
    const AlleleAnalysis& analysis = *session_.gAnalysis;
    GraphWindowHost host;
    host.interaction = &interaction_;
    host.showBothGraphs = [this](const std::string& locus, bool first) {
        ShowBothGraphs(locus, first);
    };
    host.displayInitAnalysis = [this](const std::string& locus) { DisplayInitAnalysis(locus); };
    host.refresh = [this](Confidence code) { Guarded([this, code] { RefreshGraphs(code); }); };
    host.toggleGrid = [this] { Guarded([this] { mnuToggle_Click(); }); };
    host.closeGraphs = [this] { Guarded([this] { mnuCloseGraphs_Click(); }); };
    host.estimateFrequencies = [this] { Guarded([this] { mnuAnalysis_Click(); }); };
    host.nullsAcrossLoci = [this] { Guarded([this] { mnuNulls_Click(); }); };
    host.helpContents = [this] { Guarded([this] { mnuHelpContents_Click(); }); };
    host.helpIndex = [this] { Guarded([this] { mnuHelpIndex_Click(); }); };
    host.userGuide = [this] { Guarded([this] { mnuHelpPDF_Click(); }); };
    host.questionnaire = [this] { Guarded([this] { mnuHelpQ_Click(); }); };
    host.about = [this] { Guarded([this] { mnuHelpAbout_Click(); }); };

    // Half the frame wide, its client area less 500 twips high; the second of a pair stands at
    // half the frame's width less 70.
    const int width =
        std::max(TwipsToPixels(3402, this), MdiHalfWidth() - TwipsToPixels(100, this));
    const int height =
        std::max(TwipsToPixels(3969, this), mdiArea->height() - TwipsToPixels(500, this));
    const int secondLeft = MdiHalfWidth() - TwipsToPixels(70, this);
    for (const LocusResult& locus : analysis.Loci()) {
        for (bool first : {true, false}) {
            GraphModel graph(first ? GraphModel::Kind::Homozygotes : GraphModel::Kind::Differences,
                             analysis.PopulationName(), locus.name, locus.lowest,
                             first ? locus.observedHomozygotes : locus.observedDifferences,
                             first ? locus.randomHomozygotes : locus.randomDifferences,
                             first ? locus.meanHomozygotes : locus.meanDifferences);
            auto* window = new frmDrawGraph(std::move(graph), session_.gConfidenceCode, host);
            QMdiSubWindow* sub = mdiArea->addSubWindow(window);
            sub->setAttribute(Qt::WA_DeleteOnClose);
            sub->setGeometry(first ? 0 : secondLeft, 0, width, height);
            // Activating a window puts the focus on its drawing, which pairs the windows.
            connect(sub, &QMdiSubWindow::aboutToActivate, window, [window] {
                window->BackPanel->setFocus();
                if (window->BackPanel->focused) window->BackPanel->focused();
            });
            sub->show();
        }
    }
    // The panes speak of the locus whose graphs stand in front: the last pair opened.
    const QList<QMdiSubWindow*> stacking = mdiArea->subWindowList(QMdiArea::StackingOrder);
    if (!stacking.isEmpty())
        if (auto* front = qobject_cast<frmDrawGraph*>(stacking.back()->widget()))
            DisplayInitAnalysis(front->locus());
}

// Half the width of the area the graph windows open in.
int frmMain::MdiHalfWidth() const {
    return mdiArea->width() / 2;
}

void frmMain::ShowBothGraphs(const std::string& locus, bool first) {
    const std::vector<frmDrawGraph*> windows = GraphWindows();
    auto bringForward = [](frmDrawGraph* window) {
        if (auto* sub = qobject_cast<QMdiSubWindow*>(window->parentWidget())) {
            sub->showNormal();
            sub->raise();
        }
    };
    if (first && GraphLinkArmed) {
        for (std::size_t i = 0; i + 1 < windows.size(); ++i) {
            if (windows[i]->locus() == locus) {
                bringForward(windows[i + 1]);
                break;
            }
        }
    } else if (!GraphLinkArmed) {
        GraphLinkArmed = true;
    } else {
        for (std::size_t i = 1; i < windows.size(); ++i) {
            if (windows[i]->locus() == locus) {
                bringForward(windows[i - 1]);
                break;
            }
        }
        // The flag guards against the partner's own activation starting the same again;
        // raising a window here does not activate it, so the flag stays armed.
    }
}

void frmMain::DisplayInitAnalysis(const std::string& locus) {
    if (!session_.gAnalysis) return;
    auto texts = session_.gAnalysis->DisplayInitAnalysis(locus);
    if (!texts) return;
    AdvisoryTBox->setPlainText(ShownText(texts->first));
    AnalysisTBox->setPlainText(ShownText(texts->second));
}

void frmMain::RefreshGraphs(Confidence confidence) {
    if (!session_.gAnalysis) return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    session_.gConfidenceCode = confidence;
    for (std::size_t l = 0; l < session_.gAnalysis->Loci().size(); ++l)
        session_.gAnalysis->LocusAnalysis(static_cast<Int16>(l), confidence);
    for (frmDrawGraph* window : GraphWindows())
        window->SetConfidence(confidence);
    QApplication::restoreOverrideCursor();
}

}  // namespace tavrelle
