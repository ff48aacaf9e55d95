#include "run/screens/frmStudyOverview.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolBar>
#include <QVBoxLayout>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "analysis/ClockSeed.h"
#include "analysis/SeedText.h"
#include "base/ProgramError.h"
#include "base/Sha256.h"
#include "formats/StudySource.h"
#include "formats/StudyTableXlsx.h"
#include "report/StudyReport.h"
#include "results/GraphModel.h"
#include "results/LocusGraphs.h"
#include "results/screens/frmDrawGraph.h"
#include "run/StudyGridLayout.h"
#include "run/StudyTableExport.h"
#include "run/screens/HeatMapPainter.h"
#include "run/screens/HeatMapPanel.h"
#include "run/screens/StudyRunner.h"
#include "widgets/Interaction.h"

namespace tavrelle {

namespace {

QColor ToQColor(const Rgb& colour) {
    return QColor(colour.red, colour.green, colour.blue);
}

}  // namespace

frmStudyOverview::frmStudyOverview(StudyRequest request, Interaction& interaction, QWidget* parent)
    : QMainWindow(parent), request_(std::move(request)), interaction_(interaction) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName("frmStudyOverview");
    setWindowTitle(QString("Study Overview - %1")
                       .arg(QFileInfo(QString::fromStdString(request_.file)).fileName()));
    resize(1000, 640);

    QToolBar* bar = addToolBar("Study");
    bar->setMovable(false);
    RunAction = bar->addAction("Run Again");
    RunAction->setToolTip("Run every population again, with the seed typed here or the clock's");
    bar->addWidget(new QLabel("  Seed: ", bar));
    SeedBox = new QLineEdit(bar);
    SeedBox->setPlaceholderText("from the clock");
    SeedBox->setToolTip("Type a seed to repeat a run exactly; leave empty for the clock's");
    SeedBox->setMaximumWidth(120);
    bar->addWidget(SeedBox);
    bar->addSeparator();
    ExportTableAction = bar->addAction("Export Table...");
    ExportTableAction->setToolTip("Save the table as CSV or as an Excel workbook");
    SaveHeatMapAction = bar->addAction("Save Heat Map...");
    SaveHeatMapAction->setToolTip("Save the heat map as PNG, SVG or PDF");
    ExportReportAction = bar->addAction("Export Report...");
    ExportReportAction->setToolTip("Save one HTML report of the whole study");
    bar->addSeparator();
    CloseAction = bar->addAction("Close");

    QMenu* estimateMenu = menuBar()->addMenu("&View")->addMenu("&Estimate");
    estimateMenu->setToolTipsVisible(true);
    auto* estimates = new QActionGroup(this);
    for (std::size_t e = 0; e < kEstimateLabels.size(); ++e) {
        QAction* action = estimateMenu->addAction(kEstimateLabels[e]);
        action->setCheckable(true);
        action->setChecked(e == request_.settings.overviewEstimate);
        estimates->addAction(action);
        connect(action, &QAction::triggered, this, [this, e] { ShowEstimate(e); });
        EstimateActions.push_back(action);
    }

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    SettingsLabel = new QLabel(central);
    SettingsLabel->setWordWrap(true);
    SettingsLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    SeedLabel = new QLabel(central);
    SeedLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    RunStateLabel = new QLabel(central);
    RunStateLabel->setObjectName("RunStateLabel");
    RunStateLabel->setStyleSheet("QLabel { color: #a40000; font-weight: bold; }");
    RunStateLabel->hide();
    LegendLabel = new QLabel(central);
    LegendLabel->setWordWrap(true);
    layout->addWidget(SettingsLabel);
    layout->addWidget(SeedLabel);
    layout->addWidget(RunStateLabel);
    layout->addWidget(LegendLabel);

    auto* splitter = new QSplitter(Qt::Vertical, central);
    Tabs = new QTabWidget(splitter);
    StudyGrid = new QTableWidget(Tabs);
    StudyGrid->setObjectName("StudyGrid");
    StudyGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    StudyGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    Tabs->addTab(StudyGrid, "Table");
    auto* scroll = new QScrollArea(Tabs);
    scroll->setBackgroundRole(QPalette::Base);
    HeatMapView = new HeatMapPanel(scroll);
    scroll->setWidget(HeatMapView);
    Tabs->addTab(scroll, "Heat Map");
    NotesBox = new QPlainTextEdit(splitter);
    NotesBox->setReadOnly(true);
    NotesBox->setPlaceholderText("Stopped populations and suspect values are listed here.");
    splitter->addWidget(Tabs);
    splitter->addWidget(NotesBox);
    splitter->setStretchFactor(0, 4);
    splitter->setStretchFactor(1, 1);
    layout->addWidget(splitter, 1);
    setCentralWidget(central);

