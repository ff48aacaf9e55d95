#include "run/AlleleAnalysis.h"

#include <gtest/gtest.h>

#include "../support/SimulatedPopulation.h"

namespace tavrelle {
namespace {

// A population table from sample rows of allele texts, loci named L1, L2, ...
Table PopulationTable(const std::vector<std::vector<std::string>>& samples) {
    Table table;
    const int columns = static_cast<int>(samples.front().size()) + 2;
    for (int c = 1; c <= columns; ++c)
        table.AppendColumn(std::string("Col_").append(std::to_string(c)));
    table.AddNew();
    table.SetField(1, "Population");
    table.AddNew();
    table.SetField(0, "Sample no.");
    for (int c = 2; c < columns; c += 2)
        table.SetField(c, std::string("L").append(std::to_string(c / 2)));
    int number = 1;
    for (const auto& alleles : samples) {
        table.AddNew();
        table.SetField(0, std::to_string(number));
        table.SetField(1, "ind " + std::to_string(number++));
        for (std::size_t a = 0; a < alleles.size(); ++a)
            table.SetField(static_cast<int>(a + 2), alleles[a]);
    }
    return table;
}

struct RecordedRun {
    RecordingPrompter prompter;
    int resets = 0;
    std::vector<int> progress;
    std::unique_ptr<AlleleAnalysis> analysis;

