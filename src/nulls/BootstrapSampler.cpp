#include "nulls/BootstrapSampler.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavrelle {

BootstrapSampler::BootstrapSampler(std::uint64_t seed, std::uint64_t replicate)
    : state_(seed * 0x9E3779B97F4A7C15ULL + replicate) {
    Next();  // decorrelates neighbouring seeds before the first draw
}

std::uint64_t BootstrapSampler::Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

void BootstrapSampler::Draw(std::vector<int>& multiplicity) {
    const std::uint64_t n = multiplicity.size();
    std::fill(multiplicity.begin(), multiplicity.end(), 0);
    if (n == 0) return;
    // Rejection keeps every individual equally likely (no modulo bias).
    const std::uint64_t limit =
        std::numeric_limits<std::uint64_t>::max() - std::numeric_limits<std::uint64_t>::max() % n;
    for (std::uint64_t draw = 0; draw < n; ++draw) {
        std::uint64_t x;
        do {
            x = Next();
        } while (x >= limit);
        ++multiplicity[x % n];
    }
}

Interval PercentileInterval(std::vector<double> values, double level) {
    std::erase_if(values, [](double v) { return !std::isfinite(v); });
    if (values.empty()) return {kNoValue, kNoValue};
    // Two order statistics each, found by selection rather than a full sort.
    auto quantile = [&](double q) {
        const double at = q * static_cast<double>(values.size() - 1);
        const auto below = static_cast<std::size_t>(std::floor(at));
        const auto nth = values.begin() + static_cast<std::ptrdiff_t>(below);
        std::nth_element(values.begin(), nth, values.end());
        const double low = *nth;
        const double high = nth + 1 < values.end() ? *std::min_element(nth + 1, values.end()) : low;
        return low + (at - static_cast<double>(below)) * (high - low);
    };
    const double tail = (1 - level) / 2;
    return {quantile(tail), quantile(1 - tail)};
}

}  // namespace tavrelle
