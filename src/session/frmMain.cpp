#include "session/frmMain.h"
#include "session/Resources.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/InstallPaths.h"
#include "session/GridView.h"
#include "widgets/Twips.h"

namespace tavrelle {

namespace {

QPlainTextEdit* ReadOnlyText(QWidget* parent) {
    auto* text = new QPlainTextEdit(parent);
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setTabStopDistance(32);
    return text;
}

}  // namespace

frmMain::frmMain(Session& session, Interaction& interaction, std::filesystem::path programFolder,
                 QWidget* parent)
    : QMainWindow(parent),
      session_(session),
      interaction_(interaction),
      programFolder_(std::move(programFolder)) {
    LoadResources();
    setObjectName("frmMain");
    HelpFile = InstalledFile(programFolder_, "TavrelleHelp").string();
    setWindowIcon(QIcon(":/icons/tavrelle.svg"));
    BuildMenus();
    BuildToolbar();

    auto* central = new QWidget(this);
    auto* outer = new QVBoxLayout(central);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    horizontalSplitter_ = new QSplitter(Qt::Vertical, central);
    verticalSplitter_ = new QSplitter(Qt::Horizontal, horizontalSplitter_);
    verticalSplitter_->addWidget(BuildLeftPanel());
    verticalSplitter_->addWidget(BuildGridPanel());
    verticalSplitter_->setHandleWidth(TwipsToPixels(100, this));
    verticalSplitter_->setStretchFactor(1, 1);
    horizontalSplitter_->addWidget(verticalSplitter_);
    horizontalSplitter_->addWidget(BuildMessageBar());
    horizontalSplitter_->setHandleWidth(TwipsToPixels(100, this));
    horizontalSplitter_->setStretchFactor(0, 1);
    outer->addWidget(horizontalSplitter_, 1);
    outer->addWidget(BuildBottomBar());
    setCentralWidget(central);

    StatusPanel1 = new QLabel("  Ready", this);
    statusBar()->addWidget(StatusPanel1, 1);

    // Where the frame stood at the end of the last session, or the first-session defaults.
    QSettings settings("Tavrelle", "Tavrelle");
    settings.beginGroup("Settings");
    auto value = [&](const char* key, const char* fallback) {
        return settings.value(key, fallback).toString().toFloat();
    };
    setGeometry(TwipsToPixels(value("MainLeft", "1000")), TwipsToPixels(value("MainTop", "1000")),
                TwipsToPixels(value("MainWidth", "6500")),
                TwipsToPixels(value("MainHeight", "6500")));
    settings.endGroup();

    gridModel_.onCellChanged = [this] {
        flags.UncheckedData = true;
        ChangedData = true;
    };
    DataGrid1->setModel(&gridModel_);
    ShowLeftPanel(true);
    ShowMessageBar(false);
    ClearDisplay();
    ShowGrid(false);
    CloseGridButton->hide();
}

frmMain::~frmMain() {
    // Focus moves while the children go; the screen's state must not be touched by then.
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
}

void frmMain::Connect(QAction* action, void (frmMain::*command)()) {
    connect(action, &QAction::triggered, this,
            [this, command] { Guarded([=, this] { (this->*command)(); }); });
}

void frmMain::BuildMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    // The blanks align the shortcut text; the keys themselves belong to the grid.
    mnuNew = file->addAction("&New                   Ctrl+N");
    mnuFileOpen = file->addAction("&Open...             Ctrl+O");
    file->addSeparator();
    mnuSaveAs = file->addAction("Save &As...         Ctrl+S");
    mnuExportReport = file->addAction("Export &Report...");
    file->addSeparator();
    mnuFileExit = file->addAction("E&xit");
    QMenu* edit = menuBar()->addMenu("&Edit");
    mnuCut = edit->addAction("Cu&t                    Ctrl+X");
    mnuCopy = edit->addAction("&Copy                 Ctrl+C");
    mnuPaste = edit->addAction("&Paste                Ctrl+V");
    edit->addSeparator();
    mnuSelectAll = edit->addAction("Select A&ll           Ctrl+A");
    edit->addSeparator();
    mnuDelete = edit->addAction("&Delete");
    QMenu* view = menuBar()->addMenu("&View");
    mnuToggle = view->addAction("&Show/Hide DataGrid");
    QMenu* tools = menuBar()->addMenu("&Tools");
    mnuRandAll = tools->addAction("&Randomise All");
    mnuRandAll->setVisible(false);  // kept, never offered
    mnuDisplayGraphs = tools->addAction("&Analyse Data");
    tools->addSeparator();
    mnuAnalysis = tools->addAction("&Estimate Frequencies");
    mnuNulls = tools->addAction("&Compare Loci");
    mnuLikelihood = tools->addAction("&Likelihood Estimates");
    mnuLikelihood->setEnabled(mnuAnalysis->isEnabled());
    connect(mnuAnalysis, &QAction::enabledChanged, mnuLikelihood, &QAction::setEnabled);
    tools->addSeparator();
    mnuStudyOverview = tools->addAction("&Study Overview");
    QMenu* window = menuBar()->addMenu("&Window");
    connect(window, &QMenu::aboutToShow, this, [this, window] {
        window->clear();
        for (QMdiSubWindow* child : mdiArea->subWindowList()) {
            QAction* item = window->addAction(child->windowTitle());
            connect(item, &QAction::triggered, this,
                    [this, child] { mdiArea->setActiveSubWindow(child); });
        }
    });
    QMenu* help = menuBar()->addMenu("&Help");
    mnuHelpContents = help->addAction("&Contents");
    mnuHelpIndex = help->addAction("&Index");
    help->addSeparator();
    mnuHelpPDF = help->addAction("&User Guide (PDF)");
    help->addSeparator();
    mnuHelpQ = help->addAction("Questionnaire");
    help->addSeparator();
    mnuHelpAbout = help->addAction("&About ");

