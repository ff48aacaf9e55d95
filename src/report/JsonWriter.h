#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrelle {

// A small streaming JSON writer: objects one member a line, arrays of numbers on one line.
// Doubles take the shortest text that reads back to the same double; texts are escaped, and
// bytes that are not UTF-8 are taken as Latin-1 so that the report stays valid JSON.
class JsonWriter {
public:
    explicit JsonWriter(std::string& out) : out_(out) {}

    void BeginObject();
    void EndObject();
    // A compact array stands on one line: for numbers and short rows.
    void BeginArray(bool compact = false);
    void EndArray();
    void Key(std::string_view key);

    void String(std::string_view text);
    void Number(double value);
    void Integer(std::int64_t value);
    void Bool(bool value);
    void Null();

    template <class Range>
    void NumberArray(const Range& values) {
        BeginArray(true);
        for (const auto& value : values)
            Number(static_cast<double>(value));
        EndArray();
    }

private:
    struct Level {
        bool array;
        bool compact;
        int count;
    };
    void BeforeValue();
    void NewLine();
    void Escaped(std::string_view text);

    std::string& out_;
    std::vector<Level> levels_;
    bool afterKey_ = false;
};

}  // namespace tavrelle
