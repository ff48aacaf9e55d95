#pragma once

#include <vector>

namespace tavrelle {

// The commands and panes of the main screen, as the state table and the frame's command table
// name them. A new command is one id here, one row in the frame's menu or toolbar table and a
// handler.
enum class Control {
    // menu commands
    mnuNew,
    mnuFileOpen,
    mnuSaveAs,
    mnuSaveDataAs,
    mnuFileExit,
    mnuCut,
    mnuCopy,
    mnuPaste,
    mnuSelectAll,
    mnuDelete,
    mnuToggle,
    mnuRandAll,
    mnuDisplayGraphs,
    mnuAnalysis,
    mnuNulls,
    mnuLikelihood,
    mnuStudyOverview,
    mnuExportReport,
    mnuCascade,
    mnuTile,
    mnuHelpContents,
    mnuHelpIndex,
    mnuHelpPDF,
    mnuHelpQ,
    mnuHelpAbout,
    // toolbar buttons
    ToolNew,
    ToolOpen,
    ToolSave,
    ToolCut,
    ToolCopy,
    ToolPaste,
    ToolToggle,
    ToolCloseGraphs,
    ToolEstimate,
    ToolCompare,
    ToolStudy,
    // settings panel and bottom bar
    RepeatLabel,
    RepeatCombo,
    MaxAlleleLabel,
    ValidateLabel,
    CILabel,
    CICombo,
    XLabel,
    TablesLabel,
    PLocusButton,
    LocusTextBox,
    NLocusButton,
    AllButton,
    SizeTextBox,
    ValidateButton,
    RandButton,
    RandTextBox,
    NextPopButton,
    PPopButton,
    NPopButton,
};

enum class Setting { Enable, Disable, Show, Hide };

struct ControlSetting {
    Control control;
    Setting setting;
};

// The moments at which the screen puts a set of controls into a known state; every command
// that changes enabling names one of these instead of toggling controls itself.
enum class ScreenState {
    NoData,             // ClearDisplay: nothing loaded
    OpeningFile,        // File Open, before the dialog
    DataShown,          // a file's first population on screen, or the screen after a reset
    ResetAfterFailure,  // ResetDisplay before the store is rebuilt
    NewGrid,            // an empty grid made by New
    CheckStarted,       // the check has begun
    CheckAllowsRun,     // the check leaves the run commands on
    AfterRun,           // a run has finished
    NextPopulation,     // Next Population loaded a population not seen before
    BrowsePopulations,  // the arrows moved to a population seen before
    GraphsClosed,       // Close All Graphs
    GridHidden,         // Show/Hide DataGrid hid the grid
    GridShown,          // ... and showed it again
    RowsSelected,       // the grid has a selection
    NoRowsSelected,     // ... and has none
};

// What each state sets, in order.
const std::vector<ControlSetting>& SettingsOf(ScreenState state);

}  // namespace tavrelle
