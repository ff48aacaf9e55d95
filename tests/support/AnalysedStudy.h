#pragma once

#include <vector>

#include "SimulatedStudy.h"
#include "run/PopulationResult.h"
#include "run/StudyRun.h"

namespace tavrelle {

// Four simulated populations, one locus with a null allele, and a fifth that stops for want of
// a motif at one of its loci.
inline std::vector<PopulationResult> AnalysedStudy() {
    std::vector<StudyPopulation> populations = SimulatedStudy(11, {40, 35, 50, 30}, 3, 2, 0.3);
    RunSettings settings;
    settings.seed = 99;
    settings.repeatForAll = 2;
    settings.tableFolder = TAVRELLE_TABLE_DIR;
    settings.bootstrap = 0;
    std::vector<PopulationResult> results;
    RunStudy(populations, settings, [&](PopulationResult&& r) { results.push_back(std::move(r)); });
    PopulationResult stopped;
    stopped.number = 5;
    stopped.name = "Ridge, north";
    stopped.error = "Please select a Repeat Motif for all Loci";
    results.push_back(std::move(stopped));
    return results;
}

}  // namespace tavrelle
