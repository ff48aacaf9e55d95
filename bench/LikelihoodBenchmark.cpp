// Every null allele estimate of every locus with 1000 bootstrap replicates, for a data set of
// 15 populations x 30 loci: the Genepop file named by TAVRELLE_LIKELIHOOD_DATA (for example
// microbov.gen), else a simulated set of that shape (50 samples per population). The goal, on 2
// cores with 2 threads: under half of DrawNumbersAlone (RunBenchmark) in the same run.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "../tests/support/SimulatedPopulation.h"
#include "nulls/LikelihoodEstimates.h"
#include "population/InputDataSource.h"

namespace tavrelle {
namespace {

std::vector<Table> Populations() {
    std::vector<Table> tables;
    if (const char* path = std::getenv("TAVRELLE_LIKELIHOOD_DATA")) {
        RecordingPrompter prompter;
        StoreRequest request;
        request.fileLocation = path;
        InputDataSource store(request, prompter);
        if (!store.LocusNames().front().empty()) {
            tables.push_back(store.rsAlleleData);
            while (store.IsAnotherPop()) {
                store.NextPopulation();
                tables.push_back(store.rsAlleleData);
            }
            return tables;
        }
    }
    simulate::SimulationParameters parameters;
    parameters.seed = 15;
    parameters.sample_counts.assign(15, 50);
    for (std::size_t l = 0; l < 30; ++l) {
        simulate::LocusRequest request;
        request.missing = 0.02;
        parameters.loci.push_back(simulate::ResolveLocus(request, parameters.seed, l));
    }
    const simulate::SimulatedData data = simulate::Simulate(parameters);
    for (std::size_t p = 0; p < 15; ++p)
        tables.push_back(SimulatedPopulationTable(data, p));
    return tables;
}

void AllEstimatesWithBootstrap(benchmark::State& state) {
    static const std::vector<Table> populations = Populations();
    const LikelihoodSettings settings{12345, 1000, static_cast<unsigned>(state.range(0))};
    for (auto _ : state)
        for (const Table& population : populations)
            benchmark::DoNotOptimize(EstimateNullAllelesAndInbreeding(population, settings));
    state.counters["populations"] = static_cast<double>(populations.size());
}

BENCHMARK(AllEstimatesWithBootstrap)->Arg(1)->Arg(2)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
}  // namespace tavrelle
