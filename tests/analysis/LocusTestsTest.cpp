#include <gtest/gtest.h>

#include <cmath>

#include "analysis/ClassBinomialTest.h"
#include "analysis/ConfidenceBounds.h"
#include "analysis/LocusDecisions.h"

namespace tavrelle {
namespace {

// A matrix whose class c holds the counts given, already sorted.
RoundMatrix Matrix(const std::vector<std::vector<Int16>>& classes) {
    RoundMatrix matrix(static_cast<int>(classes.size()), static_cast<int>(classes.front().size()));
    for (std::size_t c = 0; c < classes.size(); ++c)
        std::copy(classes[c].begin(), classes[c].end(), matrix.Class(static_cast<int>(c)).begin());
    return matrix;
}

RoundMatrix Ranks(int classes, int rounds) {
    std::vector<std::vector<Int16>> counts(static_cast<std::size_t>(classes));
    for (auto& c : counts)
        for (int r = 0; r < rounds; ++r)
            c.push_back(static_cast<Int16>(r));
    return Matrix(counts);
}

TEST(ConfidenceBounds, TakeTheRanksOfEachLevel) {
    RoundMatrix ranks = Ranks(2, 1000);  // the count at rank r is r
    auto bounds = [&](Confidence code) {
        BoundsTable b = ConfidenceBounds(ranks, 1000, code);
        return std::pair<int, int>(b.lower[0], b.upper[0]);
    };
    EXPECT_EQ(bounds(Confidence::Percent95), std::make_pair(25, 974));
    EXPECT_EQ(bounds(Confidence::Percent99), std::make_pair(5, 994));
    EXPECT_EQ(bounds(Confidence::FullRange), std::make_pair(0, 999));
    // Two classes counted: 100 - 1000 x (1 - 0.95^(1/2)) = 74.68, tail 126.6.
    EXPECT_EQ(bounds(Confidence::Bonferroni), std::make_pair(127, 872));
    EXPECT_NEAR(ConfidenceLevel(Confidence::Bonferroni, 1000, 5), 89.79, 0.005);
    BoundsTable range = ConfidenceBounds(Ranks(1, 2000), 2000, Confidence::FullRange);
    EXPECT_EQ(range.upper[0], 1999);
}

TEST(ConfidenceBounds, BonferroniWithNothingCountedDividesByZero) {
    RoundMatrix zeros = Matrix({{0, 0, 0, 0}});
    try {
        ConfidenceBounds(zeros, 4, Confidence::Bonferroni);
        FAIL();
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.Number(), 11);
    }
    // At 10000 rounds a Bonferroni level can fall so low that its rank leaves the table.
    EXPECT_THROW(ConfidenceBounds(Ranks(1, 10000), 10000, Confidence::Bonferroni), ProgramError);
}

TEST(HomozygoteDecisions, CountClassesAgainstBoundsAndMeans) {
    BoundsTable bounds{{0, 0, 0, 0}, {2, 1, 0, 3}};
    std::vector<double> means{1.0, 0.5, 0.0, 1.5};
    // Classes 0 and 1 reach the upper bound; class 2 neither observed nor bounded.
    EXPECT_TRUE(ClassWideExcessTest({2, 1, 0, 0}, bounds, means));
    // Class 2, empty with bound 0, counts at the bound and at the mean but not as present:
    // 1 of 3 at the bound, 2 of 3 at the mean.
    EXPECT_FALSE(ClassWideExcessTest({1, 0, 0, 1}, bounds, means));
    EXPECT_FALSE(ClassWideExcessTest({0, 0}, BoundsTable{{0, 0}, {0, 0}}, {0.0, 0.0}));
    // Four classes: the upper test sums classes 3 and 4 (from 3.2, rounded to 3).
    EXPECT_TRUE(UpperClassExcessTest({10, 0, 1, 0}, 11));
    EXPECT_FALSE(UpperClassExcessTest({30, 0, 1, 0}, 31));
    EXPECT_TRUE(UpperClassExcessTest({1}, 1));  // one class: to - from is 0.2, class 0 is summed
    // Ten classes: the lower test sums classes 1 and 2.
    EXPECT_TRUE(LowerClassExcessTest({1, 1, 0, 0, 0, 0, 0, 0, 0, 18}, 20));
    EXPECT_FALSE(LowerClassExcessTest({1, 0, 0, 0, 0, 0, 0, 0, 0, 19}, 20));  // exactly 5%
    EXPECT_FALSE(LowerClassExcessTest({1, 0, 0, 0, 0, 0, 0, 0, 0, 30}, 31));
    EXPECT_FALSE(LowerClassExcessTest({5, 5, 5, 5}, 20));  // to = 0.8: nothing to sum
}

TEST(DifferenceDecisions, ZeroClassRepeatAndLargeDifferences) {
    BoundsTable bounds{{1, 0, 4, 0, 0}, {6, 0, 9, 0, 3}};
    EXPECT_TRUE(ZeroClassExcessTest({7, 0, 4, 0, 1}, bounds));
    EXPECT_FALSE(ZeroClassExcessTest({6, 0, 4, 0, 1}, bounds));
    EXPECT_TRUE(OneRepeatDeficitTest({7, 0, 3, 0, 1}, bounds, 2));
    EXPECT_FALSE(OneRepeatDeficitTest({7, 0, 4, 0, 1}, bounds, 2));
    EXPECT_FALSE(OneRepeatDeficitTest({7, 0, 0}, bounds, 4));  // repeat beyond the range
    // Five classes: the largest (from 4) sum 0 + 1 over 5 classes is 20%, not below 5.
    EXPECT_FALSE(LargeDifferenceTest({7, 0, 4, 0, 1}));
    EXPECT_TRUE(LargeDifferenceTest({7, 0, 4, 0, 0}));
    EXPECT_TRUE(LargeDifferenceTest({0}));  // one class: true when class 0 is empty
    EXPECT_FALSE(LargeDifferenceTest({1}));
}

TEST(ClassBinomialTest, HandComputedLocus) {
    // Genotypes (100,100) (100,102) (102,104) (104,104): n = 4, classes 100, 102, 104 with
    // 3, 2 and 3 copies, one homozygote each at 100 and 104.
    std::vector<Int16> alleles{100, 100, 100, 102, 102, 104, 104, 104};
    CountArray observed{1, 0, 0, 0, 1};
    RoundMatrix rounds =
        Matrix({{0, 1, 1, 2}, {0, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 0, 0}, {1, 1, 1, 1}});
    const StatisticalTables tables = LoadStatisticalTables(TAVRELLE_TABLE_DIR);
    BinomialOutcome outcome;
    ClassBinomialTest(observed, alleles, rounds, tables.chi, outcome);
    ASSERT_EQ(outcome.classProbabilities.size(), 3u);
    // Class 100: carriers 2 of 4, f = 1 - sqrt(2)/2, g = f^2; P(fewer than 1) = (1 - g)^4.
    const double f = 1 - std::sqrt(2.0) / 2;
    const double g = f * f;
    const auto& c100 = outcome.classProbabilities[0];
    EXPECT_EQ(c100[0], 100);
    EXPECT_NEAR(c100[1], 1 - std::pow(1 - g, 4), 1e-12);
    EXPECT_NEAR(c100[2], std::log(c100[1]), 1e-12);
    EXPECT_EQ(c100[3], 0.25);  // one homozygote, het 1: 1/N
    // Class 102: no homozygote, het 2: P = (4f - 1)(4f) / 12; ranks 0-2 tie at 0, not all N.
    const auto& c102 = outcome.classProbabilities[1];
    EXPECT_NEAR(c102[1], 1 - (4 * f - 1) * (4 * f) / 12, 1e-12);
    EXPECT_EQ(c102[3], 1.0);
    // Class 104 as class 100, but every round counted 1: still 1/N since het is 1.
    EXPECT_NEAR(outcome.classProbabilities[2][1], c100[1], 1e-15);
    const double x = -2 * (2 * std::log(c100[1]) + std::log(c102[1]));
    EXPECT_NEAR(x, 4.8302, 1e-4);
    EXPECT_EQ(outcome.combinedProbabilityLabel, "> 0.05 (not significant)");
    // Totals: E = 4 (9/64 + 4/64 + 9/64) = 1.375; O = 2; chi = 0.625^2/2.625 + 0.625^2/1.375.
    EXPECT_EQ(outcome.totalsComputed, 3);
    EXPECT_EQ(outcome.homozygoteTotals[0], 2);
    EXPECT_DOUBLE_EQ(outcome.homozygoteTotals[1], 1.375);
    EXPECT_NEAR(outcome.homozygoteTotals[2], 0.390625 / 2.625 + 0.390625 / 1.375, 1e-12);
    EXPECT_FALSE(outcome.overflowed);
}

TEST(ClassBinomialTest, MoreCopiesThanIndividualsSkipsTheBinomialButNotTheTotals) {
    std::vector<Int16> alleles(10, 150);
    RoundMatrix rounds = Matrix({{5, 5}});
    BinomialOutcome outcome;
    ClassBinomialTest({5}, alleles, rounds, ChiSquareTable{}, outcome);
    ASSERT_EQ(outcome.classProbabilities.size(), 1u);
    EXPECT_EQ(outcome.classProbabilities[0][1], 0.0);
    EXPECT_EQ(outcome.combinedProbabilityLabel, "");
    EXPECT_EQ(outcome.totalsComputed, 2);  // no heterozygotes expected: no chi-square
    EXPECT_EQ(outcome.homozygoteTotals[1], 5.0);
}

TEST(ClassBinomialTest, OneHundredFiftyFiveHomozygotesOverflow) {
    // 160 homozygotes of 100 and 240 heterozygotes (102, 104): 100^155 leaves the doubles.
    std::vector<Int16> alleles;
    for (int i = 0; i < 320; ++i)
        alleles.push_back(100);
    for (int i = 0; i < 240; ++i)
        alleles.push_back(102);
    for (int i = 0; i < 240; ++i)
        alleles.push_back(104);
    RoundMatrix rounds(5, 10);
    BinomialOutcome outcome;
    ClassBinomialTest({160, 0, 0, 0, 0}, alleles, rounds, ChiSquareTable{}, outcome);
    EXPECT_TRUE(outcome.overflowed);
    EXPECT_EQ(outcome.totalsComputed, 0);
    EXPECT_NEAR(Factorial(170) / std::tgamma(171.0), 1.0, 1e-12);
    EXPECT_THROW(Factorial(171), ProgramError);
    EXPECT_EQ(Factorial(0), 1.0);
}

}  // namespace
}  // namespace tavrelle
