#include "nulls/NullFailureModel.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavrelle {

namespace {

constexpr double kTolerance = 1e-10;
constexpr double kStart = 0.05;
constexpr int kMaxIterations = 100000;
constexpr double kPin = 1e-7;    // r or beta below this is taken to be 0
constexpr double kProbe = 1e-9;  // how far from 0 a held parameter is probed
constexpr double kProbeMargin = 1e-9;
constexpr int kMaxReleases = 2;
constexpr double kBoundary = 1e-9;  // reported as 0 below this

double LogOf(double count, double probability) {
    return count > 0 ? count * std::log(probability) : 0.0;
}

double LocusLogLikelihood(const LocusGenotypeTally& t, const double* visible, double r,
                          double failureRate) {
    const double scored = 1 - failureRate;
    double sum = LogOf(t.heterozygotes, 2 * scored);
    for (std::size_t i = 0; i < t.alleles.size(); ++i) {
        const double p = visible[i];
        sum += LogOf(t.heterozygousCopies[i], p);
        sum += LogOf(t.homozygotes[i], scored * (p * p + 2 * p * r));
    }
    return sum + LogOf(t.blanks, failureRate + scored * r * r);
}

// The parameters as one vector: the visible alleles, then r, then beta.
class FailureFitter {
public:
    explicit FailureFitter(const LocusGenotypeTally& t)
        : t_(t), k_(t.alleles.size()), individuals_(t.Individuals()) {}

    std::size_t NullAt() const { return k_; }
    std::size_t FailureAt() const { return k_ + 1; }

    std::vector<double> Start() const {
        std::vector<double> theta(k_ + 2, 0.0);
        const double copies = 2 * t_.Scored();
        for (std::size_t i = 0; i < k_; ++i)
            theta[i] = (1 - kStart) * (2 * t_.homozygotes[i] + t_.heterozygousCopies[i]) / copies;
        theta[NullAt()] = kStart;
        theta[FailureAt()] = t_.blanks > 0 ? t_.blanks / individuals_ / 2 : 0.0;
        return theta;
    }

    // E: a blank is a failed sample with weight beta against (1 - beta) r^2 for a null
    // homozygote; an apparent homozygote i/i carries a null allele with weight 2 p_i r against
    // p_i^2. M: beta is the expected share of failed samples; the allele frequencies are the
    // expected copies among the samples that did not fail.
    void Step(const std::vector<double>& theta, std::vector<double>& next) const {
        const double r = theta[NullAt()];
        const double beta = theta[FailureAt()];
        double failed = 0;
        double nullCopies = 0;
        if (t_.blanks > 0) {
            const double nullHomozygote = (1 - beta) * r * r;
            const double share = t_.blanks / (beta + nullHomozygote);
            failed = beta * share;
            nullCopies = 2 * nullHomozygote * share;
        }
        const double copies = 2 * (individuals_ - failed);
        for (std::size_t i = 0; i < k_; ++i) {
            double c = t_.heterozygousCopies[i];
            const double h = t_.homozygotes[i];
            if (h > 0) {
                const double p = theta[i];
                const double withNull = h * 2 * r / (p + 2 * r);
                c += 2 * h - withNull;
                nullCopies += withNull;
            }
            next[i] = c / copies;
        }
        next[NullAt()] = nullCopies / copies;
        next[FailureAt()] = failed / individuals_;
    }

    double Objective(const std::vector<double>& theta) const {
        return LocusLogLikelihood(t_, theta.data(), theta[NullAt()], theta[FailureAt()]);
    }

    FailureFit Fit() const {
        std::vector<double> theta = Start();
        std::vector<double> one(theta.size()), two(theta.size()), jump(theta.size());
        int releases[2] = {0, 0};
        double objective = Objective(theta);
        FailureFit fit;
        while (fit.iterations < kMaxIterations) {
            if (!Cycle(theta, one, two, jump, objective, releases, fit.iterations)) continue;
            if (Release(theta, releases)) {
                objective = Objective(theta);
                continue;
            }
            fit.converged = true;
            break;
        }
        fit.visible.assign(theta.begin(), theta.begin() + static_cast<long>(k_));
        fit.nullFrequency = theta[NullAt()] < kBoundary ? 0.0 : theta[NullAt()];
        fit.failureRate = theta[FailureAt()] < kBoundary ? 0.0 : theta[FailureAt()];
        fit.logLikelihood =
            FailureLogLikelihood(t_, fit.visible, fit.nullFrequency, fit.failureRate);
        return fit;
    }

private:
    bool Inside(const std::vector<double>& theta) const {
        if (theta[FailureAt()] >= 1) return false;
        if (t_.blanks > 0 && theta[NullAt()] <= 0 && theta[FailureAt()] <= 0) return false;
        return std::all_of(theta.begin(), theta.end(), [](double x) { return x >= 0; });
    }

