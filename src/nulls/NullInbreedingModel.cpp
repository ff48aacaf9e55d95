#include "nulls/NullInbreedingModel.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavrelle {

namespace {

constexpr double kTolerance = 1e-10;
constexpr double kStart = 0.05;
constexpr int kMaxIterations = 200000;

// The parameters as one vector, for the extrapolation: F first, then per locus its visible
// alleles and its null allele.
class Layout {
public:
    explicit Layout(const std::vector<LocusGenotypeTally>& loci) {
        std::size_t at = 1;
        for (const LocusGenotypeTally& locus : loci) {
            offsets_.push_back(at);
            at += locus.alleles.size() + 1;
        }
        size_ = at;
    }
    std::size_t Size() const { return size_; }
    std::size_t Visible(std::size_t locus) const { return offsets_[locus]; }
    std::size_t Null(std::size_t locus, const LocusGenotypeTally& tally) const {
        return offsets_[locus] + tally.alleles.size();
    }

private:
    std::vector<std::size_t> offsets_;
    std::size_t size_ = 1;
};

double LogOf(double count, double probability) {
    return count > 0 ? count * std::log(probability) : 0.0;
}

double LocusLogLikelihood(const LocusGenotypeTally& t, double f, const double* p, double pn) {
    double sum = LogOf(t.heterozygotes, 2 * (1 - f));
    for (std::size_t i = 0; i < t.alleles.size(); ++i) {
        sum += LogOf(t.heterozygousCopies[i], p[i]);
        sum += LogOf(t.homozygotes[i], f * p[i] + (1 - f) * (p[i] * p[i] + 2 * p[i] * pn));
    }
    if (t.blanks > 0)
        sum += pn > 0 ? LogOf(t.blanks, f * pn + (1 - f) * pn * pn)
                      : -std::numeric_limits<double>::infinity();
    return sum;
}

class Fitter {
public:
    Fitter(const std::vector<LocusGenotypeTally>& loci, ModelTerms terms)
        : loci_(loci), terms_(terms), layout_(loci) {}

