// Time to the study overview's full table: every population of the largest real data set (path
// in TAVRELLE_STUDY_DATA, e.g. ../shared/data/ehgdp_25loci.gen), run as the overview runs it, at
// 1000 randomisations, and gathered into the table. Without the variable, a simulated set of the
// same shape: 79 populations of 17 samples, 25 loci.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "../tests/support/SimulatedStudy.h"
#include "formats/StudySource.h"
#include "run/StudyRun.h"
#include "run/StudyTable.h"

namespace tavrelle {
namespace {

std::vector<StudyPopulation> Populations(std::string& label) {
    if (const char* path = std::getenv("TAVRELLE_STUDY_DATA")) {
        label = path;
        return LoadStudyFile(path, "Sheet1").populations;
    }
    std::vector<StudyPopulation> populations = SimulatedStudy(79, std::vector<int>(79, 17), 25);
    label = "simulated 79 x 17 samples, 25 loci";
    return populations;
}

void StudyOverviewTable(benchmark::State& state) {
    std::string label;
    const std::vector<StudyPopulation> all = Populations(label);
    RunSettings settings;
    settings.seed = 12345;
    settings.randomisations = 1000;
    settings.repeatForAll = 2;
    settings.tableFolder = TAVRELLE_TABLE_DIR;
    settings.threads = static_cast<int>(state.range(0));
    std::size_t cells = 0;
    for (auto _ : state) {
        std::vector<StudyPopulation> populations = all;
        StudyTable table;
        RunStudy(populations, settings, [&](PopulationResult&& result) { table.Add(result); });
        cells = 0;
        for (const StudyRow& row : table.Rows())
            for (const auto& cell : row.cells)
                if (cell) ++cells;
        benchmark::DoNotOptimize(cells);
    }
    state.SetLabel(label);
    state.counters["populations"] = static_cast<double>(all.size());
    state.counters["cells"] = static_cast<double>(cells);
}
BENCHMARK(StudyOverviewTable)
    ->Arg(0)  // every CPU this process may use
    ->Arg(1)
    ->Unit(benchmark::kSecond)
    ->UseRealTime()
    ->Iterations(1);

}  // namespace
}  // namespace tavrelle

BENCHMARK_MAIN();
