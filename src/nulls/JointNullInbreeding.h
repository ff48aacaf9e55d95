#pragma once

#include <array>
#include <string>
#include <vector>

#include "nulls/NullInbreedingModel.h"

namespace tavrelle {

// The four nested models of a population's genotypes, simplest first.
enum class NestedModel { kNeither = 0, kNulls = 1, kInbreeding = 2, kBoth = 3 };
inline constexpr std::array<const char*, 4> kNestedModelNames = {"neither", "nulls", "inbreeding",
                                                                 "both"};

// The terms a nested model frees.
inline ModelTerms TermsOf(NestedModel model) {
    const int m = static_cast<int>(model);
    return {.nulls = (m & 1) != 0, .inbreeding = (m & 2) != 0};
}

struct JointFit {
    std::array<ModelFit, 4> fits;            // by NestedModel
    std::array<double, 4> logLikelihoods{};  // by NestedModel; -infinity where impossible
    std::array<int, 4> parameters{};         // free parameters by NestedModel
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
// and the three simpler models beside it. Without null alleles a blank cannot happen, so at a
// locus with blanks the models "neither" and "inbreeding" have likelihood 0.
JointFit FitJointModel(const std::vector<LocusGenotypeTally>& loci);

// The model with the least AIC = 2 k - 2 log L; on a tie the simpler. AIC rather than likelihood
// ratio tests because "nulls" and "inbreeding" are not nested in each other, and F = 0 and
// p_n = 0 lie on the boundary where the chi-square reference of a ratio test does not hold.
NestedModel ChooseModel(const std::array<double, 4>& logLikelihoods,
                        const std::array<int, 4>& parameters);

// One plain sentence on what the chosen model says, with F and its interval (NaN ends for no
// interval). Where the model has F but its interval includes 0 (or there is none), the sentence
// begins "No clear evidence of inbreeding".
std::string InbreedingVerdict(NestedModel model, double f, double low, double high);

}  // namespace tavrelle