    // EM creeps towards a maximum on the boundary: r or beta below kPin is set to 0, where EM
    // holds it (never both, since the blanks need one of them); Release() checks that 0 is right.
    void Pin(std::vector<double>& theta, const int* releases) const {
        const std::size_t order[2] = {NullAt(), FailureAt()};
        for (int b = 0; b < 2; ++b) {
            const std::size_t k = order[b];
            const std::size_t other = order[1 - b];
            if (theta[k] < kPin && releases[b] < kMaxReleases &&
                (t_.blanks <= 0 || theta[other] > 0))
                theta[k] = 0;
        }
    }

    bool Release(std::vector<double>& theta, int* releases) const {
        const std::size_t order[2] = {NullAt(), FailureAt()};
        std::vector<double> probe = theta;
        bool any = false;
        for (int b = 0; b < 2; ++b)
            if (theta[order[b]] == 0 && releases[b] < kMaxReleases) {
                probe[order[b]] = kProbe;
                any = true;
            }
        if (!any) return false;
        std::vector<double> next(theta.size());
        Step(probe, next);
        bool released = false;
        for (int b = 0; b < 2; ++b)
            if (probe[order[b]] == kProbe && next[order[b]] > kProbe * (1 + kProbeMargin)) {
                theta[order[b]] = kStart;
                ++releases[b];
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

    // One squared-extrapolation cycle; true when EM no longer moves theta.
    bool Cycle(std::vector<double>& theta, std::vector<double>& one, std::vector<double>& two,
               std::vector<double>& jump, double& objective, const int* releases,
               int& iterations) const {
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
        double rr = 0;
        double vv = 0;
        for (std::size_t k = 0; k < theta.size(); ++k) {
            const double r = one[k] - theta[k];
            const double v = two[k] - 2 * one[k] + theta[k];
            rr += r * r;
            vv += v * v;
        }
        double alpha = vv > 0 ? std::min(-std::sqrt(rr / vv), -1.0) : -1.0;
        for (int tries = 0; tries < 8 && alpha < -1.0; ++tries, alpha = (alpha - 1) / 2) {
            for (std::size_t k = 0; k < theta.size(); ++k)
                jump[k] = theta[k] - 2 * alpha * (one[k] - theta[k]) +
                          alpha * alpha * (two[k] - 2 * one[k] + theta[k]);
            Pin(jump, releases);
            if (!Inside(jump)) continue;
            Step(jump, one);  // the stabilising step
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
        Pin(theta, releases);
        objective = Objective(theta);
        return false;
    }

    const LocusGenotypeTally& t_;
    std::size_t k_;
    double individuals_;
};

}  // namespace

FailureFit FitFailureModel(const LocusGenotypeTally& locus) {
    if (locus.Scored() <= 0) {
        FailureFit none;
        none.nullFrequency = std::numeric_limits<double>::quiet_NaN();
        none.failureRate = std::numeric_limits<double>::quiet_NaN();
        none.converged = true;
        return none;
    }
    // Without a homozygote excess among the scored samples (the slope towards r at r = 0, the
    // sum of 2 h_i / p_i over the apparent homozygotes, no steeper than the slope 2N towards
    // the visible alleles), the maximum lies at r = 0 with the observed allele frequencies,
    // and every blank is a failure: beta = B / N, no iteration needed. The factor 1 / (1 - r^2)
    // that the scored samples' share brings in has slope 0 at r = 0.
    const double scored = locus.Scored();
    FailureFit fit;
    double slope = 0;
    for (std::size_t i = 0; i < locus.alleles.size(); ++i) {
        const double p = (2 * locus.homozygotes[i] + locus.heterozygousCopies[i]) / (2 * scored);
        fit.visible.push_back(p);
        if (locus.homozygotes[i] > 0) slope += locus.homozygotes[i] / p;
    }
    if (slope > scored) return FailureFitter(locus).Fit();
    fit.failureRate = locus.blanks / locus.Individuals();
    fit.logLikelihood = FailureLogLikelihood(locus, fit.visible, 0.0, fit.failureRate);
    fit.converged = true;
    return fit;
}

double FailureLogLikelihood(const LocusGenotypeTally& t, const std::vector<double>& visible,
                            double nullFrequency, double failureRate) {
    return LocusLogLikelihood(t, visible.data(), nullFrequency, failureRate);
}

}  // namespace tavrelle
