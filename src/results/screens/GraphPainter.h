#pragma once

#include <QRectF>

#include "results/GraphModel.h"

class QPainter;

namespace tavrelle {

// Draws one graph into `target`, whose size stands for the view's panel in millimetres. The
// screen, the saved images, PDF, SVG and the printer all draw through here, so they draw the
// same graph.
void DrawGraph(QPainter& painter, const QRectF& target, const GraphModel& graph,
               const GraphView& view);

}  // namespace tavrelle
