#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Prompter.h"
#include "checking/SuspectValues.h"

namespace tavrelle {

// A file dialog as the commands ask for one: title, start folder, filter in the
// "Name|pattern|Name|pattern" form, proposed name.
struct FileDialogRequest {
    std::string title;
    std::string folder;
    std::string filter;
    std::string proposedName;
};

// Everything the main screen asks of the user in a modal way: message boxes and example screens
// (as the engine does, through Prompter), file dialogs, the Possible Errors dialog, the new-grid
// dialog and the sheet dialog. The desktop shows real dialogs; tests answer from a script.
class Interaction : public Prompter {
public:
    // A full path, or nothing when the user cancelled.
    virtual std::optional<std::string> OpenFileName(const FileDialogRequest& request) = 0;
    virtual std::optional<std::string> SaveFileName(const FileDialogRequest& request) = 0;
    // frmErrorDialog's answer.
    virtual ErrorDialogChoice PossibleErrors() = 0;
    // frmNewGrid: the locus names of the new grid, or nothing when cancelled.
    virtual std::optional<std::vector<std::string>> NewGridLoci() = 0;
    // frmSheetDialog, offering the workbook's `sheets`: the sheet to read; empty when cancelled.
    virtual std::string SheetName(const std::string& workbook,
                                  const std::vector<std::string>& sheets) = 0;
    // Asks the desktop to open a document with its registered program; the result is the
    // desktop's code: 0 opened, 2 file not found, 3 path not found or no program to open it
    // with, other codes as they come.
    virtual int OpenDocument(const std::string& path) = 0;
    // Shows the help bundle `file` at `topic` ("::/Name.htm", or empty for the contents);
    // command 1 opens a topic or the contents, 2 the index.
    virtual void ShowHelp(const std::string& file, const std::string& topic, int command) = 0;
};

}  // namespace tavrelle
