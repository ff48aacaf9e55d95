#pragma once

namespace tavrelle {

// The main screen's answers by which the check and the Possible Errors dialog steer a run.
// The screen owns them; the check and the dialog's actions set them.
struct CheckFlags {
    // The population changed or is new: Analyse must check first.
    bool UncheckedData = true;
    // Analyse is in progress: the check leaves out its summary boxes.
    bool AnalyseInProgress = false;
    // The motifs were all set: the run may follow.
    bool CheckOk = false;
    // No Possible Errors dialog is needed.
    bool CheckClean = false;
    // The run is not to start.
    bool AbandonRun = false;
};

}  // namespace tavrelle
