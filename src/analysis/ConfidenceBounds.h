#pragma once

#include <vector>

#include "analysis/Confidence.h"
#include "analysis/RoundMatrix.h"
#include "base/Int16.h"

namespace tavrelle {

// Per class, the sorted round counts at the interval's lower and upper rank.
struct BoundsTable {
    std::vector<Int16> lower;
    std::vector<Int16> upper;
};

// The level of the interval in percent. Bonferroni takes 100 - N x (1 - 0.95^(1/k)) over the k
// classes that ever counted anything: with N = 1000 and k = 5 that is 89.79, narrower than 95%.
double ConfidenceLevel(Confidence confidence, Int16 rounds, int countedClasses);

// The ranks of the sorted rounds that bound the interval, the same for every class.
struct BoundRanks {
    Int16 lower = 0;
    Int16 upper = 0;
};
BoundRanks ConfidenceRanks(const RoundMatrix& sorted, Int16 rounds, Confidence confidence);

// Bounds of a sorted round matrix: with N = 1000, 95% takes ranks 25 and 974, 99% ranks 5 and
// 994, the full range ranks 0 and 999.
BoundsTable ConfidenceBounds(const RoundMatrix& sorted, Int16 rounds, Confidence confidence);

}  // namespace tavrelle
