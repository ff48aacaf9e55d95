#include "results/screens/frmDrawGraph.h"

#include <QBuffer>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollBar>
#include <QSvgGenerator>
#include <QToolBar>
#include <cmath>

#include "base/AtomicFile.h"
#include "results/screens/GraphPainter.h"
#include "widgets/Interaction.h"
#include "widgets/Twips.h"

namespace tavrelle {

namespace {

double PixelsPerMillimetre(const QWidget* widget) {
    return widget->logicalDpiX() / 25.4;
}

template <class F>
void Call(const F& hook) {
    if (hook) hook();
}

}  // namespace

GraphPanel::GraphPanel(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void GraphPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (paint) paint(painter);
}

void GraphPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (resized) resized();
}

void GraphPanel::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    // A click inside a window that is active already: the panes follow this locus.
    if (focused && event->reason() == Qt::MouseFocusReason) focused();
}

void GraphPanel::mousePressEvent(QMouseEvent* event) {
    setFocus();
    QWidget::mousePressEvent(event);
}

frmDrawGraph::frmDrawGraph(GraphModel graph, Confidence confidence, GraphWindowHost host,
                           QWidget* parent)
    : QMainWindow(parent), graph_(std::move(graph)), host_(std::move(host)) {
    setWindowTitle(QString::fromStdString(
        graph_.LocusName() + (IsHomozygoteGraph() ? " - Homozygotes" : " - Differences")));
    QMenu* file = menuBar()->addMenu("&File");
    SaveGraphMenu = file->addAction("Save &Graph");
    PageMenu = file->addAction("Pa&ge Setup");  // stands with no action
    PreviewMenu = file->addAction("Print P&review");
    PrintMenu = file->addAction("&Print");
    CloseMenu = file->addAction("&Close");
    QMenu* view = menuBar()->addMenu("&View");
    mnuToggleGrid = view->addAction("&Show/Hide DataGrid");
    mnuToggleScale = view->addAction("Toggle &Graph Scale");
    mnuCountFromZero = view->addAction("Count &Axis From Zero");
    mnuCountFromZero->setCheckable(true);
    mnuCountFromZero->setToolTip("Start the count axis at zero, so that every class is drawn");
    mnuCloseGraphs = view->addAction("&Close All Graphs");
    QMenu* tools = menuBar()->addMenu("&Tools");
    mnuAnalysis = tools->addAction("&Estimate Frequencies");
    mnuNulls = tools->addAction("&Nulls Across Loci");
    QMenu* help = menuBar()->addMenu("&Help");
    mnuHelpContents = help->addAction("&Contents");
    mnuHelpIndex = help->addAction("&Index");
    mnuUserGuide = help->addAction("&User Guide (PDF)");
    mnuQuestionnaire = help->addAction("&Questionnaire");
    mnuHelpAbout = help->addAction("&About");

    tbToolbar = addToolBar("Graph");
    tbToolbar->setMovable(false);
    tbToolbar->setIconSize(QSize(20, 20));
    SaveButton = tbToolbar->addAction(QIcon(":/icons/save.svg"), "Save");
    SaveButton->setToolTip("Save the graph");
    ToggleScaleButton = tbToolbar->addAction(QIcon(":/icons/graphs.svg"), "ToggleScale");
    ToggleScaleButton->setToolTip("Expand graph scale");
    PrintButton = tbToolbar->addAction(QIcon(":/icons/copy.svg"), "Print");
    PrintButton->setToolTip("Print the graph");
    tbToolbar->addSeparator();
    LabelCInt = new QLabel("Confidence Interval ", this);
    CICombo = new QComboBox(this);
    CICombo->addItems({"95%", "99%", "100% (range)", "Bonferroni"});
    CICombo->setToolTip("Select a Confidence Interval from the dropdown and click Refresh");
    CICombo->setCurrentIndex(ConfidenceCode(confidence));
    RefreshButton = new QPushButton("&Refresh", this);
    tbToolbar->addWidget(LabelCInt);
    tbToolbar->addWidget(CICombo);
    tbToolbar->addWidget(RefreshButton);

    auto* central = new QWidget(this);
    auto* layout = new QGridLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    BackPanel = new GraphPanel(central);
    HScroll1 = new QScrollBar(Qt::Horizontal, central);
    VScroll1 = new QScrollBar(Qt::Vertical, central);
    layout->addWidget(BackPanel, 0, 0);
    layout->addWidget(VScroll1, 0, 1);
    layout->addWidget(HScroll1, 1, 0);
    setCentralWidget(central);
    setMinimumSize(TwipsToPixels(3402, this), TwipsToPixels(3969, this));

    BackPanel->paint = [this](QPainter& painter) {
        DrawGraph(painter, QRectF(BackPanel->rect()), graph_, view_);
    };
    BackPanel->resized = [this] { UpdateView(); };
    BackPanel->focused = [this] {
        if (host_.showBothGraphs) host_.showBothGraphs(graph_.LocusName(), IsHomozygoteGraph());
        if (host_.displayInitAnalysis) host_.displayInitAnalysis(graph_.LocusName());
    };
    auto refresh = [this] {
        if (host_.refresh)
            host_.refresh(ChosenConfidence());
        else
            SetConfidence(ChosenConfidence());
    };
    connect(RefreshButton, &QPushButton::clicked, this, refresh);
    connect(CICombo, &QComboBox::activated, this, refresh);
    connect(HScroll1, &QScrollBar::valueChanged, this, [this](int value) {
        view_.xOffset = value / PixelsPerMillimetre(this);
        BackPanel->update();
    });
    connect(VScroll1, &QScrollBar::valueChanged, this, [this](int value) {
        // The bar's top is the graph's top: moving it down brings the base line up.
        view_.yOffset = (VScroll1->maximum() - value) / PixelsPerMillimetre(this);
        BackPanel->update();
    });
    connect(mnuToggleScale, &QAction::triggered, this, &frmDrawGraph::mnuToggleScale_Click);
    connect(mnuCountFromZero, &QAction::toggled, this, &frmDrawGraph::SetCountFromZero);
    connect(ToggleScaleButton, &QAction::triggered, this, &frmDrawGraph::mnuToggleScale_Click);
    connect(SaveGraphMenu, &QAction::triggered, this, &frmDrawGraph::SaveGraphMenu_Click);
    connect(SaveButton, &QAction::triggered, this, &frmDrawGraph::SaveGraphMenu_Click);
    connect(PrintMenu, &QAction::triggered, this, &frmDrawGraph::PrintMenu_Click);
    connect(PrintButton, &QAction::triggered, this, &frmDrawGraph::PrintMenu_Click);
    // On the main screen the window sits in a sub-window of the work area, which must close
    // with it; opened from another window, it is a window of its own and closes alone.
    connect(CloseMenu, &QAction::triggered, this, [this] {
        if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
            sub->close();
        else
            close();
    });
    connect(mnuToggleGrid, &QAction::triggered, this, [this] { Call(host_.toggleGrid); });
    connect(mnuCloseGraphs, &QAction::triggered, this, [this] { Call(host_.closeGraphs); });
    connect(mnuAnalysis, &QAction::triggered, this, [this] { Call(host_.estimateFrequencies); });
    connect(mnuNulls, &QAction::triggered, this, [this] { Call(host_.nullsAcrossLoci); });
    connect(mnuHelpContents, &QAction::triggered, this, [this] { Call(host_.helpContents); });
    connect(mnuHelpIndex, &QAction::triggered, this, [this] { Call(host_.helpIndex); });
    connect(mnuUserGuide, &QAction::triggered, this, [this] { Call(host_.userGuide); });
    connect(mnuQuestionnaire, &QAction::triggered, this, [this] { Call(host_.questionnaire); });
    connect(mnuHelpAbout, &QAction::triggered, this, [this] { Call(host_.about); });
    SetConfidence(confidence);
}

