#pragma once

// The simulator's own random numbers. Everything here is plain 64-bit integer arithmetic and one
// exact integer-to-double conversion, so a seed gives the same numbers with every compiler,
// standard library and machine (the std:: distributions do not promise that).

#include <array>
#include <bit>
#include <cstdint>

namespace tavrelle::simulate {

// One step of splitmix64: advances state and returns the next output.
constexpr std::uint64_t SplitMix64(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15ULL;
    std::uint64_t z = state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

// The seed of an independent random stream, named by the user's seed and up to three numbers
// (what the stream is for, a locus, a population). Streams with different names do not overlap in
// any practical sense, so changing one locus leaves the numbers of every other locus alone.
constexpr std::uint64_t StreamSeed(std::uint64_t seed, std::uint64_t purpose, std::uint64_t a = 0,
                                   std::uint64_t b = 0) {
    std::uint64_t state = seed;
    std::uint64_t h = SplitMix64(state);
    state = h ^ (purpose * 0xD1B54A32D192ED03ULL);
    h = SplitMix64(state);
    state = h ^ (a * 0xAEF17502108EF2D9ULL);
    h = SplitMix64(state);
    state = h ^ (b * 0xDB4F0B9175AE2165ULL);
    return SplitMix64(state);
}

// xoshiro256** seeded through splitmix64, with the few samplers the simulator needs.
class Random {
public:
    explicit constexpr Random(std::uint64_t seed) {
        std::uint64_t state = seed;
        for (auto& word : s_)
            word = SplitMix64(state);
    }

    constexpr std::uint64_t Next() {
        const std::uint64_t result = std::rotl(s_[1] * 5, 7) * 9;
        const std::uint64_t t = s_[1] << 17;
        s_[2] ^= s_[0];
        s_[3] ^= s_[1];
        s_[1] ^= s_[2];
        s_[0] ^= s_[3];
        s_[2] ^= t;
        s_[3] = std::rotl(s_[3], 45);
        return result;
    }

    // Uniform on [0, 1): the top 53 bits, exactly representable.
    constexpr double Uniform() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }

    // Uniform on 0 .. n-1 without modulo bias; n must be positive.
    constexpr std::uint64_t Below(std::uint64_t n) {
        const std::uint64_t limit = UINT64_MAX - UINT64_MAX % n;
        std::uint64_t x = Next();
        while (x >= limit)
            x = Next();
        return x % n;
    }

    // Uniform on lo .. hi, both included; lo <= hi.
    constexpr int Between(int lo, int hi) {
        const auto span = static_cast<std::uint64_t>(static_cast<std::int64_t>(hi) - lo + 1);
        return static_cast<int>(lo + static_cast<std::int64_t>(Below(span)));
    }

private:
    std::array<std::uint64_t, 4> s_{};
};

}  // namespace tavrelle::simulate
