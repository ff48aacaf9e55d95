#include "nulls/NullFailureModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "../support/GenotypeCounts.h"
#include "../support/SimulatedPopulation.h"
#include "nulls/LikelihoodEstimates.h"
#include "nulls/NullAlleleEm.h"

namespace tavrelle {
namespace {

// A direct maximisation for two visible alleles, apart from EM: p_1 = (1 - r) s, p_2 =
// (1 - r)(1 - s), and (s, r, beta) searched on ever finer grids around the best point.
struct DirectMaximum {
    double r;
    double beta;
    double logLikelihood;
};

DirectMaximum MaximiseDirectly(const LocusGenotypeTally& t) {
    auto value = [&](double s, double r, double beta) {
        return FailureLogLikelihood(t, {(1 - r) * s, (1 - r) * (1 - s)}, r, beta);
    };
    double best[3] = {0.5, 0.1, 0.1};
    double width = 0.5;
    double top = value(best[0], best[1], best[2]);
    for (int round = 0; round < 60; ++round, width *= 0.7) {
        const double centre[3] = {best[0], best[1], best[2]};
        for (int i = -6; i <= 6; ++i)
            for (int j = -6; j <= 6; ++j)
                for (int k = -6; k <= 6; ++k) {
                    const double s = std::clamp(centre[0] + width * i / 6, 1e-9, 1 - 1e-9);
                    const double r = std::clamp(centre[1] + width * j / 6, 0.0, 1 - 1e-9);
                    const double beta = std::clamp(centre[2] + width * k / 6, 0.0, 1 - 1e-9);
                    const double v = value(s, r, beta);
                    if (v > top) {
                        top = v;
                        best[0] = s;
                        best[1] = r;
                        best[2] = beta;
                    }
                }
    }
    return {best[1], best[2], top};
}

TEST(NullFailureModel, LogLikelihoodMatchesHandWorkedCase) {
    // het 0.8 * 2 * 0.5 * 0.3; hom 0.8 * (0.25 + 0.2); blank 0.2 + 0.8 * 0.04.
    const LocusGenotypeTally t = Tally({{100, 102, 1}, {100, 100, 1}, {0, 0, 1}});
    EXPECT_NEAR(FailureLogLikelihood(t, {0.5, 0.3}, 0.2, 0.2),
                std::log(0.24) + std::log(0.36) + std::log(0.232), 1e-12);
}

TEST(NullFailureModel, AgreesWithDirectMaximisationOnSmallLoci) {
    struct Case {
        const char* what;
        LocusGenotypeTally locus;
    };
    const std::vector<Case> cases = {
        {"blanks, no homozygote excess: all failures",
         Tally({{100, 102, 20}, {100, 100, 5}, {102, 102, 5}, {0, 0, 6}})},
        {"homozygote excess and many blanks: both",
         Tally({{100, 102, 10}, {100, 100, 12}, {102, 102, 8}, {0, 0, 10}})},
        {"strong excess, few blanks: no failure, em's fit",
         Tally({{100, 102, 4}, {100, 100, 20}, {102, 102, 16}, {0, 0, 2}})},
        {"a single blank", Tally({{100, 102, 15}, {100, 100, 9}, {102, 102, 3}, {0, 0, 1}})},
    };
    for (const Case& c : cases) {
        const FailureFit fit = FitFailureModel(c.locus);
        const DirectMaximum direct = MaximiseDirectly(c.locus);
        EXPECT_TRUE(fit.converged) << c.what;
        EXPECT_GE(fit.logLikelihood, direct.logLikelihood - 1e-9) << c.what;
        EXPECT_NEAR(fit.nullFrequency, direct.r, 2e-4) << c.what;
        EXPECT_NEAR(fit.failureRate, direct.beta, 2e-4) << c.what;
    }
}

TEST(NullFailureModel, SplitsBlanksBetweenFailuresAndNullHomozygotes) {
    // Fewer homozygotes among the scored samples than Hardy-Weinberg expects (18 of 40 at
    // p = 0.5) gives r = 0, so every blank is a failure: beta = 8 / 48.
    const FailureFit failures =
        FitFailureModel(Tally({{100, 102, 22}, {100, 100, 9}, {102, 102, 9}, {0, 0, 8}}));
    EXPECT_EQ(failures.nullFrequency, 0.0);
    EXPECT_NEAR(failures.failureRate, 8.0 / 48, 1e-9);

    // The scored samples alone ask for r^2 well above the share of blanks: beta = 0 and the fit
    // is em's, which counts every blank as a null homozygote.
    const LocusGenotypeTally excess =
        Tally({{100, 102, 4}, {100, 100, 20}, {102, 102, 16}, {0, 0, 2}});
    const FailureFit nulls = FitFailureModel(excess);
    EXPECT_EQ(nulls.failureRate, 0.0);
    EXPECT_NEAR(nulls.nullFrequency, EmNullFrequency(excess), 1e-7);

    // In between, the share of blanks is fitted exactly: beta + (1 - beta) r^2 = B / N.
    const LocusGenotypeTally both =
        Tally({{100, 102, 10}, {100, 100, 12}, {102, 102, 8}, {0, 0, 10}});
    const FailureFit mixed = FitFailureModel(both);
    EXPECT_GT(mixed.nullFrequency, 0.0);
    EXPECT_GT(mixed.failureRate, 0.0);
    const double r = mixed.nullFrequency;
    EXPECT_NEAR(mixed.failureRate + (1 - mixed.failureRate) * r * r, 10.0 / 40, 1e-8);
}

TEST(NullFailureModel, LociWithoutScoredSamplesGiveNoEstimate) {
    const FailureFit blanks = FitFailureModel(Tally({{0, 0, 5}}));
    EXPECT_TRUE(std::isnan(blanks.nullFrequency));
    EXPECT_TRUE(std::isnan(blanks.failureRate));
    EXPECT_TRUE(std::isnan(FitFailureModel(Tally({})).nullFrequency));
}

// Failed amplifications alone must not read as null alleles, which `em` does; null alleles
// alone must still be found.
TEST(NullFailureModel, TellsFailuresFromNullAllelesOnSimulatedLoci) {
    struct Case {
        const char* what;
        double nullFrequency;
        double missing;
    };
    const std::vector<Case> cases = {
        {"25% failures, no null allele", 0.0, 0.25},
        {"null allele 0.2, no failures", 0.2, 0.0},
        {"null allele 0.2 and 15% failures", 0.2, 0.15},
    };
    for (const Case& c : cases) {
        simulate::SimulationParameters parameters;
        parameters.seed = 41;
        parameters.sample_counts = {2000};
        simulate::LocusRequest request;
        request.null_frequency = c.nullFrequency;
        request.missing = c.missing;
        parameters.loci.push_back(simulate::ResolveLocus(request, parameters.seed, 0));
        const simulate::SimulatedData data = simulate::Simulate(parameters);
        std::vector<std::pair<Int16, Int16>> sizes;
        for (const simulate::Sample& s : data.populations[0].samples)
            sizes.emplace_back(static_cast<Int16>(s.scored[0].first),
                               static_cast<Int16>(s.scored[0].second));
        const LocusGenotypeTally t =
            TallyLocus(CodeLocus(sizes), std::vector<int>(sizes.size(), 1));
        const FailureFit fit = FitFailureModel(t);
        EXPECT_NEAR(fit.nullFrequency, c.nullFrequency, 0.04) << c.what;
        EXPECT_NEAR(fit.failureRate, c.missing, 0.03) << c.what;
        if (c.nullFrequency == 0) {
            EXPECT_GT(EmNullFrequency(t), 0.3) << c.what;
        }
    }
}

// The case: no null allele, 25% random failures at some loci. `em` reads the failures
// as null alleles; `em_failure` and its interval do not, and the failure rate is found. A locus
// without blanks has em_failure = em and no failure.
TEST(NullFailureModel, FailuresAloneDoNotReadAsNullAllelesInThePopulationEstimates) {
    simulate::SimulationParameters parameters;
    parameters.seed = 77;
    parameters.sample_counts = {300};
    for (std::size_t l = 0; l < 4; ++l) {
        simulate::LocusRequest request;
        request.missing = l < 3 ? 0.25 : 0.0;
        parameters.loci.push_back(simulate::ResolveLocus(request, parameters.seed, l));
    }
    const PopulationEstimates result = EstimateNullAllelesAndInbreeding(
        SimulatedPopulationTable(simulate::Simulate(parameters)), {5, 200, 2});
    for (std::size_t l = 0; l < 3; ++l) {
        const LocusEstimates& locus = result.loci[l];
        EXPECT_GT(locus.estimates[kEm], 0.2) << locus.name;
        EXPECT_LT(locus.estimates[kEmFailure], 0.03) << locus.name;
        EXPECT_LT(locus.intervals[kEmFailure].low, 0.01) << locus.name;
        // Three standard errors of a share of 300 samples; coverage is for docs/validation.md.
        EXPECT_NEAR(locus.failureRate, 0.25, 0.075) << locus.name;
        EXPECT_LT(locus.failureInterval.low, locus.failureRate) << locus.name;
        EXPECT_GT(locus.failureInterval.high, locus.failureRate) << locus.name;
    }
    const LocusEstimates& clean = result.loci[3];
    EXPECT_EQ(clean.estimates[kEmFailure], clean.estimates[kEm]);
    EXPECT_EQ(clean.failureRate, 0.0);
}

// One population's tallies: per locus its null allele frequency and its failure rate.
std::vector<LocusGenotypeTally> SimulatedTallies(
    std::uint64_t seed, int samples, double inbreeding,
    const std::vector<std::pair<double, double>>& loci) {
    simulate::SimulationParameters parameters;
    parameters.seed = seed;
    parameters.sample_counts = {samples};
    parameters.inbreeding = inbreeding;
    for (std::size_t l = 0; l < loci.size(); ++l) {
        simulate::LocusRequest request;
        request.null_frequency = loci[l].first;
        request.missing = loci[l].second;
        parameters.loci.push_back(simulate::ResolveLocus(request, seed, l));
    }
    const simulate::SimulatedData data = simulate::Simulate(parameters);
    std::vector<LocusGenotypeTally> tallies;
    for (std::size_t l = 0; l < loci.size(); ++l) {
        std::vector<std::pair<Int16, Int16>> sizes;
        for (const simulate::Sample& s : data.populations[0].samples)
            sizes.emplace_back(static_cast<Int16>(s.scored[l].first),
                               static_cast<Int16>(s.scored[l].second));
        tallies.push_back(TallyLocus(CodeLocus(sizes), std::vector<int>(sizes.size(), 1)));
    }
    return tallies;
}

// Without F the joint model's failure fit is em_failure locus by locus: two ways to the same
// maximum.
TEST(JointModelWithFailures, WithoutInbreedingAgreesWithEmFailure) {
    const std::vector<LocusGenotypeTally> loci =
        SimulatedTallies(5, 150, 0.0, {{0.0, 0.2}, {0.2, 0.0}, {0.15, 0.1}, {0.0, 0.0}});
    const ModelFit fit = FitWithFailures(loci, TermsOf(NestedModel::kNullsFailures));
    for (std::size_t l = 0; l < loci.size(); ++l) {
        const FailureFit alone = FitFailureModel(loci[l]);
        EXPECT_NEAR(fit.nulls[l], alone.nullFrequency, 1e-5) << "locus " << l;
        EXPECT_NEAR(fit.failures[l], alone.failureRate, 1e-5) << "locus " << l;
    }
}

// Simulated truth, 800 samples of 8 loci: the model chosen tells inbreeding, null alleles and
// failures apart, and its fit finds them (a share of 800 samples has a standard error of about
// 0.015; F and r, estimated from homozygote excesses, about twice that).
TEST(JointModelWithFailures, TellsInbreedingNullAllelesAndFailuresApart) {
    struct Case {
        const char* what;
        double inbreeding;
        std::pair<double, double> odd, even;  // null, failures at the odd and even loci
        NestedModel chosen;
    };
    const std::vector<Case> cases = {
        {"failures only", 0.0, {0.0, 0.25}, {0.0, 0.0}, NestedModel::kFailures},
        {"nulls only", 0.0, {0.2, 0.0}, {0.0, 0.0}, NestedModel::kNulls},
        {"nulls and failures", 0.0, {0.2, 0.0}, {0.0, 0.2}, NestedModel::kNullsFailures},
        {"inbreeding and failures", 0.15, {0.0, 0.2}, {0.0, 0.0}, NestedModel::kInbreedingFailures},
        {"all three", 0.15, {0.2, 0.0}, {0.0, 0.2}, NestedModel::kAll},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<std::pair<double, double>> truth;
        for (int l = 0; l < 8; ++l)
            truth.push_back(l % 2 ? c.odd : c.even);
        const std::vector<LocusGenotypeTally> loci = SimulatedTallies(19, 800, c.inbreeding, truth);
        const JointFit joint = FitJointModel(loci);
        EXPECT_EQ(joint.chosen, c.chosen)
            << kNestedModelNames[static_cast<std::size_t>(joint.chosen)];
        const ModelFit& full = joint.fits[static_cast<std::size_t>(NestedModel::kAll)];
        EXPECT_NEAR(full.f, c.inbreeding, 0.04);
        for (std::size_t l = 0; l < loci.size(); ++l) {
            EXPECT_NEAR(full.nulls[l], truth[l].first, 0.06) << "locus " << l;
            EXPECT_NEAR(full.failures[l], truth[l].second, 0.05) << "locus " << l;
        }
    }
}

}  // namespace
}  // namespace tavrelle
