#pragma once

class QWidget;

namespace tavrelle {

// Screen measures of the program are in twips, 1440 to the inch; widgets take pixels at the
// screen's logical resolution.
int TwipsToPixels(double twips, const QWidget* widget = nullptr);
double PixelsToTwips(int pixels, const QWidget* widget = nullptr);

}  // namespace tavrelle
