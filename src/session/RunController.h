#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "base/Int16.h"
#include "checking/CheckFlags.h"
#include "checking/SuspectCells.h"
#include "run/RunSettings.h"
#include "session/ScreenStates.h"
#include "session/Session.h"

class QComboBox;
class QLineEdit;
class QWidget;

namespace tavrelle {

class Interaction;
class MotifPanel;

// The road of Analyse on the main screen: the check, the Possible Errors dialog, the number of
// randomisations, the one RunSettings of the run and the engine. The frame hands over the parts
// of the screen a run reads and what it does to the rest; it keeps the wiring.
class RunController {
public:
    // The boxes of the settings panel a run reads.
    struct Panel {
        QWidget* owner = nullptr;  // parent of the progress dialog
        QLineEdit* sizeBox = nullptr;
        QLineEdit* randomisationsBox = nullptr;
        QComboBox* intervals = nullptr;
    };
    // What the frame does for a run.
    struct Screen {
        std::function<void(ScreenState)> apply;
        std::function<void(bool shown)> showLeftPanel, showMessageBar, showGrid, setToggleButton;
        // The check found values to list: the listing beside the grid.
        std::function<void(const std::string& listing)> listFindings;
        std::function<void()> clearTexts, closeGraphs, showLocusGraphs, resetDisplay, reloadGrid;
        std::function<bool()> readsWorkbook;
    };

    RunController(Session& session, Interaction& interaction, CheckFlags& flags,
                  SuspectCells& suspectCells, MotifPanel& motifs, Panel panel, Screen screen,
                  std::filesystem::path tableFolder);

    // Check, Analyse, and the run itself (Analyse once the check lets it).
    void ValidateButton_Click();
    void RandButton_Click();
    void RandomiseData();
    // The population check of the population on screen; true when it is clean.
    bool CheckPopulation();

    // The settings of a run of the population on screen, as the panel holds them.
    RunSettings Settings(std::int32_t seed) const;
    Int16 NumberRandomisations() const { return numberRandomisations_; }

    // Each run takes the clock's seed; a test gives its own to compare front ends.
    std::function<std::int32_t()> seedSource;

private:
    Session& session_;
    Interaction& interaction_;
    CheckFlags& flags_;
    SuspectCells& suspectCells_;
    MotifPanel& motifs_;
    Panel panel_;
    Screen screen_;
    std::filesystem::path tableFolder_;
    Int16 numberRandomisations_ = 1000;
};

}  // namespace tavrelle
