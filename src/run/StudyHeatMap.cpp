#include "run/StudyHeatMap.h"

#include <algorithm>
#include <cstdio>

#include "run/StudyGridLayout.h"
#include "run/StudyTableExport.h"

namespace tavrelle {

namespace {

constexpr double kCellWidth = 30;
constexpr double kCellHeight = 20;
constexpr double kLabelSize = 10;
constexpr double kMargin = 8;
constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kGrey{200, 200, 200};

// A rough width of a text in the sans-serif face, for the layout only.
double TextWidth(const std::string& text, double size) {
    return 0.58 * size * static_cast<double>(text.size());
}

std::string Marks(const StudyCell& cell) {
    std::string marks;
    if (cell.flags.nullAllele) marks += "N";
    if (cell.flags.stutter) marks += "S";
    if (cell.flags.dropout) marks += "D";
    if (cell.AnyBorderline()) marks += kBorderlineMark;
    if (cell.ManyBlanks()) marks += kManyBlanksMark;
    return marks;
}

std::string Fixed(double value, int decimals) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

}  // namespace

HeatMapDrawing LayOutHeatMap(const StudyTable& table) {
    HeatMapDrawing d;
    double rowLabelWidth = TextWidth("Population", kLabelSize);
    for (const StudyRow& row : table.Rows())
        rowLabelWidth = std::max(rowLabelWidth, TextWidth(row.name, kLabelSize));
    double columnLabelHeight = TextWidth("Locus", kLabelSize);
    for (const std::string& locus : table.Loci())
        columnLabelHeight = std::max(columnLabelHeight, TextWidth(locus, kLabelSize));

    const double left = kMargin + rowLabelWidth + 6;
    const double top = kMargin + columnLabelHeight + 6;
    const auto columns = static_cast<double>(table.Loci().size());
    const auto rows = static_cast<double>(table.Rows().size());

    for (std::size_t c = 0; c < table.Loci().size(); ++c) {
        const double x = left + kCellWidth * (static_cast<double>(c) + 0.5) + kLabelSize / 3;
        d.texts.push_back({x, top - 4, table.Loci()[c], kLabelSize, HeatMapText::Anchor::Start,
                           true, false, kBlack});
    }
    for (std::size_t r = 0; r < table.Rows().size(); ++r) {
        const StudyRow& row = table.Rows()[r];
        const double y = top + kCellHeight * static_cast<double>(r);
        d.texts.push_back({left - 6, y + kCellHeight * 0.68, row.name, kLabelSize,
                           HeatMapText::Anchor::End, false, false, kBlack});
        if (row.stopReason) {
            d.boxes.push_back({left, y, kCellWidth * columns, kCellHeight, kGrey, true});
            d.texts.push_back({left + 6, y + kCellHeight * 0.68, "stopped: " + *row.stopReason,
                               kLabelSize, HeatMapText::Anchor::Start, false, false, kBlack});
            continue;
        }
        for (std::size_t c = 0; c < row.cells.size(); ++c) {
            const double x = left + kCellWidth * static_cast<double>(c);
            if (!row.cells[c]) {
                d.boxes.push_back({x, y, kCellWidth, kCellHeight, kGrey, false});
                continue;
            }
            const Rgb fill = EstimateColour(row.cells[c]->estimate);
            d.boxes.push_back({x, y, kCellWidth, kCellHeight, fill, false});
            d.texts.push_back({x + kCellWidth / 2, y + kCellHeight * 0.68, Marks(*row.cells[c]),
                               kLabelSize - 1, HeatMapText::Anchor::Middle, false, true,
                               TextColourOn(fill)});
        }
    }

    // The legend: the scale in steps, then what the marks and grey mean.
    double y = top + kCellHeight * rows + 14;
    d.texts.push_back(
        {left, y + 10,
         StudyEstimateName(table.Estimate()) + " estimate of the null allele frequency", kLabelSize,
         HeatMapText::Anchor::Start, false, true, kBlack});
    y += 16;
    constexpr int kSteps = 6;
    for (int step = 0; step <= kSteps; ++step) {
        const double value = kEstimateScaleTop * step / kSteps;
        const double x = left + step * kCellWidth * 1.2;
        d.boxes.push_back(
            {x, y, kCellWidth * 1.2, kCellHeight * 0.6, EstimateColour(value), false});
        std::string label = Fixed(value, 2);
        if (step == 0) label = "\u2264 0";
        if (step == kSteps) label = "\u2265 " + label;
        d.texts.push_back({x + kCellWidth * 0.6, y + kCellHeight * 0.6 + 11, label, kLabelSize - 1,
                           HeatMapText::Anchor::Middle, false, false, kBlack});
    }
    y += kCellHeight * 0.6 + 30;
    const std::string key =
        "N null allele   S stutter   D large allele drop-out   grey: locus not analysed";
    const std::string marks = std::string(kBorderlineMark) + " a borderline verdict   " +
                              kManyBlanksMark + " more than a fifth of the samples blank";
    double widest = std::max(TextWidth(key, kLabelSize - 1), TextWidth(marks, kLabelSize - 1));
    d.texts.push_back(
        {left, y, key, kLabelSize - 1, HeatMapText::Anchor::Start, false, false, kBlack});
    y += 14;
    d.texts.push_back(
        {left, y, marks, kLabelSize - 1, HeatMapText::Anchor::Start, false, false, kBlack});
    const std::string cancelled = CancelledText(table);
    if (!cancelled.empty()) {
        y += 16;
        d.texts.push_back(
            {left, y, cancelled, kLabelSize, HeatMapText::Anchor::Start, false, true, kBlack});
        widest = std::max(widest, TextWidth(cancelled, kLabelSize));
    }

    d.width = std::max({left + kCellWidth * columns, left + (kSteps + 1) * kCellWidth * 1.2,
                        left + widest}) +
              kMargin;
    for (const StudyRow& row : table.Rows())
        if (row.stopReason)
            d.width =
                std::max(d.width, left + 12 + TextWidth("stopped: " + *row.stopReason, kLabelSize) +
                                      kMargin);
    d.height = y + kMargin;
    return d;
}

std::string HeatMapSvg(const HeatMapDrawing& drawing) {
    const std::string width = ShortestNumber(drawing.width);
    const std::string height = ShortestNumber(drawing.height);
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width +
                      "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height +
                      "\" font-family=\"sans-serif\" role=\"img\">\n"
                      "<defs><pattern id=\"stopped\" width=\"6\" height=\"6\" "
                      "patternUnits=\"userSpaceOnUse\" patternTransform=\"rotate(45)\">"
                      "<rect width=\"6\" height=\"6\" fill=\"#dddddd\"/>"
                      "<line x1=\"0\" y1=\"0\" x2=\"0\" y2=\"6\" stroke=\"#aaaaaa\" "
                      "stroke-width=\"2\"/></pattern></defs>\n";
    for (const HeatMapBox& box : drawing.boxes) {
        svg += "<rect x=\"" + ShortestNumber(box.x) + "\" y=\"" + ShortestNumber(box.y) +
               "\" width=\"" + ShortestNumber(box.width) + "\" height=\"" +
               ShortestNumber(box.height) + "\" fill=\"" +
               (box.hatched ? std::string("url(#stopped)") : HexColour(box.fill)) +
               "\" stroke=\"#ffffff\" stroke-width=\"1\"/>\n";
    }
    for (const HeatMapText& text : drawing.texts) {
        const char* anchor = text.anchor == HeatMapText::Anchor::Middle ? "middle"
                             : text.anchor == HeatMapText::Anchor::End  ? "end"
                                                                        : "start";
        const std::string x = ShortestNumber(text.x);
        const std::string y = ShortestNumber(text.y);
        svg += "<text x=\"" + x + "\" y=\"" + y + "\" font-size=\"" + ShortestNumber(text.size) +
               "\" text-anchor=\"" + anchor + "\" fill=\"" + HexColour(text.colour) + "\"" +
               (text.bold ? " font-weight=\"bold\"" : "") +
               (text.vertical ? " transform=\"rotate(-90 " + x + " " + y + ")\"" : "") + ">" +
               EscapeXml(text.text) + "</text>\n";
    }
    return svg + "</svg>\n";
}

}  // namespace tavrelle