    Connect(mnuNew, &frmMain::mnuNew_Click);
    Connect(mnuFileOpen, &frmMain::mnuFileOpen_Click);
    Connect(mnuSaveAs, &frmMain::mnuSaveAs_Click);
    Connect(mnuFileExit, &frmMain::mnuFileExit_Click);
    Connect(mnuCut, &frmMain::mnuCut_Click);
    Connect(mnuCopy, &frmMain::mnuCopy_Click);
    Connect(mnuPaste, &frmMain::mnuPaste_Click);
    Connect(mnuSelectAll, &frmMain::mnuSelectAll_Click);
    Connect(mnuDelete, &frmMain::mnuDelete_Click);
    Connect(mnuToggle, &frmMain::mnuToggle_Click);
    Connect(mnuDisplayGraphs, &frmMain::RandButton_Click);
    Connect(mnuRandAll, &frmMain::RandButton_Click);
    Connect(mnuAnalysis, &frmMain::mnuAnalysis_Click);
    Connect(mnuNulls, &frmMain::mnuNulls_Click);
    Connect(mnuLikelihood, &frmMain::mnuLikelihood_Click);
    Connect(mnuStudyOverview, &frmMain::mnuStudyOverview_Click);
    Connect(mnuExportReport, &frmMain::mnuExportReport_Click);
    Connect(mnuHelpContents, &frmMain::mnuHelpContents_Click);
    Connect(mnuHelpIndex, &frmMain::mnuHelpIndex_Click);
    Connect(mnuHelpPDF, &frmMain::mnuHelpPDF_Click);
    Connect(mnuHelpQ, &frmMain::mnuHelpQ_Click);
    Connect(mnuHelpAbout, &frmMain::mnuHelpAbout_Click);
}

