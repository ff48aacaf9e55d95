#pragma once

#include <cmath>

namespace tavrelle {

// How to read a closed-form null allele estimate below 0 (Velmaret, Chakraborty and Brookfield 1
// can go negative): one wording for the windows' legends and tooltips and the report's methods.
inline constexpr const char* kNegativeEstimateNote =
    "A null allele estimate below 0 means the locus has fewer homozygotes than Hardy-Weinberg "
    "proportions expect: read it as no null allele.";

// Whether a 95% interval reaches 0, so that an estimate, even one a model choice favours, is no
// clear evidence of an effect. False without an interval (NaN ends): nothing to judge by.
inline bool IntervalIncludesZero(double low, double high) {
    return std::isfinite(low) && std::isfinite(high) && low <= 0 && high >= 0;
}

}  // namespace tavrelle
