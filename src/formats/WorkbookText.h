#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrelle {

// How workbook cells and the store's text cells meet. The store holds text; a workbook holds
// numbers and strings.

// The text of a number cell: whole numbers as integers ("102", never "102.0"), others in their
// shortest form.
std::string NumberCellText(double value);

// The number a text cell is written as, when reading that number back gives the very same text:
// "102" and "1.5" are numbers, "098", "000", " 7" and "1e3" stay text, so that a written sheet
// loads back cell for cell.
std::optional<double> LosslessNumber(std::string_view text);

// Workbooks hold Unicode. Text read from a Genepop file may be in any 8-bit encoding: what is not
// valid UTF-8 is taken as Latin-1.
bool IsValidUtf8(std::string_view text);
std::string ToUtf8(std::string_view text);
std::u16string ToUtf16(std::string_view text);

}  // namespace tavrelle
