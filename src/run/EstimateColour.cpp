#include "run/EstimateColour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace tavrelle {

namespace {

// Pale yellow through orange to dark red: readable in print and for the usual colour blindness.
constexpr std::array<Rgb, 5> kStops = {Rgb{255, 255, 229}, Rgb{254, 227, 145}, Rgb{254, 153, 41},
                                       Rgb{217, 72, 1}, Rgb{127, 39, 4}};

}  // namespace

Rgb EstimateColour(double estimate) {
    double share =
        std::isfinite(estimate) ? std::clamp(estimate / kEstimateScaleTop, 0.0, 1.0) : 0.0;
    const double position = share * static_cast<double>(kStops.size() - 1);
    const auto low = static_cast<std::size_t>(std::floor(position));
    const std::size_t high = std::min(low + 1, kStops.size() - 1);
    const double t = position - static_cast<double>(low);
    auto mix = [t](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * t)); };
    return {mix(kStops[low].red, kStops[high].red), mix(kStops[low].green, kStops[high].green),
            mix(kStops[low].blue, kStops[high].blue)};
}

Rgb TextColourOn(const Rgb& background) {
    const double luminance =
        0.299 * background.red + 0.587 * background.green + 0.114 * background.blue;
    return luminance < 140 ? Rgb{255, 255, 255} : Rgb{0, 0, 0};
}

std::string HexColour(const Rgb& colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    return text;
}

}  // namespace tavrelle
