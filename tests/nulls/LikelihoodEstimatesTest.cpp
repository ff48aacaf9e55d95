#include "nulls/LikelihoodEstimates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "../support/GenotypeCounts.h"
#include "Simulator.h"
#include "nulls/EstimateWords.h"
#include "nulls/NullAlleleEm.h"
#include "nulls/NullAlleleEstimates.h"

namespace tavrelle {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(NullInbreedingModel, LogLikelihoodMatchesHandWorkedCases) {
    struct Case {
        const char* what;
        LocusGenotypeTally locus;
        double f;
        std::vector<double> visible;
        double null;
        double expected;
    };
    const std::vector<Case> cases = {
        // het 0.9 * 2 * 0.5 * 0.3; hom 0.1 * 0.5 + 0.9 * (0.25 + 0.2); blank 0.1 * 0.2 + 0.9 * 0.04
        {"all three kinds",
         Tally({{100, 102, 1}, {100, 100, 1}, {0, 0, 1}}),
         0.1,
         {0.5, 0.3},
         0.2,
         std::log(0.27) + std::log(0.455) + std::log(0.056)},
        {"Hardy-Weinberg, no nulls",
         Tally({{100, 102, 2}, {102, 102, 1}}),
         0,
         {0.6, 0.4},
         0,
         2 * std::log(0.48) + std::log(0.16)},
        {"a blank without null alleles is impossible",
         Tally({{100, 102, 2}, {0, 0, 1}}),
         0.2,
         {0.6, 0.4},
         0,
         -kInf},
        {"a one-allele genotype is left out",
         Tally({{100, 100, 1}, {100, 0, 3}}),
         0,
         {0.9},
         0.1,
         std::log(0.81 + 0.18)},
    };
    for (const Case& c : cases) {
        const double actual = LogLikelihood({c.locus}, c.f, {c.visible}, {c.null});
        if (std::isinf(c.expected))
            EXPECT_EQ(actual, c.expected) << c.what;
        else
            EXPECT_NEAR(actual, c.expected, 1e-12) << c.what;
    }
}

TEST(NullAlleleEm, ReachesClosedFormMaxima) {
    struct Case {
        const char* what;
        LocusGenotypeTally locus;
        double em;
        double emMissing;
    };
    const std::vector<Case> cases = {
        // Heterozygotes A/B and blanks only: n log((1 - p_n)^2 / 2) + 2 B log p_n is largest at
        // p_n = B / (n + B).
        {"30 heterozygotes, 10 blanks", Tally({{100, 104, 30}, {0, 0, 10}}), 0.25, 0.0},
        // One allele: homozygotes 1 - p_n^2, blanks p_n^2, so p_n = sqrt(B / (H + B)).
        {"30 homozygotes, 10 blanks", Tally({{120, 120, 30}, {0, 0, 10}}), 0.5, kNoValue},
        {"only heterozygotes", Tally({{100, 104, 8}, {100, 106, 4}, {104, 106, 4}}), 0.0, 0.0},
    };
    for (const Case& c : cases) {
        EXPECT_NEAR(EmNullFrequency(c.locus), c.em, 1e-7) << c.what;
        if (!std::isnan(c.emMissing)) {
            EXPECT_NEAR(EmMissingNullFrequency(c.locus), c.emMissing, 1e-7) << c.what;
        }
    }
    EXPECT_TRUE(std::isnan(EmNullFrequency(Tally({}))));
}

// `loci` loci, the first `nullLoci` of them (all by default) with the null allele frequency.
simulate::SimulatedData Simulated(double inbreeding, double nullFrequency, int samples, int loci,
                                  std::uint64_t seed, int nullLoci = 1000) {
    simulate::SimulationParameters parameters;
    parameters.seed = seed;
    parameters.sample_counts = {samples};
    parameters.inbreeding = inbreeding;
    for (int l = 0; l < loci; ++l) {
        simulate::LocusRequest request;
        request.null_frequency = l < nullLoci ? nullFrequency : 0.0;
        parameters.loci.push_back(
            simulate::ResolveLocus(request, seed, static_cast<std::size_t>(l)));
    }
    return simulate::Simulate(parameters);
}

std::vector<CodedLocus> Coded(const simulate::SimulatedData& data) {
    std::vector<CodedLocus> loci;
    for (std::size_t l = 0; l < data.loci.size(); ++l) {
        std::vector<std::pair<Int16, Int16>> sizes;
        for (const simulate::Sample& s : data.populations[0].samples)
            sizes.emplace_back(static_cast<Int16>(s.scored[l].first),
                               static_cast<Int16>(s.scored[l].second));
        loci.push_back(CodeLocus(sizes));
    }
    return loci;
}

std::vector<LocusGenotypeTally> Tallies(const std::vector<CodedLocus>& loci) {
    std::vector<LocusGenotypeTally> tallies;
    for (const CodedLocus& locus : loci)
        tallies.push_back(TallyLocus(locus, std::vector<int>(locus.genotypes.size(), 1)));
    return tallies;
}

// At an interior maximum the log-likelihood does not change to first order along any direction
// that stays on the simplex (one frequency up, another down) nor along F.
TEST(NullInbreedingModel, FixedPointIsAStationaryPoint) {
    const std::vector<LocusGenotypeTally> loci = Tallies(Coded(Simulated(0.1, 0.15, 300, 3, 5)));
    for (ModelTerms terms : {ModelTerms{true, true}, ModelTerms{true, false}}) {
        const ModelFit fit = FitModel(loci, terms);
        ASSERT_TRUE(fit.converged);
        const double h = 1e-6;
        auto slope = [&](auto&& shift) {
            ModelFit up = fit;
            ModelFit down = fit;
            shift(up, h);
            shift(down, -h);
            return (LogLikelihood(loci, up.f, up.visible, up.nulls) -
                    LogLikelihood(loci, down.f, down.visible, down.nulls)) /
                   (2 * h);
        };
        if (terms.inbreeding) {
            ASSERT_GT(fit.f, 0.01);
            EXPECT_NEAR(slope([](ModelFit& m, double d) { m.f += d; }), 0, 1e-3);
        }
        for (std::size_t l = 0; l < loci.size(); ++l) {
            ASSERT_GT(fit.nulls[l], 0.01);
            for (std::size_t i = 0; i < loci[l].alleles.size(); ++i) {
                if (fit.visible[l][i] < 1e-3) continue;
                EXPECT_NEAR(slope([&](ModelFit& m, double d) {
                                m.visible[l][i] += d;
                                m.nulls[l] -= d;
                            }),
                            0, 1e-3)
                    << "locus " << l << " allele " << i;
            }
        }
    }
}

// Where a fit holds F or a null allele at 0, raising it (the null allele at the expense of the
// commonest visible allele) lowers the likelihood; and a fit started from another fit of the
// same data ends where the fit from the usual start does.
TEST(NullInbreedingModel, BoundaryMaximaAreMaximaWhateverTheStart) {
    struct Case {
        double inbreeding;
        double nullFrequency;
        int nullLoci;
        ModelTerms terms;
    };
    const std::vector<Case> cases = {
        {0.0, 0.0, 0, {true, true}},  // F and most null alleles at 0
        {0.15, 0.0, 0, {true, true}}, {0.15, 0.0, 0, {false, true}},
        {0.0, 0.2, 3, {true, true}},  {0.0, 0.0, 0, {true, false}},
    };
    const double h = 1e-5;
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "F " << c.inbreeding << ", null " << c.nullFrequency
                                        << ", terms " << c.terms.nulls << c.terms.inbreeding);
        const std::vector<LocusGenotypeTally> loci =
            Tallies(Coded(Simulated(c.inbreeding, c.nullFrequency, 150, 8, 21, c.nullLoci)));
        const ModelFit fit = FitModel(loci, c.terms);
        ASSERT_TRUE(fit.converged);
        const double at = fit.logLikelihood;
        if (c.terms.inbreeding && fit.f == 0) {
            EXPECT_LT(LogLikelihood(loci, h, fit.visible, fit.nulls), at);
        }
        for (std::size_t l = 0; l < loci.size(); ++l) {
            if (!c.terms.nulls || fit.nulls[l] > 0) continue;
            ModelFit up = fit;
            const auto commonest = std::max_element(up.visible[l].begin(), up.visible[l].end());
            *commonest -= h;
            up.nulls[l] += h;
            EXPECT_LT(LogLikelihood(loci, up.f, up.visible, up.nulls), at) << "locus " << l;
        }

