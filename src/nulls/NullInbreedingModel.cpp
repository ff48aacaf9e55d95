#include "nulls/NullInbreedingModel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace tavrelle {

namespace {

constexpr double kTolerance = 1e-10;
constexpr double kStart = 0.05;
constexpr int kMaxIterations = 200000;
constexpr double kPin = 1e-7;          // a boundary coordinate below this is taken to be 0
constexpr double kProbe = 1e-9;        // how far from 0 a held coordinate is probed
constexpr double kProbeMargin = 1e-9;  // a rise smaller than this is rounding
constexpr int kMaxReleases = 2;        // after that, a coordinate is left to EM alone
constexpr double kWarmFloor = 0.01;    // the least F or p_n a fit from another fit starts at

// The parameters as one vector, for the extrapolation: F first, then per locus its visible
// alleles and its null allele.
class Layout {
public:
    explicit Layout(std::span<const LocusGenotypeTally> loci) {
        std::size_t at = 1;
        for (const LocusGenotypeTally& locus : loci) {
            offsets_.push_back(at);
            at += locus.alleles.size() + 1;
        }
        size_ = at;
    }
    std::size_t Size() const { return size_; }
    // Block 0 is F; block l + 1 is locus l's frequencies, null allele last.
    std::size_t Blocks() const { return offsets_.size() + 1; }
    std::size_t BlockBegin(std::size_t block) const { return block == 0 ? 0 : offsets_[block - 1]; }
    std::size_t BlockEnd(std::size_t block) const {
        return block < offsets_.size() ? offsets_[block] : size_;
    }
    std::size_t Visible(std::size_t locus) const { return offsets_[locus]; }
    std::size_t Null(std::size_t locus, const LocusGenotypeTally& tally) const {
        return offsets_[locus] + tally.alleles.size();
    }

private:
    std::vector<std::size_t> offsets_;
    std::size_t size_ = 1;
};

// A visible allele's share of the scored copies: the Hardy-Weinberg estimate without nulls.
double ObservedFrequency(const LocusGenotypeTally& t, std::size_t allele) {
    return (2 * t.homozygotes[allele] + t.heterozygousCopies[allele]) / (2 * t.Scored());
}

double LogOf(double count, double probability) {
    return count > 0 ? count * std::log(probability) : 0.0;
}

// With `blanks` false the blanks are left aside: a model without null alleles has no
// probability for them.
double LocusLogLikelihood(const LocusGenotypeTally& t, double f, const double* p, double pn,
                          bool blanks = true) {
    double sum = LogOf(t.heterozygotes, 2 * (1 - f));
    for (std::size_t i = 0; i < t.alleles.size(); ++i) {
        sum += LogOf(t.heterozygousCopies[i], p[i]);
        sum += LogOf(t.homozygotes[i], f * p[i] + (1 - f) * (p[i] * p[i] + 2 * p[i] * pn));
    }
    if (blanks && t.blanks > 0)
        sum += pn > 0 ? LogOf(t.blanks, f * pn + (1 - f) * pn * pn)
                      : -std::numeric_limits<double>::infinity();
    return sum;
}

class Fitter {
public:
    Fitter(std::span<const LocusGenotypeTally> loci, ModelTerms terms)
        : loci_(loci), terms_(terms), layout_(loci), boundary_(Boundary()) {
        for (const LocusGenotypeTally& locus : loci)
            scored_.push_back(locus.Scored());  // read at every step
    }

