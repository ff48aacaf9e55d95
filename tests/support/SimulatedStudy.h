#pragma once

#include <cstdint>
#include <vector>

#include "../support/SimulatedPopulation.h"
#include "run/PopulationResult.h"

namespace tavrelle {

// The populations of a simulated study as the store holds them: one per entry of `samples`,
// `loci` dinucleotide loci, the locus at `nullLocus` (if any) with a null allele of
// `nullFrequency`.
inline std::vector<StudyPopulation> SimulatedStudy(std::uint64_t seed, std::vector<int> samples,
                                                   int loci, int nullLocus = -1,
                                                   double nullFrequency = 0.2) {
    simulate::SimulationParameters parameters;
    parameters.seed = seed;
    parameters.sample_counts = std::move(samples);
    for (int l = 0; l < loci; ++l) {
        simulate::LocusRequest request;
        request.repeat = 2;
        if (l == nullLocus) request.null_frequency = nullFrequency;
        parameters.loci.push_back(
            simulate::ResolveLocus(request, parameters.seed, static_cast<std::size_t>(l)));
    }
    const simulate::SimulatedData data = simulate::Simulate(parameters);
    std::vector<StudyPopulation> populations;
    for (std::size_t p = 0; p < data.populations.size(); ++p)
        populations.push_back({static_cast<int>(p + 1), SimulatedPopulationTable(data, p)});
    return populations;
}

}  // namespace tavrelle
