// tavrelle-help-pictures OUTPUT_FOLDER [HELP_FOLDER]
//
// Saves a picture of Tavrelle's help viewer at every topic of the help's contents, as
// help-<Page>.png, and at its index, as help-index.png, so that the help can be looked over as
// users see it. HELP_FOLDER defaults to docs/help of the sources this tool was built from. With no
// display it draws offscreen.
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <cstdlib>
#include <iostream>
#include <string>

#include "session/HelpViewer.h"

namespace {

bool Save(tavrelle::HelpViewer& viewer, const QDir& folder, const QString& name) {
    QApplication::processEvents();
    const QString path = folder.filePath(name + ".png");
    if (viewer.grab().save(path)) return true;
    std::cerr << "tavrelle-help-pictures: cannot write " << path.toStdString() << "\n";
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: tavrelle-help-pictures OUTPUT_FOLDER [HELP_FOLDER]\n";
        return 2;
    }
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY") &&
        !std::getenv("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QString help = argc == 3 ? QString::fromLocal8Bit(argv[2]) : TAVRELLE_HELP_SOURCE;
    const tavrelle::HelpBundle bundle(help);
    if (!bundle.Exists()) {
        std::cerr << "tavrelle-help-pictures: no help pages in " << help.toStdString() << "\n";
        return 1;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!QDir().mkpath(folder.path())) {
        std::cerr << "tavrelle-help-pictures: cannot make " << folder.path().toStdString() << "\n";
        return 1;
    }
    tavrelle::HelpViewer viewer;
    viewer.resize(900, 640);
    bool saved = true;
    int pictures = 0;
    for (const tavrelle::HelpLink& link : bundle.Contents()) {
        viewer.ShowHelp(help.toStdString(), "::/" + link.page.toStdString(), 1);
        saved = Save(viewer, folder, "help-" + QFileInfo(link.page).baseName()) && saved;
        ++pictures;
    }
    viewer.ShowHelp(help.toStdString(), "", 2);
    saved = Save(viewer, folder, "help-index") && saved;
    std::cout << pictures + 1 << " pictures of the help written to " << folder.path().toStdString()
              << "\n";
    return saved ? 0 : 1;
}
