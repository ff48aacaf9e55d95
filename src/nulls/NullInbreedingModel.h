#pragma once

#include <cstddef>
#include <vector>

#include "nulls/LocusGenotypeTally.h"

namespace tavrelle {

// Which parameters a model frees: one null allele frequency per locus, one inbreeding
// coefficient F shared by all loci (identity by descent drawn afresh at each locus).
struct ModelTerms {
    bool nulls = true;
    bool inbreeding = true;
    // A rate of failed amplifications per locus: a sample fails whatever it carries and shows
    // as blank (FitWithFailures, JointNullInbreeding.h). FitModel itself ignores it.
    bool failures = false;
    // Loci whose null allele is held at 0 even though `nulls` frees the others (only loci
    // without blanks; empty: none).
    std::vector<bool> heldNulls = {};

    bool NullAt(std::size_t locus) const {
        return nulls && (locus >= heldNulls.size() || !heldNulls[locus]);
    }
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
    std::vector<double> failures;  // per locus where the model has failure rates; else empty
    double logLikelihood = 0;
    int iterations = 0;
    bool converged = false;
};

// Maximum likelihood by EM (Dempster, A. P., Laird, N. M. and Rubin, D. B. 1977, J. R. Stat.
// Soc. B 39: 1-38) over the hidden identity-by-descent and null allele states, from p_n = 0.05
// and F = 0.05 (for the terms the model frees) and the observed allele frequencies scaled to
// leave room for p_n, or from `start`, an earlier fit of the same loci and terms (a bootstrap
// replicate starts from the sample's own fit). It stops when one EM step moves no frequency
// (F included) by more than 1e-10.
//
// The steps are accelerated by squared extrapolation (Varadhan, R. and Roland, C. 2008, Scand.
// J. Stat. 35: 335-353), with a step length of its own for F and for each locus, which keeps
// EM's fixed points and its monotone likelihood: an extrapolation that leaves the parameter
// space or lowers the likelihood gives way to the plain EM steps.
//
// The steps are ModelFitter's (ModelFitter.h), the boundary handling ModelBoundary's
// (ModelBoundary.h). EM creeps towards a maximum on the boundary, so F, or the null allele of a
// locus without blanks, is set to 0 once it falls below 1e-7, where EM holds it. At convergence
// each such coordinate is probed: if EM would raise it from 1e-9, the likelihood rises that way,
// and it starts again from 0.05 (twice at most, then it is left to EM). Under Hardy-Weinberg a
// locus without blanks whose maximum is at p_n = 0 is recognised from the slope there without any
// step. With F fixed at 0 each locus is fitted on its own, at its own pace. Frequencies below
// 1e-9 are reported as 0.
ModelFit FitModel(const std::vector<LocusGenotypeTally>& loci, ModelTerms terms,
                  const ModelFit* start = nullptr);

// A fit with F = 0 and a null allele at every locus (the loci fitted apart) turned into the fit
// of `terms` with F = 0: the loci whose null allele `terms` holds at 0 get their observed
// allele frequencies, the Hardy-Weinberg maximum without null alleles.
ModelFit WithNullsHeld(const std::vector<LocusGenotypeTally>& loci, ModelFit apart,
                       const ModelTerms& terms);

// Whether the likelihood rises as F rises from 0 at `atZero`, a fit with F = 0 and null alleles
// free: EM moves F up from 1e-9 exactly then. When it does not, `atZero` is a maximum of the
// model with both terms free, on its boundary.
bool InbreedingWouldRise(const std::vector<LocusGenotypeTally>& loci, const ModelFit& atZero);

// A visible allele's share of the scored copies: the Hardy-Weinberg estimate without nulls.
double ObservedFrequency(const LocusGenotypeTally& t, std::size_t allele);

// The log-likelihood of one locus, `p` its visible allele frequencies, `pn` its null allele's.
// With `blanks` false the blanks are left aside: a model without null alleles has no
// probability for them.
double LocusLogLikelihood(const LocusGenotypeTally& t, double f, const double* p, double pn,
                          bool blanks = true);

// The log-likelihood of the genotypes under the given parameters (the multinomial coefficient
// left out, the factor 2 of heterozygotes kept).
double LogLikelihood(const std::vector<LocusGenotypeTally>& loci, double f,
                     const std::vector<std::vector<double>>& visible,
                     const std::vector<double>& nulls);

}  // namespace tavrelle
