#pragma once

#include <vector>

#include "nulls/LocusGenotypeTally.h"

namespace tavrelle {

// Which parameters a model frees: one null allele frequency per locus, one inbreeding
// coefficient F shared by all loci (identity by descent drawn afresh at each locus).
struct ModelTerms {
    bool nulls = true;
    bool inbreeding = true;
};

// Genotype probabilities, with p_i a visible allele's frequency and p_n the null allele's:
//   heterozygote i/j             (1 - F) 2 p_i p_j
//   apparent homozygote i/i      F p_i + (1 - F)(p_i^2 + 2 p_i p_n)
//   blank (both alleles missing) F p_n + (1 - F) p_n^2
// Without null alleles a blank has probability 0, so the log-likelihood of such a model is
// -infinity at a locus with blanks; its frequencies are then fitted to the scored genotypes.
struct ModelFit {
    double f = 0;
    std::vector<std::vector<double>> visible;  // per locus, per allele of its tally
    std::vector<double> nulls;                 // per locus
    double logLikelihood = 0;
    int iterations = 0;
    bool converged = false;
};

// Maximum likelihood by EM (Dempster, A. P., Laird, N. M. and Rubin, D. B. 1977, J. R. Stat.
// Soc. B 39: 1-38) over the hidden identity-by-descent and null allele states, from p_n = 0.05
// and F = 0.05 (for the terms the model frees) and the observed allele frequencies scaled to
// leave room for p_n. It stops when one EM step moves no frequency (F included) by more than
// 1e-10. The steps are accelerated by squared extrapolation (Varadhan, R. and Roland, C. 2008,
// Scand. J. Stat. 35: 335-353), which keeps EM's fixed points and its monotone likelihood: an
// extrapolation that leaves the parameter space or lowers the likelihood gives way to the plain
// EM steps. With F fixed at 0 each locus is fitted on its own, at its own pace. Frequencies
// below 1e-9 are reported as 0.
ModelFit FitModel(const std::vector<LocusGenotypeTally>& loci, ModelTerms terms);

// The log-likelihood of the genotypes under the given parameters (the multinomial coefficient
// left out, the factor 2 of heterozygotes kept).
double LogLikelihood(const std::vector<LocusGenotypeTally>& loci, double f,
                     const std::vector<std::vector<double>>& visible,
                     const std::vector<double>& nulls);

}  // namespace tavrelle
