// Large populations: the desktop's Analyse keeps its 16-bit counts and says which limit a
// population passed; a study counts in 32 bits and analyses up to 32,766 samples and any number
// of suspect values, with the same results wherever both fit.
#include <gtest/gtest.h>

#include "../support/SimulatedPopulation.h"
#include "checking/PopulationCheck.h"
#include "run/AlleleAnalysis.h"
#include "run/StudyRun.h"

namespace tavrelle {
namespace {

// One population of one locus of four alleles; `base` 400 puts every allele above the check's
// default maximum of 350, so that each is a suspect value.
Table OneLocus(int samples, int base = 100, int loci = 1) {
    simulate::SimulationParameters parameters;
    parameters.seed = 21;
    parameters.sample_counts = {samples};
    for (int l = 0; l < loci; ++l) {
        simulate::LocusRequest request;
        request.repeat = 2;
        request.alleles = 4;
        request.base = base;
        parameters.loci.push_back(
            simulate::ResolveLocus(request, parameters.seed, static_cast<std::size_t>(l)));
    }
    return SimulatedPopulationTable(simulate::Simulate(parameters));
}

RunSettings Prescribed(Int16 loci) {
    RunSettings settings;
    settings.seed = 5;
    settings.repeatCodes.assign(static_cast<std::size_t>(loci), 2);
    settings.tableFolder = TAVRELLE_TABLE_DIR;
    return settings;
}

RunSettings Study() {
    RunSettings settings;
    settings.seed = 5;
    settings.repeatForAll = 2;
    settings.tableFolder = TAVRELLE_TABLE_DIR;
    settings.threads = 1;
    settings.bootstrap = 0;
    return settings;
}

TEST(LargePopulations, AnalyseKeepsItsSixteenBitsAndNamesTheLimit) {
    RecordingPrompter prompter;
    RunHooks hooks;
    hooks.prompter = &prompter;
    const Table table = OneLocus(16384);
    AlleleAnalysis prescribed(table, Prescribed(1), hooks);
    ASSERT_TRUE(prescribed.RunError());
    EXPECT_EQ(prescribed.RunError()->Description(), "Overflow");
    EXPECT_EQ(prescribed.RunError()->Detail(),
              "The population pop1_00001 has 16384 samples; Analyse counts allele copies in 16 "
              "bits and takes at most 16383 samples. Tools > Study Overview and tavrelle-batch "
              "analyse up to 32766.");
    RunSettings wide = Prescribed(1);
    wide.counts = CountWidth::Bits32;
    AlleleAnalysis study(table, wide, hooks);
    EXPECT_FALSE(study.RunError());
    ASSERT_EQ(study.Loci().size(), 1u);
    EXPECT_EQ(study.Loci()[0].genotypes.size(), 16384u);
}

TEST(LargePopulations, WideCountsGiveTheSameResultsWhereSixteenBitsFit) {
    RecordingPrompter prompter;
    RunHooks hooks;
    hooks.prompter = &prompter;
    const Table table = OneLocus(3000);
    AlleleAnalysis narrow(table, Prescribed(1), hooks);
    RunSettings settings = Prescribed(1);
    settings.counts = CountWidth::Bits32;
    AlleleAnalysis wide(table, settings, hooks);
    const LocusResult& a = narrow.Loci().at(0);
    const LocusResult& b = wide.Loci().at(0);
    EXPECT_EQ(a.nulls.estimates, b.nulls.estimates);
    EXPECT_EQ(a.nulls.adjustedCounts, b.nulls.adjustedCounts);
    EXPECT_EQ(a.prepared.alleleCounts, b.prepared.alleleCounts);
    EXPECT_EQ(a.binomial.classProbabilities, b.binomial.classProbabilities);
    EXPECT_EQ(a.meanHomozygotes, b.meanHomozygotes);
}

TEST(LargePopulations, AStudyAnalysesUpToTheDocumentedLimitAndRefusesBeyondIt) {
    for (const int samples : {16384, 32766, 32767}) {
        SCOPED_TRACE(samples);
        StudyPopulation population{1, OneLocus(samples)};
        const PopulationResult result = AnalyseStudyPopulation(population, Study(), false);
        EXPECT_EQ(result.samples, samples);
        if (samples <= kMostSamples) {
            EXPECT_TRUE(result.Analysed()) << result.error.value_or("");
            EXPECT_EQ(result.analysis->Loci().at(0).genotypes.size(),
                      static_cast<std::size_t>(samples));
        } else {
            EXPECT_EQ(result.stopReason, StopReason::TooManySamples);
            EXPECT_EQ(result.error,
                      "The population has 32767 samples; at most 32766 samples of a population "
                      "can be analysed. Divide it into smaller groups.");
        }
    }
}

TEST(LargePopulations, AnyNumberOfSuspectValuesIsCountedAndListed) {
    // 2,100 samples x 8 loci x 2 alleles, every one above the maximum size: 33,600 suspects.
    Table table = OneLocus(2100, 400, 8);
    CheckFlags flags;
    SuspectCells cells;
    RecordingPrompter prompter;
    const std::vector<Int16> motifs(8, 2);
    EXPECT_THROW(ValidatePopulation(table, motifs, "350", flags, cells, prompter), ProgramError);
    ValidatePopulation(table, motifs, "350", flags, cells, prompter, CountWidth::Bits32);
    EXPECT_EQ(cells.UnexpectedCells.size(), 33600u);

    StudyPopulation population{1, std::move(table)};
    const PopulationResult result = AnalyseStudyPopulation(population, Study(), false);
    EXPECT_TRUE(result.Analysed()) << result.error.value_or("");
    EXPECT_EQ(result.unexpected.size(), 33600u);
    EXPECT_EQ(result.SuspectCount(), 33600u);
}

TEST(LargePopulations, WhatTheCheckFoundIsKeptWhenALaterValueOverflows) {
    // 999 is above the maximum size; 40000 passes the whole-number test and then leaves 16 bits.
    Table table = OneLocus(20);
    table.SetCell(2, 2, "999");
    table.SetCell(6, 3, "40000");
    StudyPopulation population{1, std::move(table)};
    const PopulationResult result = AnalyseStudyPopulation(population, Study(), false);
    EXPECT_EQ(result.stopReason, StopReason::RunError);
    EXPECT_EQ(result.error, "Run-time error '6':\r\n\r\nOverflow");
    EXPECT_FALSE(result.unexpected.empty());
}

}  // namespace
}  // namespace tavrelle
