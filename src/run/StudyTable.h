#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "run/LocusResult.h"
#include "run/PopulationResult.h"
#include "run/RunSettings.h"

namespace tavrelle {

// The estimate (an index into kEstimateKeys) a cell shows for a locus; NaN where there is none.
double StudyEstimate(const PopulationResult& population, const LocusResult& locus,
                     std::size_t estimate = kDefaultStudyEstimate);

// The share of a locus's samples without a genotype above which a cell is marked: there the
// estimates part most, as they read blanks as failures or as null homozygotes.
inline constexpr double kManyBlanksShare = 0.2;

// What the interpretation of a locus concludes, as three flags: a null allele, stutter, large
// allele drop-out. Each needs a homozygote excess; null and drop-out exclude each other.
struct LocusFlags {
    bool nullAllele = false;
    bool stutter = false;
    bool dropout = false;
};
LocusFlags FlagsOf(const LocusResult& locus);

// One cell of the overview: a population at a locus.
struct StudyCell {
    std::string verdict;  // the null allele verdict, "yes" or "no"
    LocusFlags flags;
    LocusFlags borderline;  // verdicts that another set of rounds could well turn
    double estimate = 0;
    int samples = 0;  // scored and blank
    int blanks = 0;   // samples without a genotype

    bool AnyBorderline() const {
        return borderline.nullAllele || borderline.stutter || borderline.dropout;
    }
    bool ManyBlanks() const { return samples > 0 && blanks > kManyBlanksShare * samples; }
};

// In how many populations, or at how many loci, each flag fires.
struct FlagTotals {
    int analysed = 0;
    int nullAllele = 0;
    int stutter = 0;
    int dropout = 0;

    void Add(const LocusFlags& flags);
};

// Which of the locus's verdicts are borderline (VerdictFractions).
LocusFlags BorderlineOf(const LocusResult& locus);

// One row of the overview: a population, its cells by locus column (none where the population
// did not run or lacks the locus), or the reason it stopped.
struct StudyRow {
    int number = 0;
    std::string name;
    std::int64_t samples = 0;
    std::optional<std::string> stopReason;
    std::string stopLocus;
    std::vector<SuspectEntry> suspects;  // analysed as they stood, or omitted
    std::string suspectAction;           // none, omit, proceed or stop
    std::size_t halfMissing = 0;         // genotypes with one allele missing, left out
    bool indexLikeAlleles = false;       // alleles that look like numbers, not sizes
    std::vector<std::optional<StudyCell>> cells;
    FlagTotals totals;
};

// The study at a glance: one row per population, one column per locus in the order the loci
// first appear, and the totals both ways, each cell showing the chosen estimate. Rows come in
// as the run delivers them.
class StudyTable {
public:
    explicit StudyTable(std::size_t estimate = kDefaultStudyEstimate);
    void Add(const PopulationResult& population);

    std::size_t Estimate() const { return estimate_; }
    // The run the table shows: its seed and how many populations the file holds; fewer rows
    // than that once the run has ended means it was cancelled.
    void SetRun(std::int64_t seed, int populationsInFile);
    std::optional<std::int64_t> Seed() const { return seed_; }
    int PopulationsInFile() const { return populationsInFile_; }
    bool Incomplete() const { return static_cast<int>(rows_.size()) < populationsInFile_; }

    const std::vector<std::string>& Loci() const { return loci_; }
    const std::vector<StudyRow>& Rows() const { return rows_; }
    const std::vector<FlagTotals>& LocusTotals() const { return locusTotals_; }
    // The smallest and largest estimate of any cell; both 0 without cells.
    double LowestEstimate() const { return lowest_; }
    double HighestEstimate() const { return highest_; }

private:
    std::size_t Column(const std::string& locus);

    std::size_t estimate_;
    std::optional<std::int64_t> seed_;
    int populationsInFile_ = 0;
    std::vector<std::string> loci_;
    std::vector<StudyRow> rows_;
    std::vector<FlagTotals> locusTotals_;
    double lowest_ = 0;
    double highest_ = 0;
    bool anyCell_ = false;
};

// Suspect values of a population as one line: "12 values analysed as they stand: 1000 (row 3,
// column 4), ...", at most `shown` of them spelt out; empty without suspects.
std::string SuspectSummary(const StudyRow& row, std::size_t shown = 5);

// The estimate's name as every legend gives it, e.g. "EM with failures".
std::string StudyEstimateName(std::size_t estimate);

// "Run cancelled after 9 of 15 populations: the totals count those 9 only." for a table with
// fewer rows than its file has populations; empty otherwise.
std::string CancelledText(const StudyTable& table);

// The note on how the population's alleles are coded: its half-missing genotypes, and alleles
// that look like numbers rather than sizes; empty when there is nothing to say.
std::string AlleleCodingSummary(const StudyRow& row);

}  // namespace tavrelle
