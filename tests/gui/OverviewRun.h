#pragma once

#include <QApplication>
#include <QElapsedTimer>

#include "run/screens/frmStudyOverview.h"

namespace tavrelle {

// Lets the overview's run finish, events and all; false when it is still running after two
// minutes.
inline bool WaitForRun(frmStudyOverview* window) {
    QElapsedTimer clock;
    clock.start();
    while (window->Running() && clock.elapsed() < 120000)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    QApplication::processEvents();
    return !window->Running();
}

}  // namespace tavrelle
