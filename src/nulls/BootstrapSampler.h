#pragma once

#include <cstdint>
#include <limits>
#include <vector>

namespace tavrelle {

// Where an estimate or an interval end has no value.
inline constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

// The bootstrap's own random numbers, apart from the analysis's generator: replicate r of a run
// seeded s always draws the same individuals, whichever thread computes it.
class BootstrapSampler {
public:
    BootstrapSampler(std::uint64_t seed, std::uint64_t replicate);

    // How often each of `individuals` is drawn in `individuals` draws with replacement.
    void Draw(std::vector<int>& multiplicity);

private:
    std::uint64_t Next();  // splitmix64 (Steele, Lea and Flood 2014)
    std::uint64_t state_;
};

// The 95% percentile interval of the finite values (linear interpolation between order
// statistics); NaN ends when there are none.
struct Interval {
    double low;
    double high;
};
Interval PercentileInterval(std::vector<double> values, double level = 0.95);

}  // namespace tavrelle
