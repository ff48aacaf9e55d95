#include "base/CsvText.h"

#include <cmath>

#include "base/DoubleText.h"

namespace tavrelle {

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

std::string ShortestNumber(double value) {
    if (!std::isfinite(value)) return "";
    return ShortestText(value);
}

}  // namespace tavrelle
