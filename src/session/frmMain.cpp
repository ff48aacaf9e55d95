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

#include "analysis/StatisticalTables.h"
#include "base/InstallPaths.h"
#include "session/GridView.h"
#include "session/MotifPanel.h"
#include "session/RunController.h"
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
    helpFile_ = (programFolder_ / "TavrelleHelp").string();
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
    StatusPanel1->setObjectName("StatusPanel1");
    statusBar()->addWidget(StatusPanel1, 1);

    // Where the frame stood at the end of the last session, or the first-session defaults.
    QSettings settings("Tavrelle", "Tavrelle");
    settings.beginGroup("Settings");
    auto value = [&](const char* key, const char* fallback) {
        return static_cast<double>(settings.value(key, fallback).toString().toFloat());
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
    BuildRunController();
    ShowLeftPanel(true);
    ShowMessageBar(false);
    ClearDisplay();
    ShowGrid(false);
    CloseGridButton->hide();
}

void frmMain::BuildRunController() {
    RunController::Screen screen;
    screen.apply = [this](ScreenState state) { Apply(state); };
    screen.showLeftPanel = [this](bool shown) { ShowLeftPanel(shown); };
    screen.showMessageBar = [this](bool shown) { ShowMessageBar(shown); };
    screen.showGrid = [this](bool shown) { ShowGrid(shown); };
    screen.setToggleButton = [this](bool shown) { SetToggleButton(shown); };
    screen.listFindings = [this](const std::string& listing) {
        // The listing takes a sixth of the message bar's width.
        ShowLeftPanel(true);
        const int total = verticalSplitter_->width();
        const int panel = std::max(total / 6, LeftPanel->minimumSizeHint().width());
        verticalSplitter_->setSizes({panel, total - panel});
        LocationText->setPlainText(QString::fromStdString(listing));
    };
    screen.clearTexts = [this] {
        LocationText->clear();
        AnalysisTBox->clear();
        AdvisoryTBox->clear();
    };
    screen.closeGraphs = [this] { mnuCloseGraphs_Click(); };
    screen.showLocusGraphs = [this] { ShowLocusGraphs(); };
    screen.resetDisplay = [this] { ResetDisplay(); };
    screen.reloadGrid = [this] { gridModel_.Reload(); };
    screen.readsWorkbook = [this] { return isExcel; };
    run_ = std::make_unique<RunController>(
        session_, interaction_, flags, suspectCells, *motifs_,
        RunController::Panel{this, SizeTextBox, RandTextBox, CICombo}, std::move(screen),
        InstalledFile(programFolder_, kChiSquareTableFile).parent_path());
}

Int16 frmMain::LocusOnScreen() const {
    return motifs_->CurrentLocus();
}

void frmMain::ValidateButton_Click() {
    run_->ValidateButton_Click();
}

void frmMain::RandButton_Click() {
    run_->RandButton_Click();
}

frmMain::~frmMain() {
    // Focus moves while the children go; the screen's state must not be touched by then.
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
}

void frmMain::Connect(QAction* action, Command command) {
    connect(action, &QAction::triggered, this,
            [this, command] { Guarded([=, this] { (this->*command)(); }); });
}

void frmMain::Connect(QAbstractButton* button, Command command) {
    connect(button, &QAbstractButton::clicked, this,
            [this, command] { Guarded([=, this] { (this->*command)(); }); });
}

QAction* frmMain::Action(Control id) const {
    return qobject_cast<QAction*>(controls_.at(id));
}

