#pragma once

#include <string>

namespace tavrelle {

// A CSV field, quoted when it holds a separator, a quote or a line break.
std::string CsvField(const std::string& text);

// The shortest text that reads back to the same double; empty for a number that is missing
// (not finite), which R and pandas read as NA.
std::string ShortestNumber(double value);

}  // namespace tavrelle
