// Tools > Study Overview and File > Export Report: the run of every population, its progress
// and cancel, the graphs behind a cell, the exports, and agreement with the batch program.
#include <QPointer>
#include <QProgressDialog>
#include <QTableWidget>
#include <QTest>
#include <fstream>
#include <map>
#include <sstream>

#include "Simulator.h"
#include "results/screens/frmDrawGraph.h"
#include "run/StudyGridLayout.h"
#include "run/StudyTableExport.h"
#include "run/screens/frmStudyOverview.h"
#include "tests/gui/OverviewRun.h"
#include "tests/gui/ScreenFixture.h"
#include "tests/gui/Screenshot.h"

namespace tavrelle {
namespace {

const std::string kThree = std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen";

std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// CSV rows as maps from the header's column names, quotes undone.
std::vector<std::map<std::string, std::string>> ReadCsv(const std::string& text) {
    std::vector<std::vector<std::string>> rows(1);
    std::string field;
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted) {
            if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
                field += '"';
                ++i;
            } else if (c == '"') {
                quoted = false;
            } else {
                field += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            rows.back().push_back(std::move(field));
            field.clear();
        } else if (c == '\n') {
            rows.back().push_back(std::move(field));
            field.clear();
            rows.emplace_back();
        } else if (c != '\r') {
            field += c;
        }
    }
    rows.pop_back();  // after the last line break
    std::vector<std::map<std::string, std::string>> records;
    for (std::size_t r = 1; r < rows.size(); ++r) {
        std::map<std::string, std::string> record;
        for (std::size_t c = 0; c < rows[0].size() && c < rows[r].size(); ++c)
            record[rows[0][c]] = rows[r][c];
        records.push_back(std::move(record));
    }
    return records;
}

class StudyOverviewTest : public ScreenTest {
protected:
    // Opens the file, sets every motif to dinucleotide and starts the overview.
    frmStudyOverview* StartOverview(const std::string& file) {
        Open(file);
        SetAllMotifs(2);
        Action("mnuStudyOverview")->trigger();
        auto windows = screen->findChildren<frmStudyOverview*>();
        return windows.isEmpty() ? nullptr : windows.back();
    }

    // Lets the run finish while the window keeps handling events.
    // A file of twelve simulated populations, enough to cancel part-way.
    std::string TwelvePopulations() {
        simulate::SimulationParameters parameters;
        parameters.seed = 5;
        parameters.sample_counts = std::vector<int>(12, 60);
        for (int l = 0; l < 8; ++l) {
            simulate::LocusRequest request;
            request.repeat = 2;
            parameters.loci.push_back(
                simulate::ResolveLocus(request, parameters.seed, static_cast<std::size_t>(l)));
        }
        return WriteFile("twelve.gen", simulate::FormatGenepop(simulate::Simulate(parameters)));
    }
};

TEST_F(StudyOverviewTest, RunsEveryPopulationWithProgressAndShowsTheTable) {
    frmStudyOverview* window = StartOverview(kThree);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->Running());
    EXPECT_TRUE(window->Progress->isVisible());
    EXPECT_TRUE(window->Progress->labelText().contains("of 3"))
        << window->Progress->labelText().toStdString();
    ASSERT_TRUE(WaitForRun(window));
    EXPECT_FALSE(window->Progress->isVisible());
    EXPECT_FALSE(window->Cancelled());
    EXPECT_TRUE(window->SeedLabel->text().contains(QString::number(window->Seed())));

    const StudyTable& table = window->Table();
    ASSERT_EQ(table.Rows().size(), 3U);
    const int loci = static_cast<int>(table.Loci().size());
    EXPECT_EQ(loci, 6);
    EXPECT_EQ(window->StudyGrid->rowCount(), 3 + 3);  // populations, then the three totals
    EXPECT_EQ(window->StudyGrid->columnCount(), loci + 3);
    int nulls = 0;
    for (int c = 0; c < loci; ++c) {
        for (int r = 0; r < 3; ++r) {
            const auto& cell =
                table.Rows()[static_cast<std::size_t>(r)].cells[static_cast<std::size_t>(c)];
            ASSERT_TRUE(cell);
            EXPECT_TRUE(window->StudyGrid->item(r, c)->text().startsWith(
                QString::fromStdString(cell->verdict)));
            nulls += cell->flags.nullAllele ? 1 : 0;
        }
    }
    int totalNulls = 0;
    for (int c = 0; c < loci; ++c)
        totalNulls += window->StudyGrid->item(3, c)->text().split(' ').front().toInt();
    EXPECT_EQ(totalNulls, nulls);
    GrabWindow(*window, "study-overview-table");
    window->Tabs->setCurrentIndex(1);
    GrabWindow(*window, "study-overview-heatmap");
}