    // The parameters of an earlier fit of the same loci and terms as a start. F, and a null
    // allele that fit put at 0, start from 0.01, so that EM finds out afresh which side of the
    // boundary this sample's maximum lies on.
    std::vector<double> From(const ModelFit& fit) const {
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

    // Whether EM raises F from just above 0 at the given fit with F = 0.
    bool Rises(const ModelFit& atZero) const {
        std::vector<double> theta = Packed(atZero);
        theta[0] = kProbe;
        std::vector<double> next(theta.size());
        Step(theta, next);
        return next[0] > kProbe * (1 + kProbeMargin);
    }

    std::vector<double> Start() const {
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
    void Step(const std::vector<double>& theta, std::vector<double>& next) const {
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
            individuals += scored_[l];
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

    // Log-likelihood of theta with blanks left aside where the model has no null allele, so
    // that the acceleration can compare finite values.
    double Objective(const std::vector<double>& theta) const {
        double sum = 0;
        for (std::size_t l = 0; l < loci_.size(); ++l) {
            const LocusGenotypeTally& t = loci_[l];
            sum += LocusLogLikelihood(t, theta[0], &theta[layout_.Visible(l)],
                                      theta[layout_.Null(l, t)], terms_.nulls);
        }
        return sum;
    }

    bool Inside(const std::vector<double>& theta) const {
        if (theta[0] < 0 || theta[0] >= 1) return false;
        return std::all_of(theta.begin() + 1, theta.end(), [](double x) { return x >= 0; });
    }

    ModelFit Fit(std::vector<double> theta) const {
        std::vector<int> releases(theta.size(), 0);
        Scratch scratch(theta.size(), layout_.Blocks());
        PinBoundary(theta, releases);
        double objective = Objective(theta);
        ModelFit fit;
        while (fit.iterations < kMaxIterations) {
            if (!Cycle(theta, objective, releases, scratch, fit.iterations)) continue;
            if (Release(theta, releases)) {
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
        // The callers set the log-likelihood once the boundary values are rounded to 0.
        return fit;
    }

private:
    // A fit's parameters as one vector.
    std::vector<double> Packed(const ModelFit& fit) const {
        std::vector<double> theta = {fit.f};
        theta.resize(layout_.Size(), 0.0);
        for (std::size_t l = 0; l < loci_.size(); ++l) {
            std::copy(fit.visible[l].begin(), fit.visible[l].end(),
                      theta.begin() + static_cast<std::ptrdiff_t>(layout_.Visible(l)));
            theta[layout_.Null(l, loci_[l])] = fit.nulls[l];
        }
        return theta;
    }

    struct Scratch {
        Scratch(std::size_t size, std::size_t blocks)
            : one(size), two(size), jump(size), alpha(blocks) {}
        std::vector<double> one;
        std::vector<double> two;
        std::vector<double> jump;
        std::vector<double> alpha;
    };

    // The coordinates whose maximum may lie on the boundary 0: F, and the null allele of a locus
    // without blanks (with blanks, p_n = 0 is impossible).
    std::vector<std::size_t> Boundary() const {
        std::vector<std::size_t> coordinates;
        if (terms_.inbreeding) coordinates.push_back(0);
        for (std::size_t l = 0; l < loci_.size(); ++l)
            if (terms_.NullAt(l) && loci_[l].blanks == 0 && loci_[l].Individuals() > 0)
                coordinates.push_back(layout_.Null(l, loci_[l]));
        return coordinates;
    }

    // One squared-extrapolation cycle from theta; true when EM no longer moves it. EM creeps
    // towards a maximum on the boundary (ever more slowly as the slope there flattens), so a
    // boundary coordinate that an extrapolation carries below 0, or that falls below kPin, is
    // set to 0, where EM holds it; Release() checks afterwards that 0 is right.
    bool Cycle(std::vector<double>& theta, double& objective, const std::vector<int>& releases,
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
            PinBoundary(jump, releases);
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
        PinBoundary(theta, releases);
        objective = Objective(theta);
        return false;
    }

    void PinBoundary(std::vector<double>& theta, const std::vector<int>& releases) const {
        for (std::size_t k : boundary_)
            if (theta[k] < kPin && releases[k] < kMaxReleases) theta[k] = 0;
    }

    // At a maximum on the boundary the likelihood falls as a coordinate held at 0 rises; EM
    // tells which way it goes, since from a small value it moves that coordinate up exactly
    // when the likelihood rises that way. A coordinate that EM would raise is set free again,
    // from the start value. Returns whether any was.
    bool Release(std::vector<double>& theta, std::vector<int>& releases) const {
        std::vector<double> probe = theta;
        std::vector<std::size_t> held;
        for (std::size_t k : boundary_)
            if (theta[k] == 0 && releases[k] < kMaxReleases) {
                held.push_back(k);
                probe[k] = kProbe;
            }
        if (held.empty()) return false;
        std::vector<double> next(theta.size());
        Step(probe, next);
        bool released = false;
        for (std::size_t k : held)
            if (next[k] > kProbe * (1 + kProbeMargin)) {
                theta[k] = kStart;
                ++releases[k];
                released = true;
            }
        return released;
    }

    static double Moved(const std::vector<double>& a, const std::vector<double>& b) {
        double most = 0;
        for (std::size_t k = 0; k < a.size(); ++k)
            most = std::max(most, std::abs(a[k] - b[k]));
        return most;
    }

    std::span<const LocusGenotypeTally> loci_;
    ModelTerms terms_;
    Layout layout_;
    std::vector<std::size_t> boundary_;
    std::vector<double> scored_;
};

// Below the EM's precision a frequency is reported as 0: the fit stands on the boundary.
constexpr double kBoundary = 1e-9;

// Under Hardy-Weinberg, without blanks, the log-likelihood is concave and the observed allele
// frequencies maximise it with p_n = 0. That is its maximum exactly when the slope towards the
// null allele there, sum of 2 h_i / p_i over the apparent homozygotes h_i, is no steeper than
// the slope 2N towards any visible allele (N scored individuals). Then no iteration is needed.
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

// With F fixed at 0 the loci are independent, and each converges at its own pace.
ModelFit FitLociApart(const std::vector<LocusGenotypeTally>& loci, const ModelTerms& terms) {
    ModelFit fit;
    fit.converged = true;
    for (std::size_t l = 0; l < loci.size(); ++l) {
        const bool nulls = terms.NullAt(l);
        std::vector<double> frequencies;
        if (nulls && NullFreeMaximum(loci[l], frequencies)) {
            fit.visible.push_back(std::move(frequencies));
            fit.nulls.push_back(0.0);
            continue;
        }
        const Fitter fitter(std::span(&loci[l], 1), {.nulls = nulls, .inbreeding = false});
        ModelFit one = fitter.Fit(fitter.Start());
        fit.visible.push_back(std::move(one.visible[0]));
        fit.nulls.push_back(one.nulls[0] < kBoundary ? 0.0 : one.nulls[0]);
        fit.iterations += one.iterations;
        fit.converged = fit.converged && one.converged;
    }
    fit.logLikelihood = LogLikelihood(loci, 0.0, fit.visible, fit.nulls);
    return fit;
}

}  // namespace

ModelFit FitModel(const std::vector<LocusGenotypeTally>& loci, ModelTerms terms,
                  const ModelFit* start) {
    // No shortcut from the fit with F = 0: that fit can be a local maximum on the boundary
    // while F = 0.15 holds the global one, null alleles having taken up the excess.
    if (!terms.inbreeding) return FitLociApart(loci, terms);
    const Fitter fitter(loci, terms);
    ModelFit fit = fitter.Fit(start ? fitter.From(*start) : fitter.Start());
    if (fit.f < kBoundary) fit.f = 0;
    for (double& pn : fit.nulls)
        if (pn < kBoundary) pn = 0;
    fit.logLikelihood = LogLikelihood(loci, fit.f, fit.visible, fit.nulls);
    return fit;
}

ModelFit WithNullsHeld(const std::vector<LocusGenotypeTally>& loci, ModelFit apart,
                       const ModelTerms& terms) {
    bool changed = false;
    for (std::size_t l = 0; l < loci.size(); ++l) {
        if (terms.NullAt(l) || apart.nulls[l] == 0) continue;
        for (std::size_t i = 0; i < loci[l].alleles.size(); ++i)
            apart.visible[l][i] = ObservedFrequency(loci[l], i);
        apart.nulls[l] = 0;
        changed = true;
    }
    if (changed) apart.logLikelihood = LogLikelihood(loci, 0.0, apart.visible, apart.nulls);
    return apart;
}

bool InbreedingWouldRise(const std::vector<LocusGenotypeTally>& loci, const ModelFit& atZero) {
    return Fitter(loci, {}).Rises(atZero);
}

double LogLikelihood(const std::vector<LocusGenotypeTally>& loci, double f,
                     const std::vector<std::vector<double>>& visible,
                     const std::vector<double>& nulls) {
    double sum = 0;
    for (std::size_t l = 0; l < loci.size(); ++l)
        sum += LocusLogLikelihood(loci[l], f, visible[l].data(), nulls[l]);
    return sum;
}

}  // namespace tavrelle
