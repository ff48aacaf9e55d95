#include "analysis/VerdictFractions.h"

#include <algorithm>
#include <cmath>

#include "analysis/LocusTestResult.h"

namespace tavrelle {

namespace {

TestFraction FractionOf(double beyond, int rounds, double thresholdRounds) {
    TestFraction t;
    if (rounds <= 0) return t;
    const double n = rounds;
    t.fraction = beyond / n;
    t.standardError = std::sqrt(t.fraction * (1 - t.fraction) / n);
    t.threshold = thresholdRounds / n;
    return t;
}

// Rounds of a sorted class with a count above `observed` (or at or above it with `atOrAbove`).
double RoundsAbove(const RoundMatrix& sorted, int cls, double observed, bool atOrAbove) {
    const std::span<const Int16> rounds = sorted.Class(cls);
    const auto from = atOrAbove ? std::lower_bound(rounds.begin(), rounds.end(), observed)
                                : std::upper_bound(rounds.begin(), rounds.end(), observed);
    return static_cast<double>(rounds.end() - from);
}

// The class-wide excess counts a class when its observed count is at or above the upper bound
// sorted[u], that is when at most N - 1 - u rounds lie strictly above it.
TestFraction ClassAtOrAboveFraction(const RoundMatrix& sorted, int cls, double observed,
                                    Int16 upperRank) {
    return FractionOf(RoundsAbove(sorted, cls, observed, false), sorted.Rounds(),
                      sorted.Rounds() - 1 - upperRank);
}

// Whether the borderline classes could turn the class-wide excess (more than half the classes
// present at or above their upper bound, or more than 90% at or above their mean).
bool ClassWideBorderline(const LocusTestResult& l, Int16 upperRank) {
    const CountArray& observed = l.observedHomozygotes;
    int present = 0;
    int atOrAboveUpper = 0;
    int atOrAboveMean = 0;
    int couldJoin = 0;
    int couldLeave = 0;
    for (std::size_t i = 0; i < observed.size(); ++i) {
        const bool counted = observed[i] >= l.homozygoteBounds.upper.at(i);
        if (observed[i] >= 1 || l.homozygoteBounds.upper.at(i) >= 1) ++present;
        if (observed[i] >= l.meanHomozygotes.at(i)) ++atOrAboveMean;
        atOrAboveUpper += counted ? 1 : 0;
        const TestFraction t = ClassAtOrAboveFraction(l.randomHomozygotes, static_cast<int>(i),
                                                      observed[i], upperRank);
        if (!t.Borderline()) continue;
        (counted ? couldLeave : couldJoin) += 1;
    }
    if (present < 1) return false;
    auto decides = [&](int above) {
        return above * 100.0 / present > 50 || atOrAboveMean * 100.0 / present > 90;
    };
    const bool now = decides(atOrAboveUpper);
    return now ? !decides(atOrAboveUpper - couldLeave) : decides(atOrAboveUpper + couldJoin);
}

}  // namespace

bool TestFraction::Borderline() const {
    return std::isfinite(fraction) && std::abs(fraction - threshold) < 2 * standardError;
}

TestFraction ExcessFraction(const RoundMatrix& sorted, int cls, double observed, Int16 upperRank) {
    return FractionOf(RoundsAbove(sorted, cls, observed, true), sorted.Rounds(),
                      sorted.Rounds() - 1 - upperRank);
}

TestFraction DeficitFraction(const RoundMatrix& sorted, int cls, double observed, Int16 lowerRank) {
    const std::span<const Int16> rounds = sorted.Class(cls);
    const double atOrBelow = static_cast<double>(
        std::upper_bound(rounds.begin(), rounds.end(), observed) - rounds.begin());
    return FractionOf(atOrBelow, sorted.Rounds(), lowerRank);
}

VerdictFractions VerdictFractionsOf(const LocusTestResult& l, Int16 rounds, Confidence confidence) {
    VerdictFractions v;
    if (rounds <= 0 || l.observedDifferences.empty()) return v;
    const BoundRanks differences = ConfidenceRanks(l.randomDifferences, rounds, confidence);
    const BoundRanks homozygotes = ConfidenceRanks(l.randomHomozygotes, rounds, confidence);
    const LocusDecisions& d = l.decisions;

    const TestFraction excess =
        ExcessFraction(l.randomDifferences, 0, l.observedDifferences[0], differences.upper);
    const bool excessBorderline = excess.Borderline();
    const bool classWideBorderline = ClassWideBorderline(l, homozygotes.upper);
    v.nullAllele = {excess, (excessBorderline && d.classWideExcess) ||
                                (classWideBorderline && d.homozygoteExcess)};
    v.dropout = {excess, (excessBorderline && !d.classWideExcess) ||
                             (classWideBorderline && d.homozygoteExcess)};

    const auto repeat = static_cast<std::size_t>(std::max<Int16>(l.repeat, 0));
    if (l.repeat >= 0 && repeat < l.observedDifferences.size()) {
        const TestFraction deficit =
            DeficitFraction(l.randomDifferences, static_cast<int>(repeat),
                            l.observedDifferences[repeat], differences.lower);
        v.stutter = {deficit, (deficit.Borderline() && d.homozygoteExcess) ||
                                  (excessBorderline && d.oneRepeatDeficit)};
    }
    return v;
}

}  // namespace tavrelle
