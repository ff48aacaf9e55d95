#include "session/RunController.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include "analysis/ClockSeed.h"
#include "analysis/screens/frmProgressBar.h"
#include "base/Numbers.h"
#include "checking/PopulationCheck.h"
#include "session/MotifPanel.h"
#include "widgets/Interaction.h"

namespace tavrelle {

RunController::RunController(Session& session, Interaction& interaction, CheckFlags& flags,
                             SuspectCells& suspectCells, MotifPanel& motifs, Panel panel,
                             Screen screen, std::filesystem::path tableFolder)
    : seedSource(SeedFromClock),
      session_(session),
      interaction_(interaction),
      flags_(flags),
      suspectCells_(suspectCells),
      motifs_(motifs),
      panel_(panel),
      screen_(std::move(screen)),
      tableFolder_(std::move(tableFolder)) {}

bool RunController::CheckPopulation() {
    const CheckOutcome outcome = ValidatePopulation(
        session_.gInputData->rsAlleleData, motifs_.RepeatCodes(),
        panel_.sizeBox->text().toStdString(), flags_, suspectCells_, interaction_);
    const CheckEnding ending = outcome.ending;
    if (CheckStarted(ending)) {
        screen_.apply(ScreenState::CheckStarted);
        screen_.clearTexts();
    }
    if (outcome.maximumSize) panel_.sizeBox->setText(QString::fromStdString(*outcome.maximumSize));
    if (ending == CheckEnding::NonInteger || ending == CheckEnding::Suspect) {
        screen_.listFindings(outcome.listing);
    } else if (ending == CheckEnding::Clean) {
        // Nothing to list: the grid takes the whole width.
        screen_.showLeftPanel(false);
        screen_.showMessageBar(false);
    }
    if (CheckAllowsRun(ending)) screen_.apply(ScreenState::CheckAllowsRun);
    if (CheckReadTheMotifs(ending)) motifs_.ShowLocus();
    screen_.reloadGrid();
    return ending == CheckEnding::Clean;
}

void RunController::ValidateButton_Click() {
    const bool analysing = flags_.AnalyseInProgress;
    CheckPopulation();
    flags_.AnalyseInProgress = analysing;
}

void RunController::RandButton_Click() {
    flags_.AnalyseInProgress = true;
    flags_.AbandonRun = false;
    if (flags_.UncheckedData) ValidateButton_Click();
    if (!flags_.CheckClean) {
        ApplyErrorDialogChoice(interaction_.PossibleErrors(), session_.gInputData->rsAlleleData,
                               suspectCells_, flags_);
        screen_.reloadGrid();
    }
    if (!flags_.AbandonRun && flags_.CheckOk) RandomiseData();
    flags_.AnalyseInProgress = false;
}

RunSettings RunController::Settings(std::int32_t seed) const {
    RunSettings settings;
    settings.seed = seed;
    settings.clockSeed = false;
    settings.randomisations = numberRandomisations_;
    settings.confidence =
        ConfidenceFromCode(panel_.intervals->currentIndex()).value_or(Confidence::Percent95);
    settings.repeatCodes = motifs_.RepeatCodes();
    settings.maxAlleleSize = panel_.sizeBox->text().toStdString();
    settings.isExcel = screen_.readsWorkbook();
    settings.tableFolder = tableFolder_;
    settings.threaded = true;
    return settings;
}

void RunController::RandomiseData() {
    const std::string text = panel_.randomisationsBox->text().toStdString();
    bool whole = false;
    try {
        whole = IsWholeNumber(text);
    } catch (const ProgramError&) {
        whole = false;  // a number past 32 bits is no count of randomisations either
    }
    if (text.empty() || !whole) {
        interaction_.Show(
            {"Please enter an integer value.", "", MessageIcon::None, MessageButtons::Ok});
        panel_.randomisationsBox->setText("1000");
        return;
    }
    const std::int32_t count = TextToInt32(text);
    if (count < 1000 || count > 10000) {
        interaction_.Show(
            {"The number of randomisations entered is outside normal values (1000 "
             "to 10000).",
             "", MessageIcon::None, MessageButtons::Ok});
        panel_.randomisationsBox->setText("1000");
    } else {
        numberRandomisations_ = static_cast<Int16>(count);
        screen_.closeGraphs();
        session_.gRandomSeed = seedSource();
        const RunSettings settings = Settings(session_.gRandomSeed);
        session_.gConfidenceCode = settings.confidence;
        session_.gRandomisations = settings.randomisations;
        screen_.showLeftPanel(false);
        screen_.showMessageBar(true);
        session_.gRepeatTable = settings.repeatCodes;

        frmProgressBar progress(panel_.owner);
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
            screen_.resetDisplay();
        };
        QApplication::setOverrideCursor(Qt::WaitCursor);
        screen_.showGrid(false);
        auto analysis =
            std::make_unique<AlleleAnalysis>(session_.gInputData->rsAlleleData, settings, hooks);
        QApplication::restoreOverrideCursor();
        if (analysis->RunError()) throw *analysis->RunError();
        if (!tooManySamples) {
            session_.gAnalysis = std::move(analysis);
            session_.SummaryText = session_.gAnalysis->SummaryText();
            if (session_.gAnalysis->StopMessage().empty()) screen_.showLocusGraphs();
        }
    }
    screen_.apply(ScreenState::AfterRun);
    screen_.setToggleButton(false);
}

}  // namespace tavrelle
