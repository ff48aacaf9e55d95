#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "run/LocusResult.h"
#include "run/PopulationResult.h"

namespace tavrelle {

// The null allele estimate the study overview shows in its cells, colours and heat map: the
// maximum likelihood one under Hardy-Weinberg proportions, blanks as null homozygotes.
inline constexpr const char* kStudyEstimateName = "EM";
inline double StudyEstimate(const PopulationResult& population, const LocusResult& locus) {
    if (!population.likelihood) return kNoValue;
    return population.likelihood->loci.at(static_cast<std::size_t>(locus.index)).estimates[kEm];
}

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
    double estimate = 0;
};

// In how many populations, or at how many loci, each flag fires.
struct FlagTotals {
    int analysed = 0;
    int nullAllele = 0;
    int stutter = 0;
    int dropout = 0;

    void Add(const LocusFlags& flags);
};

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
// first appear, and the totals both ways. Rows come in as the run delivers them.
class StudyTable {
public:
    void Add(const PopulationResult& population);

    const std::vector<std::string>& Loci() const { return loci_; }
    const std::vector<StudyRow>& Rows() const { return rows_; }
    const std::vector<FlagTotals>& LocusTotals() const { return locusTotals_; }
    // The smallest and largest estimate of any cell; both 0 without cells.
    double LowestEstimate() const { return lowest_; }
    double HighestEstimate() const { return highest_; }

private:
    std::size_t Column(const std::string& locus);

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

// The note on how the population's alleles are coded: its half-missing genotypes, and alleles
// that look like numbers rather than sizes; empty when there is nothing to say.
std::string AlleleCodingSummary(const StudyRow& row);

}  // namespace tavrelle