void frmMain::BuildMenus() {
    enum class Before { Nothing, Separator };
    struct MenuCommand {
        const char* menu;
        Control id;
        const char* name;
        const char* text;
        Command command;
        Before before = Before::Nothing;
    };
    // The blanks align the shortcut text; the keys themselves belong to the grid.
    const MenuCommand commands[] = {
        {"&File", Control::mnuNew, "mnuNew", "&New                   Ctrl+N",
         &frmMain::mnuNew_Click},
        {"&File", Control::mnuFileOpen, "mnuFileOpen", "&Open...             Ctrl+O",
         &frmMain::mnuFileOpen_Click},
        {"&File", Control::mnuSaveAs, "mnuSaveAs", "Save &As...         Ctrl+S",
         &frmMain::mnuSaveAs_Click, Before::Separator},
        {"&File", Control::mnuSaveDataAs, "mnuSaveDataAs", "Save &Data As...",
         &frmMain::mnuSaveDataAs_Click},
        {"&File", Control::mnuExportReport, "mnuExportReport", "Export &Report...",
         &frmMain::mnuExportReport_Click},
        {"&File", Control::mnuFileExit, "mnuFileExit", "E&xit", &frmMain::mnuFileExit_Click,
         Before::Separator},
        {"&Edit", Control::mnuCut, "mnuCut", "Cu&t                    Ctrl+X",
         &frmMain::mnuCut_Click},
        {"&Edit", Control::mnuCopy, "mnuCopy", "&Copy                 Ctrl+C",
         &frmMain::mnuCopy_Click},
        {"&Edit", Control::mnuPaste, "mnuPaste", "&Paste                Ctrl+V",
         &frmMain::mnuPaste_Click},
        {"&Edit", Control::mnuSelectAll, "mnuSelectAll", "Select A&ll           Ctrl+A",
         &frmMain::mnuSelectAll_Click, Before::Separator},
        {"&Edit", Control::mnuDelete, "mnuDelete", "&Delete", &frmMain::mnuDelete_Click,
         Before::Separator},
        {"&View", Control::mnuToggle, "mnuToggle", "&Show/Hide DataGrid",
         &frmMain::mnuToggle_Click},
        {"&Tools", Control::mnuRandAll, "mnuRandAll", "&Randomise All", &frmMain::RandButton_Click},
        {"&Tools", Control::mnuDisplayGraphs, "mnuDisplayGraphs", "&Analyse Data",
         &frmMain::RandButton_Click},
        {"&Tools", Control::mnuAnalysis, "mnuAnalysis", "&Estimate Frequencies",
         &frmMain::mnuAnalysis_Click, Before::Separator},
        {"&Tools", Control::mnuNulls, "mnuNulls", "&Compare Loci", &frmMain::mnuNulls_Click},
        {"&Tools", Control::mnuLikelihood, "mnuLikelihood", "&Likelihood Estimates",
         &frmMain::mnuLikelihood_Click},
        {"&Tools", Control::mnuStudyOverview, "mnuStudyOverview", "&Study Overview",
         &frmMain::mnuStudyOverview_Click, Before::Separator},
        {"&Window", Control::mnuCascade, "mnuCascade", "&Cascade", &frmMain::mnuCascade_Click},
        {"&Window", Control::mnuTile, "mnuTile", "&Tile", &frmMain::mnuTile_Click},
        {"&Help", Control::mnuHelpContents, "mnuHelpContents", "&Contents",
         &frmMain::mnuHelpContents_Click},
        {"&Help", Control::mnuHelpIndex, "mnuHelpIndex", "&Index", &frmMain::mnuHelpIndex_Click},
        {"&Help", Control::mnuHelpPDF, "mnuHelpPDF", "&User Guide (PDF)",
         &frmMain::mnuHelpPDF_Click, Before::Separator},
        {"&Help", Control::mnuHelpQ, "mnuHelpQ", "Questionnaire", &frmMain::mnuHelpQ_Click,
         Before::Separator},
        {"&Help", Control::mnuHelpAbout, "mnuHelpAbout", "&About ", &frmMain::mnuHelpAbout_Click,
         Before::Separator},
    };
    std::map<std::string, QMenu*> menus;
    for (const MenuCommand& row : commands) {
        QMenu*& menu = menus[row.menu];
        if (!menu) menu = menuBar()->addMenu(row.menu);
        if (row.before == Before::Separator) menu->addSeparator();
        Connect(Register(row.id, row.name, menu->addAction(row.text)), row.command);
    }
    Action(Control::mnuRandAll)->setVisible(false);  // kept, never offered

    // Below its own commands the Window menu lists the open windows, as they stand when it
    // opens.
    QMenu* window = menus.at("&Window");
    window->addSeparator();
    connect(window, &QMenu::aboutToShow, this, [this, window] {
        const QList<QAction*> items = window->actions();
        const auto separator =
            std::find_if(items.begin(), items.end(), [](QAction* a) { return a->isSeparator(); });
        for (auto item = separator + 1; item < items.end(); ++item)
            delete *item;
        for (QMdiSubWindow* child : mdiArea->subWindowList()) {
            QAction* item = window->addAction(child->windowTitle());
            connect(item, &QAction::triggered, this,
                    [this, child] { mdiArea->setActiveSubWindow(child); });
        }
    });
}

void frmMain::mnuCascade_Click() {
    mdiArea->cascadeSubWindows();
}

void frmMain::mnuTile_Click() {
    mdiArea->tileSubWindows();
}

