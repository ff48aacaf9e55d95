#include "analysis/SeedText.h"

#include <gtest/gtest.h>

namespace tavrelle {
namespace {

using Refusal = SeedReading::Refusal;

// One rule for the batch program, the overview's box and the seed dialog.
TEST(ParseSeed, TakesZeroToTheLargestSigned32BitNumber) {
    struct Case {
        const char* text;
        Refusal refusal;
        std::int32_t seed;
    };
    const Case cases[] = {
        {"0", Refusal::None, 0},
        {"123456789", Refusal::None, 123456789},
        {"2147483647", Refusal::None, 2147483647},
        {"1e3", Refusal::None, 1000},  // numeric to the platform's test
        {"1.5", Refusal::NotPositiveInteger, 0},
        {"-3", Refusal::NotPositiveInteger, 0},
        {"2147483648", Refusal::TooLarge, 0},  // would reach the generator negative
        {"4294967295", Refusal::TooLarge, 0},
        {"abc", Refusal::NotANumber, 0},
        {"", Refusal::NotANumber, 0},
    };
    for (const Case& c : cases) {
        const SeedReading reading = ParseSeed(c.text);
        EXPECT_EQ(reading.refusal, c.refusal) << c.text;
        EXPECT_EQ(reading.seed, c.seed) << c.text;
        EXPECT_EQ(reading.Accepted(), c.refusal == Refusal::None) << c.text;
        // The dialog ends its command with the conversion's error, and only then.
        EXPECT_EQ(reading.conversionError.has_value(),
                  c.refusal == Refusal::TooLarge || c.refusal == Refusal::NotANumber)
            << c.text;
    }
}

}  // namespace
}  // namespace tavrelle
