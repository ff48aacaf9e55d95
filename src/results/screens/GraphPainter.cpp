#include "results/screens/GraphPainter.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "base/Numbers.h"

namespace tavrelle {

namespace {

// The classic palette: the panel's pale cyan, plot frame and axes light blue, interval and mean
// light red, observed marks black.
const QColor kPanel(230, 255, 255);
const QColor kAxes(0, 0, 255);
const QColor kInterval(255, 0, 0);
const QColor kMarks(0, 0, 0);

// Millimetres of the panel to device units of the target.
class Millimetres {
public:
    Millimetres(const QRectF& target, const GraphView& view)
        : origin_(target.topLeft()),
          unit_(std::min(target.width() / view.panelWidth, target.height() / view.panelHeight)) {}
    QPointF P(double x, double y) const { return origin_ + QPointF(x * unit_, y * unit_); }
    double L(double length) const { return length * unit_; }
    QFont Font(double heightMm, bool bold = false) const {
        QFont font("DejaVu Sans");
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(L(heightMm)))));
        font.setBold(bold);
        return font;
    }

private:
    QPointF origin_;
    double unit_;
};

// A step for the ticks of an axis that puts about `ticks` labels on it: 1, 2 or 5 times a power
// of ten.
double TickStep(double range, int ticks) {
    if (range <= 0) return 1;
    const double raw = range / std::max(1, ticks);
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double factor : {1.0, 2.0, 5.0, 10.0})
        if (factor * power >= raw) return std::max(1.0, factor * power);
    return std::max(1.0, 10 * power);
}

void Text(QPainter& p, const Millimetres& mm, double x, double y, const QString& text) {
    // The position is the text's top left, as the panel placed text.
    p.drawText(QRectF(mm.P(x, y), QSizeF(mm.L(200), mm.L(10))), Qt::AlignLeft | Qt::AlignTop, text);
}

}  // namespace

