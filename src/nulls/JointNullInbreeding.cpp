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

}  // namespace

JointFit FitJointModel(const std::vector<LocusGenotypeTally>& loci) {
    JointFit joint;
    int frequencies = 0;
    int nullable = 0;
    for (const LocusGenotypeTally& locus : loci) {
        if (!locus.alleles.empty()) frequencies += static_cast<int>(locus.alleles.size()) - 1;
        if (locus.Individuals() > 0) ++nullable;
    }
    joint.parameters = {frequencies, frequencies + nullable, frequencies + 1,
                        frequencies + nullable + 1};
    for (std::size_t m = 0; m < 4; ++m) {
        joint.fits[m] = FitModel(loci, TermsOf(static_cast<NestedModel>(m)));
        joint.logLikelihoods[m] = joint.fits[m].logLikelihood;
    }
    joint.chosen = ChooseModel(joint.logLikelihoods, joint.parameters);
    joint.reportedTerms = TermsOf(NestedModel::kBoth);
    joint.reported = joint.fits[static_cast<std::size_t>(NestedModel::kBoth)];
    HoldUnneededNulls(loci, joint.reportedTerms, joint.reported);
    return joint;
}

NestedModel ChooseModel(const std::array<double, 4>& logLikelihoods,
                        const std::array<int, 4>& parameters) {
    std::size_t best = 3;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t m = 0; m < 4; ++m) {
        const double aic = 2.0 * parameters[m] - 2 * logLikelihoods[m];
        if (std::isfinite(aic) && aic < least) {
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
    // AIC can favour a model with F while F's interval still reaches 0: that is no finding.
    const bool withF = model == NestedModel::kInbreeding || model == NestedModel::kBoth;
    if (withF && IntervalIncludesZero(low, high)) {
        const std::string rest =
            model == NestedModel::kBoth
                ? "null alleles at some loci explain part of the homozygote excess; "
                : "the homozygote excess shared by the loci is too small to tell from none; ";
        return std::string("No clear evidence of inbreeding: F's interval includes 0, so ") + rest +
               estimate + ".";
    }
    switch (model) {
        case NestedModel::kNeither:
            return std::string(
                       "The genotypes fit Hardy-Weinberg proportions: neither null "
                       "alleles nor inbreeding is needed to explain them; ") +
                   estimate + ".";
        case NestedModel::kNulls:
            return std::string(
                       "The homozygote excess differs from locus to locus, which points "
                       "to null alleles at some loci rather than to inbreeding; ") +
                   estimate + ".";
        case NestedModel::kInbreeding:
            return std::string(
                       "A homozygote excess shared by the loci points to inbreeding or "
                       "population structure rather than to null alleles; ") +
                   estimate + ".";
        case NestedModel::kBoth:
            break;
    }
    return std::string(
               "Both are needed: a homozygote excess shared by the loci (inbreeding or "
               "population structure) and null alleles at some loci; ") +
           estimate + ".";
}

}  // namespace tavrelle
