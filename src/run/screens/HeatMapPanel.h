#pragma once

#include <QWidget>

#include "run/StudyHeatMap.h"

namespace tavrelle {

// The heat map on screen, at its layout's size: put it in a scroll area for maps larger than
// the window.
class HeatMapPanel : public QWidget {
public:
    explicit HeatMapPanel(QWidget* parent = nullptr);
    void SetDrawing(HeatMapDrawing drawing);
    const HeatMapDrawing& Drawing() const { return drawing_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    HeatMapDrawing drawing_;
};

}  // namespace tavrelle
