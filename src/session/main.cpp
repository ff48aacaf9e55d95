// Tavrelle, the desktop program. It takes no command line.
#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QStandardPaths>
#include <QThread>

#include "session/DesktopInteraction.h"
#include "session/Session.h"
#include "session/frmMain.h"
#include "session/frmSplash.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("Tavrelle");
    QApplication::setOrganizationName("Tavrelle");

    tavrelle::frmSplash splash;
    splash.move(splash.screen()->geometry().center() - splash.rect().center());
    splash.show();
    QApplication::processEvents();
    QThread::msleep(3000);  // the splash stands for three seconds, nothing else happens

    // The folder the working logs would be written to.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/LogFiles");

    tavrelle::Session session;
    tavrelle::DesktopInteraction interaction;
    tavrelle::frmMain main(session, interaction,
                           QCoreApplication::applicationDirPath().toStdString());
    interaction.SetOwner(&main);
    main.endSession = [](int code) { QCoreApplication::exit(code); };
    splash.close();
    main.show();
    return QApplication::exec();
}
