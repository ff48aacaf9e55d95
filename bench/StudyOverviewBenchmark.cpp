// Time to the study overview's full table: every population of the largest real data set (path
// in TAVRELLE_STUDY_DATA, e.g. ../shared/data/ehgdp_25loci.gen), run as the overview runs it, at
// 1000 randomisations, and gathered into the table. Without the variable, a simulated set of the
// same shape: 79 populations of 17 samples, 25 loci.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "../tests/support/SimulatedPopulation.h"
#include "nulls/StudyRun.h"
#include "nulls/StudySource.h"
#include "nulls/StudyTable.h"

namespace tavrelle {
namespace {

std::vector<StudyPopulation> Populations(std::string& label) {
    if (const char* path = std::getenv("TAVRELLE_STUDY_DATA")) {
        label = path;
        return LoadStudyFile(path, "Sheet1").populations;
    }
    simulate::SimulationParameters parameters;
    parameters.seed = 79;
    parameters.sample_counts.assign(79, 17);
    for (std::size_t l = 0; l < 25; ++l)
        parameters.loci.push_back(simulate::ResolveLocus({}, parameters.seed, l));
    const simulate::SimulatedData data = simulate::Simulate(parameters);
    std::vector<StudyPopulation> populations;
    for (std::size_t p = 0; p < data.populations.size(); ++p)
        populations.push_back({static_cast<int>(p + 1), SimulatedPopulationTable(data, p)});
    label = "simulated 79 x 17 samples, 25 loci";
    return populations;
}

void StudyOverviewTable(benchmark::State& state) {
    std::string label;
    const std::vector<StudyPopulation> all = Populations(label);
    StudySettings settings;
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
