#include "nulls/NullAlleleEstimates.h"

#include <gtest/gtest.h>

#include <cmath>

#include "nulls/CorrectGenotypes.h"
#include "nulls/SortedGenotypes.h"
#include "nulls/SummaryText.h"

namespace tavrelle {
namespace {

GenotypeSet Repeated(int count, Int16 a, Int16 b) {
    return GenotypeSet(static_cast<std::size_t>(count),
                       GenotypeRow{a, b, static_cast<Int16>(std::abs(a - b))});
}

TEST(NullEstimators, MonomorphicLocusWithAndWithoutBlanks) {
    GenotypeSet set = Repeated(20, 150, 150);
    NullAlleleEstimates none = CalculateNullAllele(set, 0, false);
    EXPECT_EQ(none.estimates, (std::array<double, 4>{0, 0, 0, 0}));
    EXPECT_EQ(none.estimatesLine, "0\t\t0\t\t0\t\t0");
    // Five blanks of 25: Brookfield 2 = sqrt(5 / 25); He = 0 keeps the other three at 0.
    NullAlleleEstimates blanks = CalculateNullAllele(set, 5, false);
    EXPECT_DOUBLE_EQ(blanks.estimates[kBrookfield2], std::sqrt(0.2));
    EXPECT_EQ(blanks.estimatesLine, "0\t\t0\t\t0\t\t0.4472");
    EXPECT_EQ(blanks.adjustedCounts, (std::vector<AdjustedCountRow>{{150, {0, 0, 0, 0}}}));
    // No record at all: the four estimates stay 0 and no class table is made.
    NullAlleleEstimates empty = CalculateNullAllele({}, 3, true);
    EXPECT_EQ(empty.estimatesLine, "0\t\t0\t\t0\t\t0");
    EXPECT_TRUE(empty.adjustedCounts.empty());
    EXPECT_EQ(empty.adjustedText, "");
}

TEST(NullEstimators, AllHeterozygousForTheSameTwoAllelesGivesNegativeEstimates) {
    // Ho = 1, He = 0.5: Chakraborty and Brookfield 1 are -1/3; both classes are carried by
    // everyone, so q = 1 twice and Velmaret is -1; Brookfield 2 is (-0.5 + 0.5) / 3 = 0.
    NullAlleleEstimates e = CalculateNullAllele(Repeated(12, 100, 102), 0, true);
    EXPECT_DOUBLE_EQ(e.estimates[kVelmaret], -1.0);
    EXPECT_DOUBLE_EQ(e.estimates[kChakraborty], -1.0 / 3);
    EXPECT_DOUBLE_EQ(e.estimates[kBrookfield1], -1.0 / 3);
    EXPECT_DOUBLE_EQ(e.estimates[kBrookfield2], 0.0);
    EXPECT_EQ(e.estimatesLine, "-1\t\t-0.3333\t\t-0.3333\t\t0");
    EXPECT_EQ(e.adjustedText, "");  // Velmaret below 0.05
}

TEST(NullEstimators, HandComputedMixedLocus) {
    // 4 x (100,100), 4 x (100,102), 2 x (102,102): n = 10, p = 0.6 and 0.4, He = 0.48, Ho = 0.4.
    GenotypeSet set = Repeated(4, 100, 100);
    for (const GenotypeRow& row : Repeated(4, 100, 102))
        set.push_back(row);
    for (const GenotypeRow& row : Repeated(2, 102, 102))
        set.push_back(row);
    NullAlleleEstimates e = CalculateNullAllele(set, 2, false);
    // Carriers 8/10 and 6/10: q = 1 - sqrt(0.2) and 1 - sqrt(0.4).
    EXPECT_NEAR(e.estimates[kVelmaret], std::sqrt(0.2) + std::sqrt(0.4) - 1, 1e-15);
    EXPECT_NEAR(e.estimates[kChakraborty], 0.08 / 0.88, 1e-15);
    EXPECT_NEAR(e.estimates[kBrookfield1], 0.08 / 1.48, 1e-15);
    // B = 2/12, HoAll = 8/24, HeAdj = 0.48 / (10/12)^2.
    const double b = 2.0 / 12, heAdj = 0.48 / std::pow(1 - b, 2), x = (1 + b) * heAdj - 8.0 / 24;
    const double y = 4 * b * (1 - heAdj * heAdj);
    EXPECT_NEAR(e.estimates[kBrookfield2], (x + std::sqrt(x * x + y)) / (2 * (1 + heAdj)), 1e-15);
}

TEST(NullEstimators, Brookfield2FailsWhereItsRootIsNotReal) {
    // HeAdj = 4, X = 5, Y = -30: X^2 + Y = -5.
    try {
        Brookfield2(1.0, 40, 10, 10);
        FAIL();
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.Number(), 5);
    }
    EXPECT_THROW(NullAlleleFrequency(0), ProgramError);
}

NullAlleleEstimates WithVelmaret(double velmaret) {
    NullAlleleEstimates e;
    e.estimates = {velmaret, -0.1, 0.2, 0.3};
    return e;
}

TEST(AdjustedFrequencies, RunFromAVelmaretEstimateOf005WithEvidence) {
    const std::vector<AlleleClassFrequency> classes{
        {100, 0.5, 0.45}, {102, 0.3, 0.28}, {104, 0.2, 0.17}};
    NullAlleleEstimates at = WithVelmaret(0.05);
    AdjustFrequencies(classes, 40, true, at);
    EXPECT_EQ(at.adjustedText,
              "Adjusted allele frequencies of amplified alleles based on the four methods of null "
              "allele estimation.\r\n\r\nClass\tObs. allele freq.\tVelmaret\tChakraborty\t"
              "Brookfield 1\tBrookfield 2\r\n\r\n"
              "100\t0.5\t\t0.45\t\t0.55\t\t0.4\t\t0.35\r\n"
              "102\t0.3\t\t0.28\t\t0.33\t\t0.24\t\t0.21\r\n"
              "104\t0.2\t\t0.17\t\t0.22\t\t0.16\t\t0.14\r\n");
    // Counts: Round(r p n) >= 1 decides, Round(2 r p n) is kept. Velmaret at 104: 0.05 x 0.2 x
    // 40 = 0.4 rounds to 0; Chakraborty is negative everywhere.
    EXPECT_EQ(at.adjustedCounts,
              (std::vector<AdjustedCountRow>{
                  {100, {2, 0, 8, 12}}, {102, {1, 0, 5, 7}}, {104, {0, 0, 3, 5}}}));
    NullAlleleEstimates below = WithVelmaret(0.049999);
    AdjustFrequencies(classes, 40, true, below);
    EXPECT_EQ(below.adjustedText, "");
    EXPECT_EQ(below.adjustedCounts[0], (AdjustedCountRow{100, {0, 0, 0, 0}}));
    NullAlleleEstimates noEvidence = WithVelmaret(0.3);
    AdjustFrequencies(classes, 40, false, noEvidence);
    EXPECT_EQ(noEvidence.adjustedText, "");
}

TEST(SortedGenotypes, OrderByLowThenHighAllele) {
    GenotypeSet set{{104, 100, 4}, {102, 102, 0}, {100, 100, 0}, {106, 100, 6}, {102, 98, 4}};
    PreparedGenotypes prepared = PrepareLocusGenotypes(set);
    std::vector<std::pair<int, int>> order;
    for (const GenotypeRow& row : prepared.sorted)
        order.emplace_back(row.first, row.second);
    EXPECT_EQ(order, (std::vector<std::pair<int, int>>{
                         {98, 102}, {100, 100}, {100, 104}, {100, 106}, {102, 102}}));
    EXPECT_EQ(prepared.alleleCounts,
              (AlleleCountRows{{98, 1}, {100, 4}, {102, 3}, {104, 1}, {106, 1}}));
}

TEST(CorrectGenotypes, WindowsCountRowsAndRunIntoLaterClasses) {
    GenotypeSet sorted{{100, 100, 0}, {100, 100, 0}, {100, 102, 2},
                       {102, 102, 0}, {102, 104, 2}, {104, 104, 0}};
    // Class 100 takes four rows: its two homozygotes, its heterozygote, and 102's homozygote.
    // Class 102 then starts at the converted row and changes nothing; class 104 (5) runs off
    // the end of the list; 106 has no row of its own.
    std::vector<AdjustedCountRow> counts{
        {100, {4, 0, 1, 0}}, {102, {2, 0, 0, 0}}, {104, {5, 0, 0, 0}}, {106, {3, 0, 0, 0}}};
    EXPECT_EQ(
        CorrectGenotypes(sorted, counts, kVelmaret),
        (AdjustedGenotypeList{{100, 0}, {100, 0}, {100, 102}, {102, 0}, {102, 104}, {104, 0}}));
    EXPECT_EQ(CorrectGenotypes(sorted, counts, kBrookfield1),
              (AdjustedGenotypeList{
                  {100, 0}, {100, 100}, {100, 102}, {102, 102}, {102, 104}, {104, 104}}));
    EXPECT_EQ(CorrectGenotypes(sorted, counts, kChakraborty).size(), sorted.size());
}

TEST(SummaryText, TableAndConclusionByCountOfNullLoci) {
    auto line = [](std::string name, bool yes) {
        return LocusSummaryLine{std::move(name), yes ? "yes" : "no", "0.1\t\t0.2\t\t0.3\t\t0.4"};
    };
    const std::string head =
        "Locus\t   Null Present\tVelmaret\tChakraborty\tBrookfield 1\tBrookfield 2\r\n\r\n";
    EXPECT_EQ(SummaryText({line("Abc12", false), line("LongLocusName14", false)}),
              head + "Abc12          \tno\t0.1\t\t0.2\t\t0.3\t\t0.4\r\n" +
                  "LongLocusNam   \tno\t0.1\t\t0.2\t\t0.3\t\t0.4\r\n\r\n\r\n" +
                  "No loci show evidence for a null allele.\r\nThis population is probably in "
                  "Hardy Weinberg equilibrium.");
    std::string one = SummaryText({line("A", false), line("LongLocusName14", true)});
    EXPECT_NE(one.find("One locus shows evidence for a null allele.\r\nThis population is "
                       "possibly in Hardy Weinberg equilibrium with locus LongLocusNam, showing "
                       "signs of a null allele."),
              std::string::npos);
    std::string several = SummaryText({line("A", true), line("B", true), line("C", false)});
    EXPECT_NE(several.find("Several loci show evidence for a null allele.\r\nThis population is "
                           "possibly in Hardy Weinberg equilibrium with loci A, B, showing signs "
                           "of a null allele."),
              std::string::npos);
    std::string all = SummaryText({line("A", true), line("B", true)});
    EXPECT_NE(all.find("All loci show evidence for a null allele.\r\nThis population is probably "
                       "not in Hardy Weinberg equilibrium."),
              std::string::npos);
    // A population of one locus with evidence reads as one locus, not as all.
    EXPECT_NE(SummaryText({line("A", true)}).find("One locus shows"), std::string::npos);
}

}  // namespace
}  // namespace tavrelle
