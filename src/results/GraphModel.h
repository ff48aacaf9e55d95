#pragma once

#include <string>
#include <vector>

#include "analysis/ConfidenceBounds.h"
#include "analysis/RoundMatrix.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// One graph of a locus: homozygotes by allele size, or pairs by size difference, observed
// against the mean and the confidence band of the rounds. The window copies what it draws;
// measures are millimetres of the drawing panel.
class GraphModel {
public:
    enum class Kind { Homozygotes, Differences };

    GraphModel(Kind kind, std::string populationName, std::string locusName, Int16 lowest,
               CountArray observed, RoundMatrix rounds, std::vector<double> means);

    // Bounds at a confidence interval, as the run's test takes them.
    void SetConfidence(Confidence confidence);

    Kind kind() const { return kind_; }
    const std::string& LocusName() const { return locusName_; }
    const std::string& PopulationName() const { return populationName_; }
    int Classes() const { return static_cast<int>(observed_.size()); }
    const CountArray& Observed() const { return observed_; }
    const std::vector<double>& Means() const { return means_; }
    const BoundsTable& Bounds() const { return bounds_; }
    // Classes in which any round counted something.
    int ClassesInUse() const;
    // The larger of the largest observed count and the largest upper bound.
    int YMax() const;
    // The class's label on the axis: the allele size, or the difference itself.
    int ClassLabel(int index) const;

    std::string Title() const;
    std::string AxisLabel() const;
    static std::string ConfidenceLabel(Confidence confidence);

private:
    Kind kind_;
    std::string populationName_;
    std::string locusName_;
    Int16 lowest_;
    CountArray observed_;
    RoundMatrix rounds_;
    std::vector<double> means_;
    Confidence confidence_ = Confidence::Percent95;
    BoundsTable bounds_;
};

// Millimetres between the panel's foot and the plot's: room for the class labels and the title
// of the class axis.
inline constexpr double kGraphFootMargin = 20;

// The view of a graph: its scale, expanded or fitted to the panel, and the scroll offsets.
struct GraphView {
    double panelWidth = 0;  // the panel's inner size in millimetres
    double panelHeight = 0;
    bool expanded = false;
    double xScale = 1;  // millimetres per class
    double yScale = 1;  // millimetres per count
    double xOffset = 0;
    double yOffset = 0;
    // The count axis starts at the plot's foot. Off, it keeps the classic scaling, in which a
    // count of 0 sits 19.5 mm below the plot's foot and small counts fall out of sight.
    bool countFromZero = false;

    // The fitted scale fills the panel; the expanded scale is 8 by 6.
    void Fit(const GraphModel& graph);
    void Expand();
    // The height of a count, and of a mark at a count, as the drawing places them.
    double CountY(double count) const;
    double X(int classIndex) const;
    // The classes that fit the panel from the horizontal offset on.
    bool ClassShown(int classIndex) const;
    // The drawn extent, for the scroll bars.
    double ContentWidth(const GraphModel& graph) const;
    double ContentHeight(const GraphModel& graph) const;
};

}  // namespace tavrelle
