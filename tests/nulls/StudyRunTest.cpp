#include "nulls/StudyRun.h"

#include <gtest/gtest.h>

#include "../support/SimulatedPopulation.h"

namespace tavrelle {
namespace {

std::vector<StudyPopulation> FivePopulations() {
    simulate::SimulationParameters parameters;
    parameters.seed = 7;
    parameters.sample_counts = {30, 25, 40, 30, 35};
    for (int l = 0; l < 4; ++l) {
        simulate::LocusRequest request;
        request.repeat = 2;
        if (l == 1) request.null_frequency = 0.2;
        parameters.loci.push_back(
            simulate::ResolveLocus(request, parameters.seed, static_cast<std::size_t>(l)));
    }
    const simulate::SimulatedData data = simulate::Simulate(parameters);
    std::vector<StudyPopulation> populations;
    for (std::size_t p = 0; p < data.populations.size(); ++p)
        populations.push_back({static_cast<int>(p + 1), SimulatedPopulationTable(data, p)});
    return populations;
}

StudySettings Settings(int threads) {
    StudySettings settings;
    settings.seed = 4242;
    settings.repeatForAll = 2;
    settings.tableFolder = TAVRELLE_TABLE_DIR;
    settings.threads = threads;
    return settings;
}

// What a population's run said, enough to tell two runs apart.
std::string Fingerprint(const PopulationResult& result) {
    std::string text = std::to_string(result.number) + result.error.value_or("");
    if (result.analysis) {
        text += result.analysis->SummaryText();
        for (const LocusResult& locus : result.analysis->Loci())
            text += locus.probabilityText + locus.nullPresent;
    }
    return text;
}

std::vector<std::string> RunFive(int threads, const std::atomic<bool>* cancel = nullptr,
                                 std::atomic<bool>* cancelAfterFirst = nullptr) {
    std::vector<StudyPopulation> populations = FivePopulations();
    std::vector<std::string> delivered;
    RunStudy(
        populations, Settings(threads),
        [&](PopulationResult&& result) {
            delivered.push_back(Fingerprint(result));
            if (cancelAfterFirst) *cancelAfterFirst = true;
        },
        cancel);
    return delivered;
}

TEST(StudyRun, DeliversEveryPopulationInFileOrderWhateverTheThreads) {
    const std::vector<std::string> one = RunFive(1);
    ASSERT_EQ(one.size(), 5U);
    for (std::size_t p = 0; p < one.size(); ++p)
        EXPECT_EQ(one[p].substr(0, 1), std::to_string(p + 1));
    EXPECT_NE(one[0], one[1]);
    EXPECT_EQ(RunFive(3), one);
    EXPECT_EQ(RunFive(8), one);
}

TEST(StudyRun, CancelStartsNoFurtherPopulation) {
    std::atomic<bool> cancel{false};
    const std::vector<std::string> delivered = RunFive(1, &cancel, &cancel);
    ASSERT_FALSE(delivered.empty());
    EXPECT_LT(delivered.size(), 5U);
    EXPECT_EQ(delivered[0].substr(0, 1), "1");
}

TEST(StudyRun, AFailureWhileDeliveringStopsTheStudyAndReachesTheCaller) {
    std::vector<StudyPopulation> populations = FivePopulations();
    int delivered = 0;
    EXPECT_THROW(RunStudy(populations, Settings(2),
                          [&](PopulationResult&&) {
                              if (++delivered == 2) throw std::runtime_error("disk full");
                          }),
                 std::runtime_error);
    EXPECT_EQ(delivered, 2);
}

TEST(StudyRun, SuspectCountLeavesOutMissingAlleles) {
    PopulationResult result;
    result.unexpected = {{"0", 1, 3}, {"000", 2, 3}, {"999", 3, 4}};
    result.nonInteger = {{"1.5", 1, 5}};
    EXPECT_EQ(result.SuspectCount(), 2U);
}

}  // namespace
}  // namespace tavrelle