    RecordedRun(const Table& table, Int16 loci, bool threaded = false,
                Confidence code = Confidence::Percent95, bool heterozygotesOnly = false) {
        RunSettings settings;
        settings.seed = 12345;
        settings.randomisations = 1000;
        settings.confidence = code;
        settings.repeatCodes.assign(static_cast<std::size_t>(loci), 2);
        settings.tableFolder = TAVRELLE_TABLE_DIR;
        settings.threaded = threaded;
        settings.heterozygotesOnly = heterozygotesOnly;
        RunHooks hooks;
        hooks.prompter = &prompter;
        hooks.resetDisplay = [this] { ++resets; };
        hooks.progress = [this](int value) { progress.push_back(value); };
        analysis = std::make_unique<AlleleAnalysis>(table, settings, hooks);
    }
};

Table Simulated(std::uint64_t seed, int samples, std::size_t loci, double null = 0) {
    simulate::SimulationParameters parameters;
    parameters.seed = seed;
    parameters.sample_counts = {samples};
    for (std::size_t l = 0; l < loci; ++l) {
        simulate::LocusRequest request;
        request.repeat = 2;
        request.null_frequency = l == 0 ? null : 0.0;
        parameters.loci.push_back(simulate::ResolveLocus(request, seed, l));
    }
    return SimulatedPopulationTable(simulate::Simulate(parameters));
}

void ExpectSameLoci(const AlleleAnalysis& a, const AlleleAnalysis& b) {
    ASSERT_EQ(a.Loci().size(), b.Loci().size());
    for (std::size_t l = 0; l < a.Loci().size(); ++l) {
        const LocusResult& x = a.Loci()[l];
        const LocusResult& y = b.Loci()[l];
        EXPECT_EQ(x.meanHomozygotes, y.meanHomozygotes);
        EXPECT_EQ(x.meanDifferences, y.meanDifferences);
        EXPECT_EQ(x.homozygoteBounds.upper, y.homozygoteBounds.upper);
        EXPECT_EQ(x.differenceBounds.lower, y.differenceBounds.lower);
        EXPECT_EQ(x.decisions, y.decisions);
        EXPECT_EQ(x.binomial.classProbabilities, y.binomial.classProbabilities);
    }
}

TEST(AlleleAnalysis, DrawingOnASecondThreadGivesTheSameRun) {
    Table table = Simulated(31, 120, 5, 0.3);
    RecordedRun one(table, 5, false);
    RecordedRun two(table, 5, true);
    ASSERT_FALSE(one.analysis->RunError());
    ExpectSameLoci(*one.analysis, *two.analysis);
    // The null allele at the first locus shows as a homozygote excess.
    EXPECT_TRUE(one.analysis->Loci()[0].decisions.homozygoteExcess);
    // Progress runs 1, then c, c + 1, c + 2 for each locus column c.
    EXPECT_EQ(std::vector<int>(one.progress.begin(), one.progress.begin() + 4),
              (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(one.progress.back(), 12);
}

TEST(AlleleAnalysis, ObservedCountsHoldEveryScoredIndividual) {
    Table table = Simulated(8, 60, 3);
    RecordedRun run(table, 3);
    for (const LocusResult& locus : run.analysis->Loci()) {
        int pairs = 0;
        for (Int16 c : locus.observedDifferences)
            pairs += c;
        EXPECT_EQ(pairs, locus.Scored());
        int homozygotes = 0;
        for (Int16 c : locus.observedHomozygotes)
            homozygotes += c;
        EXPECT_EQ(homozygotes, locus.observedDifferences[0]);
        double meanPairs = 0;
        for (double m : locus.meanDifferences)
            meanPairs += m;
        EXPECT_NEAR(meanPairs, locus.Scored(), 1e-9);
        EXPECT_EQ(locus.Scored() + locus.missingGenotypes, 60);
        for (std::size_t c = 0; c < locus.homozygoteBounds.lower.size(); ++c)
            EXPECT_LE(locus.homozygoteBounds.lower[c], locus.homozygoteBounds.upper[c]);
    }
}

TEST(AlleleAnalysis, AChangedIntervalReusesTheRounds) {
    Table table = Simulated(44, 80, 4, 0.2);
    RecordedRun at95(table, 4, false, Confidence::Percent95);
    RecordedRun atRange(table, 4, false, Confidence::FullRange);
    for (Int16 l = 0; l < 4; ++l)
        at95.analysis->LocusAnalysis(l, Confidence::FullRange);
    ExpectSameLoci(*at95.analysis, *atRange.analysis);
}

TEST(AlleleAnalysis, StopsAtALocusWithFewerThanFourScoredIndividuals) {
    Table table = PopulationTable({{"100", "102", "100", "0"},
                                   {"102", "104", "0", "0"},
                                   {"104", "104", "104", "100"},
                                   {"100", "100", "102", "102"},
                                   {"102", "102", "0", "0"}});
    RecordedRun run(table, 2);
    ASSERT_EQ(run.analysis->Loci().size(), 1u);
    EXPECT_EQ(run.analysis->Loci()[0].Scored(), 5);
    EXPECT_EQ(run.analysis->StopMessage(),
              "There are insufficient samples remaining for analysis to proceed.");
    ASSERT_EQ(run.prompter.messages.size(), 1u);
    EXPECT_EQ(run.prompter.messages[0].caption, "Insufficient Data");
    EXPECT_EQ(run.prompter.messages[0].icon, MessageIcon::Exclamation);
    EXPECT_FALSE(run.analysis->RunError());
}

TEST(AlleleAnalysis, ACellThatIsNoNumberEndsTheRunAtItsLocus) {
    Table table = PopulationTable({{"100", "102", "100", "x"},
                                   {"102", "104", "102", "102"},
                                   {"104", "104", "104", "100"},
                                   {"100", "100", "102", "102"}});
    RecordedRun run(table, 2);
    ASSERT_TRUE(run.analysis->RunError());
    EXPECT_EQ(run.analysis->RunError()->Number(), 13);
    EXPECT_EQ(run.analysis->Loci().size(), 1u);
}

TEST(AlleleAnalysis, TooManyHomozygotesOfOneSizeIsReportedAndTheRunGoesOn) {
    std::vector<std::vector<std::string>> samples;
    for (int i = 0; i < 160; ++i)
        samples.push_back({"100", "100", "100", "102"});
    for (int i = 0; i < 240; ++i)
        samples.push_back({"102", "104", "102", "104"});
    RecordedRun run(PopulationTable(samples), 2);
    EXPECT_FALSE(run.analysis->RunError());
    EXPECT_TRUE(run.analysis->TooManySamples());
    EXPECT_EQ(run.resets, 1);
    ASSERT_EQ(run.analysis->Loci().size(), 2u);
    EXPECT_TRUE(run.analysis->Loci()[0].binomial.overflowed);
    EXPECT_FALSE(run.analysis->Loci()[1].binomial.overflowed);
    ASSERT_EQ(run.prompter.messages.size(), 1u);
    EXPECT_EQ(run.prompter.messages[0].text,
              "There may be too many samples for Tavrelle to analyse.\r\nThe maximum is usually "
              "around 750 samples.\r\nPlease divide the population into smaller groups and try "
              "again.");
    EXPECT_EQ(run.prompter.messages[0].caption, "Too many samples");
}

TEST(AlleleAnalysis, TheHeterozygotesOnlySwitchLeavesHomozygotesOutOfThePool) {
    Table table = PopulationTable({{"100", "100"},
                                   {"100", "100"},
                                   {"100", "102"},
                                   {"102", "104"},
                                   {"104", "104"},
                                   {"100", "104"}});
    RecordedRun all(table, 1);
    RecordedRun heterozygotes(table, 1, false, Confidence::Percent95, true);
    double allPairs = 0;
    double heterozygotePairs = 0;
    for (double m : all.analysis->Loci()[0].meanDifferences)
        allPairs += m;
    for (double m : heterozygotes.analysis->Loci()[0].meanDifferences)
        heterozygotePairs += m;
    EXPECT_DOUBLE_EQ(allPairs, 6);
    EXPECT_DOUBLE_EQ(heterozygotePairs, 3);
    // The observed counts stay those of every scored individual.
    EXPECT_EQ(heterozygotes.analysis->Loci()[0].observedDifferences,
              all.analysis->Loci()[0].observedDifferences);
}

TEST(AlleleAnalysis, PopulationNameIsTheThirdSampleNameUpToItsFirstSpace) {
    Table table = PopulationTable({{"100", "102"}, {"102", "104"}, {"104", "104"}, {"100", "100"}});
    RecordedRun run(table, 1);
    EXPECT_EQ(run.analysis->PopulationName(), "ind ");  // "ind 3", space kept
}

}  // namespace
}  // namespace tavrelle
