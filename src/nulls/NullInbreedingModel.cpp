#include "nulls/NullInbreedingModel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

#include "nulls/ModelBoundary.h"
#include "nulls/ModelFitter.h"

namespace tavrelle {

namespace {

double LogOf(double count, double probability) {
    return count > 0 ? count * std::log(probability) : 0.0;
}

}  // namespace

double ObservedFrequency(const LocusGenotypeTally& t, std::size_t allele) {
    return (2 * t.homozygotes[allele] + t.heterozygousCopies[allele]) / (2 * t.Scored());
}

double LocusLogLikelihood(const LocusGenotypeTally& t, double f, const double* p, double pn,
                          bool blanks) {
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

namespace {

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
        const ModelFitter fitter(std::span(&loci[l], 1), {.nulls = nulls, .inbreeding = false});
        ModelFit one = fitter.Fit(fitter.Start());
        fit.visible.push_back(std::move(one.visible[0]));
        fit.nulls.push_back(Snapped(one.nulls[0]));
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
    const ModelFitter fitter(loci, terms);
    ModelFit fit = fitter.Fit(start ? fitter.From(*start) : fitter.Start());
    SnapToBoundary(fit);
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
    return ModelFitter(loci, {}).Rises(atZero);
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
