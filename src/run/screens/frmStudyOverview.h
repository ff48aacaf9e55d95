#pragma once

#include <QMainWindow>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "run/PopulationResult.h"
#include "run/RunSettings.h"
#include "run/StudyTable.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressDialog;
class QTableWidget;
class QTabWidget;

namespace tavrelle {

class HeatMapPanel;
class Interaction;
class StudyRunner;

// What the main screen hands the overview: the file on disc and the settings of its panel. The
// seed in `settings` is ignored: the window takes the clock's, or the one typed into it; its
// overviewEstimate is the estimate shown first.
struct StudyRequest {
    std::string file;
    std::string sheet = "Sheet1";
    RunSettings settings;
    bool unsavedChanges = false;  // the grid holds edits the file does not
};

// Study Overview: every population of the file run with the same settings and one seed, on a
// worker thread, as the batch program runs them; a table of the verdicts, flags and estimates,
// the totals, and a heat map. A double-click on a cell opens that population's graphs at that
// locus, from the very run the cell shows.
class frmStudyOverview : public QMainWindow {
    Q_OBJECT
public:
    frmStudyOverview(StudyRequest request, Interaction& interaction, QWidget* parent = nullptr);
    ~frmStudyOverview() override;

    // Starts a run with the typed seed, or the clock's; false when the file did not load or the
    // seed is no number (the user has been told).
    bool Run();
    bool Running() const;
    void Cancel();
    // Called when the current run ends, cancelled or not; once, then cleared.
    std::function<void()> runEnded;

    const StudyRequest& Request() const { return request_; }
    std::int32_t Seed() const { return seed_; }
    const StudyTable& Table() const { return table_; }
    const std::vector<PopulationResult>& Results() const { return results_; }
    int PopulationCount() const { return populationCount_; }
    bool Cancelled() const { return cancelled_; }

    // A cell of the table by its row (population) and locus column: opens the two graphs.
    void OpenCellGraphs(int row, int column);
    // The exports; the extension chooses the format. False when nothing could be written.
    bool ExportTable(const std::string& path);
    bool SaveHeatMapAs(const std::string& path);
    bool ExportReport(const std::string& path);
    void ExportTableMenu_Click();
    void SaveHeatMapMenu_Click();
    void ExportReportMenu_Click();
    // Shows another estimate (an index into kEstimateKeys) in the cells, colours and heat map,
    // from the results at hand: nothing runs again.
    void ShowEstimate(std::size_t estimate);
    std::size_t ShownEstimate() const { return request_.settings.overviewEstimate; }

    QLabel* SettingsLabel;
    QLabel* SeedLabel;
    QLabel* RunStateLabel;  // says when the run was cancelled
    QLabel* LegendLabel;
    QLineEdit* SeedBox;
    QTableWidget* StudyGrid;
    QTabWidget* Tabs;
    HeatMapPanel* HeatMapView;
    QPlainTextEdit* NotesBox;
    QProgressDialog* Progress;
    QAction *RunAction, *ExportTableAction, *SaveHeatMapAction, *ExportReportAction, *CloseAction;
    std::vector<QAction*> EstimateActions;  // View > Estimate, by kEstimateKeys

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void Receive(PopulationResult&& result);
    void Finish();
    void ShowTable();
    void ShowNotes();
    void ShowSettings();
    void ShowLegend();
    bool RefuseWhileRunning(const std::string& what);
    void Tell(const std::string& text);
    std::optional<std::string> AskSaveName(const std::string& title, const std::string& filter,
                                           const std::string& proposed);

    StudyRequest request_;
    Interaction& interaction_;
    std::string title_;
    std::string fileSha256_;  // of the file as this run read it, for the report
    std::int32_t seed_ = 0;
    bool clockSeed_ = true;
    std::vector<StudyPopulation> populations_;
    std::vector<PopulationResult> results_;
    StudyTable table_;
    int populationCount_ = 0;
    bool cancelled_ = false;
    StudyRunner* runner_;
};

}  // namespace tavrelle