        ModelFit elsewhere = fit;
        elsewhere.f = c.terms.inbreeding ? 0.3 : 0.0;
        const ModelFit again = FitModel(loci, c.terms, &elsewhere);
        EXPECT_NEAR(again.logLikelihood, at, 1e-7);
        EXPECT_NEAR(again.f, fit.f, 1e-5);
        for (std::size_t l = 0; l < loci.size(); ++l)
            EXPECT_NEAR(again.nulls[l], fit.nulls[l], 1e-5) << "locus " << l;
    }
}

TEST(JointNullInbreeding, RecoversInbreedingAndNullsFromSimulatedData) {
    struct Case {
        double inbreeding;
        double nullFrequency;
        int nullLoci;  // of 10
        NestedModel model;
    };
    const std::vector<Case> cases = {
        {0.15, 0.0, 0, NestedModel::kInbreeding},
        {0.0, 0.2, 10, NestedModel::kNulls},
        {0.1, 0.2, 3, NestedModel::kBoth},
        {0.0, 0.0, 0, NestedModel::kNeither},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "F " << c.inbreeding << ", null " << c.nullFrequency
                                        << " at " << c.nullLoci << " loci");
        const std::vector<LocusGenotypeTally> loci =
            Tallies(Coded(Simulated(c.inbreeding, c.nullFrequency, 400, 10, 11, c.nullLoci)));
        const JointFit joint = FitJointModel(loci);
        EXPECT_NEAR(joint.reported.f, c.inbreeding, 0.03);
        for (std::size_t l = 0; l < loci.size(); ++l) {
            const double truth = static_cast<int>(l) < c.nullLoci ? c.nullFrequency : 0.0;
            EXPECT_NEAR(joint.reported.nulls[l], truth, 0.06) << "locus " << l;
        }
        EXPECT_EQ(joint.chosen, c.model);
    }
}

