#pragma once

#include <QMainWindow>
#include <QPointer>
#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "checking/CheckFlags.h"
#include "checking/SuspectCells.h"
#include "session/AlleleGridModel.h"
#include "session/ScreenStates.h"
#include "session/Session.h"
#include "widgets/Interaction.h"

class QAbstractButton;
class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QMdiArea;
class QPlainTextEdit;
class QPushButton;
class QSplitter;
class QTableView;
class QToolBar;
class QToolButton;

namespace tavrelle {

class GridView;
class MotifPanel;
struct DataFileError;
class RunController;

// The main frame: menus, toolbar, the settings panel, the grid of the population on screen, the
// text panes of a run and the bottom bar; graph windows open inside it. It prepares and shows;
// the store holds the data and the engine computes. Every command catches a program error at
// its top, saves the loaded populations to a recovery file and ends the session.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    frmMain(Session& session, Interaction& interaction, std::filesystem::path programFolder,
            QWidget* parent = nullptr);
    ~frmMain() override;

    // A program error ends the session here: the loaded populations go to a recovery file
    // first. Tests replace the ending.
    std::function<void(int exitCode)> endSession;
    std::string RecoveryFolder() const;

    // What the screen shows, for the desktop's tests and tools. The controls themselves are
    // found by their object names (the names below); the state table decides their enabling.
    GridView& Grid() const { return *DataGrid1; }
    QMdiArea& GraphArea() const { return *mdiArea; }
    bool GridVisible() const;
    std::vector<class frmDrawGraph*> GraphWindows() const;
    // The result windows opened from the run's commands, newest last (closed ones drop out).
    const std::vector<QPointer<QWidget>>& ResultWindows() const { return resultWindows_; }
    Int16 PopulationOnScreen() const { return PopulationNumber; }
    Int16 LocusOnScreen() const;
    bool DataChanged() const { return ChangedData; }
    bool DataUnchecked() const { return flags.UncheckedData; }
    bool ReadsWorkbook() const { return isExcel; }
    // The road of Analyse; tests set its seed.
    RunController& Run() const { return *run_; }
    const std::string& FileLocation() const { return fileLocation; }
    // File > Open with the file already named, as a file manager or a command line names it.
    void OpenNamedFile(std::string path);

    // The session's help bundle: the program's folder and "TavrelleHelp"; empty for none.
    const std::string& HelpFile() const { return helpFile_; }
    void SetHelpFile(std::string file) { helpFile_ = std::move(file); }
    // The help topics the result windows open.
    void DisplayAlleleFreqHelp();
    void DisplayNullCalcHelp();
    void DisplayAdjGenoHelp();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using Command = void (frmMain::*)();

    // Commands, as the menus, toolbar and buttons reach them.
    void mnuNew_Click();
    void mnuFileOpen_Click();
    std::optional<std::string> namedFile_;  // taken by the next open instead of the dialog
    void mnuSaveAs_Click();
    // Save Data As: every format Tavrelle writes, told by the name's ending; keeps every sample.
    void mnuSaveDataAs_Click();
    void mnuFileExit_Click();
    void CloseGridButton_Click();
    void mnuCut_Click();
    void mnuCopy_Click();
    void mnuPaste_Click();
    void mnuSelectAll_Click();
    void mnuDelete_Click();
    void mnuToggle_Click();
    void mnuCloseGraphs_Click();
    void mnuAnalysis_Click();
    void mnuNulls_Click();
    void mnuLikelihood_Click();
    // The study overview of every population of the file, and the study report made from it.
    void mnuStudyOverview_Click();
    void mnuExportReport_Click();
    void ValidateButton_Click();
    void RandButton_Click();
    void NextPopButton_Click();
    void NPopButton_Click();
    void PPopButton_Click();
    void ResetDisplay();
    void mnuHelpContents_Click();
    void mnuHelpIndex_Click();
    void mnuHelpPDF_Click();
    void mnuHelpQ_Click();
    void mnuHelpAbout_Click();
    void mnuCascade_Click();
    void mnuTile_Click();

    // The graph windows of a run: two per locus, in pairs, inside the frame.
    void ShowLocusGraphs();
    void ShowBothGraphs(const std::string& locus, bool first);
    // The confidence interval changed in a graph window: the decisions of every locus follow
    // and every graph is redrawn, with no new randomisation.
    void RefreshGraphs(Confidence confidence);
    void DisplayInitAnalysis(const std::string& locus);
    void ShowGenotypes(int locus);
    void SetFormOnTop(QWidget* window);
    // The desktop's code for opening a document beside the program.
    int DisplayThisFile(const std::string& path);

    void BuildMenus();
    void BuildToolbar();
    QWidget* BuildLeftPanel();
    QWidget* BuildGridPanel();
    QWidget* BuildMessageBar();
    QWidget* BuildBottomBar();
    void Connect(QAction* action, Command command);
    void Connect(QAbstractButton* button, Command command);
    // Gives a control its object name and lets the state table reach it by its id.
    template <class Widget>
    Widget* Register(Control id, const char* name, Widget* control) {
        control->setObjectName(name);
        controls_[id] = control;
        return control;
    }
    QAction* Action(Control id) const;

    // Runs a command with the session's one handler for program errors around it.
    void Guarded(const std::function<void()>& command);
    void Fatal(const class ProgramError& error);

    void Apply(ScreenState state);
    void ClearDisplay();
    void ShowHelpTopic(const std::string& topic, int command, const char* noHelpText);
    void ShowGrid(bool shown);
    int MdiHalfWidth() const;
    void SetToggleButton(bool gridShown);
    void ShowLeftPanel(bool shown);
    void ShowMessageBar(bool shown);
    void ShowSettingsAgain();

    void CloseGrid();
    // The boxes and example screen of a file that did not open, in order.
    void ShowLoadError(const DataFileError& error);
    void BindGrid();
    void ShowPopulationCaption();
    void StoreCurrentPopulation();
    void BuildRunController();
    void OnGridSelectionChanged();
    // Deletes the picked rows from the table, heading rows too; the grid's own deletion (from
    // its row menu) refuses to start at a heading row.
    void DeleteSelectedRows();
    void GridDeleteRows();
    std::vector<Table::Bookmark> PickedBookmarks() const;

    // Every command and pane the state table sets, by id.
    std::map<Control, QObject*> controls_;
    // Controls, named as the program names them.
    QAction* GridDeleteAction = nullptr;  // the grid's own deletion of the picked rows
    QToolBar* tbToolbar = nullptr;
    QWidget* LeftPanel = nullptr;
    QLabel *MaxAlleleLabel, *ValidateLabel, *CILabel, *XLabel, *TablesLabel;
    QLineEdit *SizeTextBox, *RandTextBox;
    QPushButton *ValidateButton, *RandButton;
    QComboBox* CICombo;
    MotifPanel* motifs_ = nullptr;
    std::unique_ptr<RunController> run_;
    QPlainTextEdit *LocationText, *AdvisoryTBox, *AnalysisTBox;
    GridView* DataGrid1 = nullptr;
    QLabel* GridCaption = nullptr;
    QToolButton* CloseGridButton = nullptr;
    QWidget* MessageBar = nullptr;
    QWidget* BottomBar = nullptr;
    QPushButton *NextPopButton, *NPopButton, *PPopButton, *ExitButton, *ShowAllPopsButton;
    QMdiArea* mdiArea = nullptr;
    QLabel* StatusPanel1 = nullptr;

    // State of the screen, as the commands leave it.
    CheckFlags flags;
    SuspectCells suspectCells;
    bool ChangedData = false;
    bool NoStoreYet = true;
    bool isExcel = false;
    std::string fileLocation;
    Int16 PopulationNumber = 0;
    Int16 LoadedPopulations = 0;
    bool NoMorePopulations = false;
    Int16 MaxAlleleSize = 350;
    std::vector<QPointer<QWidget>> resultWindows_;
    bool GraphLinkArmed = true;
    std::string helpFile_;

    Session& session_;
    Interaction& interaction_;
    std::filesystem::path programFolder_;
    AlleleGridModel gridModel_;
    QSplitter* verticalSplitter_ = nullptr;
    QSplitter* horizontalSplitter_ = nullptr;
    QWidget* gridPanel_ = nullptr;
    QWidget* captionBar_ = nullptr;
    // Stores that the grid may still show until a new binding replaces them.
    std::vector<std::unique_ptr<InputDataSource>> retiredStores_;
};

}  // namespace tavrelle