void frmMain::BuildToolbar() {
    tbToolbar = addToolBar("Toolbar");
    tbToolbar->setObjectName("tbToolbar");
    tbToolbar->setMovable(false);
    tbToolbar->setIconSize(QSize(24, 24));
    enum class Group { Same, New };
    struct Button {
        Group group;
        Control id;
        const char* icon;
        const char* name;
        const char* toolTip;
        Command command;
    };
    const Button buttons[] = {
        {Group::New, Control::ToolNew, "new", "New", "Open a blank DataGrid",
         &frmMain::mnuNew_Click},
        {Group::Same, Control::ToolOpen, "open", "Open", "Open a file for analysis",
         &frmMain::mnuFileOpen_Click},
        {Group::Same, Control::ToolSave, "save", "Save", "Save a DataGrid to Excel",
         &frmMain::mnuSaveAs_Click},
        {Group::New, Control::ToolCut, "cut", "Cut", "Cut selected rows", &frmMain::mnuCut_Click},
        {Group::Same, Control::ToolCopy, "copy", "Copy", "Copy selected rows",
         &frmMain::mnuCopy_Click},
        {Group::Same, Control::ToolPaste, "paste", "Paste", "Paste from clipboard",
         &frmMain::mnuPaste_Click},
        {Group::New, Control::ToolToggle, "grid", "Toggle", "Show the DataGrid",
         &frmMain::mnuToggle_Click},
        {Group::New, Control::ToolCloseGraphs, "closegraphs", "CloseGraphs", "Close all Graphs",
         &frmMain::mnuCloseGraphs_Click},
        {Group::New, Control::ToolEstimate, "estimate", "Analysis",
         "Display estimates of allele frequencies", &frmMain::mnuAnalysis_Click},
        {Group::New, Control::ToolCompare, "compare", "Nulls", "Compare null alleles across loci",
         &frmMain::mnuNulls_Click},
        {Group::New, Control::ToolStudy, "study", "StudyOverview",
         "Study overview: every population of the file", &frmMain::mnuStudyOverview_Click},
    };
    for (const Button& button : buttons) {
        if (button.group == Group::New) tbToolbar->addSeparator();
        QAction* action =
            tbToolbar->addAction(QIcon(QString(":/icons/%1.svg").arg(button.icon)), button.name);
        action->setToolTip(button.toolTip);
        Connect(Register(button.id, button.name, action), button.command);
    }
}

