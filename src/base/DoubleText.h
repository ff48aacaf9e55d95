#pragma once

#include <charconv>
#include <string>

namespace tavrelle {

// Doubles to and from text exactly as std::to_chars and std::from_chars do. A standard library
// without their floating-point forms (the WebAssembly build's) gets the same results from
// printf and strtod in the "C" locale.

// The shortest text that reads back as the same double, fixed or scientific as std::to_chars
// chooses ("0.1", "1e+20"). `value` is finite.
std::string ShortestText(double value);

// The same digits, always in fixed notation ("100000000000000000000"). `value` is finite.
std::string ShortestFixedText(double value);

// A decimal number ("12.5", "1e3", no sign, no blanks) as std::from_chars reads it.
std::from_chars_result ReadDouble(const char* first, const char* last, double& value);

// The printf and strtod forms, used above where the standard library lacks the others; built
// everywhere so that the tests hold them to the standard library's.
namespace printf_forms {
std::string ShortestText(double value);
std::string ShortestFixedText(double value);
std::from_chars_result ReadDouble(const char* first, const char* last, double& value);
}  // namespace printf_forms

}  // namespace tavrelle