TEST_F(StudyOverviewTest, CancelStopsTheRunWithWhatWasDone) {
    frmStudyOverview* window = StartOverview(TwelvePopulations());
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(window->Running());
    QPushButton* cancel = window->Progress->findChild<QPushButton*>();
    ASSERT_NE(cancel, nullptr);
    cancel->click();
    ASSERT_TRUE(WaitForRun(window));
    EXPECT_TRUE(window->Cancelled());
    EXPECT_LT(window->Results().size(), 12U);
    EXPECT_EQ(window->Table().Rows().size(), window->Results().size());
    EXPECT_TRUE(window->RunAction->isEnabled());

    // The window, the table export and the report all say the run is incomplete.
    const std::string cancelled =
        "cancelled after " + std::to_string(window->Results().size()) + " of 12 populations";
    EXPECT_TRUE(window->RunStateLabel->isVisible());
    EXPECT_TRUE(window->RunStateLabel->text().contains(QString::fromStdString(cancelled)));
    EXPECT_TRUE(window->NotesBox->toPlainText().contains(QString::fromStdString(cancelled)));
    const std::filesystem::path csv = folder / "cancelled.csv";
    const std::filesystem::path report = folder / "cancelled.html";
    user.saveNames = {csv.string()};
    window->ExportTableAction->trigger();
    for (const auto& record : ReadCsv(ReadAll(csv)))
        EXPECT_EQ(record.at("run"), cancelled);
    user.saveNames = {report.string()};
    window->ExportReportAction->trigger();
    EXPECT_NE(ReadAll(report).find(cancelled), std::string::npos);
}

TEST_F(StudyOverviewTest, DoubleClickOpensThatPopulationsGraphsAtThatLocus) {
    frmStudyOverview* window = StartOverview(kThree);
    ASSERT_TRUE(window && WaitForRun(window));
    const int row = 2;
    const int column = 3;
    QTableWidget* grid = window->StudyGrid;
    window->raise();
    window->activateWindow();
    QApplication::processEvents();
    const QRect cell = grid->visualRect(grid->model()->index(row, column));
    // A double-click as the window system delivers it: a click, then the second press.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QApplication::processEvents();
    const auto graphs = window->findChildren<frmDrawGraph*>();
    ASSERT_EQ(graphs.size(), 2);
    const PopulationResult& population = window->Results()[row];
    const std::string& locus = window->Table().Loci()[column];
    const LocusResult* result = nullptr;
    for (const LocusResult& l : population.analysis->Loci())
        if (l.name == locus) result = &l;
    ASSERT_NE(result, nullptr);
    for (frmDrawGraph* graph : graphs) {
        EXPECT_EQ(graph->locus(), locus);
        EXPECT_EQ(graph->Graph().PopulationName(), population.name);
        EXPECT_TRUE(graph->isVisible());
        EXPECT_EQ(graph->Graph().Observed(), graph->IsHomozygoteGraph()
                                                 ? result->observedHomozygotes
                                                 : result->observedDifferences);
    }
    EXPECT_NE(graphs[0]->IsHomozygoteGraph(), graphs[1]->IsHomozygoteGraph());
    GrabWindow(*graphs[0], "study-overview-graph");

    // A graph window closes alone; the overview and the other graph stay.
    QPointer<frmStudyOverview> overview(window);
    graphs[0]->CloseMenu->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
    ASSERT_TRUE(overview);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->findChildren<frmDrawGraph*>().size(), 1);
}

