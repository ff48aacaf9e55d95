#pragma once

#include <string>
#include <vector>

#include "nulls/PopulationResult.h"
#include "nulls/StudySettings.h"

namespace tavrelle {

// What a study report is made from: the file, the settings and seed of the run, and every
// population's result in file order.
struct StudyReportInput {
    std::string file;
    std::string title;  // the data set's own title line
    StudySettings settings;
    bool clockSeed = true;
    const std::vector<PopulationResult>* populations = nullptr;
    int populationsInFile = 0;  // more than delivered when the run was cancelled
};

// One self-contained HTML page: the settings and seed, the overview table and heat map, then for
// every population and locus the two graphs as inline SVG, the probability table, the verdict
// texts and the estimates. No script, no external file.
std::string StudyReportHtml(const StudyReportInput& input);

}  // namespace tavrelle
