#include "base/DoubleText.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <version>

namespace tavrelle {

namespace printf_forms {

namespace {

// The fewest significant digits that read back as |value|, and the power of ten of the first.
struct Digits {
    std::string digits;
    int exponent = 0;
};

Digits ShortestDigits(double value) {
    char text[48];
    for (int precision = 0; precision <= 16; ++precision) {
        std::snprintf(text, sizeof text, "%.*e", precision, std::fabs(value));
        if (std::strtod(text, nullptr) == std::fabs(value)) break;
    }
    Digits shortest;
    const char* e = std::strchr(text, 'e');
    for (const char* c = text; c < e; ++c)
        if (*c != '.') shortest.digits += *c;
    while (shortest.digits.size() > 1 && shortest.digits.back() == '0')
        shortest.digits.pop_back();
    shortest.exponent = std::atoi(e + 1);
    return shortest;
}

std::string Fixed(double value, const Digits& d) {
    const int count = static_cast<int>(d.digits.size());
    if (d.exponent >= count - 1) {
        // A whole number is written out exactly, every digit, as std::to_chars writes it.
        char whole[400];
        std::snprintf(whole, sizeof whole, "%.0f", std::fabs(value));
        return whole;
    }
    const auto point = static_cast<std::size_t>(d.exponent + 1);
    if (d.exponent >= 0) return d.digits.substr(0, point) + "." + d.digits.substr(point);
    return "0." + std::string(static_cast<std::size_t>(-d.exponent - 1), '0') + d.digits;
}

std::string Scientific(const Digits& d) {
    std::string text = d.digits.substr(0, 1);
    if (d.digits.size() > 1) text += "." + d.digits.substr(1);
    const int magnitude = d.exponent < 0 ? -d.exponent : d.exponent;
    return text + (d.exponent < 0 ? "e-" : "e+") + (magnitude < 10 ? "0" : "") +
           std::to_string(magnitude);
}

std::string Sign(double value) {
    return std::signbit(value) ? "-" : "";
}

}  // namespace

std::string ShortestText(double value) {
    const Digits digits = ShortestDigits(value);
    const std::string fixed = Fixed(value, digits);
    const std::string scientific = Scientific(digits);
    // As std::to_chars: the shorter form, fixed on a tie.
    return Sign(value) + (scientific.size() < fixed.size() ? scientific : fixed);
}

std::string ShortestFixedText(double value) {
    return Sign(value) + Fixed(value, ShortestDigits(value));
}

std::from_chars_result ReadDouble(const char* first, const char* last, double& value) {
    const std::string text(first, last);
    char* end = nullptr;
    errno = 0;
    const double read = std::strtod(text.c_str(), &end);
    const char* stop = first + (end - text.c_str());
    if (stop == first) return {first, std::errc::invalid_argument};
    if (errno == ERANGE) return {stop, std::errc::result_out_of_range};
    value = read;
    return {stop, std::errc()};
}

}  // namespace printf_forms

#if defined(__cpp_lib_to_chars)

std::string ShortestText(double value) {
    char buffer[32];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, end);
}

std::string ShortestFixedText(double value) {
    char buffer[400];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return ec == std::errc() ? std::string(buffer, end) : std::string("0");
}

std::from_chars_result ReadDouble(const char* first, const char* last, double& value) {
    return std::from_chars(first, last, value);
}

#else

std::string ShortestText(double value) {
    return printf_forms::ShortestText(value);
}

std::string ShortestFixedText(double value) {
    return printf_forms::ShortestFixedText(value);
}

std::from_chars_result ReadDouble(const char* first, const char* last, double& value) {
    return printf_forms::ReadDouble(first, last, value);
}

#endif

}  // namespace tavrelle