void frmMain::BuildToolbar() {
    tbToolbar = addToolBar("Toolbar");
    tbToolbar->setObjectName("tbToolbar");
    tbToolbar->setMovable(false);
    tbToolbar->setIconSize(QSize(24, 24));
    struct Button {
        int position;
        const char* icon;
        const char* key;
        const char* toolTip;
        void (frmMain::*command)();
    };
    const Button buttons[] = {
        {2, "new", "New", "Open a blank DataGrid", &frmMain::mnuNew_Click},
        {3, "open", "Open", "Open a file for analysis", &frmMain::mnuFileOpen_Click},
        {4, "save", "Save", "Save a DataGrid to Excel", &frmMain::mnuSaveAs_Click},
        {6, "cut", "Cut", "Cut selected rows", &frmMain::mnuCut_Click},
        {7, "copy", "Copy", "Copy selected rows", &frmMain::mnuCopy_Click},
        {8, "paste", "Paste", "Paste from clipboard", &frmMain::mnuPaste_Click},
        {10, "grid", "Toggle", "Show the DataGrid", &frmMain::mnuToggle_Click},
        {12, "closegraphs", "CloseGraphs", "Close all Graphs", &frmMain::mnuCloseGraphs_Click},
        {14, "estimate", "Analysis", "Display estimates of allele frequencies",
         &frmMain::mnuAnalysis_Click},
        {16, "compare", "Nulls", "Compare null alleles across loci", &frmMain::mnuNulls_Click},
        {18, "study", "StudyOverview", "Study overview: every population of the file",
         &frmMain::mnuStudyOverview_Click},
    };
    int position = 1;
    for (const Button& button : buttons) {
        for (; position < button.position; ++position)
            tbToolbar->addSeparator();
        QAction* action =
            tbToolbar->addAction(QIcon(QString(":/icons/%1.svg").arg(button.icon)), button.key);
        action->setObjectName(button.key);
        action->setToolTip(button.toolTip);
        Connect(action, button.command);
        ToolbarButtons[button.position] = action;
        position = button.position + 1;
    }
}

QWidget* frmMain::BuildLeftPanel() {
    LeftPanel = new QWidget(this);
    LeftPanel->setObjectName("LeftPanel");
    auto* layout = new QVBoxLayout(LeftPanel);
    layout->setContentsMargins(4, 4, 4, 4);

    auto* motif = new QGroupBox(LeftPanel);
    auto* motifLayout = new QGridLayout(motif);
    RepeatLabel = new QLabel("Enter the Repeat Motif for each Locus", motif);
    RepeatLabel->setWordWrap(true);
    LocusTextBox = new QLineEdit(motif);
    LocusTextBox->setReadOnly(true);
    PLocusButton = new QPushButton("<", motif);
    PLocusButton->setToolTip("Move to the previous Locus");
    NLocusButton = new QPushButton(">", motif);
    NLocusButton->setToolTip("Move to the next Locus");
    for (QPushButton* arrow : {PLocusButton, NLocusButton})
        arrow->setFixedWidth(28);
    RepeatCombo = new QComboBox(motif);
    RepeatCombo->addItems({"", "Mononucleotide", "Dinucleotide", "Trinucleotide", "Tetranucleotide",
                           "Pentanucleotide", "Hexanucleotide", "Di-tetra complex"});
    RepeatCombo->setToolTip("Select a Repeat Motif from the dropdown");
    AllButton = new QPushButton("All", motif);
    AllButton->setToolTip("Set all loci to this repeat motif");
    motifLayout->addWidget(RepeatLabel, 0, 0, 1, 3);
    motifLayout->addWidget(PLocusButton, 1, 0);
    motifLayout->addWidget(LocusTextBox, 1, 1);
    motifLayout->addWidget(NLocusButton, 1, 2);
    motifLayout->addWidget(RepeatCombo, 2, 0, 1, 2);
    motifLayout->addWidget(AllButton, 2, 2);

    auto* size = new QGroupBox(LeftPanel);
    auto* sizeLayout = new QHBoxLayout(size);
    MaxAlleleLabel = new QLabel("Maximum Expected Allele Size", size);
    MaxAlleleLabel->setWordWrap(true);
    SizeTextBox = new QLineEdit(size);
    SizeTextBox->setToolTip("Enter a size to check for unexpected values");
    SizeTextBox->setFixedWidth(48);
    sizeLayout->addWidget(MaxAlleleLabel, 1);
    sizeLayout->addWidget(SizeTextBox);

    auto* check = new QGroupBox(LeftPanel);
    auto* checkLayout = new QHBoxLayout(check);
    ValidateLabel = new QLabel("Unusual Observations", check);
    ValidateButton = new QPushButton("&Check", check);
    ValidateButton->setToolTip("Check the values in the currently displayed population");
    checkLayout->addWidget(ValidateLabel, 1);
    checkLayout->addWidget(ValidateButton);

    auto* run = new QGroupBox(LeftPanel);
    auto* runLayout = new QGridLayout(run);
    CILabel = new QLabel("Confidence Interval", run);
    CICombo = new QComboBox(run);
    CICombo->addItems({"95%", "99%", "100% (range)", "Bonferroni"});
    CICombo->setToolTip("Select a Confidence Interval from the dropdown");
    RandTextBox = new QLineEdit(run);
    RandTextBox->setToolTip("The number of randomisations");
    RandTextBox->setFixedWidth(56);
    XLabel = new QLabel("randomisations", run);
    RandButton = new QPushButton("&Analyse", run);
    RandButton->setToolTip("Click to randomise the data in the current population");
    runLayout->addWidget(CILabel, 0, 0);
    runLayout->addWidget(CICombo, 0, 1);
    runLayout->addWidget(RandTextBox, 1, 0);
    runLayout->addWidget(XLabel, 1, 1);
    runLayout->addWidget(RandButton, 2, 0, 1, 2);

    LocationText = ReadOnlyText(LeftPanel);
    for (QWidget* frame : {static_cast<QWidget*>(motif), static_cast<QWidget*>(size),
                           static_cast<QWidget*>(check), static_cast<QWidget*>(run)})
        layout->addWidget(frame);
    layout->addWidget(LocationText, 1);
    LeftPanel->setMinimumWidth(TwipsToPixels(2800, this));

    connect(ValidateButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { ValidateButton_Click(); }); });
    connect(RandButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { RandButton_Click(); }); });
    connect(NLocusButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { NLocusButton_Click(); }); });
    connect(PLocusButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { PLocusButton_Click(); }); });
    connect(AllButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { AllButton_Click(); }); });
    connect(RepeatCombo, &QComboBox::activated, this,
            [this](int index) { Guarded([this, index] { RepeatCombo_Click(index); }); });
    // Choosing a motif after a clean check brings the check back.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now == RepeatCombo) flags.UncheckedData = true;
    });
    return LeftPanel;
}

