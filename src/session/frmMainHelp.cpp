// Help topics, the user guide, the questionnaire and the about box.
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

void frmMain::mnuHelpContents_Click() {
    if (HelpFile.empty()) {
        interaction_.Show(
            {"Unable to display Help Contents. There is no Help associated with this "
             "project.",
             windowTitle().toStdString(), MessageIcon::Information, MessageButtons::Ok});
        return;
    }
    interaction_.ShowHelp(HelpFile, "", 1);
}

void frmMain::mnuHelpIndex_Click() {
    if (HelpFile.empty()) {
        interaction_.Show({kNoHelpIndex, windowTitle().toStdString(), MessageIcon::Information,
                           MessageButtons::Ok});
        return;
    }
    interaction_.ShowHelp(HelpFile, "", 2);
}

void frmMain::DisplayAlleleFreqHelp() {
    if (HelpFile.empty()) {
        interaction_.Show({kNoHelpIndex, windowTitle().toStdString(), MessageIcon::Information,
                           MessageButtons::Ok});
        return;
    }
    interaction_.ShowHelp(HelpFile, "::/CorrectedInfo.htm", 1);
}

void frmMain::DisplayNullCalcHelp() {
    if (HelpFile.empty()) {
        interaction_.Show({kNoHelpIndex, windowTitle().toStdString(), MessageIcon::Information,
                           MessageButtons::Ok});
        return;
    }
    interaction_.ShowHelp(HelpFile, "::/NullAllelesAL.htm", 1);
}

void frmMain::DisplayAdjGenoHelp() {
    if (HelpFile.empty()) {
        interaction_.Show({kNoHelpIndex, windowTitle().toStdString(), MessageIcon::Information,
                           MessageButtons::Ok});
        return;
    }
    interaction_.ShowHelp(HelpFile, "::/AdjustGenos.htm", 1);
}

void frmMain::mnuHelpPDF_Click() {
    const int code = DisplayThisFile((programFolder_ / "User_Guide.pdf").string());
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
    DisplayThisFile((programFolder_ / "Questionnaire.xls").string());
}

void frmMain::mnuHelpAbout_Click() {
    frmAbout about(programFolder_, this);
    about.exec();
}

}  // namespace tavrelle
