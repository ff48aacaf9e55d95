// Study Overview and Export Report: the frame hands the file and its panel's settings to the
// overview window, which runs every population itself.
#include <QComboBox>
#include <QLineEdit>

#include "base/Numbers.h"
#include "run/screens/frmStudyOverview.h"
#include "session/MotifPanel.h"
#include "session/RunController.h"
#include "session/frmMain.h"

namespace tavrelle {

namespace {

// The randomisations typed in the panel when Analyse would take them, else those of the last
// run.
Int16 PanelRandomisations(const std::string& text, Int16 fallback) {
    try {
        if (!text.empty() && IsWholeNumber(text)) {
            const std::int32_t count = TextToInt32(text);
            if (count >= 1000 && count <= 10000) return static_cast<Int16>(count);
        }
    } catch (const ProgramError&) {
    }
    return fallback;
}

}  // namespace

void frmMain::mnuStudyOverview_Click() {
    if (NoStoreYet || !session_.gInputData || fileLocation.empty() || session_.gGridIsNew) {
        interaction_.Show(
            {"Open a data file first: the study overview analyses every population "
             "of a file.",
             "Study Overview", MessageIcon::Information, MessageButtons::Ok});
        return;
    }
    StudyRequest request;
    request.file = fileLocation;
    if (isExcel && !session_.gExcelSheetName.empty()) request.sheet = session_.gExcelSheetName;
    request.unsavedChanges = ChangedData;
    RunSettings& settings = request.settings;
    settings.randomisations =
        PanelRandomisations(RandTextBox->text().toStdString(), run_->NumberRandomisations());
    settings.confidence =
        ConfidenceFromCode(CICombo->currentIndex()).value_or(Confidence::Percent95);
    // The motifs chosen for the population on screen, by locus name.
    settings.repeatByLocus = motifs_->MotifsByName();
    settings.tableFolder = programFolder_;
    settings.onSuspect = SuspectPolicy::Proceed;

    auto* window = new frmStudyOverview(std::move(request), interaction_, this);
    window->setWindowFlag(Qt::Window);
    window->show();
    window->Run();
}

void frmMain::mnuExportReport_Click() {
    // The newest overview of this file that has finished gives the report; otherwise a new one
    // runs and asks for the report's name when it ends.
    const QList<frmStudyOverview*> open = findChildren<frmStudyOverview*>();
    for (auto it = open.rbegin(); it != open.rend(); ++it) {
        if ((*it)->Request().file == fileLocation && !(*it)->Running() &&
            !(*it)->Results().empty()) {
            (*it)->ExportReportMenu_Click();
            return;
        }
    }
    mnuStudyOverview_Click();
    const QList<frmStudyOverview*> started = findChildren<frmStudyOverview*>();
    if (started.isEmpty() || !started.back()->Running()) return;
    frmStudyOverview* window = started.back();
    window->runEnded = [window] { window->ExportReportMenu_Click(); };
}

}  // namespace tavrelle
