#pragma once

// Simulated microsatellite genotypes of diploid populations, with known null alleles, stutter
// and large allele drop-out, for Tavrelle's demo files, tests, benchmarks and validation runs.
// The model and every parameter are described in docs/simulator.md.
//
// Everything is deterministic: the same parameters (seed included) give the same data on any
// machine. Each locus and each population draws from its own random stream, and every genotype
// uses the same fixed number of draws whatever happens to it, so changing one parameter of one
// locus (an error rate, say) changes nothing at the other loci and, at that locus, only the
// genotypes that parameter touches.

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrelle::simulate {

// Allele sizes are written with three digits; 0 is reserved for "no allele".
inline constexpr int kMinAlleleSize = 1;
inline constexpr int kMaxAlleleSize = 999;
inline constexpr int kMinRepeat = 1;
inline constexpr int kMaxRepeat = 6;

// Which allele survives when stutter makes a one-repeat heterozygote look homozygous.
enum class StutterKeep { kLarger, kSmaller, kEither };

// One locus, every field set.
struct LocusParameters {
    std::string name;
    int repeat = 2;               // motif length in bp, 1..6; alleles differ by multiples of it
    int alleles = 10;             // number of visible alleles
    int base = 100;               // size of the smallest allele in bp
    int mode = 5;                 // the most frequent allele, counted from the smallest (1-based)
    double decay = 0.7;           // frequency ratio of neighbouring alleles away from the mode
    double null_frequency = 0.0;  // chance that an allele copy is a null (non-amplifying) allele
    double stutter = 0.0;         // chance that a one-repeat heterozygote is scored homozygous
    StutterKeep stutter_keep = StutterKeep::kLarger;
    double dropout = 0.0;  // chance that the larger allele of the widest heterozygote fails
    int dropout_span = 0;  // size difference (bp) at which drop-out reaches full strength;
                           // 0 means the allele size range of the locus
    double missing = 0.0;  // chance that a genotype is missing for no genetic reason
};

// A locus as given on a command line: any field may be left open.
struct LocusRequest {
    std::string name;  // empty: a name is made up from the locus number
    std::optional<int> repeat;
    std::optional<int> alleles;
    std::optional<int> base;
    std::optional<int> mode;
    std::optional<double> decay;
    std::optional<double> null_frequency;
    std::optional<double> stutter;
    std::optional<StutterKeep> stutter_keep;
    std::optional<double> dropout;
    std::optional<int> dropout_span;
    std::optional<double> missing;
};

// Reads "NAME:key=value,key=value,...", "key=value,..." (no name) or "NAME" (no keys). Keys:
// repeat, alleles, base, mode, decay, null, stutter, stutter_keep (larger, smaller or either),
// dropout, dropout_span, missing. Throws std::invalid_argument with a readable message.
LocusRequest ParseLocusRequest(std::string_view text);

// The fields of `own`, and those of `defaults` where `own` leaves them open.
LocusRequest MergeRequests(const LocusRequest& defaults, const LocusRequest& own);

// Fills the open fields of a request for locus number `index` (0-based): name "Loc01", ...;
// repeat mostly 2 or 4; 6..15 alleles; base chosen so that the alleles lie within 80..400 bp where
// they fit; mode near the middle; decay 0.55..0.85; no null allele, stutter, drop-out or missing
// genotypes. The draws depend only on seed and index, never on which fields are given.
LocusParameters ResolveLocus(const LocusRequest& request, std::uint64_t seed, std::size_t index);

// The allele sizes of a locus, smallest first: base, base + repeat, ...
std::vector<int> AlleleSizes(const LocusParameters& locus);

// Sample names: "pop1_001" (numbered) or a three-letter code per population and a number,
// "KRV001" (coded).
enum class NameStyle { kNumbered, kCoded };

struct SimulationParameters {
    std::uint64_t seed = 1;
    std::vector<int> sample_counts{50};  // one entry per population
    std::vector<LocusParameters> loci;
    double differentiation = 0.3;  // 0 (same frequencies everywhere) .. below 1
    // Chance that an individual's two copies at a locus are identical by descent (one allele
    // carried twice), drawn afresh for every individual and locus; 0 .. below 1.
    double inbreeding = 0.0;
    NameStyle name_style = NameStyle::kNumbered;
    std::string title;  // first line of the file; empty: Describe(parameters)
};

// The largest simulation accepted (populations x samples x loci), to keep memory in bounds.
inline constexpr std::int64_t kMaxGenotypes = 20'000'000;

// Empty when the parameters can be simulated, otherwise what is wrong with them.
std::string Validate(const SimulationParameters& parameters);

// One line saying what made the data and with which seed and sizes.
std::string Describe(const SimulationParameters& parameters);

// Two allele sizes, smaller first. In scored genotypes {0, 0} is a missing genotype; in true
// genotypes 0 stands for a null allele.
struct Genotype {
    int first = 0;
    int second = 0;

    bool IsMissing() const { return first == 0 && second == 0; }
    bool operator==(const Genotype&) const = default;
};

// What happened between the true genotype and the scored one, as bits.
enum ScoringEvent : std::uint8_t {
    kNoEvent = 0,
    kNullMasked = 1,  // one null allele: scored as a homozygote of the other
    kNullNull = 2,    // two null alleles: scored missing
    kStutter = 4,     // one-repeat heterozygote scored homozygous
    kDropout = 8,     // larger allele dropped out: scored as a homozygote of the smaller
    kMissing = 16,    // genotype lost for no genetic reason: scored missing
};

struct Sample {
    std::string name;
    std::vector<Genotype> scored;      // per locus: what the file shows
    std::vector<Genotype> truth;       // per locus: the real genotype (0 = null allele)
    std::vector<std::uint8_t> events;  // per locus: ScoringEvent bits
};

struct Population {
    std::vector<Sample> samples;
    // Per locus, per allele (smallest first): the frequency of each visible allele among the
    // copies that are not null. The true frequency of allele i is this times (1 - null).
    std::vector<std::vector<double>> frequencies;
};

struct SimulatedData {
    std::string title;
    std::vector<LocusParameters> loci;
    std::vector<Population> populations;
};

// The populations in memory. Throws std::invalid_argument when Validate() objects.
SimulatedData Simulate(const SimulationParameters& parameters);

// Genepop text: title line, one locus name per line, "Pop", then "NAME,  GGGGGG GGGGGG ..." per
// sample, "Pop" before each further population; LF line ends, no blank lines, and the text ends
// right after the newline of the last sample line.
std::string FormatGenepop(const SimulatedData& data);
void WriteGenepop(std::ostream& out, const SimulatedData& data);

// What the simulation did at one locus, over all populations.
struct LocusSummary {
    std::string name;
    std::int64_t genotypes = 0;             // samples
    std::int64_t scored_missing = 0;        // 000000 in the file, whatever the cause
    std::int64_t null_copies = 0;           // null allele copies among the true genotypes
    std::int64_t null_masked = 0;           // kNullMasked events
    std::int64_t null_null = 0;             // kNullNull events
    std::int64_t stutter = 0;               // kStutter events
    std::int64_t dropout = 0;               // kDropout events
    std::int64_t random_missing = 0;        // kMissing events
    std::int64_t true_heterozygotes = 0;    // two different visible alleles in truth
    std::int64_t scored_heterozygotes = 0;  // two different alleles in the file
};

std::vector<LocusSummary> Summarize(const SimulatedData& data);

// A tab-separated table: each locus's parameters (resolved) and its LocusSummary counts.
std::string FormatReport(const SimulatedData& data);

// "StutterKeep" as text: "larger", "smaller", "either".
std::string_view ToText(StutterKeep keep);

}  // namespace tavrelle::simulate
