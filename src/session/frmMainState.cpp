// The screen's states: which controls each moment enables, shows or hides, and the routines
// that put the whole screen into a known state.
#include <QAction>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStandardPaths>
#include <QToolButton>

#include "formats/DataFileReading.h"
#include "population/GenepopWriter.h"
#include "population/GenotypeCells.h"
#include "session/GridView.h"
#include "session/MotifPanel.h"
#include "session/RunController.h"
#include "session/frmMain.h"
#include "widgets/Twips.h"

namespace tavrelle {

void frmMain::Apply(ScreenState state) {
    for (const ControlSetting& step : SettingsOf(state)) {
        QObject* control = controls_.at(step.control);
        const bool on = step.setting == Setting::Enable || step.setting == Setting::Show;
        const bool visibility = step.setting == Setting::Show || step.setting == Setting::Hide;
        if (auto* action = qobject_cast<QAction*>(control))
            visibility ? action->setVisible(on) : action->setEnabled(on);
        else if (auto* widget = qobject_cast<QWidget*>(control))
            visibility ? widget->setVisible(on) : widget->setEnabled(on);
    }
}

bool frmMain::GridVisible() const {
    return gridPanel_ && !DataGrid1->isHidden();
}

void frmMain::ShowGrid(bool shown) {
    // The grid covers the area where the graph windows open; hiding it shows them.
    DataGrid1->setVisible(shown);
    captionBar_->setVisible(shown);
    mdiArea->setVisible(!shown);
}

void frmMain::SetToggleButton(bool gridShown) {
    QAction* toggle = Action(Control::ToolToggle);
    toggle->setIcon(QIcon(gridShown ? ":/icons/graphs.svg" : ":/icons/grid.svg"));
    toggle->setToolTip(gridShown ? "Show the results graphs" : "Show the DataGrid");
}

void frmMain::ShowLeftPanel(bool shown) {
    LeftPanel->setVisible(shown);
}

void frmMain::ShowMessageBar(bool shown) {
    MessageBar->setVisible(shown);
    if (shown) {
        const int bar = TwipsToPixels(3000, this);
        horizontalSplitter_->setSizes({std::max(0, horizontalSplitter_->height() - bar), bar});
    }
}

void frmMain::ClearDisplay() {
    Apply(ScreenState::NoData);
    SizeTextBox->setMaxLength(3);
    SizeTextBox->setText(QString::number(MaxAlleleSize));
    RandTextBox->setMaxLength(5);
    RandTextBox->setText(QString::number(run_->NumberRandomisations()));
    motifs_->Clear();
    session_.gNewGridLoaded = false;
    ChangedData = false;
    setWindowTitle("Tavrelle");
}

void frmMain::ResetDisplay() {
    ShowLeftPanel(true);
    ShowMessageBar(false);
    Apply(ScreenState::ResetAfterFailure);
    flags.UncheckedData = true;
    // A file of another format is read again by its reader, as File > Open read it.
    std::optional<GenotypeRead> other = ReadNewFormatFile(
        fileLocation, session_.gExcelSheetName.empty() ? "Sheet1" : session_.gExcelSheetName);
    if (other && other->Ok()) {
        session_.gInputData =
            std::make_unique<InputDataSource>(GenotypeCells(other->data), interaction_);
    } else {
        StoreRequest request;
        request.fileLocation = fileLocation;
        request.isExcel = isExcel;
        request.excelSheetName = session_.gExcelSheetName;
        session_.gInputData = std::make_unique<InputDataSource>(request, interaction_);
    }
    if (session_.gInputData->LocusNames().front().empty()) return;
    BindGrid();
    ShowPopulationCaption();
    Apply(ScreenState::DataShown);
    CICombo->setCurrentIndex(0);
    ShowGrid(true);
    suspectCells.Clear();
    StoreCurrentPopulation();
    NextPopButton->setEnabled(session_.gInputData->IsAnotherPop());
    StatusPanel1->setText("  Ready");
    CloseGridButton->show();
    DataGrid1->setFocus();
    NoStoreYet = false;
}

void frmMain::mnuCloseGraphs_Click() {
    for (QMdiSubWindow* child : mdiArea->subWindowList())
        child->close();
    mdiArea->closeAllSubWindows();
    AnalysisTBox->clear();
    AdvisoryTBox->clear();
    Apply(ScreenState::GraphsClosed);
    ShowGrid(true);
}

void frmMain::mnuToggle_Click() {
    if (GridVisible()) {
        ShowGrid(false);
        Apply(ScreenState::GridHidden);
        SetToggleButton(false);
    } else {
        ShowGrid(true);
        DataGrid1->setFocus();
        Apply(ScreenState::GridShown);
        SetToggleButton(true);
    }
}

std::string frmMain::RecoveryFolder() const {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (folder.isEmpty()) folder = QDir::homePath() + "/.tavrelle";
    return (folder + "/Recovery").toStdString();
}

void frmMain::Guarded(const std::function<void()>& command) {
    try {
        command();
    } catch (const ProgramError& error) {
        Fatal(error);
    }
}

void frmMain::Fatal(const ProgramError& error) {
    std::string text =
        "Run-time error '" + std::to_string(error.Number()) + "':\r\n\r\n" + error.Description();
    if (!error.Detail().empty()) text += "\r\n\r\n" + error.Detail();
    if (session_.gInputData && !session_.gInputData->LocusNames().front().empty()) {
        // Nothing typed or loaded is lost: every population goes to a recovery file first.
        QDir().mkpath(QString::fromStdString(RecoveryFolder()));
        const std::string path =
            RecoveryFolder() + "/Recovered-" +
            QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss").toStdString() + ".gen";
        RecordingPrompter quiet;
        try {
            if (SaveGenepopFile(*session_.gInputData, path, "Recovered populations",
                                session_.gGridIsNew, isExcel, quiet) == SaveOutcome::Saved)
                text += "\r\n\r\nThe loaded populations were saved to " + path + ".";
        } catch (const std::exception&) {
        }
    }
    interaction_.Show({text, "", MessageIcon::Critical, MessageButtons::Ok});
    if (endSession) endSession(1);
}

}  // namespace tavrelle
