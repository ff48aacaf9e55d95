#include "base/Numbers.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

#include "base/DoubleText.h"

namespace tavrelle {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Returns the numeric body without blanks and sign, and whether it was negative; nothing when the
// text does not have the numeric form.
struct NumericParts {
    std::string_view body;
    bool negative = false;
};

std::optional<NumericParts> SplitNumeric(std::string_view text) {
    std::string_view t = TrimBlanks(text);
    NumericParts parts;
    if (!t.empty() && (t.front() == '+' || t.front() == '-')) {
        parts.negative = t.front() == '-';
        t.remove_prefix(1);
    }
    std::size_t i = 0;
    std::size_t mantissaDigits = 0;
    while (i < t.size() && IsDigit(t[i]))
        ++i, ++mantissaDigits;
    if (i < t.size() && t[i] == '.') {
        ++i;
        while (i < t.size() && IsDigit(t[i]))
            ++i, ++mantissaDigits;
    }
    if (mantissaDigits == 0) return std::nullopt;
    if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
        ++i;
        if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
        std::size_t exponentDigits = 0;
        while (i < t.size() && IsDigit(t[i]))
            ++i, ++exponentDigits;
        if (exponentDigits == 0) return std::nullopt;
    }
    if (i != t.size()) return std::nullopt;
    parts.body = t;
    return parts;
}

// from_chars reports both overflow and underflow as out of range; the magnitude tells which.
bool OverflowsDouble(std::string_view body) {
    std::size_t exponentAt = body.find_first_of("eE");
    std::string_view mantissa = body.substr(0, exponentAt);
    long long magnitude = 0;
    bool leading = true;
    for (char c : mantissa) {
        if (c == '.') break;
        if (leading && c == '0') continue;
        leading = false;
        ++magnitude;
    }
    if (exponentAt != std::string_view::npos) {
        std::string_view exponent = body.substr(exponentAt + 1);
        bool negative = !exponent.empty() && exponent.front() == '-';
        if (!exponent.empty() && (exponent.front() == '+' || exponent.front() == '-'))
            exponent.remove_prefix(1);
        long long e = 0;
        for (char c : exponent)
            e = std::min(e * 10 + (c - '0'), 1000000LL);
        magnitude += negative ? -e : e;
    }
    return magnitude > 0;
}

}  // namespace

bool IsNumeric(std::string_view text) {
    return SplitNumeric(text).has_value();
}

std::optional<double> NumericValue(std::string_view text) {
    auto parts = SplitNumeric(text);
    if (!parts) return std::nullopt;
    double value = 0.0;
    auto [end, ec] = ReadDouble(parts->body.data(), parts->body.data() + parts->body.size(), value);
    if (ec == std::errc::result_out_of_range) {
        value = OverflowsDouble(parts->body) ? std::numeric_limits<double>::infinity() : 0.0;
    } else if (ec != std::errc() || end != parts->body.data() + parts->body.size()) {
        return std::nullopt;
    }
    return parts->negative ? -value : value;
}

bool IsWholeNumber(std::string_view text) {
    if (text.find('.') != std::string_view::npos) return false;
    auto value = NumericValue(text);
    if (!value) return false;
    return ToInt32(*value) >= 0;
}

Int16 ToInt16(double value) {
    if (std::isnan(value)) throw ProgramError::Overflow();
    double rounded = std::nearbyint(value);
    if (rounded < std::numeric_limits<Int16>::min() || rounded > std::numeric_limits<Int16>::max())
        throw ProgramError::Overflow();
    return static_cast<Int16>(rounded);
}

std::int32_t ToInt32(double value) {
    if (std::isnan(value)) throw ProgramError::Overflow();
    double rounded = std::nearbyint(value);
    if (rounded < std::numeric_limits<std::int32_t>::min() ||
        rounded > std::numeric_limits<std::int32_t>::max())
        throw ProgramError::Overflow();
    return static_cast<std::int32_t>(rounded);
}

Int16 TextToInt16(std::string_view text) {
    auto value = NumericValue(text);
    if (!value) throw ProgramError::TypeMismatch();
    return ToInt16(*value);
}

std::int32_t TextToInt32(std::string_view text) {
    auto value = NumericValue(text);
    if (!value) throw ProgramError::TypeMismatch();
    return ToInt32(*value);
}

double RoundHalfEven(double value, int decimals) {
    double scale = std::pow(10.0, decimals);
    double scaled = value * scale;
    if (!std::isfinite(scaled)) return value;
    return std::nearbyint(scaled) / scale;
}

std::string DefaultText(double value) {
    if (value == 0.0) return "0";
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
    return ShortestFixedText(value);
}

std::string_view TrimBlanks(std::string_view text) {
    std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    std::size_t last = text.find_last_not_of(' ');
    return text.substr(first, last - first + 1);
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

}  // namespace tavrelle
