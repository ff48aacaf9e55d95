#include "LikelihoodValidation.h"

#include "AnalyseCommand.h"
#include "EstimateError.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <thread>
#include <vector>

#include "../../tests/support/SimulatedPopulation.h"
#include "nulls/LikelihoodEstimates.h"
#include "run/AlleleAnalysis.h"

namespace {

using namespace tavrelle;

constexpr int kLoci = 10;
constexpr int kPartialNullLoci = 3;

using Error = EstimateError;

struct Setting {
    double nulls;
    double f;
    int samples;
    std::array<Error, kEstimateCount> estimates{};
    Error inbreeding;
    int loci = 0;
    int calledByVerdict = 0;
    int verdictLoci = 0;
    int calledByJoint = 0;
    int nullLoci = kLoci;  // the first loci carry the null allele, the others none
};

// A locus is called null by the joint model when its interval leaves out 0.01, a null allele
// too rare to matter.
bool JointCallsNull(const LocusEstimates& locus) {
    return locus.intervals[kJoint].low > 0.01;
}

void RunSetting(Setting& s, int populations, int bootstrap, const std::string& tables) {
    for (int replicate = 0; replicate < populations; ++replicate) {
        simulate::SimulationParameters parameters;
        parameters.seed =
            static_cast<std::uint64_t>(s.samples * 1000000 + s.nulls * 10000 + s.f * 100) * 1000 +
            static_cast<std::uint64_t>(replicate);
        parameters.sample_counts = {s.samples};
        parameters.inbreeding = s.f;
        for (std::size_t l = 0; l < kLoci; ++l) {
            simulate::LocusRequest request;
            request.repeat = 2;
            request.null_frequency = static_cast<int>(l) < s.nullLoci ? s.nulls : 0.0;
            parameters.loci.push_back(simulate::ResolveLocus(request, parameters.seed, l));
        }
        const Table table = SimulatedPopulationTable(simulate::Simulate(parameters));
        const PopulationEstimates result =
            EstimateNullAllelesAndInbreeding(table, {parameters.seed, bootstrap, 1});
        for (std::size_t l = 0; l < result.loci.size(); ++l) {
            const LocusEstimates& locus = result.loci[l];
            const double truth = static_cast<int>(l) < s.nullLoci ? s.nulls : 0.0;
            for (std::size_t e = 0; e < kEstimateCount; ++e)
                s.estimates[e].Add(locus.estimates[e], truth, locus.intervals[e]);
            ++s.loci;
            s.calledByJoint += JointCallsNull(locus) ? 1 : 0;
        }
        s.inbreeding.Add(result.inbreeding.f, s.f, result.inbreeding.interval);
        if (s.nulls > 0) continue;  // the verdict's false alarms matter without null alleles
        const auto analysis = AnalyseAsTheCommandDoes(table, 12345 + replicate, kLoci, tables);
        if (!analysis) continue;
        for (const LocusResult& locus : analysis->Loci()) {
            ++s.verdictLoci;
            s.calledByVerdict += locus.nullPresent == "yes" ? 1 : 0;
        }
    }
}

void PrintHeader() {
    std::printf("| null | F | samples |");
    for (const char* label : kEstimateLabels)
        std::printf(" %s |", label);
    std::printf(" F |\n|---:|---:|---:|");
    for (std::size_t e = 0; e <= kEstimateCount; ++e)
        std::printf("---:|");
    std::printf("\n");
}

}  // namespace

int ValidateLikelihood(const std::string& tables, int populations, int bootstrap) {
    std::vector<Setting> settings;
    for (double nulls : {0.0, 0.1, 0.2, 0.3})
        for (double f : {0.0, 0.1, 0.2})
            for (int samples : {50, 100, 200})
                settings.push_back({nulls, f, samples, {}, {}, 0, 0, 0, 0, kLoci});
    // Null alleles at a few loci only: what tells them apart from inbreeding.
    const std::size_t everyLocus = settings.size();
    for (double nulls : {0.1, 0.2, 0.3})
        for (double f : {0.0, 0.1, 0.2})
            for (int samples : {50, 100, 200})
                settings.push_back({nulls, f, samples, {}, {}, 0, 0, 0, 0, kPartialNullLoci});
    const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::thread> workers;
    for (unsigned w = 0; w < threads; ++w)
        workers.emplace_back([&, w] {
            for (std::size_t i = w; i < settings.size(); i += threads)
                RunSetting(settings[i], populations, bootstrap, tables);
        });
    for (std::thread& t : workers)
        t.join();

    std::printf("RMSE (bias) of each estimate, %d populations x %d loci per row\n\n", populations,
                kLoci);
    PrintHeader();
    for (std::size_t i = 0; i < everyLocus; ++i) {
        const Setting& s = settings[i];
        std::printf("| %.1f | %.1f | %d |", s.nulls, s.f, s.samples);
        for (const Error& e : s.estimates)
            std::printf(" %.3f (%+.3f) |", e.Rmse(), e.Bias());
        std::printf(" %.3f (%+.3f) |\n", s.inbreeding.Rmse(), s.inbreeding.Bias());
    }
    std::printf("\nCoverage of the 95%% intervals (%d bootstrap replicates)\n\n", bootstrap);
    PrintHeader();
    for (std::size_t i = 0; i < everyLocus; ++i) {
        const Setting& s = settings[i];
        std::printf("| %.1f | %.1f | %d |", s.nulls, s.f, s.samples);
        for (const Error& e : s.estimates)
            std::printf(" %.0f%% |", e.Coverage());
        std::printf(" %.0f%% |\n", s.inbreeding.Coverage());
    }
    std::printf("\nLoci called null (no null allele in the rows with null 0.0)\n\n");
    std::printf("| null | F | samples | randomisation verdict \"yes\" | joint model |\n");
    std::printf("|---:|---:|---:|---:|---:|\n");
    for (std::size_t i = 0; i < everyLocus; ++i) {
        const Setting& s = settings[i];
        std::printf("| %.1f | %.1f | %d |", s.nulls, s.f, s.samples);
        if (s.verdictLoci > 0)
            std::printf(" %.1f%% |", 100.0 * s.calledByVerdict / s.verdictLoci);
        else
            std::printf(" |");
        std::printf(" %.1f%% |\n", 100.0 * s.calledByJoint / std::max(1, s.loci));
    }
    std::printf("\nNull alleles at %d of the %d loci: RMSE (bias) and coverage, over all loci\n\n",
                kPartialNullLoci, kLoci);
    std::printf("| null | F | samples | EM | Joint with F | Joint coverage | F | F coverage |\n");
    std::printf("|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    for (std::size_t i = everyLocus; i < settings.size(); ++i) {
        const Setting& s = settings[i];
        const Error& em = s.estimates[kEm];
        const Error& joint = s.estimates[kJoint];
        std::printf(
            "| %.1f | %.1f | %d | %.3f (%+.3f) | %.3f (%+.3f) | %.0f%% | %.3f (%+.3f) |"
            " %.0f%% |\n",
            s.nulls, s.f, s.samples, em.Rmse(), em.Bias(), joint.Rmse(), joint.Bias(),
            joint.Coverage(), s.inbreeding.Rmse(), s.inbreeding.Bias(), s.inbreeding.Coverage());
    }
    return 0;
}
