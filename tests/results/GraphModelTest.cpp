#include "results/GraphModel.h"

#include <gtest/gtest.h>

namespace tavrelle {
namespace {

// Three classes over four rounds, sorted: class 1 counted 0 to 3.
GraphModel Graph(GraphModel::Kind kind) {
    RoundMatrix rounds(3, 4);
    const Int16 counts[3][4] = {{0, 0, 0, 0}, {0, 1, 2, 3}, {1, 1, 1, 1}};
    for (int c = 0; c < 3; ++c)
        for (int r = 0; r < 4; ++r)
            rounds.Class(c)[static_cast<std::size_t>(r)] = counts[c][r];
    return GraphModel(kind, "North ", "L7", 120, {0, 5, 1}, rounds, {0, 1.5, 1});
}

TEST(GraphModel, TitlesLabelsAndMaxima) {
    GraphModel homozygotes = Graph(GraphModel::Kind::Homozygotes);
    EXPECT_EQ(homozygotes.Title(), "Homozygote Frequencies  (CI: 95%)");
    EXPECT_EQ(homozygotes.AxisLabel(), "Homozygote allele sizes");
    EXPECT_EQ(homozygotes.ClassLabel(2), 122);
    EXPECT_EQ(homozygotes.ClassesInUse(), 2);
    EXPECT_EQ(homozygotes.YMax(), 5);  // the observed 5 tops every bound
    homozygotes.SetConfidence(Confidence::FullRange);
    EXPECT_EQ(homozygotes.Title(), "Homozygote Frequencies  (CI: 100% (Range))");
    EXPECT_EQ(homozygotes.Bounds().upper, (std::vector<Int16>{0, 3, 1}));
    GraphModel differences = Graph(GraphModel::Kind::Differences);
    EXPECT_EQ(differences.Title(), "Frequency of Differences (bp)  (CI: 95%)");
    EXPECT_EQ(differences.ClassLabel(2), 2);
}

TEST(GraphView, FittedAndExpandedScales) {
    GraphModel graph = Graph(GraphModel::Kind::Homozygotes);
    GraphView view;
    view.panelWidth = 120;
    view.panelHeight = 90;
    view.Fit(graph);
    EXPECT_DOUBLE_EQ(view.xScale, 30.0);  // (120 - 30) / 3 classes
    EXPECT_DOUBLE_EQ(view.yScale, 10.0);  // (90 - 40) / 5
    EXPECT_DOUBLE_EQ(view.X(1), 45.0);
    EXPECT_DOUBLE_EQ(view.CountY(0), 89.5);
    EXPECT_DOUBLE_EQ(view.CountY(5), 39.5);
    EXPECT_TRUE(view.ClassShown(2));
    view.Expand();
    EXPECT_DOUBLE_EQ(view.xScale, 8.0);
    EXPECT_DOUBLE_EQ(view.yScale, 6.0);
    view.panelWidth = 40;  // (40 - 25) / 8 = 1.875: one class fits
    EXPECT_TRUE(view.ClassShown(0));
    EXPECT_FALSE(view.ClassShown(1));
    view.xOffset = 8;  // scrolled by one class
    EXPECT_TRUE(view.ClassShown(1));
}

// From zero, a count of 0 sits on the plot's foot (90 - 20) and the largest count, 5, 3 mm
// below the plot's top (15), so a class counted once is drawn; the classic scaling puts a
// count of 1 at 79.5, below the foot, where it is not drawn.
TEST(GraphView, CountAxisFromZero) {
    GraphModel graph = Graph(GraphModel::Kind::Homozygotes);
    GraphView view;
    view.panelWidth = 120;
    view.panelHeight = 90;
    view.Fit(graph);
    EXPECT_GT(view.CountY(1), view.panelHeight - kGraphFootMargin);
    view.countFromZero = true;
    view.Fit(graph);
    EXPECT_DOUBLE_EQ(view.yScale, 10.4);  // (90 - 38) / 5
    EXPECT_DOUBLE_EQ(view.CountY(0), 70.0);
    EXPECT_DOUBLE_EQ(view.CountY(5), 18.0);
    EXPECT_LT(view.CountY(1), view.panelHeight - kGraphFootMargin);
    view.Expand();
    EXPECT_DOUBLE_EQ(view.CountY(1), 64.0);
}

}  // namespace
}  // namespace tavrelle
