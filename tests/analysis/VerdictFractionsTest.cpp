#include "analysis/VerdictFractions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "analysis/LocusTestResult.h"

namespace tavrelle {
namespace {

// A sorted round matrix whose class c holds count(c, k) at round k (counts ascending in k).
RoundMatrix Rounds(int classes, int rounds, const std::function<int(int, int)>& count) {
    RoundMatrix m(classes, rounds);
    for (int c = 0; c < classes; ++c)
        for (int k = 0; k < rounds; ++k)
            m.Class(c)[static_cast<std::size_t>(k)] = static_cast<Int16>(count(c, k));
    return m;
}

// 1000 rounds counting k / 10 at round k: each count 0..99 ten times. At 95% the upper bound is
// rank 974 (count 97) and the lower rank 25 (count 2).
const RoundMatrix kTenEach = Rounds(1, 1000, [](int, int k) { return k / 10; });

TEST(VerdictFractions, HandWorkedFractionsAndBorderlines) {
    struct Case {
        const char* what;
        TestFraction t;
        double fraction;
        double threshold;
        bool borderline;
    };
    const std::vector<Case> cases = {
        // 20 rounds count 98 or 99: 0.02 <= 0.025 (an excess), 0.005 from it, SE 0.0044.
        {"excess just past its bound", ExcessFraction(kTenEach, 0, 98, 974), 0.02, 0.025, true},
        {"excess beyond every round", ExcessFraction(kTenEach, 0, 100, 974), 0.0, 0.025, false},
        {"no excess, far from it", ExcessFraction(kTenEach, 0, 90, 974), 0.1, 0.025, false},
        // 30 rounds count 2 or less: 0.03 > 0.025 (no deficit), 0.005 from it, SE 0.0054.
        {"deficit just short of its bound", DeficitFraction(kTenEach, 0, 2, 25), 0.03, 0.025, true},
        {"deficit below every round", DeficitFraction(kTenEach, 0, -1, 25), 0.0, 0.025, false},
    };
    for (const Case& c : cases) {
        EXPECT_DOUBLE_EQ(c.t.fraction, c.fraction) << c.what;
        EXPECT_DOUBLE_EQ(c.t.threshold, c.threshold) << c.what;
        EXPECT_DOUBLE_EQ(c.t.standardError, std::sqrt(c.fraction * (1 - c.fraction) / 1000))
            << c.what;
        EXPECT_EQ(c.t.Borderline(), c.borderline) << c.what;
    }
    EXPECT_FALSE(TestFraction{}.Borderline());
}

// The fraction decides exactly as the bound does, whatever the confidence and the count.
TEST(VerdictFractions, FractionAgreesWithTheBoundsDecision) {
    const RoundMatrix uneven =
        Rounds(3, 200, [](int c, int k) { return (k * k) / (300 + 100 * c) + (k > 190 ? 3 : 0); });
    for (Confidence code : {Confidence::Percent95, Confidence::Percent99, Confidence::FullRange,
                            Confidence::Bonferroni}) {
        const BoundRanks ranks = ConfidenceRanks(uneven, 200, code);
        const BoundsTable bounds = ConfidenceBounds(uneven, 200, code);
        for (int c = 0; c < 3; ++c)
            for (int observed = -1; observed < 140; ++observed) {
                const TestFraction excess = ExcessFraction(uneven, c, observed, ranks.upper);
                const TestFraction deficit = DeficitFraction(uneven, c, observed, ranks.lower);
                const auto i = static_cast<std::size_t>(c);
                EXPECT_EQ(excess.fraction <= excess.threshold, observed > bounds.upper[i])
                    << "code " << ConfidenceCode(code) << " class " << c << " observed "
                    << observed;
                EXPECT_EQ(deficit.fraction <= deficit.threshold, observed < bounds.lower[i])
                    << "code " << ConfidenceCode(code) << " class " << c << " observed "
                    << observed;
            }
    }
}

// A locus with one homozygote class (mean 60) and differences 0, 1, 2 (repeat 1), 1000 rounds
// at 95%, its decisions made as a run makes them.
LocusTestResult Locus(Int16 zeroClass, Int16 oneRepeat, Int16 homozygotes) {
    LocusTestResult l;
    l.repeat = 1;
    l.observedDifferences = {zeroClass, oneRepeat, 5};
    l.randomDifferences = Rounds(3, 1000, [](int, int k) { return k / 10; });
    l.differenceBounds = ConfidenceBounds(l.randomDifferences, 1000, Confidence::Percent95);
    l.observedHomozygotes = {homozygotes};
    l.randomHomozygotes = Rounds(1, 1000, [](int, int k) { return k / 10; });
    l.homozygoteBounds = ConfidenceBounds(l.randomHomozygotes, 1000, Confidence::Percent95);
    l.meanHomozygotes = {60};
    l.decisions.homozygoteExcess = zeroClass > l.differenceBounds.upper[0];
    l.decisions.oneRepeatDeficit = oneRepeat < l.differenceBounds.lower[1];
    l.decisions.classWideExcess =
        ClassWideExcessTest(l.observedHomozygotes, l.homozygoteBounds, l.meanHomozygotes);
    return l;
}

TEST(VerdictFractions, VerdictsAreBorderlineWhenATestTheyNeedIs) {
    struct Case {
        const char* what;
        LocusTestResult locus;
        bool nullAllele;
        bool stutter;
        bool dropout;
    };
    const std::vector<Case> cases = {
        // Excess at 0.02 (borderline); the single homozygote class at 99 has no round above
        // it: class-wide is firm.
        {"borderline excess, firm class-wide: null allele", Locus(98, 50, 99), true, false, false},
        // The class at 50, below its bound 97 and its mean 60: no class-wide excess.
        {"borderline excess, no class-wide: drop-out", Locus(98, 50, 50), false, false, true},
        // Excess firm (0.0); one-repeat deficit at 0.03 against 0.025: stutter borderline.
        {"firm excess, borderline one-repeat deficit", Locus(120, 2, 99), false, true, false},
        // No excess at all (0.5): nothing can turn, whatever the deficit.
        {"no excess", Locus(50, 2, 99), false, false, false},
    };
    for (const Case& c : cases) {
        const VerdictFractions v = VerdictFractionsOf(c.locus, 1000, Confidence::Percent95);
        EXPECT_EQ(v.nullAllele.borderline, c.nullAllele) << c.what;
        EXPECT_EQ(v.stutter.borderline, c.stutter) << c.what;
        EXPECT_EQ(v.dropout.borderline, c.dropout) << c.what;
    }
    const VerdictFractions v = VerdictFractionsOf(Locus(98, 2, 99), 1000, Confidence::Percent95);
    EXPECT_DOUBLE_EQ(v.nullAllele.test.fraction, 0.02);
    EXPECT_DOUBLE_EQ(v.dropout.test.fraction, 0.02);
    EXPECT_DOUBLE_EQ(v.stutter.test.fraction, 0.03);
}

}  // namespace
}  // namespace tavrelle
