#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "nulls/NullInbreedingModel.h"

namespace tavrelle {

// The eight nested models of a population's genotypes: null alleles, inbreeding and failed
// amplifications, each in or out (one bit each), simplest first within each half.
enum class NestedModel {
    kNeither = 0,
    kNulls = 1,
    kInbreeding = 2,
    kBoth = 3,
    kFailures = 4,
    kNullsFailures = 5,
    kInbreedingFailures = 6,
    kAll = 7
};
inline constexpr std::size_t kNestedModelCount = 8;
inline constexpr std::array<const char*, kNestedModelCount> kNestedModelNames = {
    "neither",  "nulls",          "inbreeding",          "both",
    "failures", "nulls_failures", "inbreeding_failures", "all"};

// The terms a nested model frees.
inline ModelTerms TermsOf(NestedModel model) {
    const int m = static_cast<int>(model);
    return {.nulls = (m & 1) != 0, .inbreeding = (m & 2) != 0, .failures = (m & 4) != 0};
}

// The model with the given terms.
inline NestedModel ModelOf(const ModelTerms& terms) {
    return static_cast<NestedModel>((terms.nulls ? 1 : 0) + (terms.inbreeding ? 2 : 0) +
                                    (terms.failures ? 4 : 0));
}

struct JointFit {
    std::array<ModelFit, kNestedModelCount> fits;            // by NestedModel
    std::array<double, kNestedModelCount> logLikelihoods{};  // -infinity where impossible
    std::array<int, kNestedModelCount> parameters{};         // free parameters
    NestedModel chosen = NestedModel::kNeither;

    // What `joint` and the population's F report, whichever model is chosen: F with the null
    // alleles of the loci that need one. A locus without blanks keeps its null allele only if
    // that raises the log-likelihood by more than 1 (AIC), the loci tried from the smallest
    // null allele frequency up. With a null allele free at every locus the fit would spend part
    // of a homozygote excess shared by all loci on small null alleles and underestimate F.
    ModelTerms reportedTerms;
    ModelFit reported;
};

// `joint`: one F for the population and one null allele frequency per locus, fitted together,
// and the simpler models beside it, each also with a failure rate at every locus with blanks.
// Without null alleles or failures a blank cannot happen, so at a locus with blanks the models
// "neither" and "inbreeding" have likelihood 0. The failure rates enter the model choice only:
// `joint` and F stay those of the model with F and null alleles (`reported`).
JointFit FitJointModel(const std::vector<LocusGenotypeTally>& loci);

// The maximum likelihood fit of `terms` with a failure rate beta at each locus: a sample fails
// with probability beta whatever it carries and shows as blank, otherwise it shows its
// phenotype, a null homozygote as blank too:
//   P(blank) = beta + (1 - beta)(F r + (1 - F) r^2),   scored genotypes (1 - beta) P(g).
// For given F and frequencies the best beta is closed-form: with b blanks among N samples and
// q = F r + (1 - F) r^2, beta = (b/N - q)/(1 - q) where b/N > q, else 0. Where beta > 0 the blanks
// then tell nothing of r, and the scored genotypes are fitted as a sample truncated by the null
// homozygotes it lacks: EM adds the expected s q/(1 - q) of them (s scored samples) as blanks and
// fits FitModel to that; where beta = 0 the blanks count as they are. Each such step raises the
// likelihood; it ends when the log-likelihood moves by less than 1e-9 (or after 1000 steps).
ModelFit FitWithFailures(const std::vector<LocusGenotypeTally>& loci, ModelTerms terms);

// The model with the least AIC = 2 k - 2 log L; on a tie (within 1e-6) the simpler (the lower
// NestedModel).
// AIC rather than likelihood ratio tests because "nulls" and "inbreeding" are not nested in each
// other, and F = 0, p_n = 0 and beta = 0 lie on the boundary where the chi-square reference of a
// ratio test does not hold.
NestedModel ChooseModel(const std::array<double, kNestedModelCount>& logLikelihoods,
                        const std::array<int, kNestedModelCount>& parameters);

// One plain sentence on what the chosen model says, with F and its interval (NaN ends for no
// interval). Where the model has F but its interval includes 0 (or there is none), the sentence
// begins "No clear evidence of inbreeding".
std::string InbreedingVerdict(NestedModel model, double f, double low, double high);

}  // namespace tavrelle
