#pragma once

#include <string>

#include "analysis/Confidence.h"
#include "results/GraphModel.h"

namespace tavrelle {

// One graph of a locus as an SVG element for a report: observed counts as crosses, the mean of
// the rounds as a red bar and the confidence interval as a red line per class. Unlike the graph
// windows, the count axis always starts at zero, so that every class, however small, is shown.
// A report holds thousands of graphs, so each is drawn small: whole-pixel coordinates, one path
// per kind of mark with the marks as markers at its points, the frame, titles and markers drawn
// once in GraphDefsSvg and the styles in kGraphSvgStyle, both of which the page must hold.
std::string GraphSvg(const GraphModel& graph);

// What every graph of a page refers to: the markers and the two kinds' frames and titles, at
// the run's confidence interval. Once per page, before the graphs.
std::string GraphDefsSvg(Confidence confidence);

// The legend the graphs share, drawn once.
std::string GraphLegendSvg();

// The CSS rules of the graphs' classes, for the page that holds them.
extern const char* const kGraphSvgStyle;

}  // namespace tavrelle
