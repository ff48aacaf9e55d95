#pragma once

#include <array>
#include <cstdint>

namespace tavrelle {

// The uniform stream of the randomisation: two congruential streams combined through a shuffle
// table. Its output is fixed bit for bit by three choices that differ from the usual textbook
// form and must stay: quotients are rounded to nearest (ties to even), not floored, so
// remainders may be negative; the table has 33 slots, because the rounded slot index runs from 0
// to 32; and a positive seed does not fill the table, so the first draws read empty slots.
class RandomNumGen {
public:
    // Exact to the bit, as hexadecimal literals (bits 0x3E0000000AA00007 and 0x3FEFFFFFBF935359).
    static constexpr double kScale = 0x1.000000aa00007p-31;
    static constexpr double kCeiling = 0x1.fffffbf935359p-1;

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

    // The largest shuffled value whose number stays at or below the ceiling; every larger one
    // gives the ceiling itself, and so an equal key.
    static constexpr std::int32_t kLastUnclamped = [] {
        std::int64_t low = 1;
        std::int64_t high = 2147483562;
        while (low < high) {
            std::int64_t mid = (low + high + 1) / 2;
            if (static_cast<double>(mid) * kScale > kCeiling)
                high = mid - 1;
            else
                low = mid;
        }
        return static_cast<std::int32_t>(low);
    }();

private:
    // x / d as a double division rounded to nearest, ties to even, for 0 <= x < 2^31. For these
    // magnitudes the double quotient is never nearer a half than the exact one by more than its
    // rounding error, so integers give the same result; written without branches, because the
    // rounding goes either way at random.
    template <std::uint32_t d>
    static std::uint32_t RoundedQuotient(std::uint32_t x) {
        std::uint32_t q = x / d;
        std::uint32_t r = x - q * d;
        return q + static_cast<std::uint32_t>(2 * r + (q & 1U) > d);
    }

    // multiplier x (state - k x divisor) - k x factor, modulo the modulus: the remainder of the
    // rounded quotient may be negative, the result is the same as multiplier x state mod modulus.
    template <std::uint32_t divisor, std::int64_t multiplier, std::int64_t factor,
              std::int64_t modulus>
    static std::int32_t Advance(std::int32_t state) {
        auto k =
            static_cast<std::int64_t>(RoundedQuotient<divisor>(static_cast<std::uint32_t>(state)));
        std::int64_t next = multiplier * (state - k * divisor) - k * factor;
        next += next < 0 ? modulus : 0;
        return static_cast<std::int32_t>(next);
    }

    // States stay positive: the seed path makes idum at least 1, and each step maps 1..modulus-1
    // onto itself; iy is 0 only before the first draw.
    std::int32_t NextShuffled() {
        if (idum_ <= 0) FillTable();
        idum_ = Advance<53668, 40014, 12211, 2147483563>(idum_);
        idum2_ = Advance<52774, 40692, 3791, 2147483399>(idum2_);
        std::uint32_t slot = RoundedQuotient<67108862>(static_cast<std::uint32_t>(iy_));
        std::int64_t shuffled = static_cast<std::int64_t>(iv_[slot]) - idum2_;
        iv_[slot] = idum_;
        shuffled += shuffled < 1 ? 2147483562 : 0;
        iy_ = static_cast<std::int32_t>(shuffled);
        return iy_;
    }
    void FillTable();

    std::int32_t idum_ = 0;
    std::int32_t idum2_ = 123456789;
    std::int32_t iy_ = 0;
    std::array<std::int32_t, 33> iv_{};
};

}  // namespace tavrelle
