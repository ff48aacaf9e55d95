// From the click on Analyse to a finished run: the check, the Possible Errors dialog, the
// settings of the run and the engine.
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>

#include "analysis/ClockSeed.h"
#include "analysis/StatisticalTables.h"
#include "analysis/screens/frmProgressBar.h"
#include "base/InstallPaths.h"
#include "base/Numbers.h"
#include "checking/PopulationCheck.h"
#include "nulls/screens/frmAllNulls.h"
#include "nulls/screens/frmGenotypes.h"
#include "nulls/screens/frmLikelihood.h"
#include "nulls/screens/frmNullAllele.h"
#include "session/GridView.h"
#include "session/frmMain.h"
#include "widgets/ShownText.h"
#include "widgets/Twips.h"

namespace tavrelle {

namespace {

std::vector<Int16> RepeatCodes(const std::vector<std::array<Int16, 2>>& table) {
    std::vector<Int16> codes;
    for (const auto& entry : table)
        codes.push_back(entry[1]);
    return codes;
}

}  // namespace

bool frmMain::CheckPopulation() {
    const CheckOutcome outcome =
        ValidatePopulation(session_.gInputData->rsAlleleData, RepeatCodes(RepeatTable),
                           SizeTextBox->text().toStdString(), flags, suspectCells, interaction_);
    const CheckEnding ending = outcome.ending;
    if (tavrelle::CheckStarted(ending)) {
        Apply(ScreenState::CheckStarted);
        LocationText->clear();
        AnalysisTBox->clear();
        AdvisoryTBox->clear();
    }
    if (outcome.maximumSize) SizeTextBox->setText(QString::fromStdString(*outcome.maximumSize));
    if (ending == CheckEnding::NonInteger || ending == CheckEnding::Suspect) {
        // The listing takes a sixth of the message bar's width.
        ShowLeftPanel(true);
        const int total = verticalSplitter_->width();
        const int panel = std::max(total / 6, LeftPanel->minimumSizeHint().width());
        verticalSplitter_->setSizes({panel, total - panel});
        LocationText->setPlainText(QString::fromStdString(outcome.listing));
    } else if (ending == CheckEnding::Clean) {
        // Nothing to list: the grid takes the whole width.
        ShowLeftPanel(false);
        ShowMessageBar(false);
    }
    if (tavrelle::CheckAllowsRun(ending)) Apply(ScreenState::CheckAllowsRun);
    if (CheckReadTheMotifs(ending)) ShowLocus();
    gridModel_.Reload();
    return ending == CheckEnding::Clean;
}

void frmMain::ValidateButton_Click() {
    const bool analysing = flags.AnalyseInProgress;
    CheckPopulation();
    flags.AnalyseInProgress = analysing;
}

void frmMain::RandButton_Click() {
    flags.AnalyseInProgress = true;
    flags.AbandonRun = false;
    if (flags.UncheckedData) ValidateButton_Click();
    if (!flags.CheckClean) {
        ApplyErrorDialogChoice(interaction_.PossibleErrors(), session_.gInputData->rsAlleleData,
                               suspectCells, flags);
        gridModel_.Reload();
    }
    if (!flags.AbandonRun && flags.CheckOk) RandomiseData();
    flags.AnalyseInProgress = false;
}

void frmMain::RandomiseData() {
    const std::string text = RandTextBox->text().toStdString();
    bool whole = false;
    try {
        whole = IsWholeNumber(text);
    } catch (const ProgramError&) {
        whole = false;  // a number past 32 bits is no count of randomisations either
    }
    if (text.empty() || !whole) {
        interaction_.Show(
            {"Please enter an integer value.", "", MessageIcon::None, MessageButtons::Ok});
        RandTextBox->setText("1000");
        return;
    }
    const std::int32_t count = TextToInt32(text);
    if (count < 1000 || count > 10000) {
        interaction_.Show(
            {"The number of randomisations entered is outside normal values (1000 "
             "to 10000).",
             "", MessageIcon::None, MessageButtons::Ok});
        RandTextBox->setText("1000");
    } else {
        NumberRandomisations = static_cast<Int16>(count);
        mnuCloseGraphs_Click();
        session_.gConfidenceCode = static_cast<Int16>(CICombo->currentIndex());
        session_.gRandomisations = NumberRandomisations;
        ShowLeftPanel(false);
        ShowMessageBar(true);
        session_.gRepeatTable = RepeatCodes(RepeatTable);

        RunSettings settings;
        session_.gRandomSeed = SeedFromClock();
        settings.seed = session_.gRandomSeed;
        settings.randomisations = session_.gRandomisations;
        settings.confidenceCode = session_.gConfidenceCode;
        settings.repeatCodes = session_.gRepeatTable;
        settings.isExcel = isExcel;
        settings.tableFolder = InstalledFile(programFolder_, kChiSquareTableFile).parent_path();
        settings.threaded = true;

        frmProgressBar progress(this);
        bool tooManySamples = false;
        RunHooks hooks;
        hooks.prompter = &interaction_;
        hooks.startProgress = [&](int maximum, const std::string& caption) {
            progress.maxGraphs(maximum);
            progress.setWindowTitle(QString::fromStdString(caption));
            progress.Display(1);
        };
        hooks.progress = [&](int value) { progress.CurrentGraph(value); };
        hooks.endProgress = [&] { progress.hide(); };
        hooks.resetDisplay = [&] {
            tooManySamples = true;
            ResetDisplay();
        };
        QApplication::setOverrideCursor(Qt::WaitCursor);
        ShowGrid(false);
        auto analysis =
            std::make_unique<AlleleAnalysis>(session_.gInputData->rsAlleleData, settings, hooks);
        QApplication::restoreOverrideCursor();
        if (analysis->RunError()) throw *analysis->RunError();
        if (!tooManySamples) {
            session_.gAnalysis = std::move(analysis);
            session_.SummaryText = session_.gAnalysis->SummaryText();
            if (session_.gAnalysis->StopMessage().empty()) ShowLocusGraphs();
        }
    }
    Apply(ScreenState::AfterRun);
    SetToggleButton(false);
}

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