    Progress = new QProgressDialog(this);
    Progress->setWindowTitle("Study Overview");
    Progress->setWindowModality(Qt::NonModal);
    Progress->setAutoClose(false);
    Progress->setAutoReset(false);
    Progress->setMinimumDuration(0);
    Progress->reset();
    Progress->hide();

    runner_ = new StudyRunner(this);
    runner_->delivered = [this](PopulationResult&& result) { Receive(std::move(result)); };
    runner_->failed = [this](const std::string& message) { Tell(message); };
    runner_->finished = [this] { Finish(); };

    connect(RunAction, &QAction::triggered, this, [this] { Run(); });
    connect(SeedBox, &QLineEdit::returnPressed, this, [this] { Run(); });
    connect(ExportTableAction, &QAction::triggered, this, [this] { ExportTableMenu_Click(); });
    connect(SaveHeatMapAction, &QAction::triggered, this, [this] { SaveHeatMapMenu_Click(); });
    connect(ExportReportAction, &QAction::triggered, this, [this] { ExportReportMenu_Click(); });
    connect(CloseAction, &QAction::triggered, this, &QWidget::close);
    connect(Progress, &QProgressDialog::canceled, this, [this] { Cancel(); });
    connect(StudyGrid, &QTableWidget::cellDoubleClicked, this,
            [this](int row, int column) { OpenCellGraphs(row, column); });
    ShowSettings();
    ShowLegend();
}

// The runner, a child, cancels and waits for its run as it goes.
frmStudyOverview::~frmStudyOverview() = default;

bool frmStudyOverview::Running() const {
    return runner_->Running();
}

void frmStudyOverview::closeEvent(QCloseEvent* event) {
    Cancel();
    Progress->hide();
    QMainWindow::closeEvent(event);
}

void frmStudyOverview::Tell(const std::string& text) {
    interaction_.Show({text, "Study Overview", MessageIcon::Exclamation, MessageButtons::Ok});
}

void frmStudyOverview::ShowSettings() {
    const RunSettings& s = request_.settings;
    std::string motifs;
    if (s.repeatForAll) motifs = "every locus " + std::to_string(*s.repeatForAll);
    for (const auto& [locus, code] : s.repeatByLocus)
        motifs += (motifs.empty() ? "" : ", ") + locus + " " + std::to_string(code);
    std::string text = "File: " + request_.file +
                       "\nRandomisations: " + std::to_string(s.randomisations) +
                       "    Confidence interval: " + ConfidenceText(s.confidence) +
                       "    Repeat units: " + (motifs.empty() ? "none chosen" : motifs) +
                       "\nSuspect values are analysed as they stand and listed below.";
    if (request_.unsavedChanges)
        text += " The grid's unsaved changes are not included: the study reads the file.";
    SettingsLabel->setText(QString::fromStdString(text));
}

void frmStudyOverview::ShowLegend() {
    LegendLabel->setText(
        QString("Each cell: the null allele verdict, the %1 estimate of the null allele frequency "
                "(its colour; View > Estimate chooses another), S stutter, D large allele "
                "drop-out, %2 a borderline verdict, %3 more than a fifth of the samples blank.")
            .arg(QString::fromStdString(StudyEstimateName(ShownEstimate())),
                 QString::fromUtf8(kBorderlineMark), QString::fromUtf8(kManyBlanksMark)));
}

void frmStudyOverview::ShowEstimate(std::size_t estimate) {
    if (estimate >= kEstimateKeys.size()) return;
    request_.settings.overviewEstimate = estimate;
    for (std::size_t e = 0; e < EstimateActions.size(); ++e)
        EstimateActions[e]->setChecked(e == estimate);
    StudyTable table(estimate);
    for (const PopulationResult& result : results_)
        table.Add(result);
    if (!Running() && !results_.empty()) table.SetRun(seed_, populationCount_);
    table_ = std::move(table);
    ShowLegend();
    ShowTable();
    ShowNotes();
}

