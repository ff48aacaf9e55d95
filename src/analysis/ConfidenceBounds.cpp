#include "analysis/ConfidenceBounds.h"

#include <cmath>

#include "base/Numbers.h"

namespace tavrelle {

double ConfidenceLevel(Int16 confidenceCode, Int16 rounds, int countedClasses) {
    switch (confidenceCode) {
        case k95Percent:
            return 95;
        case k99Percent:
            return 99;
        case kFullRange:
            return 100;
        case kBonferroni: {
            if (countedClasses == 0) throw ProgramError::DivisionByZero();
            double alpha = 1 - std::pow(0.95, 1.0 / countedClasses);
            return 100 - rounds * alpha;
        }
        default:
            throw ProgramError::SubscriptOutOfRange();
    }
}

BoundRanks ConfidenceRanks(const RoundMatrix& sorted, Int16 rounds, Int16 confidenceCode) {
    int counted = 0;
    for (int c = 0; c < sorted.Classes(); ++c)
        if (rounds > 0 && sorted.At(c, rounds - 1) > 0) ++counted;
    double level = ConfidenceLevel(confidenceCode, rounds, counted);
    double tail = (1000 - level * 10) / 2;
    double scale = rounds / 1000.0;
    return {ToInt16(tail * scale), ToInt16((1000 - tail) * scale - 1)};
}

BoundsTable ConfidenceBounds(const RoundMatrix& sorted, Int16 rounds, Int16 confidenceCode) {
    const BoundRanks ranks = ConfidenceRanks(sorted, rounds, confidenceCode);
    BoundsTable bounds;
    for (int c = 0; c < sorted.Classes(); ++c) {
        bounds.lower.push_back(sorted.At(c, ranks.lower));
        bounds.upper.push_back(sorted.At(c, ranks.upper));
    }
    return bounds;
}

}  // namespace tavrelle
