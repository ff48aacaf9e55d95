#include "nulls/JointNullInbreeding.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "nulls/EstimateWords.h"

namespace tavrelle {

namespace {

// Backward selection over the null alleles of the loci without blanks, by AIC: from the
// smallest null allele frequency up, a locus's null allele is held at 0 where that lowers the
// log-likelihood by less than 1.
void HoldUnneededNulls(const std::vector<LocusGenotypeTally>& loci, ModelTerms& terms,
                       ModelFit& fit) {
    std::vector<std::size_t> order;
    for (std::size_t l = 0; l < loci.size(); ++l)
        if (loci[l].blanks == 0 && loci[l].Individuals() > 0) order.push_back(l);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return fit.nulls[a] < fit.nulls[b]; });
    terms.heldNulls.assign(loci.size(), false);
    for (std::size_t l : order) {
        ModelTerms trial = terms;
        trial.heldNulls[l] = true;
        ModelFit held = FitModel(loci, trial, &fit);
        if (fit.logLikelihood - held.logLikelihood < 1) {
            terms = std::move(trial);
            fit = std::move(held);
        }
    }
}

// The share of samples that would show as null homozygotes without any failure.
double NullHomozygoteShare(const ModelFit& fit, std::size_t locus) {
    const double r = fit.nulls[locus];
    return fit.f * r + (1 - fit.f) * r * r;
}

// At the fit's F and frequencies, each locus's best failure rate, and the blanks that EM's next
// step fits to: the expected null homozygotes of a truncated sample where the rate is above 0,
// the blanks themselves where it is 0.
void SetFailures(const std::vector<LocusGenotypeTally>& loci, ModelFit& fit,
                 std::vector<LocusGenotypeTally>& augmented) {
    fit.failures.assign(loci.size(), 0.0);
    for (std::size_t l = 0; l < loci.size(); ++l) {
        const LocusGenotypeTally& t = loci[l];
        const double q = NullHomozygoteShare(fit, l);
        const double blankShare = t.Individuals() > 0 ? t.blanks / t.Individuals() : 0.0;
        augmented[l].blanks = t.blanks;
        if (blankShare > q) {
            fit.failures[l] = (blankShare - q) / (1 - q);
            augmented[l].blanks = t.Scored() * q / (1 - q);
        }
    }
}

double LogOf(double count, double probability) {
    return count > 0 ? count * std::log(probability) : 0.0;
}

double FailureLogLikelihood(const std::vector<LocusGenotypeTally>& loci, const ModelFit& fit) {
    double sum = 0;
    for (std::size_t l = 0; l < loci.size(); ++l) {
        const LocusGenotypeTally& t = loci[l];
        const double beta = fit.failures[l];
        sum += LocusLogLikelihood(t, fit.f, fit.visible[l].data(), fit.nulls[l], false) +
               LogOf(t.blanks, beta + (1 - beta) * NullHomozygoteShare(fit, l)) +
               LogOf(t.Scored(), 1 - beta);
    }
    return sum;
}

// EM from the fit of the augmented blanks given.
ModelFit FailureEm(const std::vector<LocusGenotypeTally>& loci, const ModelTerms& terms,
                   std::vector<LocusGenotypeTally> augmented) {
    ModelFit fit = FitModel(augmented, terms);
    SetFailures(loci, fit, augmented);
    fit.logLikelihood = FailureLogLikelihood(loci, fit);
    for (int step = 0; step < 1000; ++step) {
        ModelFit next = FitModel(augmented, terms, &fit);
        SetFailures(loci, next, augmented);
        next.logLikelihood = FailureLogLikelihood(loci, next);
        const bool settled = std::abs(next.logLikelihood - fit.logLikelihood) < 1e-9;
        if (next.logLikelihood >= fit.logLikelihood || !std::isfinite(fit.logLikelihood))
            fit = std::move(next);
        if (settled) break;
    }
    return fit;
}

}  // namespace

// The likelihood can have a maximum with every blank a failure and another with the blanks
// null homozygotes: EM starts from both and the better fit is kept.
ModelFit FitWithFailures(const std::vector<LocusGenotypeTally>& loci, ModelTerms terms) {
    terms.failures = false;
    std::vector<LocusGenotypeTally> failed = loci;
    for (LocusGenotypeTally& t : failed)
        t.blanks = 0;
    ModelFit asFailures = FailureEm(loci, terms, std::move(failed));
    if (!terms.nulls) return asFailures;  // without null alleles every blank is a failure
    ModelFit asNulls = FailureEm(loci, terms, loci);
    return asNulls.logLikelihood > asFailures.logLikelihood ? asNulls : asFailures;
}

