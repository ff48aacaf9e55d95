#include "analysis/ConfidenceBounds.h"

#include <cmath>

#include "base/Numbers.h"

namespace tavrelle {

double ConfidenceLevel(Confidence confidence, Int16 rounds, int countedClasses) {
    switch (confidence) {
        case Confidence::Percent95:
            return 95;
        case Confidence::Percent99:
            return 99;
        case Confidence::FullRange:
            return 100;
        case Confidence::Bonferroni: {
            if (countedClasses == 0) throw ProgramError::DivisionByZero();
            double alpha = 1 - std::pow(0.95, 1.0 / countedClasses);
            return 100 - rounds * alpha;
        }
    }
    throw ProgramError::SubscriptOutOfRange();
}

BoundRanks ConfidenceRanks(const RoundMatrix& sorted, Int16 rounds, Confidence confidence) {
    int counted = 0;
    for (int c = 0; c < sorted.Classes(); ++c)
        if (rounds > 0 && sorted.At(c, rounds - 1) > 0) ++counted;
    double level = ConfidenceLevel(confidence, rounds, counted);
    double tail = (1000 - level * 10) / 2;
    double scale = rounds / 1000.0;
    return {ToInt16(tail * scale), ToInt16((1000 - tail) * scale - 1)};
}

BoundsTable ConfidenceBounds(const RoundMatrix& sorted, Int16 rounds, Confidence confidence) {
    const BoundRanks ranks = ConfidenceRanks(sorted, rounds, confidence);
    BoundsTable bounds;
    for (int c = 0; c < sorted.Classes(); ++c) {
        bounds.lower.push_back(sorted.At(c, ranks.lower));
        bounds.upper.push_back(sorted.At(c, ranks.upper));
    }
    return bounds;
}

}  // namespace tavrelle
