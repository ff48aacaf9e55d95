#pragma once

#include <string>
#include <vector>

#include "base/XmlText.h"
#include "run/EstimateColour.h"
#include "run/StudyTable.h"

namespace tavrelle {

// The heat map of a study as a list of boxes and texts in points, so that the screen, the saved
// images and the HTML report draw the same picture from one layout.
struct HeatMapBox {
    double x = 0, y = 0, width = 0, height = 0;
    Rgb fill;
    bool hatched = false;  // a population that stopped
};

struct HeatMapText {
    enum class Anchor { Start, Middle, End };
    double x = 0, y = 0;  // the baseline point the anchor refers to
    std::string text;
    double size = 10;
    Anchor anchor = Anchor::Start;
    bool vertical = false;  // read bottom to top
    bool bold = false;
    Rgb colour;
};

struct HeatMapDrawing {
    double width = 0;
    double height = 0;
    std::vector<HeatMapBox> boxes;
    std::vector<HeatMapText> texts;
};

// Populations down, loci across, each cell coloured by the estimate and marked N (null allele),
// S (stutter) and D (large allele drop-out); a legend below.
HeatMapDrawing LayOutHeatMap(const StudyTable& table);

// The drawing as a standalone SVG element, every text escaped.
std::string HeatMapSvg(const HeatMapDrawing& drawing);

}  // namespace tavrelle
