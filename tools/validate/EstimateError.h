#pragma once

#include <algorithm>
#include <cmath>

#include "nulls/BootstrapSampler.h"

namespace tavrelle {

// Bias, RMSE and interval coverage of one estimate against its simulated truth.
struct EstimateError {
    double sum = 0;
    double squares = 0;
    int count = 0;
    int covered = 0;
    int intervals = 0;

    void Add(double estimate, double truth, const Interval& interval) {
        if (!std::isfinite(estimate)) return;
        sum += estimate - truth;
        squares += (estimate - truth) * (estimate - truth);
        ++count;
        if (std::isfinite(interval.low)) {
            ++intervals;
            covered += interval.low <= truth && truth <= interval.high ? 1 : 0;
        }
    }
    double Bias() const { return sum / std::max(1, count); }
    double Rmse() const { return std::sqrt(squares / std::max(1, count)); }
    double Coverage() const { return 100.0 * covered / std::max(1, intervals); }
};

}  // namespace tavrelle
