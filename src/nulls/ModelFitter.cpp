#include "nulls/ModelFitter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavrelle {

namespace {

constexpr double kTolerance = 1e-10;
constexpr double kStart = 0.05;
constexpr int kMaxIterations = 200000;
constexpr double kWarmFloor = 0.01;  // the least F or p_n a fit from another fit starts at

double Moved(const std::vector<double>& a, const std::vector<double>& b) {
    double most = 0;
    for (std::size_t k = 0; k < a.size(); ++k)
        most = std::max(most, std::abs(a[k] - b[k]));
    return most;
}

}  // namespace

ParameterLayout::ParameterLayout(std::span<const LocusGenotypeTally> loci) {
    std::size_t at = 1;
    for (const LocusGenotypeTally& locus : loci) {
        offsets_.push_back(at);
        at += locus.alleles.size() + 1;
    }
    size_ = at;
}

ModelFitter::ModelFitter(std::span<const LocusGenotypeTally> loci, ModelTerms terms)
    : loci_(loci), terms_(std::move(terms)), layout_(loci), boundary_(Boundary()) {}

std::vector<double> ModelFitter::From(const ModelFit& fit) const {
    std::vector<double> theta = Packed(fit);
    theta[0] = terms_.inbreeding ? std::max(fit.f, kWarmFloor) : 0.0;
    for (std::size_t l = 0; l < loci_.size(); ++l) {
        const bool free = terms_.NullAt(l) && loci_[l].Individuals() > 0;
        const double pn = free ? std::max(fit.nulls[l], kWarmFloor) : 0.0;
        const double scale = (1 - pn) / (1 - (terms_.nulls ? fit.nulls[l] : 0.0));
        for (std::size_t i = 0; i < fit.visible[l].size(); ++i)
            theta[layout_.Visible(l) + i] *= scale;
        theta[layout_.Null(l, loci_[l])] = pn;
    }
    return theta;
}

bool ModelFitter::Rises(const ModelFit& atZero) const {
    std::vector<double> theta = Packed(atZero);
    theta[0] = kProbe;
    std::vector<double> next(theta.size());
    Step(theta, next);
    return EmRaises(next[0]);
}

std::vector<double> ModelFitter::Start() const {
    std::vector<double> theta(layout_.Size(), 0.0);
    theta[0] = terms_.inbreeding ? kStart : 0.0;
    for (std::size_t l = 0; l < loci_.size(); ++l) {
        const LocusGenotypeTally& t = loci_[l];
        const double copies = 2 * t.Scored();
        const bool nulls = terms_.NullAt(l) && t.Individuals() > 0;
        const double room = nulls ? (copies > 0 ? 1 - kStart : 0.0) : 1.0;
        for (std::size_t i = 0; i < t.alleles.size(); ++i)
            theta[layout_.Visible(l) + i] = room * ObservedFrequency(t, i);
        theta[layout_.Null(l, t)] = nulls ? 1 - room : 0.0;
    }
    return theta;
}

// One EM step: expected allele copies and identity-by-descent events under theta, then the
// frequencies and F that make them most likely.
void ModelFitter::Step(const std::vector<double>& theta, std::vector<double>& next) const {
    const double f = theta[0];
    double ibd = 0;
    double individuals = 0;
    for (std::size_t l = 0; l < loci_.size(); ++l) {
        const LocusGenotypeTally& t = loci_[l];
        const double* p = &theta[layout_.Visible(l)];
        double* out = &next[layout_.Visible(l)];
        const double pn = theta[layout_.Null(l, t)];
        double nullCopies = 0;
        double copies = 0;
        for (std::size_t i = 0; i < t.alleles.size(); ++i) {
            double c = t.heterozygousCopies[i];
            const double h = t.homozygotes[i];
            if (h > 0) {
                const double descent = f * p[i];
                const double twoAlike = (1 - f) * p[i] * p[i];
                const double withNull = (1 - f) * 2 * p[i] * pn;
                const double share = h / (descent + twoAlike + withNull);
                ibd += descent * share;
                c += (descent + 2 * twoAlike + withNull) * share;
                nullCopies += withNull * share;
            }
            out[i] = c;
            copies += c;
        }
        individuals += t.Scored();
        if (terms_.nulls && t.blanks > 0) {
            const double descent = f * pn;
            const double share = t.blanks / (descent + (1 - f) * pn * pn);
            ibd += descent * share;
            nullCopies += (descent + 2 * (1 - f) * pn * pn) * share;
            individuals += t.blanks;
        }
        copies += nullCopies;
        for (std::size_t i = 0; i < t.alleles.size(); ++i)
            out[i] = copies > 0 ? out[i] / copies : 0.0;
        next[layout_.Null(l, t)] = copies > 0 ? nullCopies / copies : 0.0;
    }
    next[0] = terms_.inbreeding && individuals > 0 ? ibd / individuals : 0.0;
}

double ModelFitter::Likelihood(const std::vector<double>& theta) const {
    double sum = 0;
    for (std::size_t l = 0; l < loci_.size(); ++l) {
        const LocusGenotypeTally& t = loci_[l];
        sum +=
            LocusLogLikelihood(t, theta[0], &theta[layout_.Visible(l)], theta[layout_.Null(l, t)]);
    }
    return sum;
}

