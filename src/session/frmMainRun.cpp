// The result windows of a run: the estimates, the likelihood estimates, the adjusted genotypes
// and the comparison across loci.
#include <QPlainTextEdit>
#include <QPushButton>

#include "nulls/screens/frmAllNulls.h"
#include "nulls/screens/frmGenotypes.h"
#include "nulls/screens/frmLikelihood.h"
#include "nulls/screens/frmNullAllele.h"
#include "session/frmMain.h"
#include "widgets/ShownText.h"

namespace tavrelle {

void frmMain::mnuAnalysis_Click() {
    if (!session_.gAnalysis) return;
    auto* window = new frmNullAllele(*session_.gAnalysis, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->displayGenotypes = [this](int locus) { ShowGenotypes(locus); };
    window->moreInfo = [this] { Guarded([this] { DisplayAlleleFreqHelp(); }); };
    SetFormOnTop(window);
    resultWindows_.push_back(window);
}

void frmMain::mnuLikelihood_Click() {
    if (!session_.gAnalysis || !session_.gInputData) return;
    auto* window = new frmLikelihood(session_.gInputData->rsAlleleData,
                                     static_cast<std::uint32_t>(session_.gRandomSeed), this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    SetFormOnTop(window);
    resultWindows_.push_back(window);
}

void frmMain::ShowGenotypes(int locus) {
    if (!session_.gAnalysis) return;
    auto* window = new frmGenotypes(this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    std::vector<std::string> names;
    std::vector<std::array<AdjustedGenotypeList, 4>> table;
    for (const LocusResult& l : session_.gAnalysis->Loci()) {
        names.push_back(l.name);
        table.push_back(l.adjustedGenotypes);
    }
    window->CorrectedGenotypes(std::move(names), std::move(table));
    window->DisplayGenotypes(locus, 0);
    window->moreInfo = [this] { Guarded([this] { DisplayAdjGenoHelp(); }); };
    SetFormOnTop(window);
    resultWindows_.push_back(window);
}

void frmMain::mnuNulls_Click() {
    if (!session_.gAnalysis) return;
    auto* window = new frmAllNulls(this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->NullTextBox->setPlainText(ShownText(session_.SummaryText));
    connect(window->HelpButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { DisplayNullCalcHelp(); }); });
    SetFormOnTop(window);
    resultWindows_.push_back(window);
}

void frmMain::SetFormOnTop(QWidget* window) {
    window->setWindowFlag(Qt::WindowStaysOnTopHint);
    window->show();
    window->raise();
}

}  // namespace tavrelle
