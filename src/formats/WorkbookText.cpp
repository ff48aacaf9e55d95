#include "formats/WorkbookText.h"

#include <charconv>
#include <cmath>

#include "base/Numbers.h"

namespace tavrelle {

std::string NumberCellText(double value) {
    return DefaultText(value);
}

std::optional<double> LosslessNumber(std::string_view text) {
    // Plain decimals only: an optional minus, digits, an optional fraction.
    std::size_t i = 0;
    if (i < text.size() && text[i] == '-') ++i;
    std::size_t digits = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        ++digits;
    if (digits == 0) return std::nullopt;
    if (i < text.size() && text[i] == '.') {
        ++i;
        std::size_t fraction = 0;
        for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
            ++fraction;
        if (fraction == 0) return std::nullopt;
    }
    if (i != text.size()) return std::nullopt;

    double value = 0.0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    if (NumberCellText(value) != text) return std::nullopt;
    return value;
}

namespace {

// The code point of the UTF-8 sequence at text[i], or nothing when it is not well formed
// (overlong forms, surrogates and values past U+10FFFF included); i moves past it.
std::optional<char32_t> NextCodePoint(std::string_view text, std::size_t& i) {
    auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    unsigned char lead = byte(i);
    if (lead < 0x80) {
        ++i;
        return lead;
    }
    std::size_t length = 0;
    char32_t point = 0;
    char32_t least = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        point = lead & 0x1Fu;
        least = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        point = lead & 0x0Fu;
        least = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        point = lead & 0x07u;
        least = 0x10000;
    } else {
        return std::nullopt;
    }
    if (i + length > text.size()) return std::nullopt;
    for (std::size_t k = 1; k < length; ++k) {
        unsigned char next = byte(i + k);
        if ((next & 0xC0) != 0x80) return std::nullopt;
        point = (point << 6) | (next & 0x3Fu);
    }
    if (point < least || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
        return std::nullopt;
    i += length;
    return point;
}

}  // namespace

bool IsValidUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (!NextCodePoint(text, i)) return false;
    }
    return true;
}

std::string ToUtf8(std::string_view text) {
    if (IsValidUtf8(text)) return std::string(text);
    std::string utf8;
    for (char c : text) {
        auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

std::u16string ToUtf16(std::string_view text) {
    std::u16string utf16;
    if (!IsValidUtf8(text)) {
        for (char c : text)
            utf16 += static_cast<char16_t>(static_cast<unsigned char>(c));
        return utf16;
    }
    for (std::size_t i = 0; i < text.size();) {
        char32_t point = *NextCodePoint(text, i);
        if (point < 0x10000) {
            utf16 += static_cast<char16_t>(point);
        } else {
            point -= 0x10000;
            utf16 += static_cast<char16_t>(0xD800 + (point >> 10));
            utf16 += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
        }
    }
    return utf16;
}

}  // namespace tavrelle