// Log-likelihood of theta with blanks left aside where the model has no null allele, so that the
// acceleration can compare finite values.
double ModelFitter::Objective(const std::vector<double>& theta) const {
    double sum = 0;
    for (std::size_t l = 0; l < loci_.size(); ++l) {
        const LocusGenotypeTally& t = loci_[l];
        sum += LocusLogLikelihood(t, theta[0], &theta[layout_.Visible(l)],
                                  theta[layout_.Null(l, t)], terms_.nulls);
    }
    return sum;
}

bool ModelFitter::Inside(const std::vector<double>& theta) const {
    if (theta[0] < 0 || theta[0] >= 1) return false;
    return std::all_of(theta.begin() + 1, theta.end(), [](double x) { return x >= 0; });
}

ModelFit ModelFitter::Fit(std::vector<double> theta) const {
    BoundaryHold hold(boundary_, theta.size(), kStart);
    const EmStep step = [this](const std::vector<double>& from, std::vector<double>& to) {
        Step(from, to);
    };
    Scratch scratch(theta.size(), layout_.Blocks());
    hold.Pin(theta);
    double objective = Objective(theta);
    ModelFit fit;
    while (fit.iterations < kMaxIterations) {
        if (!Cycle(theta, objective, hold, scratch, fit.iterations)) continue;
        if (hold.Release(theta, step)) {
            objective = Objective(theta);
        } else {
            fit.converged = true;
            break;
        }
    }
    fit.f = theta[0];
    for (std::size_t l = 0; l < loci_.size(); ++l) {
        const LocusGenotypeTally& t = loci_[l];
        const auto begin = theta.begin() + static_cast<std::ptrdiff_t>(layout_.Visible(l));
        fit.visible.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(t.alleles.size()));
        fit.nulls.push_back(theta[layout_.Null(l, t)]);
    }
    fit.logLikelihood = Likelihood(theta);
    return fit;
}

std::vector<double> ModelFitter::Packed(const ModelFit& fit) const {
    std::vector<double> theta = {fit.f};
    theta.resize(layout_.Size(), 0.0);
    for (std::size_t l = 0; l < loci_.size(); ++l) {
        std::copy(fit.visible[l].begin(), fit.visible[l].end(),
                  theta.begin() + static_cast<std::ptrdiff_t>(layout_.Visible(l)));
        theta[layout_.Null(l, loci_[l])] = fit.nulls[l];
    }
    return theta;
}

// The coordinates whose maximum may lie on the boundary 0: F, and the null allele of a locus
// without blanks (with blanks, p_n = 0 is impossible).
std::vector<std::size_t> ModelFitter::Boundary() const {
    std::vector<std::size_t> coordinates;
    if (terms_.inbreeding) coordinates.push_back(0);
    for (std::size_t l = 0; l < loci_.size(); ++l)
        if (terms_.NullAt(l) && loci_[l].blanks == 0 && loci_[l].Individuals() > 0)
            coordinates.push_back(layout_.Null(l, loci_[l]));
    return coordinates;
}

// One squared-extrapolation cycle from theta; true when EM no longer moves it. A boundary
// coordinate that an extrapolation carries below 0, or below the pin, is held at 0 (`hold`
// checks afterwards that 0 is right).
bool ModelFitter::Cycle(std::vector<double>& theta, double& objective, const BoundaryHold& hold,
                        Scratch& scratch, int& iterations) const {
    std::vector<double>& one = scratch.one;
    std::vector<double>& two = scratch.two;
    std::vector<double>& jump = scratch.jump;
    Step(theta, one);
    ++iterations;
    if (Moved(theta, one) <= kTolerance) {
        theta.swap(one);
        return true;
    }
    Step(one, two);
    ++iterations;
    if (Moved(one, two) <= kTolerance) {
        theta.swap(two);
        return true;
    }
    // Each locus, and F, converges at its own pace, so each gets its own step length.
    std::vector<double>& alpha = scratch.alpha;
    for (std::size_t b = 0; b < alpha.size(); ++b) {
        double rr = 0;
        double vv = 0;
        for (std::size_t k = layout_.BlockBegin(b); k < layout_.BlockEnd(b); ++k) {
            const double r = one[k] - theta[k];
            const double v = two[k] - 2 * one[k] + theta[k];
            rr += r * r;
            vv += v * v;
        }
        alpha[b] = vv > 0 ? std::min(-std::sqrt(rr / vv), -1.0) : -1.0;
    }
    for (int tries = 0; tries < 8; ++tries) {
        bool extrapolates = false;
        for (std::size_t b = 0; b < alpha.size(); ++b) {
            const double a = alpha[b];
            extrapolates = extrapolates || a < -1.0;
            for (std::size_t k = layout_.BlockBegin(b); k < layout_.BlockEnd(b); ++k)
                jump[k] = theta[k] - 2 * a * (one[k] - theta[k]) +
                          a * a * (two[k] - 2 * one[k] + theta[k]);
            alpha[b] = (a - 1) / 2;
        }
        if (!extrapolates) break;
        hold.Pin(jump);
        if (!Inside(jump)) continue;
        Step(jump, one);  // the stabilising step: EM from the extrapolated point
        ++iterations;
        if (!Inside(one)) continue;
        const double reached = Objective(one);
        if (reached >= objective) {
            theta.swap(one);
            objective = reached;
            return false;
        }
    }
    theta.swap(two);
    hold.Pin(theta);
    objective = Objective(theta);
    return false;
}

}  // namespace tavrelle
