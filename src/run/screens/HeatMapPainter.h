#pragma once

#include <QRectF>
#include <string>

#include "run/StudyHeatMap.h"

class QPainter;

namespace tavrelle {

// Draws the heat map into `target`, scaled to fit and kept in proportion. The screen, PNG, SVG
// and PDF all draw through here.
void DrawHeatMap(QPainter& painter, const QRectF& target, const HeatMapDrawing& drawing);

// Saves the heat map under `path`; the extension chooses PNG, SVG or PDF. False when the file
// could not be written or the extension is none of those.
bool SaveHeatMap(const HeatMapDrawing& drawing, const std::string& path);

}  // namespace tavrelle
