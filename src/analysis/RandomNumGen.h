#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace tavrelle {

// The uniform stream of the randomisation: two congruential streams combined through a shuffle
// table. Its output is fixed bit for bit by three choices that differ from the usual textbook
// form and must stay: quotients are rounded to nearest (ties to even), not floored, so
// remainders may be negative; the table has 33 slots, because the rounded slot index runs from 0
// to 32; and a positive seed does not fill the table, so the first draws read empty slots.
class RandomNumGen {
public:
    static constexpr double kScale = std::bit_cast<double>(0x3E0000000AA00007ULL);
    static constexpr double kCeiling = std::bit_cast<double>(0x3FEFFFFFBF935359ULL);

    // Stores the seed; touches nothing else.
    void SetSeedValue(std::int32_t seed) { idum_ = seed; }

    // The next number, 0 < x <= kCeiling.
    double GeneratedNumber() { return NumberOf(NextShuffled()); }

    // The next draw as an integer key that orders and ties exactly as GeneratedNumber would:
    // sorting by keys gives the order of sorting by numbers, without the floating point.
    std::uint32_t GeneratedKey() { return KeyOf(NextShuffled()); }

    static double NumberOf(std::int32_t shuffled) {
        double number = static_cast<double>(shuffled) * kScale;
        return number > kCeiling ? kCeiling : number;
    }
    static std::uint32_t KeyOf(std::int32_t shuffled) {
        return shuffled > kLastUnclamped ? static_cast<std::uint32_t>(kLastUnclamped) + 1U
                                         : static_cast<std::uint32_t>(shuffled);
    }
    // The largest shuffled value whose number stays below the ceiling; all above it give the
    // ceiling itself, and so equal keys.
    static const std::int32_t kLastUnclamped;

private:
    std::int32_t NextShuffled();
    void FillTable();

    std::int32_t idum_ = 0;
    std::int32_t idum2_ = 123456789;
    std::int32_t iy_ = 0;
    std::array<std::int32_t, 33> iv_{};
};

}  // namespace tavrelle
