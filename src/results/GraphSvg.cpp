#include "results/GraphSvg.h"

#include <algorithm>
#include <cmath>

#include "base/XmlText.h"

namespace tavrelle {

const char* const kGraphSvgStyle = R"(svg.graph { font-family: sans-serif; font-size: 10px; }
svg.graph path { fill: none; } svg.graph .grid { stroke: #d8deea; stroke-width: 0.6; }
svg.graph .bound { stroke: #d62728; marker: url(#gc); }
svg.graph .mean { stroke: none; marker: url(#gm); } svg.graph .seen { stroke: none; marker: url(#gx); }
svg.graph .mid { text-anchor: middle; } svg.graph .end { text-anchor: end; }
svg.defs { position: absolute; width: 0; height: 0; }
)";

namespace {

constexpr int kWidth = 520;
constexpr int kHeight = 230;
constexpr int kLeft = 46;
constexpr int kRight = 12;
constexpr int kTop = 24;
constexpr int kBottom = 40;
constexpr int kPlotWidth = kWidth - kLeft - kRight;
constexpr int kPlotHeight = kHeight - kTop - kBottom;

// Whole pixels are fine enough for a drawing of this size, and keep the page small.
std::string N(double value) {
    const long long whole = std::llround(value);
    return std::to_string(whole == 0 ? 0 : whole);
}

// 1, 2 or 5 times a power of ten, giving about `ticks` steps over `range`; at least 1.
double Step(double range, int ticks) {
    const double raw = std::max(1.0, range / ticks);
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double factor : {1.0, 2.0, 5.0})
        if (factor * power >= raw) return factor * power;
    return 10 * power;
}

std::string PathOf(const char* cls, const std::string& d) {
    return d.empty() ? "" : "<path class=\"" + std::string(cls) + "\" d=\"" + d + "\"/>";
}

// The points a marker is drawn at, as one path: the first absolute, the others relative to the
// one before (shorter), from whole pixels so that the rounding does not drift.
class Points {
public:
    void Add(double x, double y) {
        const long long px = std::llround(x);
        const long long py = std::llround(y);
        d_ += count_ == 0   ? "M" + std::to_string(px) + " " + std::to_string(py)
              : count_ == 1 ? "l" + Step(px, py)
                            : " " + Step(px, py);
        ++count_;
        x_ = px;
        y_ = py;
    }
    // A path of one point gets a second on it, so that its marker is drawn.
    std::string Path() const { return count_ == 1 ? d_ + "h0" : d_; }

private:
    std::string Step(long long px, long long py) const {
        return std::to_string(px - x_) + (py < y_ ? "" : " ") + std::to_string(py - y_);
    }
    std::string d_;
    int count_ = 0;
    long long x_ = 0;
    long long y_ = 0;
};

const char* FrameId(GraphModel::Kind kind) {
    return kind == GraphModel::Kind::Homozygotes ? "gfh" : "gfd";
}

std::string Frame(const GraphModel& graph) {
    return "<g id=\"" + std::string(FrameId(graph.kind())) + "\"><text x=\"" + N(kWidth / 2) +
           "\" y=\"15\" text-anchor=\"middle\" font-weight=\"bold\" font-size=\"12\">" +
           EscapeXml(graph.Title()) + "</text><rect x=\"" + N(kLeft) + "\" y=\"" + N(kTop) +
           "\" width=\"" + N(kPlotWidth) + "\" height=\"" + N(kPlotHeight) +
           "\" fill=\"none\" stroke=\"#3355aa\"/><text x=\"12\" y=\"" + N(kTop + kPlotHeight / 2) +
           "\" text-anchor=\"middle\" transform=\"rotate(-90 12 " + N(kTop + kPlotHeight / 2) +
           ")\">Count</text><text x=\"" + N(kLeft + kPlotWidth / 2) + "\" y=\"" + N(kHeight - 6) +
           "\" text-anchor=\"middle\">" + EscapeXml(graph.AxisLabel()) + "</text></g>";
}

}  // namespace

std::string GraphDefsSvg(Confidence confidence) {
    std::string svg =
        "<svg class=\"defs graph\" aria-hidden=\"true\"><defs>"
        "<marker id=\"gx\" markerUnits=\"userSpaceOnUse\" overflow=\"visible\">"
        "<path d=\"M-3 -3 3 3M-3 3 3 -3\" stroke=\"#000\" stroke-width=\"1.4\"/></marker>"
        "<marker id=\"gm\" markerUnits=\"userSpaceOnUse\" overflow=\"visible\">"
        "<path d=\"M-6 0h12\" stroke=\"#d62728\" stroke-width=\"2.2\"/></marker>"
        "<marker id=\"gc\" markerUnits=\"userSpaceOnUse\" overflow=\"visible\">"
        "<path d=\"M-3 0h6\" stroke=\"#d62728\"/></marker>";
    // The frames' titles name the confidence interval: a model of one class, counted in every
    // round, takes it (an empty one would leave a Bonferroni interval nothing to divide by).
    RoundMatrix rounds(1, 100);
    std::fill(rounds.Class(0).begin(), rounds.Class(0).end(), Int16{1});
    for (GraphModel::Kind kind : {GraphModel::Kind::Homozygotes, GraphModel::Kind::Differences}) {
        GraphModel model(kind, "", "", 0, {1}, rounds, {1.0});
        model.SetConfidence(confidence);
        svg += Frame(model);
    }
    return svg + "</defs></svg>";
}

std::string GraphSvg(const GraphModel& graph) {
    const int classes = std::max(1, graph.Classes());
    const double step = Step(std::max(1, graph.YMax()), 4);
    const double yTop = std::max(step, std::ceil(std::max(1, graph.YMax()) / step) * step);
    const double slot = static_cast<double>(kPlotWidth) / classes;
    auto X = [&](int c) { return N(kLeft + slot * (c + 0.5)); };
    auto Height = [&](double count) { return kTop + kPlotHeight * (1 - count / yTop); };
    auto Y = [&](double count) { return N(Height(count)); };

    std::string svg = "<svg class=\"graph\" viewBox=\"0 0 " + N(kWidth) + " " + N(kHeight) +
                      "\"><use href=\"#" + FrameId(graph.kind()) + "\"/>";
    std::string grid;
    std::string yLabels;
    for (double v = 0; v <= yTop + 1e-9; v += step) {
        // The frame draws the lines at zero and at the top.
        if (v > 0 && v < yTop - 1e-9) grid += "M" + N(kLeft) + " " + Y(v) + "h" + N(kPlotWidth);
        yLabels +=
            "<tspan x=\"" + N(kLeft - 6) + "\" y=\"" + N(Height(v) + 3) + "\">" + N(v) + "</tspan>";
    }
    std::string xLabels;
    const int labelEvery = std::max(1, static_cast<int>(std::ceil(60 / slot)));
    for (int c = 0; c < graph.Classes(); c += labelEvery)
        xLabels += "<tspan x=\"" + X(c) + "\">" + std::to_string(graph.ClassLabel(c)) + "</tspan>";
    svg += PathOf("grid", grid) + "<text class=\"end\">" + yLabels +
           "</text><text class=\"mid\" y=\"" + N(kTop + kPlotHeight + 15) + "\">" + xLabels +
           "</text>";

    const BoundsTable& bounds = graph.Bounds();
    std::string bound;
    long long boundX = 0;
    long long boundY = 0;
    Points mean;
    Points seen;
    for (int c = 0; c < graph.Classes(); ++c) {
        const auto i = static_cast<std::size_t>(c);
        if (i < bounds.upper.size() && i < bounds.lower.size() && bounds.upper[i] > 0) {
            // Each interval a move from the one before and a vertical line: short.
            const long long x = std::llround(kLeft + slot * (c + 0.5));
            const long long low = std::llround(Height(bounds.lower[i]));
            const long long high = std::llround(Height(bounds.upper[i]));
            bound += bound.empty() ? "M" + std::to_string(x) + " " + std::to_string(low)
                                   : "m" + std::to_string(x - boundX) + (low < boundY ? "" : " ") +
                                         std::to_string(low - boundY);
            bound += "v" + std::to_string(high - low);
            boundX = x;
            boundY = high;
        }
        if (i < graph.Means().size() && graph.Means()[i] > 0)
            mean.Add(kLeft + slot * (c + 0.5), Height(graph.Means()[i]));
        seen.Add(kLeft + slot * (c + 0.5), Height(graph.Observed()[i]));
    }
    return svg + PathOf("bound", bound) + PathOf("mean", mean.Path()) +
           PathOf("seen", seen.Path()) + "</svg>";
}

std::string GraphLegendSvg() {
    return "<svg class=\"graph legend\" viewBox=\"0 0 420 20\" role=\"img\"><title>Legend of the "
           "graphs</title>" +
           PathOf("seen", "M8 10h0") + "<text x=\"16\" y=\"14\">Observed</text>" +
           PathOf("mean", "M92 10h0") + "<text x=\"104\" y=\"14\">Mean of the rounds</text>" +
           PathOf("bound", "M220 5V15") +
           "<text x=\"228\" y=\"14\">Confidence interval of the rounds</text></svg>";
}

}  // namespace tavrelle
