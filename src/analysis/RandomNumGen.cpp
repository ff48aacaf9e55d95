#include "analysis/RandomNumGen.h"

#include "base/ProgramError.h"

namespace tavrelle {

namespace {

constexpr std::int64_t kModulus1 = 2147483563;
constexpr std::int64_t kModulus2 = 2147483399;
constexpr std::int64_t kTableDivisor = 67108862;
constexpr std::int64_t kShuffleWrap = 2147483562;

// The quotient x / d of a double division rounded to nearest, ties to even. For these
// magnitudes (|x| < 2^31, d > 2^15) the double quotient is never closer to a half than the
// exact one by more than its rounding error, so integer arithmetic gives the same result.
constexpr std::int64_t RoundedQuotient(std::int64_t x, std::int64_t d) {
    std::int64_t q = x / d;
    std::int64_t r = x % d;
    if (r < 0) {
        r += d;
        --q;
    }
    if (2 * r > d || (2 * r == d && (q & 1) != 0)) ++q;
    return q;
}

constexpr std::int32_t AdvanceFirst(std::int32_t state) {
    std::int64_t k = RoundedQuotient(state, 53668);
    std::int64_t next = 40014 * (state - k * 53668) - k * 12211;
    if (next < 0) next += kModulus1;
    return static_cast<std::int32_t>(next);
}

constexpr std::int32_t AdvanceSecond(std::int32_t state) {
    std::int64_t k = RoundedQuotient(state, 52774);
    std::int64_t next = 40692 * (state - k * 52774) - k * 3791;
    if (next < 0) next += kModulus2;
    return static_cast<std::int32_t>(next);
}

constexpr std::int32_t FindLastUnclamped() {
    // Binary search for the largest value whose scaled number does not pass the ceiling.
    std::int64_t low = 1;
    std::int64_t high = kShuffleWrap;
    while (low < high) {
        std::int64_t mid = (low + high + 1) / 2;
        if (static_cast<double>(mid) * RandomNumGen::kScale > RandomNumGen::kCeiling)
            high = mid - 1;
        else
            low = mid;
    }
    return static_cast<std::int32_t>(low);
}

}  // namespace

const std::int32_t RandomNumGen::kLastUnclamped = FindLastUnclamped();

void RandomNumGen::FillTable() {
    if (idum_ == INT32_MIN) throw ProgramError::Overflow();
    idum_ = -idum_;
    if (idum_ < 1) idum_ = 1;
    idum2_ = idum_;
    for (int j = 39; j >= 0; --j) {
        idum_ = AdvanceFirst(idum_);
        if (j < 32) iv_[static_cast<std::size_t>(j)] = idum_;
    }
    iy_ = iv_[0];
}

std::int32_t RandomNumGen::NextShuffled() {
    if (idum_ <= 0) FillTable();
    idum_ = AdvanceFirst(idum_);
    idum2_ = AdvanceSecond(idum2_);
    auto slot = static_cast<std::size_t>(RoundedQuotient(iy_, kTableDivisor));
    std::int64_t shuffled = static_cast<std::int64_t>(iv_[slot]) - idum2_;
    iv_[slot] = idum_;
    if (shuffled < 1) shuffled += kShuffleWrap;
    iy_ = static_cast<std::int32_t>(shuffled);
    return iy_;
}

}  // namespace tavrelle
