#include "report/JsonWriter.h"

#include <cmath>

#include "base/DoubleText.h"

namespace tavrelle {

namespace {

// Length of the valid UTF-8 sequence at the start of `text`, 0 if it is not one.
std::size_t Utf8Length(std::string_view text) {
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char lead = byte(0);
    std::size_t length = lead < 0x80           ? 1
                         : (lead >> 5) == 0x6  ? 2
                         : (lead >> 4) == 0xE  ? 3
                         : (lead >> 3) == 0x1E ? 4
                                               : 0;
    if (length == 0 || length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    return length;
}

void AppendHexEscape(std::string& out, unsigned value) {
    static constexpr char kHex[] = "0123456789abcdef";
    out += "\\u00";
    out += kHex[(value >> 4) & 0xF];
    out += kHex[value & 0xF];
}

}  // namespace

void JsonWriter::NewLine() {
    out_ += '\n';
    out_.append(levels_.size() * 2, ' ');
}

void JsonWriter::BeforeValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (levels_.empty()) return;
    Level& level = levels_.back();
    if (level.count++ > 0) out_ += level.compact ? ", " : ",";
    if (!level.compact) NewLine();
}

void JsonWriter::BeginObject() {
    BeforeValue();
    out_ += '{';
    levels_.push_back({false, false, 0});
}

void JsonWriter::EndObject() {
    bool empty = levels_.back().count == 0;
    levels_.pop_back();
    if (!empty) NewLine();
    out_ += '}';
    if (levels_.empty()) out_ += '\n';
}

void JsonWriter::BeginArray(bool compact) {
    BeforeValue();
    out_ += '[';
    bool insideCompact = !levels_.empty() && levels_.back().compact;
    levels_.push_back({true, compact || insideCompact, 0});
}

void JsonWriter::EndArray() {
    Level level = levels_.back();
    levels_.pop_back();
    if (!level.compact && level.count > 0) NewLine();
    out_ += ']';
}

void JsonWriter::Key(std::string_view key) {
    BeforeValue();
    Escaped(key);
    out_ += ": ";
    afterKey_ = true;
}

void JsonWriter::String(std::string_view text) {
    BeforeValue();
    Escaped(text);
}

void JsonWriter::Number(double value) {
    if (!std::isfinite(value)) return Null();
    BeforeValue();
    out_ += ShortestText(value);
}

void JsonWriter::Integer(std::int64_t value) {
    BeforeValue();
    out_ += std::to_string(value);
}

void JsonWriter::Bool(bool value) {
    BeforeValue();
    out_ += value ? "true" : "false";
}

void JsonWriter::Null() {
    BeforeValue();
    out_ += "null";
}

void JsonWriter::Escaped(std::string_view text) {
    out_ += '"';
    for (std::size_t i = 0; i < text.size();) {
        char c = text[i];
        switch (c) {
            case '"':
                out_ += "\\\"";
                ++i;
                continue;
            case '\\':
                out_ += "\\\\";
                ++i;
                continue;
            case '\r':
                out_ += "\\r";
                ++i;
                continue;
            case '\n':
                out_ += "\\n";
                ++i;
                continue;
            case '\t':
                out_ += "\\t";
                ++i;
                continue;
            default:
                break;
        }
        auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20) {
            AppendHexEscape(out_, byte);
            ++i;
            continue;
        }
        std::size_t length = Utf8Length(text.substr(i));
        if (length == 0) {
            AppendHexEscape(out_, byte);  // not UTF-8: the byte as Latin-1
            ++i;
            continue;
        }
        out_.append(text.substr(i, length));
        i += length;
    }
    out_ += '"';
}

}  // namespace tavrelle
