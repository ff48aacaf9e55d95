#pragma once

#include <span>
#include <vector>

#include "base/Int16.h"

namespace tavrelle {

// Counts by class and round, flat and class-major so that one class's counts lie together.
// After sorting, the round subscript is a rank: column 0 holds each class's minimum and the last
// column its maximum.
class RoundMatrix {
public:
    RoundMatrix() = default;
    RoundMatrix(int classes, int rounds)
        : classes_(classes),
          rounds_(rounds),
          counts_(static_cast<std::size_t>(classes) * static_cast<std::size_t>(rounds), 0) {}

    int Classes() const { return classes_; }
    int Rounds() const { return rounds_; }

    std::span<Int16> Class(int c) { return {counts_.data() + Offset(c), Size(rounds_)}; }
    std::span<const Int16> Class(int c) const {
        return {counts_.data() + Offset(c), Size(rounds_)};
    }
    Int16 At(int c, int round) const {
        if (round < 0 || round >= rounds_) throw ProgramError::SubscriptOutOfRange();
        return Class(c)[Size(round)];
    }

private:
    static std::size_t Size(int n) { return static_cast<std::size_t>(n); }
    std::size_t Offset(int c) const {
        if (c < 0 || c >= classes_) throw ProgramError::SubscriptOutOfRange();
        return Size(c) * Size(rounds_);
    }

    int classes_ = 0;
    int rounds_ = 0;
    std::vector<Int16> counts_;
};

}  // namespace tavrelle
