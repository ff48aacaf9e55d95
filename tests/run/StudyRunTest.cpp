#include "run/StudyRun.h"

#include <gtest/gtest.h>

#include "../support/SimulatedGenepop.h"
#include "../support/SimulatedStudy.h"
#include "../support/TempFolder.h"
#include "population/InputDataSource.h"

namespace tavrelle {
namespace {

std::vector<StudyPopulation> FivePopulations() {
    return SimulatedStudy(7, {30, 25, 40, 30, 35}, 4, 1, 0.2);
}

RunSettings Settings(int threads) {
    RunSettings settings;
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

TEST(StudyRun, APopulationNotAnalysedSaysWhyInACode) {
    const struct {
        const char* what;
        int samples;
        bool motif;
        const char* firstAllele;  // of the first sample, as the file holds it; "" leaves it
        SuspectPolicy onSuspect;
        StopReason reason;
    } cases[] = {
        {"analysed", 30, true, "999", SuspectPolicy::Proceed, StopReason::None},
        {"no repeat motif", 30, false, "", SuspectPolicy::Stop, StopReason::MotifMissing},
        {"three samples", 3, true, "", SuspectPolicy::Stop, StopReason::InsufficientData},
        {"an allele above the largest size", 30, true, "999", SuspectPolicy::Stop,
         StopReason::SuspectValues},
    };
    for (const auto& c : cases) {
        StudyPopulation population = SimulatedStudy(5, {c.samples}, 2).front();
        if (*c.firstAllele != '\0') population.table.SetCell(2, 2, c.firstAllele);
        RunSettings settings = Settings(1);
        settings.onSuspect = c.onSuspect;
        if (!c.motif) settings.repeatForAll.reset();
        const PopulationResult result = AnalyseStudyPopulation(population, settings, false);
        EXPECT_EQ(result.stopReason, c.reason) << c.what;
        EXPECT_EQ(result.Analysed(), c.reason == StopReason::None) << c.what;
    }
}

// Chosen populations come in the order asked for, repeats kept, each its own; a number beyond
// the file is left out and the count says how many there are.
TEST(StudyRun, ChosenPopulationsAreCopiedInTheOrderAsked) {
    testing::TempFolder folder;
    const std::string path = folder.Write("four.gen", testing::SimulatedGenepop({5, 6, 7, 8}));
    RecordingPrompter prompter;
    InputDataSource store(testing::FileRequest(path), prompter);
    int count = 0;
    const std::vector<StudyPopulation> chosen = StudyPopulations(store, {3, 1, 3, 9}, count);
    EXPECT_EQ(count, 4);
    ASSERT_EQ(chosen.size(), 3U);
    const std::vector<std::pair<int, std::int64_t>> expected = {{3, 7}, {1, 5}, {3, 7}};
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        EXPECT_EQ(chosen[i].number, expected[i].first);
        EXPECT_EQ(chosen[i].table.RecordCount() - 2, expected[i].second);
    }
}

TEST(StudyRun, SuspectCountLeavesOutMissingAlleles) {
    PopulationResult result;
    result.unexpected = {{"0", 1, 3}, {"000", 2, 3}, {"999", 3, 4}};
    result.nonInteger = {{"1.5", 1, 5}};
    EXPECT_EQ(result.SuspectCount(), 2U);
}

}  // namespace
}  // namespace tavrelle