TEST_F(StudyOverviewTest, ExportsTableHeatMapAndReport) {
    frmStudyOverview* window = StartOverview(kThree);
    ASSERT_TRUE(window && WaitForRun(window));
    const std::filesystem::path csv = folder / "overview.csv";
    const std::filesystem::path xlsx = folder / "overview.xlsx";
    user.saveNames = {csv.string(), xlsx.string()};
    window->ExportTableAction->trigger();
    window->ExportTableAction->trigger();
    EXPECT_EQ(ReadAll(csv), StudyTableCsv(window->Table()));
    EXPECT_EQ(ReadAll(xlsx).substr(0, 2), "PK");
    for (const char* name : {"map.png", "map.svg", "map.pdf"}) {
        user.saveNames = {(folder / name).string()};
        window->SaveHeatMapAction->trigger();
        EXPECT_GT(std::filesystem::file_size(folder / name), 200U) << name;
    }
    EXPECT_NE(ReadAll(folder / "map.svg").find("<svg"), std::string::npos);
    EXPECT_EQ(ReadAll(folder / "map.pdf").substr(0, 5), "%PDF-");
    user.saveNames = {(folder / "map.gif").string()};
    window->SaveHeatMapAction->trigger();
    EXPECT_NE(user.LastText().find("must end in .png, .svg or .pdf"), std::string::npos);

    // File > Export Report writes the results on screen: the same seed and the same cells,
    // with no second run. Another estimate chosen under View is shown and reported from them.
    const std::int32_t seed = window->Seed();
    const PopulationResult* shown = window->Results().data();
    EXPECT_EQ(window->ShownEstimate(), kEmFailure);
    for (std::size_t estimate : {kEmFailure, kEm}) {
        window->EstimateActions[estimate]->trigger();
        const std::filesystem::path report = folder / "report.html";
        user.saveNames = {report.string()};
        Action("mnuExportReport")->trigger();
        EXPECT_FALSE(window->Running());
        EXPECT_EQ(window->Seed(), seed);
        EXPECT_EQ(window->Results().data(), shown);
        EXPECT_EQ(screen->findChildren<frmStudyOverview*>().size(), 1);
        const std::string html = ReadAll(report);
        const std::string name = kEstimateLabels[estimate];
        EXPECT_NE(html.find("Seed</th><td>" + std::to_string(seed)), std::string::npos);
        EXPECT_NE(html.find("the " + name + " estimate"), std::string::npos) << name;
        EXPECT_TRUE(window->LegendLabel->text().contains(QString::fromStdString(name)));
        const StudyTable& table = window->Table();
        for (const StudyRow& row : table.Rows())
            for (std::size_t c = 0; c < row.cells.size(); ++c) {
                ASSERT_TRUE(row.cells[c]);
                const std::string text =
                    row.cells[c]->verdict + " " + StudyEstimateText(row.cells[c]->estimate);
                EXPECT_NE(html.find(text), std::string::npos) << text;
                EXPECT_EQ(row.cells[c]->estimate,
                          StudyEstimate(window->Results()[static_cast<std::size_t>(row.number - 1)],
                                        window->Results()[static_cast<std::size_t>(row.number - 1)]
                                            .analysis->Loci()[c],
                                        estimate));
            }
    }
}

TEST_F(StudyOverviewTest, ExportReportRunsTheStudyWhenNoneIsOpen) {
    const std::filesystem::path report = folder / "fresh-report.html";
    std::filesystem::remove(report);
    Open(kThree);
    SetAllMotifs(2);
    user.saveNames = {report.string()};
    Action("mnuExportReport")->trigger();
    auto windows = screen->findChildren<frmStudyOverview*>();
    ASSERT_EQ(windows.size(), 1);
    ASSERT_TRUE(WaitForRun(windows.back()));
    EXPECT_NE(ReadAll(report).find("<h2>Heat map</h2>"), std::string::npos);
}

TEST_F(StudyOverviewTest, WithoutAFileSaysWhatToDo) {
    Action("mnuStudyOverview")->trigger();
    EXPECT_TRUE(screen->findChildren<frmStudyOverview*>().isEmpty());
    EXPECT_NE(user.LastText().find("Open a data file first"), std::string::npos);
}

// The batch program with the overview's seed gives the same verdicts, flags and estimates. The
// comparison reads the batch CSV by its column names, not their order.
TEST_F(StudyOverviewTest, AgreesCellByCellWithTheBatchProgram) {
    frmStudyOverview* window = StartOverview(kThree);
    ASSERT_TRUE(window && WaitForRun(window));
    const std::filesystem::path csv = folder / "batch.csv";
    const std::string command =
        std::string(TAVRELLE_BATCH) + " '" + kThree + "' --repeat 2 --on-suspect proceed --seed " +
        std::to_string(window->Seed()) + " --csv '" + csv.string() + "' > /dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    const auto records = ReadCsv(ReadAll(csv));
    const StudyTable& table = window->Table();
    std::size_t compared = 0;
    for (const auto& record : records) {
        const auto row = static_cast<std::size_t>(std::stoi(record.at("population")) - 1);
        ASSERT_LT(row, table.Rows().size());
        const auto& loci = table.Loci();
        const auto column = static_cast<std::size_t>(
            std::find(loci.begin(), loci.end(), record.at("locus")) - loci.begin());
        ASSERT_LT(column, loci.size()) << record.at("locus");
        const auto& cell = table.Rows()[row].cells[column];
        ASSERT_TRUE(cell);
        const bool excess = record.at("homozygote_excess") == "TRUE";
        SCOPED_TRACE(record.at("population") + " " + record.at("locus"));
        EXPECT_EQ(record.at("null_present") == "TRUE", cell->verdict == "yes");
        EXPECT_EQ(excess && record.at("one_repeat_deficit") == "TRUE", cell->flags.stutter);
        EXPECT_EQ(excess && record.at("class_wide_excess") == "FALSE", cell->flags.dropout);
        EXPECT_EQ(record.at(kEstimateKeys[table.Estimate()]), ShortestNumber(cell->estimate));
        ++compared;
    }
    EXPECT_EQ(compared, 3U * table.Loci().size());
}

}  // namespace
}  // namespace tavrelle