TEST(JointNullInbreeding, ModelChoiceWeighsParametersAndSkipsImpossibleModels) {
    struct Case {
        std::array<double, 8> logLikelihoods;
        NestedModel chosen;
    };
    // Five loci, three with blanks: failure rates cost 3 parameters.
    const std::array<int, 8> parameters = {10, 15, 11, 16, 13, 18, 14, 19};
    const double no = -1000;  // a failure model far worse than the others
    const std::vector<Case> cases = {
        {{-100, -98, -99.5, -97.9, no, no, no, no}, NestedModel::kNeither},   // 5 more, 2 units
        {{-100, -90, -99.5, -89.9, no, no, no, no}, NestedModel::kNulls},     // AIC 210, 210
        {{-100, -99, -95, -94.9, no, no, no, no}, NestedModel::kInbreeding},  // 1 buys 5
        {{-kInf, -90, -kInf, -80, no, no, no, no}, NestedModel::kBoth},       // blanks rule out two
        // Blanks that only failures explain well: AIC 190 + 26 against 180 + 32.
        {{-kInf, -120, -kInf, -118, -90, -89.5, -89.8, -89.4}, NestedModel::kFailures},
        {{-kInf, -120, -kInf, -110, -90, -80, -89, -79.5}, NestedModel::kNullsFailures},
        {{-kInf, -120, -kInf, -110, -90, -89, -80, -79.5}, NestedModel::kInbreedingFailures},
        {{-kInf, -120, -kInf, -110, -90, -85, -85, -70}, NestedModel::kAll},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ChooseModel(c.logLikelihoods, parameters), c.chosen);
    // Without blanks the failure models cost nothing more and reach the same maxima, up to the
    // last digits of their fits: the simpler model wins the tie.
    EXPECT_EQ(ChooseModel({-100, -98, -95, -94.9, -100, -98, -95 + 1e-9, -94.9},
                          {10, 15, 11, 16, 10, 15, 11, 16}),
              NestedModel::kInbreeding);
}

