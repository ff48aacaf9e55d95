#include "run/screens/frmStudyOverview.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolBar>
#include <QVBoxLayout>
#include <array>
#include <charconv>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "analysis/ClockSeed.h"
#include "base/ProgramError.h"
#include "formats/StudySource.h"
#include "formats/StudyTableXlsx.h"
#include "report/StudyReport.h"
#include "results/GraphModel.h"
#include "results/LocusGraphs.h"
#include "results/screens/frmDrawGraph.h"
#include "run/EstimateColour.h"
#include "run/StudyRun.h"
#include "run/StudyTableExport.h"
#include "run/screens/HeatMapPainter.h"
#include "widgets/Interaction.h"

namespace tavrelle {

namespace {

// The heat map on screen, at its layout's size, scrolled when larger than the window.
class HeatMapPanel : public QWidget {
public:
    explicit HeatMapPanel(QWidget* parent) : QWidget(parent) {}
    void SetDrawing(HeatMapDrawing drawing) {
        drawing_ = std::move(drawing);
        setFixedSize(static_cast<int>(drawing_.width) + 1, static_cast<int>(drawing_.height) + 1);
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        DrawHeatMap(painter, QRectF(0, 0, drawing_.width, drawing_.height), drawing_);
    }

private:
    HeatMapDrawing drawing_;
};

const char* const kConfidenceNames[] = {"95%", "99%", "99.9%"};

std::string EstimateText(double estimate) {
    char text[16];
    std::snprintf(text, sizeof text, "%.3f", estimate);
    return text;
}

QTableWidgetItem* Item(const std::string& text) {
    auto* item = new QTableWidgetItem(QString::fromStdString(text));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

std::string CellText(const StudyCell& cell) {
    std::string text = cell.verdict + "  " + EstimateText(cell.estimate);
    if (cell.flags.stutter) text += "  S";
    if (cell.flags.dropout) text += "  D";
    return text;
}

std::string CellTip(const std::string& population, const std::string& locus,
                    const StudyCell& cell) {
    return population + " at " + locus + "\nNull allele: " + cell.verdict +
           "\nStutter: " + (cell.flags.stutter ? "yes" : "no") +
           "\nLarge allele drop-out: " + (cell.flags.dropout ? "yes" : "no") + "\n" +
           kStudyEstimateName + " estimate: " + EstimateText(cell.estimate) +
           "\n\nDouble-click for the graphs.";
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

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    SettingsLabel = new QLabel(central);
    SettingsLabel->setWordWrap(true);
    SettingsLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    SeedLabel = new QLabel(central);
    SeedLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(SettingsLabel);
    layout->addWidget(SeedLabel);

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
}

frmStudyOverview::~frmStudyOverview() {
    cancel_ = true;
    if (worker_.joinable()) worker_.join();
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
    const StudySettings& s = request_.settings;
    std::string motifs;
    if (s.repeatForAll) motifs = "every locus " + std::to_string(*s.repeatForAll);
    for (const auto& [locus, code] : s.repeatByLocus)
        motifs += (motifs.empty() ? "" : ", ") + locus + " " + std::to_string(code);
    std::string text =
        "File: " + request_.file + "\nRandomisations: " + std::to_string(s.randomisations) +
        "    Confidence interval: " + kConfidenceNames[std::clamp<int>(s.confidenceCode, 0, 2)] +
        "    Repeat units: " + (motifs.empty() ? "none chosen" : motifs) +
        "\nSuspect values are analysed as they stand and listed below.";
    if (request_.unsavedChanges)
        text += " The grid's unsaved changes are not included: the study reads the file.";
    SettingsLabel->setText(QString::fromStdString(text));
}

bool frmStudyOverview::Run() {
    if (Running()) return false;
    const std::string typed = SeedBox->text().trimmed().toStdString();
    if (!typed.empty()) {
        std::int32_t value = 0;
        auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), value);
        if (error != std::errc() || end != typed.data() + typed.size()) {
            Tell("The seed must be a whole number between -2147483648 and 2147483647.");
            return false;
        }
        seed_ = value;
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
    populations_ = std::move(study.populations);
    request_.settings.isExcel = study.isExcel;
    request_.settings.seed = seed_;
    request_.settings.onSuspect = SuspectPolicy::Proceed;
    request_.settings.bootstrap = 0;  // the overview shows point estimates only
    populationCount_ = static_cast<int>(populations_.size());
    results_.clear();
    table_ = StudyTable();
    cancelled_ = false;
    cancel_ = false;
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

    worker_ = std::thread([this] {
        try {
            RunStudy(
                populations_, request_.settings,
                [this](PopulationResult&& result) {
                    auto shared = std::make_shared<PopulationResult>(std::move(result));
                    QMetaObject::invokeMethod(
                        this, [this, shared] { Receive(std::move(*shared)); },
                        Qt::QueuedConnection);
                },
                &cancel_);
        } catch (const std::exception& failure) {
            const std::string message = std::string("The study run failed: ") + failure.what();
            QMetaObject::invokeMethod(
                this, [this, message] { Tell(message); }, Qt::QueuedConnection);
        }
        QMetaObject::invokeMethod(
            this, [this] { Finish(); }, Qt::QueuedConnection);
    });
    return true;
}

void frmStudyOverview::Cancel() {
    if (!Running() || cancel_) return;
    cancel_ = true;
    Progress->setLabelText("Cancelling: the populations under way are finishing...");
}

void frmStudyOverview::Receive(PopulationResult&& result) {
    table_.Add(result);
    results_.push_back(std::move(result));
    const int done = static_cast<int>(results_.size());
    Progress->setValue(done);
    if (!cancel_ && done < populationCount_)
        Progress->setLabelText(
            QString("Analysing population %1 of %2...").arg(done + 1).arg(populationCount_));
    ShowTable();
    ShowNotes();
}

void frmStudyOverview::Finish() {
    if (worker_.joinable()) worker_.join();
    populations_.clear();
    cancelled_ = static_cast<int>(results_.size()) < populationCount_;
    Progress->hide();
    RunAction->setEnabled(true);
    ShowNotes();
    if (auto ended = std::exchange(runEnded, nullptr)) ended();
}

void frmStudyOverview::ShowTable() {
    const std::vector<std::string>& loci = table_.Loci();
    const std::vector<StudyRow>& rows = table_.Rows();
    const int lociCount = static_cast<int>(loci.size());
    const char* const totalNames[] = {"Null allele", "Stutter", "Drop-out"};
    StudyGrid->clear();
    StudyGrid->clearSpans();
    StudyGrid->setRowCount(static_cast<int>(rows.size()) + 3);
    StudyGrid->setColumnCount(lociCount + 3);
    QStringList columns;
    for (const std::string& locus : loci)
        columns << QString::fromStdString(locus);
    for (const char* name : totalNames)
        columns << QString("%1 (loci)").arg(name);
    StudyGrid->setHorizontalHeaderLabels(columns);
    QStringList rowNames;
    for (const StudyRow& row : rows)
        rowNames << QString("%1 %2").arg(row.number).arg(QString::fromStdString(row.name));
    for (const char* name : totalNames)
        rowNames << QString("%1 (populations)").arg(name);
    StudyGrid->setVerticalHeaderLabels(rowNames);

    auto counts = [](const FlagTotals& t) {
        return std::array<int, 3>{t.nullAllele, t.stutter, t.dropout};
    };
    for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
        const StudyRow& row = rows[static_cast<std::size_t>(r)];
        if (row.stopReason) {
            QTableWidgetItem* item = Item("stopped: " + *row.stopReason);
            item->setBackground(QColor(221, 221, 221));
            item->setToolTip(QString::fromStdString(*row.stopReason));
            StudyGrid->setItem(r, 0, item);
            if (lociCount > 1) StudyGrid->setSpan(r, 0, 1, lociCount);
            continue;
        }
        for (int c = 0; c < lociCount; ++c) {
            const auto& cell = row.cells[static_cast<std::size_t>(c)];
            if (!cell) continue;
            QTableWidgetItem* item = Item(CellText(*cell));
            const Rgb fill = EstimateColour(cell->estimate);
            const Rgb ink = TextColourOn(fill);
            item->setBackground(QColor(fill.red, fill.green, fill.blue));
            item->setForeground(QColor(ink.red, ink.green, ink.blue));
            if (cell->verdict == "yes") {
                QFont bold = item->font();
                bold.setBold(true);
                item->setFont(bold);
            }
            item->setToolTip(QString::fromStdString(
                CellTip(row.name, loci[static_cast<std::size_t>(c)], *cell)));
            StudyGrid->setItem(r, c, item);
        }
        const std::array<int, 3> n = counts(row.totals);
        for (int k = 0; k < 3; ++k)
            StudyGrid->setItem(r, lociCount + k,
                               Item(std::to_string(n[static_cast<std::size_t>(k)]) + " of " +
                                    std::to_string(row.totals.analysed)));
    }
    for (int c = 0; c < lociCount; ++c) {
        const FlagTotals& totals = table_.LocusTotals()[static_cast<std::size_t>(c)];
        const std::array<int, 3> n = counts(totals);
        for (int k = 0; k < 3; ++k)
            StudyGrid->setItem(static_cast<int>(rows.size()) + k, c,
                               Item(std::to_string(n[static_cast<std::size_t>(k)]) + " of " +
                                    std::to_string(totals.analysed)));
    }
    StudyGrid->resizeColumnsToContents();
    static_cast<HeatMapPanel*>(HeatMapView)->SetDrawing(LayOutHeatMap(table_));
}

void frmStudyOverview::ShowNotes() {
    std::string notes;
    for (const StudyRow& row : table_.Rows()) {
        if (row.stopReason)
            notes += row.name + ": stopped: " + *row.stopReason +
                     (row.stopLocus.empty() ? "" : " (at locus " + row.stopLocus + ")") + "\n";
        const std::string suspects = SuspectSummary(row);
        if (!suspects.empty()) notes += row.name + ": " + suspects + "\n";
        const std::string coding = AlleleCodingSummary(row);
        if (!coding.empty()) notes += row.name + ": " + coding + "\n";
    }
    const int done = static_cast<int>(results_.size());
    if (!Running() && cancelled_)
        notes += "Cancelled: " + std::to_string(done) + " of " + std::to_string(populationCount_) +
                 " populations were analysed.\n";
    NotesBox->setPlainText(QString::fromStdString(notes));
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
                new frmDrawGraph(std::move(graph), request_.settings.confidenceCode, host, this);
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
    input.title = title_;
    input.settings = request_.settings;
    input.clockSeed = clockSeed_;
    input.populations = &results_;
    input.populationsInFile = populationCount_;
    std::ofstream out(path, std::ios::binary);
    out << StudyReportHtml(input);
    return static_cast<bool>(out);
}

void frmStudyOverview::ExportTableMenu_Click() {
    const auto path = AskSaveName(
        "Export Table", "CSV (comma separated)|*.csv|Excel workbook|*.xlsx", "study-overview.csv");
    if (path && !ExportTable(*path)) Tell("The table could not be saved as " + *path + ".");
}

void frmStudyOverview::SaveHeatMapMenu_Click() {
    const auto path = AskSaveName("Save Heat Map", "PNG image|*.png|SVG drawing|*.svg|PDF|*.pdf",
                                  "study-heat-map.png");
    if (path && !SaveHeatMapAs(*path))
        Tell("The heat map could not be saved as " + *path +
             ". The name must end in .png, .svg or .pdf.");
}

void frmStudyOverview::ExportReportMenu_Click() {
    if (Running()) {
        Tell("The report can be exported once the run has finished.");
        return;
    }
    const auto path = AskSaveName("Export Report", "HTML page|*.html", "study-report.html");
    if (path && !ExportReport(*path)) Tell("The report could not be saved as " + *path + ".");
}

}  // namespace tavrelle
