#pragma once

#include <charconv>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tavrelle::testing {

// Just enough JSON to read reports back and compare them field by field.
struct Json {
    using Array = std::vector<Json>;
    using Object = std::map<std::string, Json>;
    std::variant<std::nullptr_t, bool, double, std::string, Array, Object> value;

    static Json Parse(std::string_view text) {
        std::size_t at = 0;
        Json json = ParseValue(text, at);
        SkipBlanks(text, at);
        if (at != text.size()) throw std::runtime_error("JSON: text after the value");
        return json;
    }

    const Json& operator[](const std::string& key) const { return std::get<Object>(value).at(key); }
    const Json& operator[](std::size_t i) const { return std::get<Array>(value).at(i); }

private:
    static void SkipBlanks(std::string_view text, std::size_t& at) {
        while (at < text.size() &&
               (text[at] == ' ' || text[at] == '\n' || text[at] == '\r' || text[at] == '\t'))
            ++at;
    }
    static void Expect(std::string_view text, std::size_t& at, std::string_view word) {
        if (text.substr(at, word.size()) != word) throw std::runtime_error("JSON: bad token");
        at += word.size();
    }
    static std::string ParseString(std::string_view text, std::size_t& at) {
        Expect(text, at, "\"");
        std::string out;
        while (at < text.size() && text[at] != '"') {
            char c = text[at++];
            if (c != '\\') {
                out += c;
                continue;
            }
            char e = text.at(at++);
            switch (e) {
                case 'n':
                    out += '\n';
                    break;
                case 'r':
                    out += '\r';
                    break;
                case 't':
                    out += '\t';
                    break;
                case 'u': {
                    unsigned code = 0;
                    std::from_chars(text.data() + at, text.data() + at + 4, code, 16);
                    at += 4;
                    out += static_cast<char>(code);  // the reports escape single bytes only
                    break;
                }
                default:
                    out += e;
            }
        }
        Expect(text, at, "\"");
        return out;
    }
    static Json ParseValue(std::string_view text, std::size_t& at) {
        SkipBlanks(text, at);
        if (at >= text.size()) throw std::runtime_error("JSON: unexpected end");
        char c = text[at];
        if (c == 'n') return Expect(text, at, "null"), Json{nullptr};
        if (c == 't') return Expect(text, at, "true"), Json{true};
        if (c == 'f') return Expect(text, at, "false"), Json{false};
        if (c == '"') return Json{ParseString(text, at)};
        if (c == '[') {
            ++at;
            Array array;
            SkipBlanks(text, at);
            if (text[at] == ']') return ++at, Json{array};
            for (;;) {
                array.push_back(ParseValue(text, at));
                SkipBlanks(text, at);
                if (text.at(at++) == ']') return Json{array};
            }
        }
        if (c == '{') {
            ++at;
            Object object;
            SkipBlanks(text, at);
            if (text[at] == '}') return ++at, Json{object};
            for (;;) {
                SkipBlanks(text, at);
                std::string key = ParseString(text, at);
                SkipBlanks(text, at);
                Expect(text, at, ":");
                object[key] = ParseValue(text, at);
                SkipBlanks(text, at);
                if (text.at(at++) == '}') return Json{object};
            }
        }
        double number = 0;
        auto [end, ec] = std::from_chars(text.data() + at, text.data() + text.size(), number);
        if (ec != std::errc()) throw std::runtime_error("JSON: bad number");
        at = static_cast<std::size_t>(end - text.data());
        return Json{number};
    }
};

// The path of the first difference between two values ("" when they are equal), with both sides.
inline std::string FirstDifference(const Json& expected, const Json& actual,
                                   const std::string& path = "") {
    if (expected.value.index() != actual.value.index()) return path + ": kinds differ";
    if (auto* e = std::get_if<Json::Object>(&expected.value)) {
        const auto& a = std::get<Json::Object>(actual.value);
        for (const auto& [key, value] : *e) {
            auto found = a.find(key);
            if (found == a.end()) return path + "." + key + ": missing";
            std::string difference = FirstDifference(value, found->second, path + "." + key);
            if (!difference.empty()) return difference;
        }
        for (const auto& [key, value] : a)
            if (!e->contains(key)) return path + "." + key + ": not expected";
        return "";
    }
    if (auto* e = std::get_if<Json::Array>(&expected.value)) {
        const auto& a = std::get<Json::Array>(actual.value);
        if (e->size() != a.size()) return path + ": lengths differ";
        for (std::size_t i = 0; i < e->size(); ++i) {
            std::string difference =
                FirstDifference((*e)[i], a[i], path + "[" + std::to_string(i) + "]");
            if (!difference.empty()) return difference;
        }
        return "";
    }
    auto scalarEqual = [](const Json& x, const Json& y) {
        if (auto* d = std::get_if<double>(&x.value)) return *d == std::get<double>(y.value);
        if (auto* s = std::get_if<std::string>(&x.value))
            return *s == std::get<std::string>(y.value);
        if (auto* b = std::get_if<bool>(&x.value)) return *b == std::get<bool>(y.value);
        return true;
    };
    if (!scalarEqual(expected, actual)) {
        auto show = [](const Json& j) {
            if (auto* d = std::get_if<double>(&j.value)) return std::to_string(*d);
            if (auto* s = std::get_if<std::string>(&j.value)) return "\"" + *s + "\"";
            if (auto* b = std::get_if<bool>(&j.value)) return std::string(*b ? "true" : "false");
            return std::string("null");
        };
        return path + ": expected " + show(expected) + ", got " + show(actual);
    }
    return "";
}

}  // namespace tavrelle::testing