Confidence frmDrawGraph::ChosenConfidence() const {
    return ConfidenceFromCode(CICombo->currentIndex()).value_or(Confidence::Percent95);
}

void frmDrawGraph::SetConfidence(Confidence confidence) {
    CICombo->setCurrentIndex(ConfidenceCode(confidence));
    graph_.SetConfidence(confidence);
    UpdateView();
}

void frmDrawGraph::UpdateView() {
    const double unit = PixelsPerMillimetre(this);
    view_.panelWidth = std::max(1, BackPanel->width()) / unit;
    view_.panelHeight = std::max(1, BackPanel->height()) / unit;
    if (view_.expanded)
        view_.Expand();
    else
        view_.Fit(graph_);
    UpdateScrollBars();
    BackPanel->update();
}

void frmDrawGraph::UpdateScrollBars() {
    const double unit = PixelsPerMillimetre(this);
    const int extraWidth =
        static_cast<int>(std::ceil((view_.ContentWidth(graph_) - view_.panelWidth) * unit));
    const int extraHeight =
        static_cast<int>(std::ceil((view_.ContentHeight(graph_) - view_.panelHeight) * unit));
    HScroll1->setRange(0, std::max(0, extraWidth));
    VScroll1->setRange(0, std::max(0, extraHeight));
    HScroll1->setValue(0);
    VScroll1->setValue(VScroll1->maximum());
    // At the fitted scale the whole graph fits, and the bars aren't needed.
    HScroll1->setVisible(view_.expanded && extraWidth > 0);
    VScroll1->setVisible(view_.expanded && extraHeight > 0);
    view_.xOffset = 0;
    view_.yOffset = 0;
}

