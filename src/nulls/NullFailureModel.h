#pragma once

#include <vector>

#include "nulls/LocusGenotypeTally.h"

namespace tavrelle {

// `em_failure`: one locus under Hardy-Weinberg proportions with a null allele (frequency r) and
// failed amplifications (rate beta): a sample fails whatever it carries, otherwise it shows its
// phenotype, a null homozygote showing as a blank:
//   blank                   beta + (1 - beta) r^2
//   apparent homozygote i/i (1 - beta)(p_i^2 + 2 p_i r)
//   heterozygote i/j        2 (1 - beta) p_i p_j
// The blanks alone cannot tell r from beta; the excess of homozygotes among the scored samples
// does. The likelihood splits into the share of blanks, b = beta + (1 - beta) r^2, and the
// scored genotypes given that a sample is scored; so at the maximum b is the observed share of
// blanks, unless the scored samples ask for r^2 above it, and then beta is 0 and the fit is
// `em`'s.
struct FailureFit {
    std::vector<double> visible;  // per allele of the tally
    double nullFrequency = 0;     // r
    double failureRate = 0;       // beta
    double logLikelihood = 0;
    int iterations = 0;
    bool converged = false;
};

// Maximum likelihood by EM over three hidden facts: whether a blank is a failed sample or a
// null homozygote, and whether an apparent homozygote i/i carries a null allele. Squared
// extrapolation speeds the steps as in FitModel, and a parameter that reaches its boundary 0 is
// held there unless EM would raise it again. NaN for r and beta at a locus with no scored
// sample: its blanks fit any mix of the two.
FailureFit FitFailureModel(const LocusGenotypeTally& locus);

// The log-likelihood of the locus's genotypes at the given parameters (the multinomial
// coefficient left out, the factor 2 of heterozygotes kept).
double FailureLogLikelihood(const LocusGenotypeTally& locus, const std::vector<double>& visible,
                            double nullFrequency, double failureRate);

}  // namespace tavrelle
