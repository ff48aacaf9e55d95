#pragma once

#include <vector>

namespace tavrelle {

// The controls whose enabling or visibility the screen's states decide.
enum class Control {
    // menus
    mnuToggle,
    mnuSaveAs,
    mnuDisplayGraphs,
    mnuAnalysis,
    mnuNulls,
    mnuCut,
    mnuCopy,
    mnuPaste,
    mnuSelectAll,
    mnuDelete,
    // toolbar positions
    Toolbar4,
    Toolbar6,
    Toolbar7,
    Toolbar8,
    Toolbar10,
    Toolbar12,
    Toolbar14,
    Toolbar16,
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
