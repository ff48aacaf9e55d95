#include "FailureValidation.h"

#include <array>
#include <cstdio>
#include <thread>
#include <vector>

#include "../../tests/support/SimulatedPopulation.h"
#include "EstimateError.h"
#include "nulls/LikelihoodEstimates.h"

namespace {

using namespace tavrelle;

constexpr int kLoci = 10;
constexpr std::array<std::size_t, 4> kCompared = {kEm, kEmMissing, kJoint, kEmFailure};

struct Setting {
    const char* what;
    double nulls;
    double failures;
    double f;
    int samples;
    std::array<EstimateError, 4> estimates{};
    EstimateError failureRate;
    std::array<int, kNestedModelCount> chosen{};  // populations by the model AIC chose
};

void RunSetting(Setting& s, int populations, int bootstrap) {
    for (int replicate = 0; replicate < populations; ++replicate) {
        simulate::SimulationParameters parameters;
        parameters.seed = static_cast<std::uint64_t>(s.samples * 1000000 + s.nulls * 10000 +
                                                     s.failures * 1000 + s.f * 100) *
                              1000 +
                          static_cast<std::uint64_t>(replicate);
        parameters.sample_counts = {s.samples};
        parameters.inbreeding = s.f;
        for (std::size_t l = 0; l < kLoci; ++l) {
            simulate::LocusRequest request;
            request.repeat = 2;
            request.null_frequency = s.nulls;
            request.missing = s.failures;
            parameters.loci.push_back(simulate::ResolveLocus(request, parameters.seed, l));
        }
        const Table table = SimulatedPopulationTable(simulate::Simulate(parameters));
        const PopulationEstimates result =
            EstimateNullAllelesAndInbreeding(table, {parameters.seed, bootstrap, 1});
        for (const LocusEstimates& locus : result.loci) {
            for (std::size_t c = 0; c < kCompared.size(); ++c)
                s.estimates[c].Add(locus.estimates[kCompared[c]], s.nulls,
                                   locus.intervals[kCompared[c]]);
            s.failureRate.Add(locus.failureRate, s.failures, locus.failureInterval);
        }
        ++s.chosen[static_cast<std::size_t>(result.inbreeding.model)];
    }
}

void PrintHeader() {
    std::printf("| truth | null | failures | F | samples |");
    for (std::size_t e : kCompared)
        std::printf(" %s |", kEstimateKeys[e]);
    std::printf(" failure_rate |\n|---|---:|---:|---:|---:|");
    for (std::size_t c = 0; c <= kCompared.size(); ++c)
        std::printf("---:|");
    std::printf("\n");
}

void PrintRow(const Setting& s) {
    std::printf("| %s | %.2f | %.2f | %.1f | %d |", s.what, s.nulls, s.failures, s.f, s.samples);
}

}  // namespace

int ValidateFailure(int populations, int bootstrap) {
    struct Truth {
        const char* what;
        double nulls;
        double failures;
    };
    const Truth truths[] = {{"failures only", 0.0, 0.2},
                            {"null alleles only", 0.2, 0.0},
                            {"both", 0.2, 0.15},
                            {"neither", 0.0, 0.0}};
    std::vector<Setting> settings;
    for (const Truth& t : truths)
        for (double f : {0.0, 0.1})
            for (int samples : {50, 100})
                settings.push_back({t.what, t.nulls, t.failures, f, samples, {}, {}});
    const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::thread> workers;
    for (unsigned w = 0; w < threads; ++w)
        workers.emplace_back([&, w] {
            for (std::size_t i = w; i < settings.size(); i += threads)
                RunSetting(settings[i], populations, bootstrap);
        });
    for (std::thread& t : workers)
        t.join();

    std::printf(
        "RMSE (bias) against the simulated null allele frequency (failure_rate: against "
        "the simulated failure rate), %d populations x %d loci per row\n\n",
        populations, kLoci);
    PrintHeader();
    for (const Setting& s : settings) {
        PrintRow(s);
        for (const EstimateError& e : s.estimates)
            std::printf(" %.3f (%+.3f) |", e.Rmse(), e.Bias());
        std::printf(" %.3f (%+.3f) |\n", s.failureRate.Rmse(), s.failureRate.Bias());
    }
    std::printf("\nCoverage of the 95%% intervals (%d bootstrap replicates)\n\n", bootstrap);
    PrintHeader();
    for (const Setting& s : settings) {
        PrintRow(s);
        for (const EstimateError& e : s.estimates)
            std::printf(" %.0f%% |", e.Coverage());
        std::printf(" %.0f%% |\n", s.failureRate.Coverage());
    }
    std::printf("\nThe joint model chosen by AIC, share of the %d populations\n\n", populations);
    std::printf("| truth | null | failures | F | samples |");
    for (const char* name : kNestedModelNames)
        std::printf(" %s |", name);
    std::printf("\n|---|---:|---:|---:|---:|");
    for (std::size_t m = 0; m < kNestedModelCount; ++m)
        std::printf("---:|");
    std::printf("\n");
    for (const Setting& s : settings) {
        PrintRow(s);
        for (int count : s.chosen)
            std::printf(" %.0f%% |", 100.0 * count / populations);
        std::printf("\n");
    }
    return 0;
}
