#include "nulls/ModelBoundary.h"

#include <utility>

#include "nulls/NullInbreedingModel.h"

namespace tavrelle {

BoundaryHold::BoundaryHold(std::vector<std::size_t> coordinates, std::size_t size, double restart)
    : coordinates_(std::move(coordinates)), releases_(size, 0), restart_(restart) {}

void BoundaryHold::Pin(std::vector<double>& theta) const {
    for (std::size_t k : coordinates_)
        if (theta[k] < kPin && releases_[k] < kMaxReleases) theta[k] = 0;
}

// At a maximum on the boundary the likelihood falls as a coordinate held at 0 rises; EM tells
// which way it goes, since from a small value it moves that coordinate up exactly when the
// likelihood rises that way.
bool BoundaryHold::Release(std::vector<double>& theta, const EmStep& step) {
    std::vector<double> probe = theta;
    std::vector<std::size_t> held;
    for (std::size_t k : coordinates_)
        if (theta[k] == 0 && releases_[k] < kMaxReleases) {
            held.push_back(k);
            probe[k] = kProbe;
        }
    if (held.empty()) return false;
    std::vector<double> next(theta.size());
    step(probe, next);
    bool released = false;
    for (std::size_t k : held)
        if (EmRaises(next[k])) {
            theta[k] = restart_;
            ++releases_[k];
            released = true;
        }
    return released;
}

// The log-likelihood is concave there, and the observed allele frequencies maximise it with
// p_n = 0. That is its maximum exactly when the slope towards the null allele, sum of 2 h_i / p_i
// over the apparent homozygotes h_i, is no steeper than the slope 2N towards any visible allele
// (N scored individuals). Then no iteration is needed.
bool NullFreeMaximum(const LocusGenotypeTally& t, std::vector<double>& frequencies) {
    const double scored = t.Scored();
    if (t.blanks > 0 || scored <= 0) return false;
    double slope = 0;
    frequencies.assign(t.alleles.size(), 0.0);
    for (std::size_t i = 0; i < t.alleles.size(); ++i) {
        frequencies[i] = ObservedFrequency(t, i);
        if (t.homozygotes[i] > 0) slope += t.homozygotes[i] / frequencies[i];
    }
    return slope <= scored;
}

void SnapToBoundary(ModelFit& fit) {
    fit.f = Snapped(fit.f);
    for (double& pn : fit.nulls)
        pn = Snapped(pn);
}

}  // namespace tavrelle
