// File commands: Open, Save As, New, the close of the data set and the exit.
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QToolButton>
#include <utility>

#include "base/AtomicFile.h"
#include "base/InstallPaths.h"
#include "base/Numbers.h"
#include "formats/DataFileReading.h"
#include "formats/DataFileWriting.h"
#include "formats/ExcelWorkbookWriter.h"
#include "formats/SheetReaders.h"
#include "population/DataFileError.h"
#include "population/FileErrors.h"
#include "population/FileKind.h"
#include "population/GenepopWriter.h"
#include "population/GenotypeCells.h"
#include "population/GenotypeTables.h"
#include "population/PopulationName.h"
#include "session/GridView.h"
#include "session/MotifPanel.h"
#include "session/frmMain.h"

namespace tavrelle {

namespace {

std::string FileTitle(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).fileName().toStdString();
}

}  // namespace

void frmMain::ShowLoadError(const DataFileError& error) {
    for (const Message& message : error.messages)
        interaction_.Show(message);
    if (error.example) interaction_.ShowExample(*error.example);
    // A format without boxes of its own says where the file went wrong.
    if (error.messages.empty() && !error.example)
        interaction_.Show(
            {error.Located(), "Error Opening File", MessageIcon::Exclamation, MessageButtons::Ok});
}

void frmMain::BindGrid() {
    gridModel_.Bind(&session_.gInputData->rsAlleleData);
    DataGrid1->ClearPicked();
}

void frmMain::ShowPopulationCaption() {
    Table& table = session_.gInputData->rsAlleleData;
    const std::string name = table.RecordCount() > 2 ? ShowPopulationName(table) : "";
    GridCaption->setText(QString::fromStdString(name));
    gridModel_.Reload();
    DataGrid1->FitColumns();
}

void frmMain::CloseGrid() {
    if (ChangedData) {
        const MessageAnswer answer = interaction_.Show(
            {"Do you want to save all the loaded populations?", "Save Populations",
             MessageIcon::Question, MessageButtons::YesNoCancel});
        if (answer == MessageAnswer::Yes) {
            mnuSaveAs_Click();
            ShowGrid(false);
            CloseGridButton->hide();
            ClearDisplay();
        } else if (answer == MessageAnswer::No) {
            ShowGrid(false);
            ChangedData = false;
            mnuCloseGraphs_Click();
            CloseGridButton->hide();
            ClearDisplay();
        }
        return;
    }
    mnuCloseGraphs_Click();
    CloseGridButton->hide();
    ShowGrid(false);
    ClearDisplay();
}

void frmMain::CloseGridButton_Click() {
    CloseGrid();
}

void frmMain::mnuFileExit_Click() {
    CloseGrid();
    close();  // the frame's unload asks once more, and the session ends whatever the answer
}

void frmMain::mnuFileOpen_Click() {
    session_.gGridIsNew = false;
    CloseGrid();
    ShowLeftPanel(false);
    ShowMessageBar(false);
    Apply(ScreenState::OpeningFile);
    flags.UncheckedData = true;
    PopulationNumber = 1;
    LoadedPopulations = 1;

    const std::filesystem::path demo = InstalledFile(programFolder_, "../DemoFiles");
    std::optional<std::string> chosen =
        namedFile_ ? std::exchange(namedFile_, std::nullopt)
                   : interaction_.OpenFileName(
                         {"Open", demo.lexically_normal().string(),
                          "All Files (*.*)|*.*|Excel files (xls)|*.xls|Genepop (dat)|*.dat|"
                          "Genepop (txt)|*.txt|Excel 2007+ files (xlsx)|*.xlsx|"
                          "GenAlEx, tidy CSV (csv)|*.csv|STRUCTURE (str)|*.str",
                          ""});
    if (!chosen || chosen->empty()) return;  // cancelled: the controls stay off until an open
    StatusPanel1->setText("  Loading...");
    fileLocation = *chosen;
    // The format is told by the name alone; a workbook is opened once, for its sheet names and
    // then the sheet.
    const FileKind kind = KindOfFile(fileLocation);
    const std::unique_ptr<ExcelSheetReader> reader = MakeExcelSheetReader(kind);
    if (IsExcelKind(kind)) {
        isExcel = true;
        session_.gExcelSheetName =
            interaction_.SheetName(fileLocation, reader->SheetNames(fileLocation));
        if (session_.gExcelSheetName.empty()) {
            fileLocation.clear();
            return;
        }
    } else {
        isExcel = false;
    }
    // Formats the store does not read itself (two-digit Genepop, GenAlEx, STRUCTURE, tidy CSV)
    // are told by their content and read first; a refusal says where the file goes wrong.
    std::optional<GenotypeRead> other =
        ReadNewFormatFile(fileLocation, isExcel ? session_.gExcelSheetName : "Sheet1");
    if (other && !other->Ok()) {
        interaction_.Show({other->ProblemText(), "Error Opening File", MessageIcon::Exclamation,
                           MessageButtons::Ok});
        return;
    }
    setWindowTitle(QString::fromStdString("Tavrelle - " + FileTitle(fileLocation)));

    // Their data keep every sample on a Genepop Save As, as a Genepop file's do.
    if (other) isExcel = false;
    OpenedDataFile opened;
    if (other)
        opened.store = std::make_unique<InputDataSource>(GenotypeCells(other->data), interaction_);
    else
        opened = OpenDataFileWith(fileLocation, kind, session_.gExcelSheetName, reader.get(),
                                  interaction_);
    if (opened.error) {
        // A refused file: the screen stays as it was, the old store behind the old binding.
        ShowLoadError(*opened.error);
        return;
    }
    if (session_.gInputData) retiredStores_.push_back(std::move(session_.gInputData));
    session_.gInputData = std::move(opened.store);
    BindGrid();
    ShowPopulationCaption();
    retiredStores_.clear();

    ShowLeftPanel(true);
    Apply(ScreenState::DataShown);
    CICombo->setCurrentIndex(0);
    CloseGridButton->show();
    ShowGrid(true);
    suspectCells.ClearBookmarks();
    StoreCurrentPopulation();
    NoMorePopulations = session_.gInputData->IsAnotherPop();
    NextPopButton->setEnabled(NoMorePopulations);
    StatusPanel1->setText("  Ready");
    NoStoreYet = false;
}

