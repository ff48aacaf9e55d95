#pragma once

#include <cstdint>
#include <limits>

#include "base/ProgramError.h"

namespace tavrelle {

// Sizes, counts and indices are signed 16-bit throughout the analysis; leaving the range is a
// program error ("Overflow"), never a wrap or a saturation.
using Int16 = std::int16_t;

constexpr Int16 Narrow16(long long value) {
    if (value < std::numeric_limits<Int16>::min() || value > std::numeric_limits<Int16>::max()) {
        throw ProgramError::Overflow();
    }
    return static_cast<Int16>(value);
}

constexpr std::int32_t Narrow32(long long value) {
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throw ProgramError::Overflow();
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace tavrelle
