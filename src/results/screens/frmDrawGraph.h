#pragma once

#include <QMainWindow>
#include <functional>

#include "results/GraphModel.h"

class QComboBox;
class QLabel;
class QPushButton;
class QScrollBar;
class QToolBar;

namespace tavrelle {

class Interaction;

// What a graph window asks of the main screen.
struct GraphWindowHost {
    Interaction* interaction = nullptr;
    std::function<void(const std::string& locus, bool first)> showBothGraphs;
    std::function<void(const std::string& locus)> displayInitAnalysis;
    // The confidence interval changed: rerun the decisions and redraw every graph window.
    std::function<void(Confidence confidence)> refresh;
    std::function<void()> toggleGrid, closeGraphs, estimateFrequencies, nullsAcrossLoci;
    std::function<void()> helpContents, helpIndex, userGuide, questionnaire, about;
};

// The panel a graph is drawn on.
class GraphPanel : public QWidget {
    Q_OBJECT
public:
    explicit GraphPanel(QWidget* parent = nullptr);
    std::function<void(QPainter&)> paint;
    std::function<void()> focused;
    std::function<void()> resized;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

// One of a locus's two graph windows: homozygotes by allele size, or pairs by size difference.
class frmDrawGraph : public QMainWindow {
    Q_OBJECT
public:
    frmDrawGraph(GraphModel graph, Confidence confidence, GraphWindowHost host,
                 QWidget* parent = nullptr);

    const std::string& locus() const { return graph_.LocusName(); }
    bool IsHomozygoteGraph() const { return graph_.kind() == GraphModel::Kind::Homozygotes; }
    const GraphModel& Graph() const { return graph_; }
    const GraphView& View() const { return view_; }

    // Redraws at another confidence interval, from the same rounds.
    void SetConfidence(Confidence confidence);
    // The interval the window's list shows.
    Confidence ChosenConfidence() const;
    void mnuToggleScale_Click();
    // View > Count Axis From Zero: off keeps the classic scaling.
    void SetCountFromZero(bool fromZero);
    // Saves the drawing under `path`; the extension chooses BMP, PNG, SVG or PDF.
    bool SaveGraph(const std::string& path) const;
    void SaveGraphMenu_Click();
    // Prints through the platform's print dialog, drawn as vectors.
    void PrintMenu_Click();
    // Draws the graph on any paint device, at its size.
    void Render(QPaintDevice& device) const;

    QComboBox* CICombo;
    QLabel* LabelCInt;
    QPushButton* RefreshButton;
    GraphPanel* BackPanel;
    QScrollBar *HScroll1, *VScroll1;
    QToolBar* tbToolbar;
    QAction *SaveGraphMenu, *PageMenu, *PreviewMenu, *PrintMenu, *CloseMenu;
    QAction *mnuToggleGrid, *mnuToggleScale, *mnuCountFromZero, *mnuCloseGraphs, *mnuAnalysis,
        *mnuNulls;
    QAction *mnuHelpContents, *mnuHelpIndex, *mnuUserGuide, *mnuQuestionnaire, *mnuHelpAbout;
    QAction *SaveButton, *ToggleScaleButton, *PrintButton;

private:
    void UpdateView();
    void UpdateScrollBars();

    GraphModel graph_;
    GraphView view_;
    GraphWindowHost host_;
};

}  // namespace tavrelle
