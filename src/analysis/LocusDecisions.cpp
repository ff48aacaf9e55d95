#include "analysis/LocusDecisions.h"

#include <cmath>

#include "base/Numbers.h"

namespace tavrelle {

namespace {

// observed(i - 1) summed for i from the rounded `from` to the rounded `to`.
double SumOfClasses(const CountArray& observed, double from, double to) {
    double sum = 0;
    for (int i = ToInt16(from); i <= ToInt16(to); ++i) {
        if (i - 1 < 0 || i - 1 >= static_cast<int>(observed.size()))
            throw ProgramError::SubscriptOutOfRange();
        sum += observed[static_cast<std::size_t>(i - 1)];
    }
    return sum;
}

double NumberOfClasses(const CountArray& observed) {
    return static_cast<double>(observed.size());
}

}  // namespace

bool ClassWideExcessTest(const CountArray& observed, const BoundsTable& bounds,
                         const std::vector<double>& means) {
    int atOrAboveUpper = 0;
    int present = 0;
    int atOrAboveMean = 0;
    for (std::size_t i = 0; i < observed.size(); ++i) {
        if (observed[i] >= bounds.upper.at(i)) ++atOrAboveUpper;
        if (observed[i] >= 1 || bounds.upper.at(i) >= 1) ++present;
        if (observed[i] >= means.at(i)) ++atOrAboveMean;
    }
    if (present < 1) return false;
    return atOrAboveUpper * 100.0 / present > 50 || atOrAboveMean * 100.0 / present > 90;
}

bool UpperClassExcessTest(const CountArray& observed, Int16 homozygotes) {
    double m = NumberOfClasses(observed);
    double from = m * 80 / 100;
    double to = m;
    double sum = SumOfClasses(observed, from, to);
    if (to - from > 0 && homozygotes > 0) return sum * 100 / homozygotes > 5;
    return false;
}

bool LowerClassExcessTest(const CountArray& observed, Int16 homozygotes) {
    double m = NumberOfClasses(observed);
    double to = m * 20 / 100;
    double sum = SumOfClasses(observed, 1, to);
    if (to - 1 > 0 && homozygotes > 0) return sum * 100 / homozygotes > 5;
    return false;
}

bool ZeroClassExcessTest(const CountArray& observed, const BoundsTable& bounds) {
    return observed.at(0) > bounds.upper.at(0);
}

bool OneRepeatDeficitTest(const CountArray& observed, const BoundsTable& bounds, Int16 repeat) {
    if (repeat < 0) throw ProgramError::SubscriptOutOfRange();
    auto r = static_cast<std::size_t>(repeat);
    if (r >= observed.size()) return false;
    return observed[r] < bounds.lower.at(r);
}

bool LargeDifferenceTest(const CountArray& observed) {
    double m = NumberOfClasses(observed);
    double from = m * 80 / 100;
    double to = m;
    double sum = SumOfClasses(observed, from, to);
    // The total of all classes is counted in 16 bits, as the run counts pairs.
    [[maybe_unused]] Int16 total = 0;
    for (Int16 count : observed)
        total = Narrow16(total + count);
    if (to - from > 0) return sum * 100 / m < 5;
    return false;
}

}  // namespace tavrelle
