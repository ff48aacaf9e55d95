#include "session/DesktopInteraction.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStringList>
#include <QUrl>

#include "checking/screens/frmErrorDialog.h"
#include "formats/SheetReaders.h"
#include "population/FileKind.h"
#include "population/screens/frmExcelExample.h"
#include "population/screens/frmGenepopExample.h"
#include "population/screens/frmSheetDialog.h"
#include "session/HelpViewer.h"
#include "session/frmNewGrid.h"

namespace tavrelle {

QString QtFilter(const std::string& filter) {
    const QStringList parts = QString::fromStdString(filter).split('|');
    QStringList entries;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString name = parts[i];
        // "Text File (*.txt)" already names its pattern; "Genepop (dat)" gets it added.
        if (!name.contains(parts[i + 1])) name += " (" + parts[i + 1] + ")";
        entries << name;
    }
    return entries.join(";;");
}

MessageAnswer DesktopInteraction::Show(const Message& message) {
    QMessageBox box(owner_);
    box.setWindowTitle(
        QString::fromStdString(message.caption.empty() ? "Tavrelle" : message.caption));
    // Lone carriage returns of the program's texts break lines as CR LF does.
    box.setText(QString::fromStdString(message.text).replace("\r\n", "\n").replace('\r', '\n'));
    switch (message.icon) {
        case MessageIcon::None:
            box.setIcon(QMessageBox::NoIcon);
            break;
        case MessageIcon::Critical:
            box.setIcon(QMessageBox::Critical);
            break;
        case MessageIcon::Question:
            box.setIcon(QMessageBox::Question);
            break;
        case MessageIcon::Exclamation:
            box.setIcon(QMessageBox::Warning);
            break;
        case MessageIcon::Information:
            box.setIcon(QMessageBox::Information);
            break;
    }
    switch (message.buttons) {
        case MessageButtons::Ok:
            box.setStandardButtons(QMessageBox::Ok);
            break;
        case MessageButtons::OkCancel:
            box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
            break;
        case MessageButtons::YesNo:
            box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
            break;
        case MessageButtons::YesNoCancel:
            box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
            break;
    }
    switch (box.exec()) {
        case QMessageBox::Cancel:
            return MessageAnswer::Cancel;
        case QMessageBox::Yes:
            return MessageAnswer::Yes;
        case QMessageBox::No:
            return MessageAnswer::No;
        default:
            return ProceedingAnswer(message.buttons) == MessageAnswer::Cancel &&
                           message.buttons == MessageButtons::YesNoCancel
                       ? MessageAnswer::Cancel
                       : MessageAnswer::Ok;
    }
}

void DesktopInteraction::ShowExample(ExampleScreen screen) {
    if (screen == ExampleScreen::Genepop) {
        frmGenepopExample example(owner_);
        example.exec();
        return;
    }
    frmExcelExample example(owner_);
    example.exec();
}

std::optional<std::string> DesktopInteraction::OpenFileName(const FileDialogRequest& request) {
    QFileDialog dialog(owner_, QString::fromStdString(request.title),
                       QString::fromStdString(request.folder), QtFilter(request.filter));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().front().toStdString();
}

std::optional<std::string> DesktopInteraction::SaveFileName(const FileDialogRequest& request) {
    QFileDialog dialog(owner_, QString::fromStdString(request.title),
                       QString::fromStdString(request.folder), QtFilter(request.filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(QString::fromStdString(request.proposedName));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().front().toStdString();
}

ErrorDialogChoice DesktopInteraction::PossibleErrors() {
    frmErrorDialog dialog(owner_);
    dialog.exec();
    return dialog.Choice();
}

std::optional<std::vector<std::string>> DesktopInteraction::NewGridLoci() {
    frmNewGrid dialog(*this, owner_);
    dialog.exec();
    if (dialog.Error()) throw *dialog.Error();
    return dialog.Loci();
}

std::string DesktopInteraction::SheetName(const std::string& /*workbook*/,
                                          const std::vector<std::string>& sheets) {
    frmSheetDialog dialog(*this, sheets, owner_);
    dialog.exec();
    return dialog.SheetName();
}

}  // namespace tavrelle

namespace tavrelle {

int DesktopInteraction::OpenDocument(const std::string& path) {
    const QString target = QString::fromStdString(path);
    // Web pages go to the browser; files to the program the desktop registers for them.
    if (target.startsWith("http://") || target.startsWith("https://"))
        return QDesktopServices::openUrl(QUrl(target)) ? 0 : 31;
    const QFileInfo file(target);
    if (!file.dir().exists()) return 3;
    if (!file.exists()) return 2;
    // No program to open it with: the code the user guide answers with the word about a
    // reader that may not be installed, rather than a silent failure.
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath())) ? 0 : 3;
}

void DesktopInteraction::ShowHelp(const std::string& file, const std::string& topic, int command) {
    SessionHelpViewer(owner_).ShowHelp(file, topic, command);
}

}  // namespace tavrelle
