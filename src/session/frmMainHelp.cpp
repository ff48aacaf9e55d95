// Help topics, the user guide, the questionnaire and the about box.
#include "base/InstallPaths.h"
#include "session/frmAbout.h"
#include "session/frmMain.h"

namespace tavrelle {

namespace {
constexpr const char* kNoHelpIndex =
    "Unable to display Help Index. There is no Help associated with this project.";
// Where a free PDF reader can be had: a list of readers for every platform.
constexpr const char* kPdfReaderPage = "https://pdfreaders.org/";
}  // namespace

int frmMain::DisplayThisFile(const std::string& path) {
    return interaction_.OpenDocument(path);
}

// The five help routines take one course: the message when the session has no help, the
// viewer at the topic otherwise (command 1 for a topic or the contents, 2 for the index).
void frmMain::ShowHelpTopic(const std::string& topic, int command, const char* noHelpText) {
    if (helpFile_.empty()) {
        interaction_.Show({noHelpText, windowTitle().toStdString(), MessageIcon::Information,
                           MessageButtons::Ok});
        return;
    }
    interaction_.ShowHelp(helpFile_, topic, command);
}

void frmMain::mnuHelpContents_Click() {
    ShowHelpTopic("", 1,
                  "Unable to display Help Contents. There is no Help associated with this "
                  "project.");
}

void frmMain::mnuHelpIndex_Click() {
    ShowHelpTopic("", 2, kNoHelpIndex);
}

void frmMain::DisplayAlleleFreqHelp() {
    ShowHelpTopic("::/CorrectedInfo.htm", 1, kNoHelpIndex);
}

void frmMain::DisplayNullCalcHelp() {
    ShowHelpTopic("::/NullAllelesAL.htm", 1, kNoHelpIndex);
}

void frmMain::DisplayAdjGenoHelp() {
    ShowHelpTopic("::/AdjustGenos.htm", 1, kNoHelpIndex);
}

void frmMain::mnuHelpPDF_Click() {
    const int code = DisplayThisFile(InstalledFile(programFolder_, "User_Guide.pdf").string());
    if (code == 2) {
        interaction_.Show({"The requested file has not been found.", "File Not Found",
                           MessageIcon::Exclamation, MessageButtons::Ok});
    } else if (code == 3) {
        const MessageAnswer answer = interaction_.Show(
            {"Adobe Acrobat Reader may not be installed on this machine.\r\nClick OK to go to "
             "the Web site to download a free copy or click Cancel.",
             "Get Adobe Acrobat Reader", MessageIcon::None, MessageButtons::OkCancel});
        if (answer == MessageAnswer::Ok) DisplayThisFile(kPdfReaderPage);
    }
}

void frmMain::mnuHelpQ_Click() {
    DisplayThisFile(InstalledFile(programFolder_, "Questionnaire.xls").string());
}

void frmMain::mnuHelpAbout_Click() {
    frmAbout about(programFolder_, this);
    about.exec();
}

}  // namespace tavrelle
