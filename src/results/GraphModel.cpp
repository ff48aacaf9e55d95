#include "results/GraphModel.h"

#include <algorithm>

#include "base/Numbers.h"

namespace tavrelle {

GraphModel::GraphModel(Kind kind, std::string populationName, std::string locusName, Int16 lowest,
                       CountArray observed, RoundMatrix rounds, std::vector<double> means)
    : kind_(kind),
      populationName_(std::move(populationName)),
      locusName_(std::move(locusName)),
      lowest_(lowest),
      observed_(std::move(observed)),
      rounds_(std::move(rounds)),
      means_(std::move(means)) {
    SetConfidence(Confidence::Percent95);
}

void GraphModel::SetConfidence(Confidence confidence) {
    confidence_ = confidence;
    bounds_ = ConfidenceBounds(rounds_, static_cast<Int16>(rounds_.Rounds()), confidence);
}

int GraphModel::ClassesInUse() const {
    int used = 0;
    for (int c = 0; c < rounds_.Classes(); ++c)
        if (rounds_.Rounds() > 0 && rounds_.At(c, rounds_.Rounds() - 1) > 0) ++used;
    return used;
}

int GraphModel::YMax() const {
    int most = 0;
    for (Int16 count : observed_)
        most = std::max<int>(most, count);
    for (Int16 upper : bounds_.upper)
        most = std::max<int>(most, upper);
    return most;
}

int GraphModel::ClassLabel(int index) const {
    return kind_ == Kind::Homozygotes ? lowest_ + index : index;
}

std::string GraphModel::ConfidenceLabel(Confidence confidence) {
    // The graphs' own spelling: "Range" with a capital.
    static const char* const kLabels[] = {"95%", "99%", "100% (Range)", "Bonferroni"};
    return kLabels[ConfidenceCode(confidence)];
}

std::string GraphModel::Title() const {
    return (kind_ == Kind::Homozygotes ? "Homozygote Frequencies  (CI: "
                                       : "Frequency of Differences (bp)  (CI: ") +
           ConfidenceLabel(confidence_) + ")";
}

std::string GraphModel::AxisLabel() const {
    return kind_ == Kind::Homozygotes ? "Homozygote allele sizes" : "Allele differences (bp)";
}

void GraphView::Fit(const GraphModel& graph) {
    expanded = false;
    xScale = (panelWidth - 30) / std::max(1, graph.Classes());
    // From zero, the largest count reaches the plot's top less the 3 mm its mark takes.
    const double countRoom = countFromZero ? panelHeight - 38 : panelHeight - 40;
    yScale = graph.YMax() > 0 ? countRoom / graph.YMax() : 1;
    xOffset = 0;
    yOffset = 0;
}

void GraphView::Expand() {
    expanded = true;
    xScale = 8;
    yScale = 6;
}

double GraphView::CountY(double count) const {
    const double zero = countFromZero ? panelHeight - kGraphFootMargin : panelHeight - 0.5;
    return yOffset + zero - count * yScale;
}

double GraphView::X(int classIndex) const {
    return classIndex * xScale - xOffset + 15;
}

bool GraphView::ClassShown(int classIndex) const {
    // Both sides taken as whole numbers, as the drawing loop compares them.
    return static_cast<long long>(classIndex - xOffset / xScale) <
           static_cast<long long>((panelWidth - 25) / xScale);
}

double GraphView::ContentWidth(const GraphModel& graph) const {
    return graph.Classes() * xScale + 30;
}

double GraphView::ContentHeight(const GraphModel& graph) const {
    return graph.YMax() * yScale + 40;
}

}  // namespace tavrelle