QWidget* frmMain::BuildLeftPanel() {
    LeftPanel = new QWidget(this);
    LeftPanel->setObjectName("LeftPanel");
    auto* layout = new QVBoxLayout(LeftPanel);
    layout->setContentsMargins(4, 4, 4, 4);

    motifs_ = new MotifPanel(
        LeftPanel, [this](Control id, const char*, QObject* control) { controls_[id] = control; },
        [this](const std::function<void()>& handler) { Guarded(handler); },
        [this] { return PopulationNumber; });
    QWidget* motif = motifs_->Widget();

    auto* size = new QGroupBox(LeftPanel);
    auto* sizeLayout = new QHBoxLayout(size);
    MaxAlleleLabel = Register(Control::MaxAlleleLabel, "MaxAlleleLabel",
                              new QLabel("Maximum Expected Allele Size", size));
    MaxAlleleLabel->setWordWrap(true);
    SizeTextBox = Register(Control::SizeTextBox, "SizeTextBox", new QLineEdit(size));
    SizeTextBox->setToolTip("Enter a size to check for unexpected values");
    SizeTextBox->setFixedWidth(48);
    sizeLayout->addWidget(MaxAlleleLabel, 1);
    sizeLayout->addWidget(SizeTextBox);

    auto* check = new QGroupBox(LeftPanel);
    auto* checkLayout = new QHBoxLayout(check);
    ValidateLabel = Register(Control::ValidateLabel, "ValidateLabel",
                             new QLabel("Unusual Observations", check));
    ValidateButton =
        Register(Control::ValidateButton, "ValidateButton", new QPushButton("&Check", check));
    ValidateButton->setToolTip("Check the values in the currently displayed population");
    checkLayout->addWidget(ValidateLabel, 1);
    checkLayout->addWidget(ValidateButton);

    auto* run = new QGroupBox(LeftPanel);
    auto* runLayout = new QGridLayout(run);
    CILabel = Register(Control::CILabel, "CILabel", new QLabel("Confidence Interval", run));
    CICombo = Register(Control::CICombo, "CICombo", new QComboBox(run));
    CICombo->addItems({"95%", "99%", "100% (range)", "Bonferroni"});
    CICombo->setToolTip("Select a Confidence Interval from the dropdown");
    RandTextBox = Register(Control::RandTextBox, "RandTextBox", new QLineEdit(run));
    RandTextBox->setToolTip("The number of randomisations");
    RandTextBox->setFixedWidth(56);
    XLabel = Register(Control::XLabel, "XLabel", new QLabel("randomisations", run));
    RandButton = Register(Control::RandButton, "RandButton", new QPushButton("&Analyse", run));
    RandButton->setToolTip("Click to randomise the data in the current population");
    runLayout->addWidget(CILabel, 0, 0);
    runLayout->addWidget(CICombo, 0, 1);
    runLayout->addWidget(RandTextBox, 1, 0);
    runLayout->addWidget(XLabel, 1, 1);
    runLayout->addWidget(RandButton, 2, 0, 1, 2);

    LocationText = ReadOnlyText(LeftPanel);
    LocationText->setObjectName("LocationText");
    for (QWidget* frame : {static_cast<QWidget*>(motif), static_cast<QWidget*>(size),
                           static_cast<QWidget*>(check), static_cast<QWidget*>(run)})
        layout->addWidget(frame);
    layout->addWidget(LocationText, 1);
    LeftPanel->setMinimumWidth(TwipsToPixels(2800, this));

    Connect(ValidateButton, &frmMain::ValidateButton_Click);
    Connect(RandButton, &frmMain::RandButton_Click);
    // Choosing a motif after a clean check brings the check back.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now == motifs_->Combo()) flags.UncheckedData = true;
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
    CloseGridButton->setObjectName("CloseGridButton");
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

    Connect(CloseGridButton, &frmMain::CloseGridButton_Click);
    DataGrid1->onShiftClick = [this] {
        interaction_.Show(
            {"Use the Control key and the left mouse button \r\n\tto select multiple "
             "rows.",
             "Possible input error", MessageIcon::Exclamation, MessageButtons::Ok});
    };
    DataGrid1->onSelectionMouseUp = [this] { OnGridSelectionChanged(); };
    // The grid's own deletion, from the row headers' menu, passes the before-delete rule.
    GridDeleteAction = new QAction("Delete Rows", DataGrid1);
    GridDeleteAction->setObjectName("GridDeleteAction");
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
    AdvisoryTBox->setObjectName("AdvisoryTBox");
    AnalysisTBox = ReadOnlyText(MessageBar);
    AnalysisTBox->setObjectName("AnalysisTBox");
    layout->addWidget(AdvisoryTBox);
    layout->addWidget(AnalysisTBox);
    return MessageBar;
}

QWidget* frmMain::BuildBottomBar() {
    BottomBar = new QWidget(this);
    auto* layout = new QHBoxLayout(BottomBar);
    layout->setContentsMargins(6, 4, 6, 4);
    NextPopButton = Register(Control::NextPopButton, "NextPopButton",
                             new QPushButton("&Next Population", BottomBar));
    NextPopButton->setToolTip("Load the next population");
    PPopButton = Register(Control::PPopButton, "PPopButton", new QPushButton("<", BottomBar));
    PPopButton->setToolTip("Previous population");
    NPopButton = Register(Control::NPopButton, "NPopButton", new QPushButton(">", BottomBar));
    NPopButton->setToolTip("Next population");
    for (QPushButton* arrow : {PPopButton, NPopButton})
        arrow->setFixedWidth(32);
    TablesLabel =
        Register(Control::TablesLabel, "TablesLabel", new QLabel("Loaded Pops.", BottomBar));
    ShowAllPopsButton = new QPushButton("Show All", BottomBar);
    ShowAllPopsButton->hide();
    ShowAllPopsButton->setEnabled(false);
    ExitButton = new QPushButton("E&xit", BottomBar);
    ExitButton->setObjectName("ExitButton");
    ExitButton->setToolTip("Close down the application");
    layout->addWidget(NextPopButton);
    layout->addSpacing(12);
    layout->addWidget(PPopButton);
    layout->addWidget(TablesLabel);
    layout->addWidget(NPopButton);
    layout->addWidget(ShowAllPopsButton);
    layout->addStretch(1);
    layout->addWidget(ExitButton);

    Connect(NextPopButton, &frmMain::NextPopButton_Click);
    Connect(NPopButton, &frmMain::NPopButton_Click);
    Connect(PPopButton, &frmMain::PPopButton_Click);
    Connect(ExitButton, &frmMain::mnuFileExit_Click);
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
