#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "nulls/BootstrapSampler.h"
#include "nulls/JointNullInbreeding.h"
#include "nulls/LocusGenotypeTally.h"
#include "population/Table.h"

namespace tavrelle {

// The eight null allele estimates of a locus: the four closed formulas (by NullMethod), then
// the four likelihood ones (the last added after the others, so it comes last in every list).
inline constexpr std::size_t kEstimateCount = 8;
enum LikelihoodEstimate : std::size_t { kEm = 4, kEmMissing = 5, kJoint = 6, kEmFailure = 7 };
inline constexpr std::array<const char*, kEstimateCount> kEstimateKeys = {
    "velmaret", "chakraborty", "brookfield1", "brookfield2",
    "em",       "em_missing",  "joint",       "em_failure"};
inline constexpr std::array<const char*, kEstimateCount> kEstimateLabels = {
    "Velmaret", "Chakraborty",        "Brookfield 1", "Brookfield 2",
    "EM",       "EM, blanks missing", "Joint with F", "EM with failures"};

struct LikelihoodSettings {
    std::uint64_t seed = 0;
    int replicates = 1000;  // bootstrap replicates; 0 for no intervals
    unsigned threads = 0;   // 0: every core
};

struct LocusEstimates {
    std::string name;
    std::array<double, kEstimateCount> estimates{};  // NaN where the locus gives none
    std::array<Interval, kEstimateCount> intervals{};
    double failureRate = kNoValue;  // em_failure's rate of failed amplifications
    Interval failureInterval{kNoValue, kNoValue};
};

struct InbreedingResult {
    double f = 0;  // JointFit::reported
    Interval interval{kNoValue, kNoValue};
    NestedModel model = NestedModel::kNeither;
    std::array<double, kNestedModelCount> logLikelihoods{};  // by NestedModel
    std::array<int, kNestedModelCount> parameters{};  // free parameters by NestedModel, for AIC
    std::string verdict;
};

struct PopulationEstimates {
    std::vector<LocusEstimates> loci;
    InbreedingResult inbreeding;
    int replicates = 0;
};

// Every estimate of every locus of a population, the population's inbreeding coefficient, and
// 95% percentile intervals from a bootstrap over individuals (the same individuals at every
// locus, so that F sees them whole). The bootstrap has its own random numbers (BootstrapSampler),
// so the analysis's generator is never touched and the result does not depend on the threads.
PopulationEstimates EstimateNullAllelesAndInbreeding(const std::vector<std::string>& locusNames,
                                                     const std::vector<CodedLocus>& loci,
                                                     const LikelihoodSettings& settings);

// The same from the population table as the check leaves it: two heading rows (locus names in
// the second), then one row per individual with two allele columns per locus from column 2.
PopulationEstimates EstimateNullAllelesAndInbreeding(const Table& population,
                                                     const LikelihoodSettings& settings);

}  // namespace tavrelle