QWidget* frmMain::BuildGridPanel() {
    gridPanel_ = new QWidget(this);
    auto* layout = new QVBoxLayout(gridPanel_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    captionBar_ = new QWidget(gridPanel_);
    auto* captionRow = new QHBoxLayout(captionBar_);
    captionRow->setContentsMargins(0, 0, 0, 0);
    GridCaption = new QLabel(captionBar_);
    GridCaption->setObjectName("GridCaption");
    GridCaption->setAlignment(Qt::AlignCenter);
    GridCaption->setStyleSheet("QLabel { background: #dfe8f3; font-weight: bold; padding: 3px; }");
    CloseGridButton = new QToolButton(captionBar_);
    CloseGridButton->setText("X");
    CloseGridButton->setToolTip("Click to close the current DataGrid");
    captionRow->addWidget(GridCaption, 1);
    captionRow->addWidget(CloseGridButton);
    layout->addWidget(captionBar_);
    DataGrid1 = new GridView(gridPanel_);
    DataGrid1->setObjectName("DataGrid1");
    layout->addWidget(DataGrid1, 1);
    mdiArea = new QMdiArea(gridPanel_);
    mdiArea->setObjectName("mdiArea");
    layout->addWidget(mdiArea, 1);

    connect(CloseGridButton, &QToolButton::clicked, this,
            [this] { Guarded([this] { CloseGridButton_Click(); }); });
    DataGrid1->onShiftClick = [this] {
        interaction_.Show(
            {"Use the Control key and the left mouse button \r\n\tto select multiple "
             "rows.",
             "Possible input error", MessageIcon::Exclamation, MessageButtons::Ok});
    };
    DataGrid1->onSelectionMouseUp = [this] { OnGridSelectionChanged(); };
    // The grid's own deletion, from the row headers' menu, passes the before-delete rule.
    GridDeleteAction = new QAction("Delete Rows", DataGrid1);
    Connect(GridDeleteAction, &frmMain::GridDeleteRows);
    DataGrid1->verticalHeader()->setContextMenuPolicy(Qt::ActionsContextMenu);
    DataGrid1->verticalHeader()->addAction(GridDeleteAction);
    DataGrid1->onKey = [this](int key, Qt::KeyboardModifiers modifiers) {
        const bool selected = !DataGrid1->PickedRows().empty();
        bool taken = true;
        Guarded([&] {
            if ((key == Qt::Key_Backspace || key == Qt::Key_Delete) &&
                modifiers == Qt::NoModifier) {
                if (selected)
                    DeleteSelectedRows();
                else
                    taken = false;
                return;
            }
            // Ctrl counts only when it is the whole shift state.
            if (modifiers != Qt::ControlModifier) {
                taken = false;
                return;
            }
            switch (key) {
                case Qt::Key_X:
                    if (selected) mnuCut_Click();
                    break;
                case Qt::Key_C:
                    if (selected) mnuCopy_Click();
                    break;
                case Qt::Key_V:
                    mnuPaste_Click();
                    break;
                case Qt::Key_A:
                    mnuSelectAll_Click();
                    break;
                case Qt::Key_S:
                    mnuSaveAs_Click();
                    break;
                case Qt::Key_N:
                    mnuNew_Click();
                    break;
                case Qt::Key_O:
                    mnuFileOpen_Click();
                    break;
                default:
                    taken = false;
            }
        });
        return taken;
    };
    return gridPanel_;
}

QWidget* frmMain::BuildMessageBar() {
    MessageBar = new QWidget(this);
    MessageBar->setObjectName("MessageBar");
    auto* layout = new QHBoxLayout(MessageBar);
    layout->setContentsMargins(4, 4, 4, 4);
    AdvisoryTBox = ReadOnlyText(MessageBar);
    AnalysisTBox = ReadOnlyText(MessageBar);
    layout->addWidget(AdvisoryTBox);
    layout->addWidget(AnalysisTBox);
    return MessageBar;
}

QWidget* frmMain::BuildBottomBar() {
    BottomBar = new QWidget(this);
    auto* layout = new QHBoxLayout(BottomBar);
    layout->setContentsMargins(6, 4, 6, 4);
    NextPopButton = new QPushButton("&Next Population", BottomBar);
    NextPopButton->setToolTip("Load the next population");
    PPopButton = new QPushButton("<", BottomBar);
    PPopButton->setToolTip("Previous population");
    NPopButton = new QPushButton(">", BottomBar);
    NPopButton->setToolTip("Next population");
    for (QPushButton* arrow : {PPopButton, NPopButton})
        arrow->setFixedWidth(32);
    TablesLabel = new QLabel("Loaded Pops.", BottomBar);
    ShowAllPopsButton = new QPushButton("Show All", BottomBar);
    ShowAllPopsButton->hide();
    ShowAllPopsButton->setEnabled(false);
    ExitButton = new QPushButton("E&xit", BottomBar);
    ExitButton->setToolTip("Close down the application");
    layout->addWidget(NextPopButton);
    layout->addSpacing(12);
    layout->addWidget(PPopButton);
    layout->addWidget(TablesLabel);
    layout->addWidget(NPopButton);
    layout->addWidget(ShowAllPopsButton);
    layout->addStretch(1);
    layout->addWidget(ExitButton);

    connect(NextPopButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { NextPopButton_Click(); }); });
    connect(NPopButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { NPopButton_Click(); }); });
    connect(PPopButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { PPopButton_Click(); }); });
    connect(ExitButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { mnuFileExit_Click(); }); });
    return BottomBar;
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    // A resize gives the message bar its 3000 twips again.
    if (horizontalSplitter_ && MessageBar->isVisible()) {
        const int bar = TwipsToPixels(3000, this);
        const int total = horizontalSplitter_->height();
        horizontalSplitter_->setSizes({std::max(0, total - bar), bar});
    }
}

void frmMain::closeEvent(QCloseEvent* event) {
    Guarded([this] {
        // The unload asks about saving again, whatever was answered before, and then ends.
        CloseGrid();
        if (!isMaximized() && !isMinimized()) {
            QSettings settings("Tavrelle", "Tavrelle");
            settings.beginGroup("Settings");
            settings.setValue("MainLeft", QString::number(PixelsToTwips(x(), this)));
            settings.setValue("MainTop", QString::number(PixelsToTwips(y(), this)));
            settings.setValue("MainWidth", QString::number(PixelsToTwips(width(), this)));
            settings.setValue("MainHeight", QString::number(PixelsToTwips(height(), this)));
            settings.endGroup();
        }
    });
    event->accept();
}

}  // namespace tavrelle
