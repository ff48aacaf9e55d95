#include "results/GraphSvg.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/XmlText.h"

namespace tavrelle {

namespace {

constexpr double kWidth = 520;
constexpr double kHeight = 280;
constexpr double kLeft = 46;
constexpr double kRight = 12;
constexpr double kTop = 34;
constexpr double kBottom = 46;

std::string N(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    std::string shown = text;
    if (shown.size() > 2 && shown.ends_with(".0")) shown.resize(shown.size() - 2);
    return shown;
}

// 1, 2 or 5 times a power of ten, giving about `ticks` steps over `range`; at least 1.
double Step(double range, int ticks) {
    const double raw = std::max(1.0, range / ticks);
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double factor : {1.0, 2.0, 5.0})
        if (factor * power >= raw) return factor * power;
    return 10 * power;
}

std::string Line(double x1, double y1, double x2, double y2, const char* colour, double width) {
    return "<line x1=\"" + N(x1) + "\" y1=\"" + N(y1) + "\" x2=\"" + N(x2) + "\" y2=\"" + N(y2) +
           "\" stroke=\"" + colour + "\" stroke-width=\"" + N(width) + "\"/>";
}

std::string Text(double x, double y, const std::string& text, const char* anchor, double size,
                 const std::string& extra = "") {
    return "<text x=\"" + N(x) + "\" y=\"" + N(y) + "\" font-size=\"" + N(size) +
           "\" text-anchor=\"" + anchor + "\"" + extra + ">" + EscapeXml(text) + "</text>";
}

}  // namespace

std::string GraphSvg(const GraphModel& graph) {
    const int classes = std::max(1, graph.Classes());
    const double plotWidth = kWidth - kLeft - kRight;
    const double plotHeight = kHeight - kTop - kBottom;
    const double step = Step(std::max(1, graph.YMax()), 5);
    const double yTop = std::max(step, std::ceil(std::max(1, graph.YMax()) / step) * step);
    const double slot = plotWidth / classes;
    auto X = [&](int c) { return kLeft + slot * (c + 0.5); };
    auto Y = [&](double count) { return kTop + plotHeight * (1 - count / yTop); };

    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + N(kWidth) + " " +
                      N(kHeight) + "\" width=\"" + N(kWidth) + "\" height=\"" + N(kHeight) +
                      "\" font-family=\"sans-serif\" role=\"img\">";
    svg += "<title>" +
           EscapeXml(graph.Title() + " " + graph.PopulationName() + " " + graph.LocusName()) +
           "</title>";
    svg += Text(kWidth / 2, 16, graph.Title(), "middle", 12, " font-weight=\"bold\"");
    svg += "<rect x=\"" + N(kLeft) + "\" y=\"" + N(kTop) + "\" width=\"" + N(plotWidth) +
           "\" height=\"" + N(plotHeight) + "\" fill=\"#ffffff\" stroke=\"#3355aa\"/>";
    for (double v = 0; v <= yTop + 1e-9; v += step) {
        svg += Line(kLeft - 4, Y(v), kLeft, Y(v), "#3355aa", 1);
        if (v > 0) svg += Line(kLeft, Y(v), kLeft + plotWidth, Y(v), "#e4e8f0", 0.6);
        svg += Text(kLeft - 6, Y(v) + 3.5, N(v), "end", 10);
    }
    svg += Text(12, kTop + plotHeight / 2, "Count", "middle", 10,
                " transform=\"rotate(-90 12 " + N(kTop + plotHeight / 2) + ")\"");
    const int labelEvery = std::max(1, static_cast<int>(std::ceil(28 / slot)));
    for (int c = 0; c < graph.Classes(); ++c) {
        if (c % labelEvery != 0) continue;
        svg += Line(X(c), kTop + plotHeight, X(c), kTop + plotHeight + 4, "#3355aa", 1);
        svg +=
            Text(X(c), kTop + plotHeight + 15, std::to_string(graph.ClassLabel(c)), "middle", 10);
    }
    svg += Text(kLeft + plotWidth / 2, kHeight - 12, graph.AxisLabel(), "middle", 11);

    const BoundsTable& bounds = graph.Bounds();
    const double cap = std::min(4.0, slot * 0.3);
    const double mark = std::min(4.0, std::max(1.5, slot * 0.3));
    for (int c = 0; c < graph.Classes(); ++c) {
        const auto i = static_cast<std::size_t>(c);
        const double x = X(c);
        if (i < bounds.upper.size() && i < bounds.lower.size() && bounds.upper[i] > 0) {
            svg += Line(x, Y(bounds.lower[i]), x, Y(bounds.upper[i]), "#d62728", 1);
            svg += Line(x - cap, Y(bounds.upper[i]), x + cap, Y(bounds.upper[i]), "#d62728", 1);
            svg += Line(x - cap, Y(bounds.lower[i]), x + cap, Y(bounds.lower[i]), "#d62728", 1);
        }
        if (i < graph.Means().size() && graph.Means()[i] > 0)
            svg += Line(x - cap - 1, Y(graph.Means()[i]), x + cap + 1, Y(graph.Means()[i]),
                        "#d62728", 2.2);
        const double y = Y(graph.Observed()[i]);
        svg += Line(x - mark, y - mark, x + mark, y + mark, "#000000", 1.4);
        svg += Line(x - mark, y + mark, x + mark, y - mark, "#000000", 1.4);
    }
    // The legend, top right.
    const double lx = kLeft + plotWidth - 250;
    svg += Line(lx, 27, lx + 6, 21, "#000000", 1.4) + Line(lx, 21, lx + 6, 27, "#000000", 1.4);
    svg += Text(lx + 10, 28, "Observed", "start", 10);
    svg += Line(lx + 70, 24, lx + 82, 24, "#d62728", 2.2);
    svg += Text(lx + 86, 28, "Mean of the rounds", "start", 10);
    svg += Line(lx + 186, 20, lx + 186, 28, "#d62728", 1);
    svg += Text(lx + 192, 28, "Interval", "start", 10);
    return svg + "</svg>";
}

}  // namespace tavrelle
