#pragma once

#include <string>

#include "results/GraphModel.h"

namespace tavrelle {

// One graph of a locus as an SVG element for a report: observed counts as crosses, the mean of
// the rounds as a red bar and the confidence interval as a red line per class. Unlike the graph
// windows, the count axis always starts at zero, so that every class, however small, is shown.
std::string GraphSvg(const GraphModel& graph);

}  // namespace tavrelle
