#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/StatisticalTables.h"
#include "base/ProgramError.h"
#include "population/Table.h"
#include "run/LocusResult.h"
#include "run/RunSettings.h"

namespace tavrelle {

// One analysis of one population: made per run, its construction performs the whole run over
// every locus of the population table, in column order. A program error ends the run where it
// stands; the loci finished before it are kept and the error is handed back, not thrown.
class AlleleAnalysis {
public:
    static constexpr const char* kProgressCaption = "Analysing the data. Please wait...";

    AlleleAnalysis(const Table& rsAlleleData, RunSettings settings, RunHooks hooks);

    // The six decisions of a locus under a confidence interval, from the stored rounds: the
    // graph screen calls it for every locus when the interval changes, with no new draw.
    void LocusAnalysis(Int16 locus, Confidence confidence);

    const std::vector<LocusResult>& Loci() const { return loci_; }
    const RunSettings& Settings() const { return settings_; }
    const StatisticalTables& Tables() const { return tables_; }
    const std::string& PopulationName() const { return populationName_; }
    Int16 SampleCount() const { return sampleCount_; }

    // The comparison across loci, composed at the end of a run that reached every locus.
    const std::string& SummaryText() const { return summaryText_; }
    // Some locus says "yes": the adjusted genotypes were made.
    bool AnyNullLocus() const { return anyNullLocus_; }

    // The probability table and the interpretation of the first locus of that name, for the two
    // panes beside the graphs; nothing for a name that isn't there.
    std::optional<std::pair<std::string, std::string>> DisplayInitAnalysis(
        const std::string& locusName) const;

    // Set when the run ended early: a locus with fewer than four scored individuals.
    const std::string& StopMessage() const { return stopMessage_; }
    // Set when the run failed with a program error; with the locus it met it at, if any.
    const std::optional<ProgramError>& RunError() const { return runError_; }
    const std::string& ErrorLocus() const { return errorLocus_; }
    // The homozygote class test overflowed at some locus.
    bool TooManySamples() const { return tooManySamples_; }
    // Rounds whose keys held a tie, settled by the Shell sort (a statistic of the run).
    std::int64_t RoundsWithTies() const { return roundsWithTies_; }

private:
    struct LocusInput;
    void Run(const Table& rsAlleleData);
    static LocusInput ReadLocus(const Table& rsAlleleData, int column, Int16 sampleCount);
    void AnalyseLocus(LocusResult& locus, class KeyPipeline& keys);
    void ReportTooManySamples();
    // The genotypes whose alleles the rounds pool: all of them, or only the heterozygotes.
    GenotypeSet RoundPool(const GenotypeSet& observed) const;
    void Summarise();

    RunSettings settings_;
    RunHooks hooks_;
    StatisticalTables tables_;
    std::string populationName_;
    Int16 sampleCount_ = 0;
    std::vector<LocusResult> loci_;
    std::string summaryText_;
    bool anyNullLocus_ = false;
    std::string stopMessage_;
    std::optional<ProgramError> runError_;
    std::string locusInHand_;
    std::string errorLocus_;
    bool tooManySamples_ = false;
    std::int64_t roundsWithTies_ = 0;
};

}  // namespace tavrelle