bool frmStudyOverview::Run() {
    if (Running()) return false;
    const std::string typed = SeedBox->text().trimmed().toStdString();
    if (!typed.empty()) {
        const SeedReading reading = ParseSeed(typed);
        if (!reading.Accepted()) {
            Tell("The seed must be a whole number from 0 to 2147483647.");
            return false;
        }
        seed_ = reading.seed;
        clockSeed_ = false;
    } else {
        seed_ = SeedFromClock();
        clockSeed_ = true;
    }
    StudyFile study;
    try {
        study = LoadStudyFile(request_.file, request_.sheet);
    } catch (const std::exception& failure) {
        Tell(failure.what());
        return false;
    }
    title_ = study.title;
    fileSha256_ = Sha256OfFile(request_.file).value_or("");
    populations_ = std::move(study.populations);
    request_.settings.isExcel = study.isExcel;
    request_.settings.seed = seed_;
    request_.settings.clockSeed = clockSeed_;
    request_.settings.onSuspect = SuspectPolicy::Proceed;
    request_.settings.bootstrap = 0;  // the overview shows point estimates only
    populationCount_ = static_cast<int>(populations_.size());
    results_.clear();
    table_ = StudyTable(ShownEstimate());
    cancelled_ = false;
    RunStateLabel->hide();
    SeedLabel->setText(QString("Seed: %1 (%2)")
                           .arg(seed_)
                           .arg(clockSeed_ ? "from the clock; type it in the Seed box to repeat "
                                             "this run"
                                           : "typed"));
    ShowTable();
    ShowNotes();
    RunAction->setEnabled(false);

    Progress->setLabelText(QString("Analysing population 1 of %1...").arg(populationCount_));
    Progress->setRange(0, populationCount_);
    Progress->setValue(0);
    Progress->show();

    runner_->Start(std::move(populations_), request_.settings);
    return true;
}

void frmStudyOverview::Cancel() {
    if (!Running() || runner_->Cancelling()) return;
    runner_->Cancel();
    Progress->setLabelText("Cancelling: the populations under way are finishing...");
}

void frmStudyOverview::Receive(PopulationResult&& result) {
    table_.Add(result);
    results_.push_back(std::move(result));
    const int done = static_cast<int>(results_.size());
    Progress->setValue(done);
    if (!runner_->Cancelling() && done < populationCount_)
        Progress->setLabelText(
            QString("Analysing population %1 of %2...").arg(done + 1).arg(populationCount_));
    ShowTable();
    ShowNotes();
}

void frmStudyOverview::Finish() {
    cancelled_ = static_cast<int>(results_.size()) < populationCount_;
    table_.SetRun(seed_, populationCount_);
    Progress->hide();
    RunAction->setEnabled(true);
    RunStateLabel->setText(QString::fromStdString(CancelledText(table_)));
    RunStateLabel->setVisible(cancelled_);
    ShowTable();
    ShowNotes();
    if (auto ended = std::exchange(runEnded, nullptr)) ended();
}

void frmStudyOverview::ShowTable() {
    const StudyGridLayout grid = LayOutStudyGrid(table_);
    StudyGrid->clear();
    StudyGrid->clearSpans();
    StudyGrid->setRowCount(static_cast<int>(grid.rowNames.size()));
    StudyGrid->setColumnCount(static_cast<int>(grid.columnNames.size()));
    QStringList columns;
    for (const std::string& name : grid.columnNames)
        columns << QString::fromStdString(name);
    StudyGrid->setHorizontalHeaderLabels(columns);
    QStringList rows;
    for (const std::string& name : grid.rowNames)
        rows << QString::fromStdString(name);
    StudyGrid->setVerticalHeaderLabels(rows);
    for (const StudyGridCell& cell : grid.cells) {
        auto* item = new QTableWidgetItem(QString::fromStdString(cell.text));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        if (cell.fill) item->setBackground(ToQColor(*cell.fill));
        if (cell.ink) item->setForeground(ToQColor(*cell.ink));
        if (cell.bold) {
            QFont bold = item->font();
            bold.setBold(true);
            item->setFont(bold);
        }
        if (!cell.tip.empty()) item->setToolTip(QString::fromStdString(cell.tip));
        StudyGrid->setItem(cell.row, cell.column, item);
        if (cell.span > 1) StudyGrid->setSpan(cell.row, cell.column, 1, cell.span);
    }
    StudyGrid->resizeColumnsToContents();
    HeatMapView->SetDrawing(LayOutHeatMap(table_));
}

