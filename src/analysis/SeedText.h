#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/ProgramError.h"

namespace tavrelle {

// A seed typed by a user, read by the one rule every front end shares: numeric, no point, not
// negative, and within the generator's signed 32 bits (0 to 2147483647; 0 is taken). A larger
// value would reach the generator negative and take its table-fill branch, where 2^32 - 1 and 0
// give the same stream, so it is refused rather than wrapped.
struct SeedReading {
    enum class Refusal {
        None,
        NotPositiveInteger,  // a point, or a negative whole number
        NotANumber,          // the conversion fails
        TooLarge,            // numeric, whole, past 32 bits
    };
    std::int32_t seed = 0;
    Refusal refusal = Refusal::None;
    // The conversion's own error for NotANumber and TooLarge: the seed dialog lets it end the
    // command, as its conversion always has.
    std::optional<ProgramError> conversionError;

    bool Accepted() const { return refusal == Refusal::None; }
};

SeedReading ParseSeed(std::string_view text);

}  // namespace tavrelle
