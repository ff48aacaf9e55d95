#pragma once

#include <string>

namespace tavrelle {

// A colour of the study's estimate scale, 0-255 per channel.
struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;

    bool operator==(const Rgb&) const = default;
};

// The estimate scale runs from 0 (pale) to this value (dark) and holds there; an estimate at or
// below 0 (no shortage of heterozygotes) gets the scale's pale end. One fixed scale, so that two
// studies' maps can be compared by eye.
inline constexpr double kEstimateScaleTop = 0.3;

Rgb EstimateColour(double estimate);
// Black or white, whichever reads on the colour.
Rgb TextColourOn(const Rgb& background);
// "#rrggbb".
std::string HexColour(const Rgb& colour);

}  // namespace tavrelle
