#include "nulls/LikelihoodEstimates.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include "base/CpuCount.h"
#include "base/Numbers.h"
#include "nulls/NullAlleleEm.h"
#include "nulls/NullAlleleEstimates.h"
#include "nulls/NullFailureModel.h"

namespace tavrelle {

namespace {

// The eight estimates and the failure rate of every locus and F, for the sample drawn with
// `multiplicity`.
struct SampleEstimates {
    std::vector<std::array<double, kEstimateCount>> loci;
    std::vector<double> failureRates;
    double f = kNoValue;
};

// The four closed formulas from a tally, with the arithmetic of the run's own estimates.
std::array<double, 4> PrescribedEstimates(const LocusGenotypeTally& tally) {
    try {
        const std::int32_t n =
            NarrowCount(static_cast<long long>(tally.Scored()), CountWidth::Bits32);
        if (n == 0) return {};  // no genotype: the run leaves every estimate at 0
        std::vector<ClassCounts> classes;
        for (std::size_t i = 0; i < tally.alleles.size(); ++i) {
            const auto homozygotes = static_cast<long long>(tally.homozygotes[i]);
            const auto heterozygotes = static_cast<long long>(tally.heterozygousCopies[i]);
            if (homozygotes + heterozygotes > 0)
                classes.push_back({tally.alleles[i], NarrowCount(homozygotes, CountWidth::Bits32),
                                   NarrowCount(heterozygotes, CountWidth::Bits32)});
        }
        const std::int32_t h2 =
            NarrowCount(2 * static_cast<long long>(tally.heterozygotes), CountWidth::Bits32);
        return ClosedFormEstimates(
            classes, n, h2, NarrowCount(static_cast<long long>(tally.blanks), CountWidth::Bits32),
            nullptr, CountWidth::Bits32);
    } catch (const ProgramError&) {
        // A sample where a formula has no value (a negative square root, an overflow).
        return {kNoValue, kNoValue, kNoValue, kNoValue};
    }
}

// A replicate's fit of the model reported for the whole sample, started from the sample's fit;
// `em` is the replicate's fit with null alleles alone.
ModelFit FitReplicate(const std::vector<LocusGenotypeTally>& tallies, const JointFit& sample,
                      const ModelFit& em) {
    const ModelTerms& terms = sample.reportedTerms;
    if (sample.reported.f == 0) {
        // Where the sample's F lies on the boundary and this replicate's does too, the model is
        // the loci's own Hardy-Weinberg fits.
        const ModelFit atZero = WithNullsHeld(tallies, em, terms);
        if (!InbreedingWouldRise(tallies, atZero)) return atZero;
    }
    return FitModel(tallies, terms, &sample.reported);
}

// The whole sample's estimates fill `joint`; a replicate fits the model reported there.
SampleEstimates Estimate(const std::vector<CodedLocus>& loci, const std::vector<int>& multiplicity,
                         JointFit* joint, const JointFit* sample = nullptr) {
    SampleEstimates result;
    thread_local std::vector<LocusGenotypeTally>
        tallies;  // storage kept from replicate to replicate
    tallies.resize(loci.size());
    for (std::size_t l = 0; l < loci.size(); ++l)
        TallyLocus(loci[l], multiplicity, tallies[l]);
    const ModelFit em = FitModel(tallies, {.nulls = true, .inbreeding = false});
    for (std::size_t l = 0; l < loci.size(); ++l) {
        const LocusGenotypeTally& tally = tallies[l];
        std::array<double, kEstimateCount> e{};
        const std::array<double, 4> prescribed = PrescribedEstimates(tally);
        std::copy(prescribed.begin(), prescribed.end(), e.begin());
        e[kEm] = tally.Individuals() > 0 ? em.nulls[l] : kNoValue;
        // Without blanks the two models are one.
        e[kEmMissing] = tally.blanks > 0 ? EmMissingNullFrequency(tally) : e[kEm];
        // Without blanks no sample failed, and the model is `em`'s.
        double failureRate = tally.Individuals() > 0 ? 0.0 : kNoValue;
        e[kEmFailure] = e[kEm];
        if (tally.blanks > 0) {
            const FailureFit failure = FitFailureModel(tally);
            e[kEmFailure] = failure.nullFrequency;
            failureRate = failure.failureRate;
        }
        result.loci.push_back(e);
        result.failureRates.push_back(failureRate);
    }
    ModelFit reported;
    if (joint) {
        *joint = FitJointModel(tallies);
        reported = joint->reported;
    } else {
        reported = FitReplicate(tallies, *sample, em);
    }
    result.f = reported.f;
    for (std::size_t l = 0; l < loci.size(); ++l)
        result.loci[l][kJoint] = tallies[l].Individuals() > 0 ? reported.nulls[l] : kNoValue;
    return result;
}

}  // namespace

PopulationEstimates EstimateNullAllelesAndInbreeding(const std::vector<std::string>& locusNames,
                                                     const std::vector<CodedLocus>& loci,
                                                     const LikelihoodSettings& settings) {
    const std::size_t individuals = loci.empty() ? 0 : loci.front().genotypes.size();
    PopulationEstimates result;
    JointFit joint;
    const SampleEstimates whole = Estimate(loci, std::vector<int>(individuals, 1), &joint);

    // Replicate r's values stand at index r whatever thread computed them: the estimates by
    // locus, then the failure rates, then F.
    const std::size_t replicates = static_cast<std::size_t>(std::max(0, settings.replicates));
    const std::size_t failureSlots = loci.size() * kEstimateCount;
    const std::size_t slots = failureSlots + loci.size() + 1;
    std::vector<std::vector<double>> drawn(slots, std::vector<double>(replicates, kNoValue));
    auto work = [&](std::size_t from, std::size_t to) {
        std::vector<int> multiplicity(individuals);
        for (std::size_t r = from; r < to; ++r) {
            BootstrapSampler(settings.seed, r).Draw(multiplicity);
            const SampleEstimates sample = Estimate(loci, multiplicity, nullptr, &joint);
            for (std::size_t l = 0; l < loci.size(); ++l)
                for (std::size_t e = 0; e < kEstimateCount; ++e)
                    drawn[l * kEstimateCount + e][r] = sample.loci[l][e];
            for (std::size_t l = 0; l < loci.size(); ++l)
                drawn[failureSlots + l][r] = sample.failureRates[l];
            drawn[slots - 1][r] = sample.f;
        }
    };
    const std::size_t cores =
        settings.threads > 0 ? settings.threads : static_cast<std::size_t>(AvailableCpuCount());
    const std::size_t threads = std::max<std::size_t>(1, std::min(cores, replicates));
    std::vector<std::thread> pool;
    for (std::size_t t = 1; t < threads; ++t)
        pool.emplace_back(work, replicates * t / threads, replicates * (t + 1) / threads);
    work(0, replicates / threads);
    for (std::thread& thread : pool)
        thread.join();

    for (std::size_t l = 0; l < loci.size(); ++l) {
        LocusEstimates locus;
        locus.name = l < locusNames.size() ? locusNames[l] : "";
        locus.estimates = whole.loci[l];
        for (std::size_t e = 0; e < kEstimateCount; ++e)
            locus.intervals[e] = PercentileInterval(drawn[l * kEstimateCount + e]);
        locus.failureRate = whole.failureRates[l];
        locus.failureInterval = PercentileInterval(drawn[failureSlots + l]);
        result.loci.push_back(std::move(locus));
    }
    InbreedingResult& inbreeding = result.inbreeding;
    inbreeding.f = whole.f;
    inbreeding.interval = PercentileInterval(drawn[slots - 1]);
    inbreeding.model = joint.chosen;
    inbreeding.logLikelihoods = joint.logLikelihoods;
    inbreeding.parameters = joint.parameters;
    inbreeding.verdict = InbreedingVerdict(joint.chosen, inbreeding.f, inbreeding.interval.low,
                                           inbreeding.interval.high);
    result.replicates = static_cast<int>(replicates);
    return result;
}

PopulationEstimates EstimateNullAllelesAndInbreeding(const Table& population,
                                                     const LikelihoodSettings& settings) {
    std::vector<std::string> names;
    std::vector<CodedLocus> loci;
    for (int column = 2; column + 1 < population.ColumnCount(); column += 2) {
        names.push_back(population.Cell(1, column));
        std::vector<std::pair<Int16, Int16>> sizes;
        for (std::int64_t row = 2; row < population.RecordCount(); ++row) {
            try {
                sizes.emplace_back(TextToInt16(population.Cell(row, column)),
                                   TextToInt16(population.Cell(row, column + 1)));
            } catch (const ProgramError&) {
                sizes.emplace_back(1, 0);  // not a size: left out, as a one-allele genotype is
            }
        }
        loci.push_back(CodeLocus(std::move(sizes)));
    }
    return EstimateNullAllelesAndInbreeding(names, loci, settings);
}

}  // namespace tavrelle