void frmMain::OpenNamedFile(std::string path) {
    namedFile_ = std::move(path);
    Guarded([this] { mnuFileOpen_Click(); });
}

void frmMain::mnuSaveAs_Click() {
    // Saving to Excel is offered only where the system offered it; a typed .xls still goes to
    // the Excel writer.
    std::optional<std::string> chosen = interaction_.SaveFileName(
        {"Save As", QDir::homePath().toStdString(),
         "Text File (txt)|*.txt|DAT File (*.dat)|*.dat|Excel 2007+ File (*.xlsx)|*.xlsx",
         "PopulationData"});
    if (!chosen) throw ProgramError(32755, "Cancel was selected.");
    if (chosen->empty()) return;
    const std::string title = FileTitle(*chosen);
    if (IsExcelKind(KindOfFile(title))) {
        const ExcelSaveOutcome saved =
            SaveExcelFile(*session_.gInputData, *chosen, title, session_.gGridIsNew, interaction_);
        gridModel_.Reload();
        if (saved.outcome == SaveOutcome::Failed) {
            mnuSaveAs_Click();
            return;
        }
        if (saved.clearChangedData) ChangedData = false;
        if (!saved.titleBar.empty()) setWindowTitle(QString::fromStdString(saved.titleBar));
        return;
    }
    if (SaveGenepopFile(*session_.gInputData, *chosen, title, session_.gGridIsNew, isExcel,
                        interaction_) == SaveOutcome::Failed) {
        gridModel_.Reload();
        mnuSaveAs_Click();  // the user chooses another name or place
    }
}

void frmMain::mnuSaveDataAs_Click() {
    std::optional<std::string> chosen = interaction_.SaveFileName(
        {"Save Data As", QDir::homePath().toStdString(),
         "Genepop (gen)|*.gen|Genepop (txt)|*.txt|Excel 2007+ File (*.xlsx)|*.xlsx|"
         "Excel 97-2003 File (*.xls)|*.xls|GenAlEx CSV (*.csv)|*.csv|"
         "GenAlEx workbook (*.genalex.xlsx)|*.genalex.xlsx|Tidy CSV (*.tidy.csv)|*.tidy.csv|"
         "STRUCTURE (*.str)|*.str",
         "PopulationData.gen"});
    if (!chosen || chosen->empty()) return;
    // Every population and sample as the grid holds them, the one on screen included.
    GenotypeRead read = session_.gGridIsNew ? GenotypeDataOfGrid(*session_.gInputData, *chosen)
                                            : GenotypeDataOfStore(*session_.gInputData, *chosen);
    gridModel_.Reload();
    const DataFileTarget target = DataFileTargetOfName(*chosen);
    GenotypeRead refusal;
    refusal.file = *chosen;
    const std::string bytes =
        read.Ok() ? DataFileBytes(read.data, target, *chosen, refusal) : std::string();
    const GenotypeRead& problems = read.Ok() ? refusal : read;
    if (!problems.Ok()) {
        interaction_.Show({"The data cannot be saved as a " + DataFileTargetTitle(target) +
                               " without a change:\n" + problems.ProblemText(),
                           "Save Data As", MessageIcon::Exclamation, MessageButtons::Ok});
        return;
    }
    if (const int failure = WriteFileAtomically(*chosen, bytes); failure != 0) {
        ReportSaveFailure(FileError(failure), interaction_);
        return;
    }
    ChangedData = false;
}

void frmMain::mnuNew_Click() {
    CloseGrid();
    ShowGrid(false);
    ShowLeftPanel(false);
    ShowMessageBar(false);
    flags.UncheckedData = true;
    fileLocation.clear();
    PopulationNumber = 1;
    std::optional<std::vector<std::string>> loci = interaction_.NewGridLoci();
    session_.gGridIsNew = loci.has_value();
    if (!loci) return;

    session_.gNewGridLoaded = true;
    StoreRequest request;
    request.newGridLoaded = true;
    request.gridIsNew = true;
    if (session_.gInputData) retiredStores_.push_back(std::move(session_.gInputData));
    session_.gInputData = std::make_unique<InputDataSource>(request, interaction_);
    session_.gInputData->LocusNames(*loci);
    NoStoreYet = false;

    CloseGridButton->show();
    InputDataSource& store = *session_.gInputData;
    store.SetColumnHeaders(store.rsAllData);
    store.DisplayLociNames(store.rsAllData);
    store.SetColumnHeaders(store.rsAlleleData);
    store.DisplayLociNames(store.rsAlleleData);
    BindGrid();
    retiredStores_.clear();
    gridModel_.SetAllowAddNew(true);
    GridCaption->setText("New Population");
    setWindowTitle("Tavrelle");
    motifs_->Blank(loci->size());
    store.rsAlleleData.SetCell(1, 1, "");
    gridModel_.Reload();

    Apply(ScreenState::NewGrid);
    CICombo->setCurrentIndex(0);
    // The panel and the grid come up so that the new population can be typed at once.
    ShowLeftPanel(true);
    ShowGrid(true);
    motifs_->SetLoci(session_.gInputData->LocusNames());
}

}  // namespace tavrelle
