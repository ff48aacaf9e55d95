#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/Int16.h"

namespace tavrelle {

// The one definition of numeric text, used by every whole-number test: optional blanks, an
// optional sign, digits with an optional decimal point, an optional exponent (e or E, optional
// sign, digits), optional blanks. Nothing else: no thousands separators, no hex, no tabs.
bool IsNumeric(std::string_view text);

// The value of numeric text; nothing for text that is not numeric.
std::optional<double> NumericValue(std::string_view text);

// Holds no ".", is numeric, and its value as a 32-bit integer is not negative. "1e3" passes and
// is 1000; zero passes; empty text fails. A value beyond 32 bits raises Overflow.
bool IsWholeNumber(std::string_view text);

// Double to integer: nearest, ties to even, range checked (Overflow).
Int16 ToInt16(double value);
std::int32_t ToInt32(double value);

// Text to integer as the engine reads a cell: TypeMismatch when not numeric, then ToInt16.
Int16 TextToInt16(std::string_view text);
std::int32_t TextToInt32(std::string_view text);

// Round(x, decimals): scaled to the decimals, nearest with ties to even, scaled back.
double RoundHalfEven(double value, int decimals);

// The default text of a double: the shortest plain decimal that reads back to the same double,
// "." as decimal separator, no exponent, "0" for either zero.
std::string DefaultText(double value);

// Blanks (spaces only, as the file formats define them) trimmed from both ends.
std::string_view TrimBlanks(std::string_view text);
std::string UpperCase(std::string_view text);

}  // namespace tavrelle
