// Tavrelle, the desktop program. Its one argument, when given, is a data file to open once the
// main screen stands, as File > Open would (how a file manager opens a .gen file with it).
#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

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
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 1)
        QTimer::singleShot(
            0, &main, [&main, file = arguments.at(1).toStdString()] { main.OpenNamedFile(file); });
    return QApplication::exec();
}