    std::vector<double> Start() const {
        std::vector<double> theta(layout_.Size(), 0.0);
        theta[0] = terms_.inbreeding ? kStart : 0.0;
        for (std::size_t l = 0; l < loci_.size(); ++l) {
            const LocusGenotypeTally& t = loci_[l];
            const double copies = 2 * t.Scored();
            const bool nulls = terms_.nulls && t.Individuals() > 0;
            const double room = nulls ? (copies > 0 ? 1 - kStart : 0.0) : 1.0;
            for (std::size_t i = 0; i < t.alleles.size(); ++i)
                theta[layout_.Visible(l) + i] =
                    room * (2 * t.homozygotes[i] + t.heterozygousCopies[i]) / copies;
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

    double Likelihood(const std::vector<double>& theta) const {
        double sum = 0;
        for (std::size_t l = 0; l < loci_.size(); ++l) {
            const LocusGenotypeTally& t = loci_[l];
            sum += LocusLogLikelihood(t, theta[0], &theta[layout_.Visible(l)],
                                      theta[layout_.Null(l, t)]);
        }
        return sum;
    }

    // Log-likelihood of theta with blanks left aside where the model has no null allele, so
    // that the acceleration can compare finite values.
    double Objective(const std::vector<double>& theta) const {
        if (terms_.nulls) return Likelihood(theta);
        double sum = 0;
        for (std::size_t l = 0; l < loci_.size(); ++l) {
            LocusGenotypeTally t = loci_[l];
            t.blanks = 0;
            sum += LocusLogLikelihood(t, theta[0], &theta[layout_.Visible(l)], 0.0);
        }
        return sum;
    }

    bool Inside(const std::vector<double>& theta) const {
        if (theta[0] < 0 || theta[0] >= 1) return false;
        return std::all_of(theta.begin() + 1, theta.end(), [](double x) { return x >= 0; });
    }

    ModelFit Fit() const {
        std::vector<double> theta = Start();
        std::vector<double> one(theta.size());
        std::vector<double> two(theta.size());
        std::vector<double> jump(theta.size());
        ModelFit fit;
        double objective = Objective(theta);
        while (fit.iterations < kMaxIterations) {
            Step(theta, one);
            ++fit.iterations;
            if (Moved(theta, one) <= kTolerance) {
                theta.swap(one);
                fit.converged = true;
                break;
            }
            Step(one, two);
            ++fit.iterations;
            if (Moved(one, two) <= kTolerance) {
                theta.swap(two);
                fit.converged = true;
                break;
            }
            double rr = 0;
            double vv = 0;
            for (std::size_t k = 0; k < theta.size(); ++k) {
                const double r = one[k] - theta[k];
                const double v = two[k] - 2 * one[k] + theta[k];
                rr += r * r;
                vv += v * v;
            }
            double alpha = vv > 0 ? -std::sqrt(rr / vv) : -1.0;
            alpha = std::min(alpha, -1.0);
            bool accepted = false;
            for (int tries = 0; tries < 8 && alpha < -1.0 && !accepted; ++tries) {
                for (std::size_t k = 0; k < theta.size(); ++k)
                    jump[k] = theta[k] - 2 * alpha * (one[k] - theta[k]) +
                              alpha * alpha * (two[k] - 2 * one[k] + theta[k]);
                if (Inside(jump)) {
                    Step(jump, one);  // the stabilising step: EM from the extrapolated point
                    ++fit.iterations;
                    const double reached = Objective(one);
                    if (Inside(one) && reached >= objective) {
                        theta.swap(one);
                        objective = reached;
                        accepted = true;
                    }
                }
                alpha = (alpha - 1) / 2;
            }
            if (!accepted) {
                theta.swap(two);
                objective = Objective(theta);
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

private:
    static double Moved(const std::vector<double>& a, const std::vector<double>& b) {
        double most = 0;
        for (std::size_t k = 0; k < a.size(); ++k)
            most = std::max(most, std::abs(a[k] - b[k]));
        return most;
    }

    const std::vector<LocusGenotypeTally>& loci_;
    ModelTerms terms_;
    Layout layout_;
};

// Below the EM's precision a frequency is reported as 0: the fit stands on the boundary.
constexpr double kBoundary = 1e-9;

// With F fixed at 0 the loci are independent, and each converges at its own pace.
ModelFit FitLociApart(const std::vector<LocusGenotypeTally>& loci, bool nulls) {
    ModelFit fit;
    fit.converged = true;
    for (const LocusGenotypeTally& locus : loci) {
        ModelFit one = Fitter({locus}, {.nulls = nulls, .inbreeding = false}).Fit();
        fit.visible.push_back(std::move(one.visible[0]));
        fit.nulls.push_back(one.nulls[0] < kBoundary ? 0.0 : one.nulls[0]);
        fit.iterations += one.iterations;
        fit.converged = fit.converged && one.converged;
    }
    fit.logLikelihood = LogLikelihood(loci, 0.0, fit.visible, fit.nulls);
    return fit;
}

}  // namespace

ModelFit FitModel(const std::vector<LocusGenotypeTally>& loci, ModelTerms terms) {
    // No shortcut from the fit with F = 0: that fit can be a local maximum on the boundary
    // while F = 0.15 holds the global one, null alleles having taken up the excess.
    if (!terms.inbreeding) return FitLociApart(loci, terms.nulls);
    ModelFit fit = Fitter(loci, terms).Fit();
    if (fit.f < kBoundary) fit.f = 0;
    for (double& pn : fit.nulls)
        if (pn < kBoundary) pn = 0;
    fit.logLikelihood = LogLikelihood(loci, fit.f, fit.visible, fit.nulls);
    return fit;
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
