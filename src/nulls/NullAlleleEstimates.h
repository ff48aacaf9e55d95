#pragma once

#include <array>
#include <string>
#include <vector>

#include "base/CountWidth.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

enum NullMethod { kVelmaret = 0, kChakraborty = 1, kBrookfield1 = 2, kBrookfield2 = 3 };
inline constexpr std::array<const char*, 4> kNullMethodNames = {"Velmaret", "Chakraborty",
                                                                "Brookfield 1", "Brookfield 2"};

// Per allele class: its size and the individuals each method reassigns to a null allele.
struct AdjustedCountRow {
    Int16 size = 0;
    std::array<std::int32_t, 4> counts{};

    bool operator==(const AdjustedCountRow&) const = default;
};

struct NullAlleleEstimates {
    std::array<double, 4> estimates{};  // unrounded, unclamped, by NullMethod
    std::string estimatesLine;          // the four rounded to 4 decimals, two tabs apart
    std::string adjustedText;           // adjusted allele frequencies; empty without evidence
    // One row per allele class, absent when the locus had no genotype to estimate from.
    std::vector<AdjustedCountRow> adjustedCounts;
};

// The four estimates of the null allele frequency of a locus from its scored genotypes and the
// number of individuals that gave no genotype (`blanks`), and, when `nullSuspected` and the
// Velmaret estimate is at least 0.05, the adjusted allele frequencies and counts. Its counts
// (2 x n among them) are checked against `width`.
//
// Velmaret: 1 - sum of q over the classes, where q = 1 - sqrt(1 - carriers / n) is the
// frequency that under Hardy-Weinberg proportions gives the class's observed share of carriers.
// Chakraborty: (He - Ho) / (He + Ho) (Chakraborty, R., De Andrade, M., Daiger, S. P. and
// Budowle, B. 1992, Ann. Hum. Genet. 56: 45-57).
// Brookfield 1: (He - Ho) / (1 + He); Brookfield 2: the estimate that also counts the
// individuals with no amplified allele as null homozygotes (Brookfield, J. F. Y. 1996,
// Mol. Ecol. 5: 453-455).
NullAlleleEstimates CalculateNullAllele(const GenotypeSet& set, Int16 blanks, bool nullSuspected,
                                        CountWidth width = CountWidth::Bits16);

// Observed allele frequency p and carrier-based frequency q of one allele class.
struct AlleleClassFrequency {
    Int16 size = 0;
    double p = 0;
    double q = 0;
};

// Individuals homozygous for an allele class and the times it occurs in heterozygotes.
struct ClassCounts {
    Int16 size;
    std::int32_t homozygotes;    // individuals homozygous for the class
    std::int32_t heterozygotes;  // times the class occurs in heterozygous individuals
};

// The four estimates from the allele classes of a locus (ascending sizes, each present), its n
// scored individuals, their h2 heterozygous allele copies and the blanks; `frequencies`, when
// given, receives each class's p and q. The bootstrap calls it on tallies, CalculateNullAllele on
// genotypes: one arithmetic for both.
std::array<double, 4> ClosedFormEstimates(const std::vector<ClassCounts>& classes, std::int32_t n,
                                          std::int32_t h2, std::int32_t blanks,
                                          std::vector<AlleleClassFrequency>* frequencies,
                                          CountWidth width = CountWidth::Bits16);

// The Brookfield 2 estimate from the expected heterozygosity, the heterozygous allele copies h2
// among n scored individuals, and the individuals with no genotype. Where its square root has no
// real value the power operation fails (Invalid procedure call), as the run time's does.
double Brookfield2(double he, std::int32_t h2, std::int32_t n, std::int32_t blanks,
                   CountWidth width = CountWidth::Bits16);

// The adjusted allele frequencies and the counts of individuals each method reassigns, written
// into `result` when `nullSuspected` and the Velmaret estimate is at least 0.05; otherwise only
// the class sizes of the counts.
void AdjustFrequencies(const std::vector<AlleleClassFrequency>& classes, std::int32_t n,
                       bool nullSuspected, NullAlleleEstimates& result,
                       CountWidth width = CountWidth::Bits16);

// Meant to hand out the estimates line of a locus; its lookup asks the two-column table with one
// subscript, so it always fails with the subscript error of the run time.
[[noreturn]] std::string NullAlleleFrequency(Int16 locus);

}  // namespace tavrelle
