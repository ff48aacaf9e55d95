#include "base/Numbers.h"

#include <gtest/gtest.h>

namespace tavrelle {
namespace {

TEST(NumericText, AcceptsSignsDecimalsExponentsAndBlanks) {
    for (const char* text :
         {"1", " 12 ", "+5", "-5", "1.5", "1.", ".5", "1e3", "1E+3", "2e-3", "  -0.25e2  ", "098"})
        EXPECT_TRUE(IsNumeric(text)) << text;
    for (const char* text : {"", " ", ".", "e3", "1e", "1,000", "1 000", "0x10", "\t1", "1-", "--1",
                             "abc", "1.2.3", "+"})
        EXPECT_FALSE(IsNumeric(text)) << text;
    EXPECT_EQ(NumericValue("1e3"), 1000.0);
    EXPECT_EQ(NumericValue(" -0.25e2 "), -25.0);
}

TEST(WholeNumber, RefusesPointsNegativesAndNonNumbers) {
    EXPECT_TRUE(IsWholeNumber("0"));
    EXPECT_TRUE(IsWholeNumber("1e3"));
    EXPECT_TRUE(IsWholeNumber("2147483647"));
    EXPECT_FALSE(IsWholeNumber("1000.0"));
    EXPECT_FALSE(IsWholeNumber("-2"));
    EXPECT_FALSE(IsWholeNumber(""));
    EXPECT_FALSE(IsWholeNumber("1,000"));
    EXPECT_THROW(IsWholeNumber("2147483648"), ProgramError);
    EXPECT_THROW(IsWholeNumber("1e400"), ProgramError);
    EXPECT_TRUE(IsWholeNumber("1e-400"));  // underflows to zero
}

TEST(IntegerConversion, RoundsHalfToEvenAndChecksTheRange) {
    EXPECT_EQ(ToInt16(2.5), 2);
    EXPECT_EQ(ToInt16(3.5), 4);
    EXPECT_EQ(ToInt16(-2.5), -2);
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_THROW(ToInt16(32767.5), ProgramError);
    EXPECT_THROW(ToInt16(-32768.6), ProgramError);
    EXPECT_EQ(TextToInt16("098"), 98);
    EXPECT_EQ(TextToInt16("1e3"), 1000);
    try {
        TextToInt16("abc");
        FAIL();
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.Number(), 13);
    }
    try {
        TextToInt16("40000");
        FAIL();
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.Number(), 6);
        EXPECT_EQ(error.Description(), "Overflow");
    }
}

TEST(RoundAndText, RoundsToDecimalsAndPrintsShortestPlainText) {
    EXPECT_EQ(RoundHalfEven(0.25, 1), 0.2);
    EXPECT_EQ(RoundHalfEven(0.125, 2), 0.12);
    EXPECT_EQ(RoundHalfEven(2.5, 0), 2.0);
    EXPECT_EQ(RoundHalfEven(0.123456, 4), 0.1235);
    EXPECT_EQ(DefaultText(0.1235), "0.1235");
    EXPECT_EQ(DefaultText(0.0001), "0.0001");
    EXPECT_EQ(DefaultText(-0.0), "0");
    EXPECT_EQ(DefaultText(-1.5), "-1.5");
    EXPECT_EQ(DefaultText(1000), "1000");
    EXPECT_EQ(TrimBlanks("  a b \t "), "a b \t");
    EXPECT_EQ(UpperCase("pOp"), "POP");
}

}  // namespace
}  // namespace tavrelle
