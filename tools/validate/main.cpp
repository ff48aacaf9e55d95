// Simulates populations with a null allele at a known frequency at every locus, runs the
// analysis on each, and reports per setting the mean and spread of each estimator against the
// truth and how often a locus is called "yes". Individuals homozygous for the null allele show
// as missing genotypes, as they would in the laboratory.
//
// Usage: tavrelle-validate [TABLE_FOLDER] [REPLICATES]  (prints a Markdown table)
//        tavrelle-validate likelihood [TABLE_FOLDER] [POPULATIONS] [BOOTSTRAP]
//        (the likelihood estimates and F beside the four: bias, RMSE, interval coverage)
//        tavrelle-validate failure [POPULATIONS] [BOOTSTRAP]
//        (em_failure and the failure rate against em, em_missing and joint)
#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "../../tests/support/SimulatedPopulation.h"
#include "AnalyseCommand.h"
#include "FailureValidation.h"
#include "LikelihoodValidation.h"
#include "run/AlleleAnalysis.h"

namespace {

using namespace tavrelle;

constexpr std::size_t kLociPerPopulation = 4;

struct Tally {
    std::array<double, 4> sum{};
    std::array<double, 4> squares{};
    int loci = 0;
    int yes = 0;
    int failed = 0;

    void Add(const LocusResult& locus) {
        for (std::size_t m = 0; m < 4; ++m) {
            sum[m] += locus.nulls.estimates[m];
            squares[m] += locus.nulls.estimates[m] * locus.nulls.estimates[m];
        }
        ++loci;
        yes += locus.nullPresent == "yes" ? 1 : 0;
    }
    double Mean(std::size_t m) const { return sum[m] / loci; }
    double Spread(std::size_t m) const {
        double mean = Mean(m);
        return std::sqrt(std::max(0.0, (squares[m] - loci * mean * mean) / (loci - 1)));
    }
};

Tally RunSetting(double nullFrequency, int samples, int replicates, const std::string& tables) {
    Tally tally;
    for (int replicate = 0; replicate < replicates; ++replicate) {
        simulate::SimulationParameters parameters;
        const auto setting = static_cast<std::uint64_t>(samples * 1000 + nullFrequency * 100);
        parameters.seed = setting * 100000 + static_cast<std::uint64_t>(replicate);
        parameters.sample_counts = {samples};
        for (std::size_t l = 0; l < kLociPerPopulation; ++l) {
            simulate::LocusRequest request;
            request.repeat = 2;
            request.null_frequency = nullFrequency;
            parameters.loci.push_back(simulate::ResolveLocus(request, parameters.seed, l));
        }
        Table table = SimulatedPopulationTable(simulate::Simulate(parameters));
        const auto analysis =
            AnalyseAsTheCommandDoes(table, 12345 + replicate, kLociPerPopulation, tables);
        if (!analysis) {
            ++tally.failed;
            continue;
        }
        for (const LocusResult& locus : analysis->Loci())
            tally.Add(locus);
    }
    return tally;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "failure")
        return ValidateFailure(argc > 2 ? std::atoi(argv[2]) : 30,
                               argc > 3 ? std::atoi(argv[3]) : 200);
    if (argc > 1 && std::string(argv[1]) == "likelihood")
        return ValidateLikelihood(argc > 2 ? argv[2] : "build/bin",
                                  argc > 3 ? std::atoi(argv[3]) : 20,
                                  argc > 4 ? std::atoi(argv[4]) : 200);
    const std::string tables = argc > 1 ? argv[1] : "build/bin";
    const int replicates = argc > 2 ? std::atoi(argv[2]) : 100;
    const std::vector<double> frequencies = {0.0, 0.1, 0.2, 0.3};
    const std::vector<int> sizes = {50, 100, 200};

    struct Setting {
        double frequency;
        int samples;
        Tally tally;
    };
    std::vector<Setting> settings;
    for (double f : frequencies)
        for (int n : sizes)
            settings.push_back({f, n, {}});
    std::vector<std::thread> workers;
    const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
    for (unsigned w = 0; w < threads; ++w) {
        workers.emplace_back([&, w] {
            for (std::size_t i = w; i < settings.size(); i += threads)
                settings[i].tally =
                    RunSetting(settings[i].frequency, settings[i].samples, replicates, tables);
        });
    }
    for (std::thread& t : workers)
        t.join();

    std::printf(
        "| null frequency | samples | loci | Velmaret | Chakraborty | Brookfield 1 | "
        "Brookfield 2 | called \"yes\" |\n");
    std::printf("|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    for (const Setting& s : settings) {
        std::printf("| %.1f | %d | %d |", s.frequency, s.samples, s.tally.loci);
        for (std::size_t m = 0; m < 4; ++m)
            std::printf(" %.3f (%.3f) |", s.tally.Mean(m), s.tally.Spread(m));
        std::printf(" %.1f%% |\n", 100.0 * s.tally.yes / std::max(1, s.tally.loci));
        if (s.tally.failed > 0) std::printf("|  | %d populations not analysed |\n", s.tally.failed);
    }
    return 0;
}
