#include "base/DoubleText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

namespace tavrelle {
namespace {

// The printf forms stand in for std::to_chars and std::from_chars in the WebAssembly build,
// where every report must come out byte for byte as the native one: hold them to the standard
// library's on the numbers reports are made of, on edges and on random bit patterns.
void ExpectSameText(double value) {
    ASSERT_EQ(printf_forms::ShortestText(value), ShortestText(value)) << value;
    ASSERT_EQ(printf_forms::ShortestFixedText(value), ShortestFixedText(value)) << value;
}

TEST(DoubleText, PrintfFormsWriteWhatToCharsWrites) {
    for (double value : {0.0,
                         -0.0,
                         1.0,
                         -1.0,
                         0.1,
                         0.5,
                         1.5,
                         2.0 / 3.0,
                         100.0,
                         1e20,
                         1e21,
                         1e22,
                         123456789.0,
                         1e-5,
                         1.5e-7,
                         0.001,
                         12.345,
                         5e-324,
                         1.7976931348623157e308,
                         0.30000000000000004,
                         9007199254740993.0,
                         1e15,
                         1e16,
                         1e17,
                         4.35e-5})
        ExpectSameText(value);
    std::mt19937_64 bits(2024);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    for (int i = 0; i < 20000; ++i) {
        const double pattern = std::bit_cast<double>(bits());
        if (std::isfinite(pattern)) ExpectSameText(pattern);
        // Estimates, frequencies and rounded values: what the reports mostly hold.
        ExpectSameText(share(bits));
        ExpectSameText(static_cast<double>(bits() % 100000) / 10000.0);
    }
}

TEST(DoubleText, PrintfFormReadsWhatFromCharsReads) {
    for (const std::string text : {"0", "1", "12.5", "0.1", "1e3", "1E-3", "123456789012345678901",
                                   "0.30000000000000004", "1e400", "1e-400", "", ".", "e5", "7x"}) {
        double expected = -1, actual = -1;
        const auto want = std::from_chars(text.data(), text.data() + text.size(), expected);
        const auto got = printf_forms::ReadDouble(text.data(), text.data() + text.size(), actual);
        EXPECT_EQ(got.ec, want.ec) << text;
        EXPECT_EQ(got.ptr - text.data(), want.ptr - text.data()) << text;
        if (want.ec == std::errc()) {
            EXPECT_EQ(actual, expected) << text;
        }
    }
}

}  // namespace
}  // namespace tavrelle
