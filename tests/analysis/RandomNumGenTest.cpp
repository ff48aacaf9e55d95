#include "analysis/RandomNumGen.h"

#include "analysis/ClockSeed.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "base/ProgramError.h"

namespace tavrelle {
namespace {

// The generator written out with double quotients, as the rule states it, to hold the integer
// arithmetic of the real one against.
struct LiteralGenerator {
    std::int64_t idum, idum2 = 123456789, iy = 0;
    std::int64_t iv[33] = {};
    explicit LiteralGenerator(std::int64_t seed) : idum(seed) {}
    static std::int64_t Q(std::int64_t x, double d) {
        return static_cast<std::int64_t>(std::nearbyint(static_cast<double>(x) / d));
    }
    void First() {
        std::int64_t k = Q(idum, 53668);
        idum = 40014 * (idum - k * 53668) - k * 12211;
        if (idum < 0) idum += 2147483563;
    }
    double Next() {
        if (idum <= 0) {
            idum = std::max<std::int64_t>(-idum, 1);
            idum2 = idum;
            for (int j = 39; j >= 0; --j) {
                First();
                if (j < 32) iv[j] = idum;
            }
            iy = iv[0];
        }
        First();
        std::int64_t k = Q(idum2, 52774);
        idum2 = 40692 * (idum2 - k * 52774) - k * 3791;
        if (idum2 < 0) idum2 += 2147483399;
        std::int64_t j = Q(iy, 67108862);
        iy = iv[j] - idum2;
        iv[j] = idum;
        if (iy < 1) iy += 2147483562;
        double t = static_cast<double>(iy) * RandomNumGen::kScale;
        return t > RandomNumGen::kCeiling ? RandomNumGen::kCeiling : t;
    }
};

TEST(RandomNumGen, ConstantsAreTheGivenBitPatterns) {
    EXPECT_DOUBLE_EQ(RandomNumGen::kScale, 4.656613057391769e-10);
    EXPECT_DOUBLE_EQ(RandomNumGen::kCeiling, 0.99999988);
}

TEST(RandomNumGen, PositiveSeedsStartFromAnEmptyTable) {
    // By hand: the second stream from 123456789 takes k = round(2339.35) = 2339, giving
    // 40692 x 18403 - 2339 x 3791 = 739987727. Slot 0 is empty, so iy = -739987727 + 2147483562.
    const double first = 1407495835.0 * RandomNumGen::kScale;
    for (std::int32_t seed : {1, 12345, 987654321}) {
        RandomNumGen generator;
        generator.SetSeedValue(seed);
        EXPECT_EQ(generator.GeneratedNumber(), first) << seed;
        // The next slot, round(1407495835 / 67108862) = 21, is empty too.
        EXPECT_EQ(generator.GeneratedNumber(), 431633857.0 * RandomNumGen::kScale);
    }
    // The seed shows once a draw reads a filled slot: the ninth draw here.
    std::vector<double> ninth;
    for (std::int32_t seed : {1, 12345}) {
        RandomNumGen generator;
        generator.SetSeedValue(seed);
        for (int i = 0; i < 8; ++i)
            generator.GeneratedNumber();
        ninth.push_back(generator.GeneratedNumber());
    }
    EXPECT_EQ(ninth[0], 271289119.0 * RandomNumGen::kScale);
    EXPECT_EQ(ninth[1], 1678019939.0 * RandomNumGen::kScale);
}

TEST(RandomNumGen, SeedZeroFillsTheTableFromOne) {
    RandomNumGen generator;
    generator.SetSeedValue(0);
    EXPECT_EQ(generator.GeneratedNumber(), 112892739.0 * RandomNumGen::kScale);
    EXPECT_EQ(generator.GeneratedNumber(), 1522969659.0 * RandomNumGen::kScale);
}

TEST(RandomNumGen, MatchesTheDoubleQuotientFormOverALongStream) {
    for (std::int32_t seed : {0, 7, 12345, 2147483647, -5}) {
        RandomNumGen generator;
        generator.SetSeedValue(seed);
        LiteralGenerator literal(seed);
        for (int i = 0; i < 300000; ++i) {
            double expected = literal.Next();
            double actual = generator.GeneratedNumber();
            ASSERT_EQ(actual, expected) << "seed " << seed << " draw " << i;
            ASSERT_GT(actual, 0.0);
            ASSERT_LE(actual, RandomNumGen::kCeiling);
        }
    }
}

TEST(RandomNumGen, KeysOrderAndTieExactlyAsNumbers) {
    // Just below and above the value from which numbers are clamped to the ceiling.
    const std::int32_t last = RandomNumGen::kLastUnclamped;
    EXPECT_LE(RandomNumGen::NumberOf(last), RandomNumGen::kCeiling);
    EXPECT_EQ(RandomNumGen::NumberOf(last + 1), RandomNumGen::kCeiling);
    EXPECT_EQ(RandomNumGen::NumberOf(2147483562), RandomNumGen::kCeiling);
    EXPECT_LT(RandomNumGen::NumberOf(last - 1), RandomNumGen::NumberOf(last));
    EXPECT_EQ(RandomNumGen::KeyOf(last + 1), RandomNumGen::KeyOf(2147483562));
    EXPECT_LT(RandomNumGen::KeyOf(last), RandomNumGen::KeyOf(last + 1));
    EXPECT_LT(RandomNumGen::KeyOf(1), RandomNumGen::KeyOf(2));
}

TEST(RandomNumGen, TheMostNegativeSeedIsAnOverflow) {
    RandomNumGen generator;
    generator.SetSeedValue(INT32_MIN);
    EXPECT_THROW(generator.GeneratedNumber(), ProgramError);
}

TEST(ClockSeed, CountsCalendarSecondsFromTheStartOf2003) {
    EXPECT_EQ(SecondsSince2003(2003, 1, 1, 0, 0, 0), 0);
    EXPECT_EQ(SecondsSince2003(2003, 1, 2, 0, 0, 1), 86401);
    // 2004 is a leap year: 365 + 60 days to 1 March 2004.
    EXPECT_EQ(SecondsSince2003(2004, 3, 1, 0, 0, 0), 425LL * 86400);
    EXPECT_EQ(SecondsSince2003(2026, 11, 21, 12, 0, 0), 8725LL * 86400 + 12 * 3600);
    EXPECT_GT(SeedFromClock(), 700000000);
}

// The generator's constants are written as hexadecimal literals; their bits are fixed.
TEST(RandomNumGen, ConstantsKeepTheirBits) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(RandomNumGen::kScale), 0x3E0000000AA00007ULL);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(RandomNumGen::kCeiling), 0x3FEFFFFFBF935359ULL);
}

}  // namespace
}  // namespace tavrelle
