#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "nulls/LocusGenotypeTally.h"

namespace tavrelle {

struct ModelFit;

// How the fit of the null allele and inbreeding model treats the boundary 0 of F and of a null
// allele frequency. EM creeps towards a maximum there ever more slowly as the slope flattens, so
// a boundary coordinate that falls below kPin is held at 0, where EM keeps it; at convergence each
// held coordinate is probed from kProbe: if EM would raise it, the likelihood rises that way and
// it is set free again (kMaxReleases times at most, then it is left to EM alone).
inline constexpr double kPin = 1e-7;
inline constexpr double kProbe = 1e-9;
inline constexpr double kProbeMargin = 1e-9;  // a rise smaller than this is rounding
inline constexpr int kMaxReleases = 2;
// Below the EM's precision a frequency is reported as 0: the fit stands on the boundary.
inline constexpr double kOnBoundary = 1e-9;

// One EM step of the model: from the parameters on the left to those on the right.
using EmStep = std::function<void(const std::vector<double>&, std::vector<double>&)>;

// Whether EM, having stepped a coordinate from kProbe to `next`, raises it.
inline bool EmRaises(double next) {
    return next > kProbe * (1 + kProbeMargin);
}

// The boundary coordinates of one fit's parameter vector and how often each has been released.
class BoundaryHold {
public:
    // `coordinates`: the places in the parameter vector whose maximum may lie at 0; `restart`:
    // where a released coordinate starts again.
    BoundaryHold(std::vector<std::size_t> coordinates, std::size_t size, double restart);

    // Sets to 0 each boundary coordinate below kPin that may still be held.
    void Pin(std::vector<double>& theta) const;

    // Probes the coordinates held at 0 with one EM step and frees those EM would raise, from the
    // restart value. Returns whether any was freed.
    bool Release(std::vector<double>& theta, const EmStep& step);

private:
    std::vector<std::size_t> coordinates_;
    std::vector<int> releases_;
    double restart_;
};

// Under Hardy-Weinberg, without blanks, a locus's maximum at p_n = 0, recognised from the slope
// there: true, with the observed allele frequencies in `frequencies`, when that is the maximum.
bool NullFreeMaximum(const LocusGenotypeTally& t, std::vector<double>& frequencies);

// A frequency, or F, below kOnBoundary as 0.
inline double Snapped(double value) {
    return value < kOnBoundary ? 0.0 : value;
}

// F and the null allele frequencies of `fit` below kOnBoundary set to 0.
void SnapToBoundary(ModelFit& fit);

}  // namespace tavrelle