TEST(LikelihoodEstimates, BootstrapIsReproducibleWhateverTheThreads) {
    const simulate::SimulatedData data = Simulated(0.1, 0.1, 60, 4, 3);
    const std::vector<std::string> names = {"A", "B", "C", "D"};
    const std::vector<CodedLocus> loci = Coded(data);
    auto run = [&](std::uint64_t seed, unsigned threads, int replicates) {
        return EstimateNullAllelesAndInbreeding(names, loci, {seed, replicates, threads});
    };
    const PopulationEstimates one = run(7, 1, 60);
    const PopulationEstimates three = run(7, 3, 60);
    const PopulationEstimates other = run(8, 2, 60);
    bool differs = false;
    for (std::size_t l = 0; l < loci.size(); ++l) {
        for (std::size_t e = 0; e < kEstimateCount; ++e) {
            const Interval a = one.loci[l].intervals[e];
            const Interval b = three.loci[l].intervals[e];
            EXPECT_EQ(a.low, b.low);
            EXPECT_EQ(a.high, b.high);
            EXPECT_LE(a.low, a.high);
            differs = differs || a.low != other.loci[l].intervals[e].low;
        }
    }
    EXPECT_TRUE(differs) << "another seed draws other samples";
    EXPECT_EQ(one.inbreeding.interval.low, three.inbreeding.interval.low);
    EXPECT_EQ(one.inbreeding.interval.high, three.inbreeding.interval.high);

    const PopulationEstimates none = run(7, 2, 0);
    EXPECT_TRUE(std::isnan(none.inbreeding.interval.low));
    EXPECT_EQ(none.loci[0].estimates, one.loci[0].estimates) << "points need no bootstrap";
}

TEST(LikelihoodEstimates, PrescribedEstimatesAreTheRunsOwn) {
    const std::vector<CodedLocus> loci = Coded(Simulated(0.0, 0.2, 80, 2, 9));
    const PopulationEstimates result =
        EstimateNullAllelesAndInbreeding({"A", "B"}, loci, {1, 0, 1});
    for (std::size_t l = 0; l < loci.size(); ++l) {
        GenotypeSet set;
        Int16 blanks = 0;
        for (const auto& [a, b] : loci[l].sizes) {
            if (a > 0 && b > 0) set.push_back({a, b, static_cast<Int16>(std::abs(a - b))});
            if (a == 0 && b == 0) ++blanks;
        }
        const std::array<double, 4> expected = CalculateNullAllele(set, blanks, false).estimates;
        for (std::size_t m = 0; m < 4; ++m)
            EXPECT_EQ(result.loci[l].estimates[m], expected[m]);
    }
}

// "No clear evidence of inbreeding" exactly where a model with F has an interval reaching 0.
TEST(InbreedingVerdict, SaysNoClearEvidenceWhenTheIntervalIncludesZero) {
    const double none = std::nan("");
    struct Case {
        NestedModel model;
        double low, high;
        bool noClearEvidence;
    };
    const Case cases[] = {
        {NestedModel::kInbreeding, 0.0, 0.123, true},  // the interval at the boundary
        {NestedModel::kBoth, -0.01, 0.2, true},
        {NestedModel::kInbreedingFailures, 0.0, 0.05, true},
        {NestedModel::kAll, 0.01, 0.05, false},
        {NestedModel::kFailures, 0.0, 0.1, false},
        {NestedModel::kInbreeding, 0.02, 0.2, false},
        {NestedModel::kBoth, 0.001, 0.1, false},
        {NestedModel::kInbreeding, none, none, false},  // no interval: nothing to judge by
        {NestedModel::kNulls, 0.0, 0.1, false},         // models without F say what they say
        {NestedModel::kNeither, 0.0, 0.1, false},
    };
    for (const Case& c : cases) {
        const std::string verdict = InbreedingVerdict(c.model, 0.05, c.low, c.high);
        EXPECT_EQ(verdict.rfind("No clear evidence of inbreeding", 0) == 0, c.noClearEvidence)
            << verdict;
        EXPECT_NE(verdict.find("F = 0.050"), std::string::npos) << verdict;
        // Exactly the models with failure rates read the blanks as failed amplifications.
        EXPECT_EQ(verdict.find("failed amplifications") != std::string::npos,
                  TermsOf(c.model).failures)
            << verdict;
    }
    EXPECT_NE(std::string(kNegativeEstimateNote).find("fewer homozygotes"), std::string::npos);
}

}  // namespace
}  // namespace tavrelle
