#pragma once

#include <cstdint>

#include "base/Int16.h"

namespace tavrelle {

// How wide the counts of a run are. The desktop's Analyse keeps the 16-bit counters the system
// prescribes: leaving them is the program error "Overflow", which for 2 x samples comes at
// 16,384 samples. The study run (the batch program, the study overview, R, the web page) counts
// in 32 bits, so that a population of up to 32,766 samples and any number of suspect values fit.
// Wherever both fit, the counts, and so every result, are the same.
enum class CountWidth { Bits16, Bits32 };

// `value` as a count of that width; one that does not fit is a ProgramError Overflow.
constexpr std::int32_t NarrowCount(long long value, CountWidth width) {
    return width == CountWidth::Bits16 ? Narrow16(value) : Narrow32(value);
}

}  // namespace tavrelle