JointFit FitJointModel(const std::vector<LocusGenotypeTally>& loci) {
    JointFit joint;
    int frequencies = 0;
    int nullable = 0;
    for (const LocusGenotypeTally& locus : loci) {
        if (!locus.alleles.empty()) frequencies += static_cast<int>(locus.alleles.size()) - 1;
        if (locus.Individuals() > 0) ++nullable;
    }
    int failing = 0;  // loci with blanks, where a failure rate can be above 0
    for (const LocusGenotypeTally& locus : loci)
        if (locus.blanks > 0) ++failing;
    for (std::size_t m = 0; m < kNestedModelCount; ++m) {
        const ModelTerms terms = TermsOf(static_cast<NestedModel>(m));
        joint.parameters[m] = frequencies + (terms.nulls ? nullable : 0) +
                              (terms.inbreeding ? 1 : 0) + (terms.failures ? failing : 0);
        joint.fits[m] = terms.failures ? FitWithFailures(loci, terms) : FitModel(loci, terms);
        joint.logLikelihoods[m] = joint.fits[m].logLikelihood;
    }
    joint.chosen = ChooseModel(joint.logLikelihoods, joint.parameters);
    joint.reportedTerms = TermsOf(NestedModel::kBoth);
    joint.reported = joint.fits[static_cast<std::size_t>(NestedModel::kBoth)];
    HoldUnneededNulls(loci, joint.reportedTerms, joint.reported);
    return joint;
}

NestedModel ChooseModel(const std::array<double, kNestedModelCount>& logLikelihoods,
                        const std::array<int, kNestedModelCount>& parameters) {
    std::size_t best = static_cast<std::size_t>(NestedModel::kBoth);
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t m = 0; m < kNestedModelCount; ++m) {
        // Fits stop within 1e-9 of their maximum, so two models that reach the same maximum
        // (a failure model at loci without blanks) can differ in the last digits: a tie.
        const double aic = 2.0 * parameters[m] - 2 * logLikelihoods[m];
        if (std::isfinite(aic) && aic < least - 1e-6) {
            least = aic;
            best = m;
        }
    }
    return static_cast<NestedModel>(best);
}

std::string InbreedingVerdict(NestedModel model, double f, double low, double high) {
    char estimate[96];
    if (std::isfinite(low) && std::isfinite(high))
        std::snprintf(estimate, sizeof estimate, "F = %.3f (95%% interval %.3f to %.3f)", f, low,
                      high);
    else
        std::snprintf(estimate, sizeof estimate, "F = %.3f (no interval)", f);
    const ModelTerms terms = TermsOf(model);
    // What the blanks are, where the chosen model has failure rates.
    const std::string failures =
        terms.failures ? "; the blank genotypes read as failed amplifications, not as null "
                         "homozygotes"
                       : "";
    // AIC can favour a model with F while F's interval still reaches 0: that is no finding.
    if (terms.inbreeding && IntervalIncludesZero(low, high)) {
        const std::string rest =
            terms.nulls ? "null alleles at some loci explain part of the homozygote excess"
                        : "the homozygote excess shared by the loci is too small to tell from none";
        return std::string("No clear evidence of inbreeding: F's interval includes 0, so ") + rest +
               failures + "; " + estimate + ".";
    }
    std::string finding;
    if (!terms.nulls && !terms.inbreeding)
        finding = terms.failures
                      ? "The scored genotypes fit Hardy-Weinberg proportions: neither null alleles "
                        "nor inbreeding is needed to explain them"
                      : "The genotypes fit Hardy-Weinberg proportions: neither null alleles nor "
                        "inbreeding is needed to explain them";
    else if (terms.nulls && !terms.inbreeding)
        finding =
            "The homozygote excess differs from locus to locus, which points to null alleles at "
            "some loci rather than to inbreeding";
    else if (!terms.nulls)
        finding =
            "A homozygote excess shared by the loci points to inbreeding or population structure "
            "rather than to null alleles";
    else
        finding =
            "Both are needed: a homozygote excess shared by the loci (inbreeding or population "
            "structure) and null alleles at some loci";
    return finding + failures + "; " + estimate + ".";
}

}  // namespace tavrelle
