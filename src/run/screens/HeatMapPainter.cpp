#include "run/screens/HeatMapPainter.h"

#include <QFileInfo>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>

namespace tavrelle {

namespace {

QColor ToQColor(const Rgb& colour) {
    return QColor(colour.red, colour.green, colour.blue);
}

}  // namespace

void DrawHeatMap(QPainter& painter, const QRectF& target, const HeatMapDrawing& drawing) {
    if (drawing.width <= 0 || drawing.height <= 0) return;
    const double scale = std::min(target.width() / drawing.width, target.height() / drawing.height);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.translate(target.topLeft());
    painter.scale(scale, scale);
    painter.fillRect(QRectF(0, 0, drawing.width, drawing.height), Qt::white);
    for (const HeatMapBox& box : drawing.boxes) {
        const QRectF rect(box.x, box.y, box.width, box.height);
        painter.setPen(QPen(Qt::white, 1));
        painter.setBrush(box.hatched ? QBrush(QColor(170, 170, 170), Qt::BDiagPattern)
                                     : QBrush(ToQColor(box.fill)));
        if (box.hatched) painter.fillRect(rect, QColor(221, 221, 221));
        painter.drawRect(rect);
    }
    for (const HeatMapText& text : drawing.texts) {
        QFont font("Sans Serif");
        font.setPixelSize(static_cast<int>(text.size));  // layout units are pixels
        font.setBold(text.bold);
        painter.setFont(font);
        painter.setPen(ToQColor(text.colour));
        const QString shown = QString::fromStdString(text.text);
        const double width = painter.fontMetrics().horizontalAdvance(shown);
        double dx = 0;
        if (text.anchor == HeatMapText::Anchor::Middle) dx = -width / 2;
        if (text.anchor == HeatMapText::Anchor::End) dx = -width;
        painter.save();
        painter.translate(text.x, text.y);
        if (text.vertical) painter.rotate(-90);
        painter.drawText(QPointF(dx, 0), shown);
        painter.restore();
    }
    painter.restore();
}

bool SaveHeatMap(const HeatMapDrawing& drawing, const std::string& path) {
    const QString file = QString::fromStdString(path);
    const QString suffix = QFileInfo(file).suffix().toLower();
    const QSizeF size(drawing.width, drawing.height);
    if (suffix == "svg") {
        QSvgGenerator svg;
        svg.setFileName(file);
        svg.setSize(size.toSize());
        svg.setViewBox(QRectF(QPointF(0, 0), size));
        svg.setTitle("Study overview heat map");
        QPainter painter(&svg);
        DrawHeatMap(painter, QRectF(QPointF(0, 0), size), drawing);
        painter.end();
        return QFileInfo::exists(file);
    }
    if (suffix == "pdf") {
        QPdfWriter pdf(file);
        // One layout unit is a pixel at 96 dpi: 0.75 point.
        pdf.setPageSize(QPageSize(size * 0.75, QPageSize::Point));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        pdf.setTitle("Study overview heat map");
        QPainter painter(&pdf);
        if (!painter.isActive()) return false;
        DrawHeatMap(painter, QRectF(0, 0, pdf.width(), pdf.height()), drawing);
        painter.end();
        return QFileInfo::exists(file);
    }
    if (suffix != "png") return false;
    // Twice the layout's size, for print.
    QImage image((size * 2).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    DrawHeatMap(painter, QRectF(QPointF(0, 0), size * 2), drawing);
    painter.end();
    return image.save(file, "PNG");
}

}  // namespace tavrelle
