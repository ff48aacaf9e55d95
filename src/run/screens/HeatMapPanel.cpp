#include "run/screens/HeatMapPanel.h"

#include <QPainter>
#include <utility>

#include "run/screens/HeatMapPainter.h"

namespace tavrelle {

HeatMapPanel::HeatMapPanel(QWidget* parent) : QWidget(parent) {}

void HeatMapPanel::SetDrawing(HeatMapDrawing drawing) {
    drawing_ = std::move(drawing);
    setFixedSize(static_cast<int>(drawing_.width) + 1, static_cast<int>(drawing_.height) + 1);
    update();
}

void HeatMapPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    DrawHeatMap(painter, QRectF(0, 0, drawing_.width, drawing_.height), drawing_);
}

}  // namespace tavrelle
