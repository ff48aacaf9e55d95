#pragma once

#include <string>

#include "analysis/LocusTestResult.h"
#include "results/GraphModel.h"

namespace tavrelle {

// One of a locus's two graphs, from what its run found.
inline GraphModel LocusGraph(GraphModel::Kind kind, const std::string& populationName,
                             const LocusTestResult& locus) {
    const bool homozygotes = kind == GraphModel::Kind::Homozygotes;
    return GraphModel(kind, populationName, locus.name, locus.lowest,
                      homozygotes ? locus.observedHomozygotes : locus.observedDifferences,
                      homozygotes ? locus.randomHomozygotes : locus.randomDifferences,
                      homozygotes ? locus.meanHomozygotes : locus.meanDifferences);
}

}  // namespace tavrelle