void DrawGraph(QPainter& p, const QRectF& target, const GraphModel& graph, const GraphView& view) {
    if (view.panelWidth <= 0 || view.panelHeight <= 0) return;
    const Millimetres mm(target, view);
    const double width = view.panelWidth;
    const double height = view.panelHeight;
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(QRectF(mm.P(0, 0), mm.P(width, height)), kPanel);

    p.setPen(kMarks);
    p.setFont(mm.Font(3.6, true));
    p.drawText(QRectF(mm.P(0, 1), mm.P(width, 6)), Qt::AlignHCenter | Qt::AlignTop,
               QString::fromStdString(graph.Title()));
    p.setFont(mm.Font(2.8));
    Text(p, mm, 12, 8.5,
         QString::fromStdString("Population: " + graph.PopulationName() +
                                "    Locus: " + graph.LocusName()));
    // Legend, at the right above the plot.
    const double legend = std::max(70.0, width - 72);
    p.setFont(mm.Font(2.8, true));
    Text(p, mm, legend, 8.5, "X  ");
    p.setFont(mm.Font(2.8));
    Text(p, mm, legend + 3.2, 8.5, "Observed value");
    p.setPen(QPen(kInterval, mm.L(0.3)));
    p.drawLine(mm.P(legend + 29, 10.3), mm.P(legend + 31, 10.3));
    p.setPen(kMarks);
    Text(p, mm, legend + 31.5, 8.5, " Mean expected value");

    // The plot area.
    const double top = 15;
    const double bottom = height - kGraphFootMargin;
    const QRectF plot(mm.P(11, top), mm.P(width - 10, bottom));
    p.fillRect(plot, Qt::white);
    p.setPen(QPen(kAxes, mm.L(0.25)));
    p.drawRect(plot);

    // The vertical axis: ticks by counts, and its label one letter a line.
    p.setFont(mm.Font(2.4));
    const int yMax = graph.YMax();
    if (yMax > 0) {
        const double step = TickStep((bottom - top) / view.yScale, 6);
        for (double v = 0; v <= yMax + (bottom - top) / view.yScale; v += step) {
            const double y = view.CountY(v);
            if (y < top - 0.01 || y > bottom + 0.5) continue;
            p.setPen(QPen(kAxes, mm.L(0.2)));
            p.drawLine(mm.P(10, y), mm.P(11, y));
            p.setPen(kMarks);
            p.drawText(QRectF(mm.P(3.5, y - 1.5), mm.P(9.6, y + 1.5)),
                       Qt::AlignRight | Qt::AlignVCenter, QString::number(v));
        }
    }
    p.setFont(mm.Font(2.6, true));
    const char* letters[] = {"  F", "  r", "  e", "  q", "  u", "  e", "  n", "  c", "  y"};
    double letterY = (top + bottom) / 2 - 4.5 * 3.2;
    for (const char* letter : letters) {
        p.drawText(QRectF(mm.P(0, letterY), mm.P(5, letterY + 3.2)), Qt::AlignLeft | Qt::AlignTop,
                   letter);
        letterY += 3.2;
    }
    p.setFont(mm.Font(2.8, true));
    p.drawText(QRectF(mm.P(11, height - 7), mm.P(width - 10, height - 2)),
               Qt::AlignHCenter | Qt::AlignTop, QString::fromStdString(graph.AxisLabel()));

    if (yMax <= 0) {
        p.restore();
        return;
    }

    // Class labels along the bottom, as many as fit.
    p.setFont(mm.Font(2.4));
    const int labelEvery = std::max(1, static_cast<int>(std::ceil(7.5 / view.xScale)));
    for (int i = 0; i < graph.Classes() && view.ClassShown(i); ++i) {
        const double x = view.X(i);
        if (x < 11 || x > width - 10 || i % labelEvery != 0) continue;
        p.setPen(QPen(kAxes, mm.L(0.2)));
        p.drawLine(mm.P(x, bottom), mm.P(x, bottom + 1));
        p.setPen(kMarks);
        p.drawText(QRectF(mm.P(x - 5, bottom + 1.2), mm.P(x + 5, bottom + 4.5)),
                   Qt::AlignHCenter | Qt::AlignTop, QString::number(graph.ClassLabel(i)));
    }

    const BoundsTable& bounds = graph.Bounds();
    for (int i = 0; i < graph.Classes() && view.ClassShown(i); ++i) {
        const auto c = static_cast<std::size_t>(i);
        const int observed = graph.Observed()[c];
        if (bounds.upper[c] <= 0 && observed <= 0) continue;
        const double x = view.X(i);
        if (x < 11 || x > width - 10) continue;
        // Heights snap to whole millimetres; a bound cut at the plot's edge loses its cap.
        double upper = ToInt16(view.CountY(bounds.upper[c]));
        double lower = ToInt16(view.CountY(bounds.lower[c]));
        bool upperCapped = true;
        bool lowerCapped = true;
        auto clip = [&](double& y, bool& capped) {
            if (y < top) y = top, capped = false;
            if (y > bottom) y = bottom, capped = false;
        };
        clip(upper, upperCapped);
        clip(lower, lowerCapped);
        p.setPen(QPen(kInterval, mm.L(0.3)));
        p.drawLine(mm.P(x, upper), mm.P(x, lower));
        if (upperCapped) p.drawLine(mm.P(x - 1, upper), mm.P(x + 1, upper));
        if (lowerCapped) p.drawLine(mm.P(x - 1, lower), mm.P(x + 1, lower));

        const double meanY = view.CountY(graph.Means()[c]) - 0.5;
        if (meanY >= top && meanY <= bottom) {
            p.setPen(Qt::NoPen);
            p.setBrush(kInterval);
            p.drawEllipse(mm.P(x, meanY), mm.L(0.7), mm.L(0.7));
            p.setBrush(Qt::NoBrush);
        }

        p.setPen(kMarks);
        p.setFont(mm.Font(2.8, true));
        const double markY = observed > 0 ? view.CountY(observed) - 2.1 : view.CountY(0) - 3.2;
        // The mark's text cell starts at markY; its middle falls on the count's height.
        if (markY >= top && markY <= bottom)
            p.drawText(QRectF(mm.P(x - 2, markY + 0.6), mm.P(x + 2, markY + 3.6)), Qt::AlignCenter,
                       observed > 0 ? "X" : "v");
    }
    p.restore();
}

}  // namespace tavrelle
