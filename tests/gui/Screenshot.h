#pragma once

#include <QApplication>
#include <QDir>
#include <QString>
#include <QWidget>
#include <cstdlib>
#include <string>

namespace tavrelle {

// Saves a picture of a window to the folder named by TAVRELLE_SCREENSHOTS, if it is set, so that
// the screens can be looked at and the help's images taken from them.
inline void GrabWindow(QWidget& window, const std::string& name) {
    QApplication::processEvents();
    const char* folder = std::getenv("TAVRELLE_SCREENSHOTS");
    if (!folder) return;
    QDir().mkpath(folder);
    window.grab().save(QString("%1/%2.png").arg(folder, QString::fromStdString(name)));
}

}  // namespace tavrelle
