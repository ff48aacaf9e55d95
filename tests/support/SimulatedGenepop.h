#pragma once

#include <string>
#include <vector>

#include "Simulator.h"

namespace tavrelle::testing {

// A Genepop file of simulated populations: three loci of repeat 2, the first with alleles from
// 90 (so some under 100), the second with a null allele, all with a few missing alleles.
inline std::string SimulatedGenepop(const std::vector<int>& sampleCounts, std::uint64_t seed = 11) {
    simulate::SimulationParameters parameters;
    parameters.seed = seed;
    parameters.sample_counts = sampleCounts;
    parameters.title = "Simulated study";
    for (std::size_t l = 0; l < 3; ++l) {
        simulate::LocusRequest request;
        request.repeat = 2;
        request.missing = 0.03;
        if (l == 0) request.base = 90;
        if (l == 1) request.null_frequency = 0.2;
        parameters.loci.push_back(simulate::ResolveLocus(request, parameters.seed, l));
    }
    return simulate::FormatGenepop(simulate::Simulate(parameters));
}

}  // namespace tavrelle::testing
