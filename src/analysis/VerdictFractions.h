#pragma once

#include <limits>
#include <vector>

#include "analysis/ConfidenceBounds.h"
#include "analysis/RoundMatrix.h"

namespace tavrelle {

// How close a randomisation test stands to its decision. `fraction` is the share of rounds at
// or beyond the observed count (at or above it for an excess, at or below it for a deficit);
// the test says yes exactly when fraction <= threshold, the threshold being set by the rank
// of the bound it compares with (with N rounds and upper rank u, (N - 1 - u) / N; with lower
// rank l, l / N). The fraction's Monte Carlo standard error is sqrt(f (1 - f) / N), and the
// test is borderline when the fraction lies within two of them of the threshold: another set
// of rounds could well decide the other way.
struct TestFraction {
    double fraction = std::numeric_limits<double>::quiet_NaN();
    double standardError = std::numeric_limits<double>::quiet_NaN();
    double threshold = std::numeric_limits<double>::quiet_NaN();

    bool Borderline() const;  // false where the test was not made
};

// The observed count against the rounds of one class of a sorted round matrix.
TestFraction ExcessFraction(const RoundMatrix& sorted, int cls, double observed, Int16 upperRank);
TestFraction DeficitFraction(const RoundMatrix& sorted, int cls, double observed, Int16 lowerRank);

// The three verdicts a locus draws from its tests, each with the fraction that decides it and
// whether it is borderline. Every verdict needs the homozygote excess (the zero difference
// class above its bound); then
//   null allele: the excess in most size classes as well (its fraction: the excess's),
//   drop-out:    the excess without it (its fraction: the excess's),
//   stutter:     too few pairs one repeat apart as well (its fraction: that deficit's).
// A verdict is borderline when a borderline test could turn it: the excess, or the other test
// it needs, while the other part holds. The excess in most size classes counts the classes at
// or above their upper bound; it is borderline when turning its borderline classes would turn
// its majority.
struct VerdictFraction {
    TestFraction test;
    bool borderline = false;
};
struct VerdictFractions {
    VerdictFraction nullAllele;
    VerdictFraction stutter;
    VerdictFraction dropout;
};

struct LocusTestResult;
VerdictFractions VerdictFractionsOf(const LocusTestResult& locus, Int16 rounds,
                                    Confidence confidence);

}  // namespace tavrelle
