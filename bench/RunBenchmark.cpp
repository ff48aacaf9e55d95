// A run on a simulated population of 750 samples and 20 loci at 10000 randomisations, beside
// its floor: drawing the same count of random numbers alone, in one thread.
#include <benchmark/benchmark.h>

#include "../tests/support/SimulatedPopulation.h"
#include "analysis/RandomNumGen.h"
#include "run/AlleleAnalysis.h"

namespace tavrelle {
namespace {

constexpr Int16 kRounds = 10000;

const Table& Population() {
    static const Table table = [] {
        simulate::SimulationParameters parameters;
        parameters.seed = 750;
        parameters.sample_counts = {750};
        for (std::size_t l = 0; l < 20; ++l)
            parameters.loci.push_back(simulate::ResolveLocus({}, parameters.seed, l));
        return SimulatedPopulationTable(simulate::Simulate(parameters));
    }();
    return table;
}

std::int64_t DrawsOfARun() {
    const Table& table = Population();
    std::int64_t scored = 0;
    for (int column = 2; column < table.ColumnCount(); column += 2)
        for (std::int64_t row = 2; row < table.RecordCount(); ++row)
            if (table.Cell(row, column) != "000") ++scored;
    return 2 * scored * kRounds;
}

void DrawNumbersAlone(benchmark::State& state) {
    const std::int64_t draws = DrawsOfARun();
    for (auto _ : state) {
        RandomNumGen generator;
        generator.SetSeedValue(12345);
        std::uint32_t sink = 0;
        for (std::int64_t i = 0; i < draws; ++i)
            sink ^= generator.GeneratedKey();
        benchmark::DoNotOptimize(sink);
    }
    state.counters["draws"] = static_cast<double>(draws);
}

void Run(benchmark::State& state, bool threaded) {
    RecordingPrompter prompter;
    RunSettings settings;
    settings.seed = 12345;
    settings.randomisations = kRounds;
    settings.repeatCodes.assign(20, 2);
    settings.tableFolder = TAVRELLE_TABLE_DIR;
    settings.threaded = threaded;
    RunHooks hooks;
    hooks.prompter = &prompter;
    for (auto _ : state) {
        AlleleAnalysis analysis(Population(), settings, hooks);
        if (analysis.RunError()) state.SkipWithError(analysis.RunError()->what());
        benchmark::DoNotOptimize(analysis.Loci().data());
    }
}

void RunOneThread(benchmark::State& state) {
    Run(state, false);
}
void RunDrawingOnASecondThread(benchmark::State& state) {
    Run(state, true);
}

BENCHMARK(DrawNumbersAlone)->Unit(benchmark::kSecond)->Iterations(2);
BENCHMARK(RunOneThread)->Unit(benchmark::kSecond)->Iterations(2);
BENCHMARK(RunDrawingOnASecondThread)->Unit(benchmark::kSecond)->Iterations(2);

}  // namespace
}  // namespace tavrelle

BENCHMARK_MAIN();