void frmDrawGraph::mnuToggleScale_Click() {
    view_.expanded = !view_.expanded;
    ToggleScaleButton->setToolTip(view_.expanded ? "Contract graph scale" : "Expand graph scale");
    UpdateView();
}

void frmDrawGraph::SetCountFromZero(bool fromZero) {
    view_.countFromZero = fromZero;
    if (mnuCountFromZero->isChecked() != fromZero) mnuCountFromZero->setChecked(fromZero);
    UpdateView();
}

void frmDrawGraph::Render(QPaintDevice& device) const {
    QPainter painter(&device);
    const double width = view_.panelWidth;
    const double height = view_.panelHeight;
    // The panel's proportions, as large as the device allows.
    const double scale = std::min(device.width() / width, device.height() / height);
    DrawGraph(painter, QRectF(0, 0, width * scale, height * scale), graph_, view_);
}

bool frmDrawGraph::SaveGraph(const std::string& path) const {
    const QString suffix = QFileInfo(QString::fromStdString(path)).suffix().toLower();
    const QSize size = BackPanel->size();
    // The graph is drawn in memory and then replaces the file whole, so that a failed save
    // leaves the old file as it was.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (suffix == "svg") {
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        svg.setTitle(windowTitle());
        Render(svg);
    } else if (suffix == "pdf") {
        QPdfWriter pdf(&buffer);
        pdf.setPageSize(
            QPageSize(QSizeF(view_.panelWidth, view_.panelHeight), QPageSize::Millimeter));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        pdf.setTitle(windowTitle());
        Render(pdf);
    } else {
        QImage image(size, QImage::Format_RGB32);
        image.setDotsPerMeterX(static_cast<int>(std::lround(PixelsPerMillimetre(this) * 1000)));
        image.setDotsPerMeterY(image.dotsPerMeterX());
        image.fill(Qt::white);
        Render(image);
        if (!image.save(&buffer, suffix == "png" ? "PNG" : "BMP")) return false;
    }
    buffer.close();
    return !bytes.isEmpty() &&
           WriteFileAtomically(path, std::string_view(bytes.constData(),
                                                      static_cast<std::size_t>(bytes.size()))) == 0;
}

void frmDrawGraph::SaveGraphMenu_Click() {
    if (!host_.interaction) return;
    const std::optional<std::string> chosen = host_.interaction->SaveFileName(
        {"", QDir::homePath().toStdString(),
         "Bitmap Files (*.bmp)|*.bmp|PNG Images (*.png)|*.png|SVG Drawings (*.svg)|*.svg|PDF "
         "Documents (*.pdf)|*.pdf",
         "Graph 1"});
    if (!chosen || chosen->empty()) return;  // cancelled
    std::string path = *chosen;
    if (QFileInfo(QString::fromStdString(path)).suffix().isEmpty()) path += ".bmp";
    if (!SaveGraph(path))
        host_.interaction->Show({"The graph could not be saved as " + path + ".", "",
                                 MessageIcon::Exclamation, MessageButtons::Ok});
}

void frmDrawGraph::PrintMenu_Click() {
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted) return;
    Render(printer);
}

}  // namespace tavrelle
