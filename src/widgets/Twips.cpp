#include "widgets/Twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <cmath>

namespace tavrelle {

namespace {
double LogicalDpi(const QWidget* widget) {
    if (widget) return widget->logicalDpiX();
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchX() : 96.0;
}
}  // namespace

int TwipsToPixels(double twips, const QWidget* widget) {
    return static_cast<int>(std::lround(twips * LogicalDpi(widget) / 1440.0));
}

double PixelsToTwips(int pixels, const QWidget* widget) {
    return pixels * 1440.0 / LogicalDpi(widget);
}

}  // namespace tavrelle