void frmStudyOverview::ShowNotes() {
    NotesBox->setPlainText(QString::fromStdString(StudyNotes(table_)));
}

void frmStudyOverview::OpenCellGraphs(int row, int column) {
    if (row < 0 || row >= static_cast<int>(results_.size())) return;
    if (column < 0 || column >= static_cast<int>(table_.Loci().size())) return;
    const PopulationResult& population = results_[static_cast<std::size_t>(row)];
    if (!population.Analysed() || !population.analysis) return;
    const std::string& locusName = table_.Loci()[static_cast<std::size_t>(column)];
    for (const LocusResult& locus : population.analysis->Loci()) {
        if (locus.name != locusName) continue;
        GraphWindowHost host;
        host.interaction = &interaction_;
        int offset = 0;
        for (bool first : {true, false}) {
            GraphModel graph =
                LocusGraph(first ? GraphModel::Kind::Homozygotes : GraphModel::Kind::Differences,
                           population.name, locus);
            auto* window =
                new frmDrawGraph(std::move(graph), request_.settings.confidence, host, this);
            window->setAttribute(Qt::WA_DeleteOnClose);
            window->setWindowTitle(window->windowTitle() + " - " +
                                   QString::fromStdString(population.name));
            window->resize(520, 420);
            window->move(pos() + QPoint(40 + offset, 60));
            window->show();
            window->raise();
            offset += 540;
        }
        return;
    }
}

std::optional<std::string> frmStudyOverview::AskSaveName(const std::string& title,
                                                         const std::string& filter,
                                                         const std::string& proposed) {
    FileDialogRequest request;
    request.title = title;
    request.filter = filter;
    request.proposedName = proposed;
    return interaction_.SaveFileName(request);
}

bool frmStudyOverview::ExportTable(const std::string& path) {
    const QString suffix = QFileInfo(QString::fromStdString(path)).suffix().toLower();
    std::string bytes;
    try {
        bytes = suffix == "xlsx" ? StudyTableXlsx(table_) : StudyTableCsv(table_);
    } catch (const ProgramError& error) {
        Tell("The table could not be written: " + error.Description());
        return false;
    }
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    return static_cast<bool>(out);
}

bool frmStudyOverview::SaveHeatMapAs(const std::string& path) {
    return SaveHeatMap(LayOutHeatMap(table_), path);
}

bool frmStudyOverview::ExportReport(const std::string& path) {
    StudyReportInput input;
    input.file = request_.file;
    input.fileSha256 = fileSha256_;
    input.title = title_;
    input.settings = request_.settings;
    input.clockSeed = clockSeed_;
    input.populations = &results_;
    input.populationsInFile = populationCount_;
    std::ofstream out(path, std::ios::binary);
    out << StudyReportHtml(input);
    return static_cast<bool>(out);
}

bool frmStudyOverview::RefuseWhileRunning(const std::string& what) {
    if (!Running()) return false;
    Tell(what + " can be exported once the run has finished.");
    return true;
}

void frmStudyOverview::ExportTableMenu_Click() {
    if (RefuseWhileRunning("The table")) return;
    const auto path = AskSaveName(
        "Export Table", "CSV (comma separated)|*.csv|Excel workbook|*.xlsx", "study-overview.csv");
    if (path && !ExportTable(*path)) Tell("The table could not be saved as " + *path + ".");
}

void frmStudyOverview::SaveHeatMapMenu_Click() {
    if (RefuseWhileRunning("The heat map")) return;
    const auto path = AskSaveName("Save Heat Map", "PNG image|*.png|SVG drawing|*.svg|PDF|*.pdf",
                                  "study-heat-map.png");
    if (path && !SaveHeatMapAs(*path))
        Tell("The heat map could not be saved as " + *path +
             ". The name must end in .png, .svg or .pdf.");
}

void frmStudyOverview::ExportReportMenu_Click() {
    if (RefuseWhileRunning("The report")) return;
    const auto path = AskSaveName("Export Report", "HTML page|*.html", "study-report.html");
    if (path && !ExportReport(*path)) Tell("The report could not be saved as " + *path + ".");
}

}  // namespace tavrelle
