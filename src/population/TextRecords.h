#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrelle {

// A line of a text file and its number from 1. Lines end at CR, CR LF or LF, as LineInput reads
// them.
struct NumberedLine {
    std::size_t number = 0;
    std::string_view text;
};

std::vector<NumberedLine> SplitLines(std::string_view bytes);

// A row of cells (a CSV record, a sheet row) and the line or row it starts on, from 1.
struct CellRow {
    std::size_t line = 0;
    std::vector<std::string> cells;

    // The cell trimmed of blanks and tabs; empty past the row's end.
    std::string Cell(std::size_t column) const;
    bool Blank() const;
};

using CellRows = std::vector<CellRow>;

// The separator of a delimited text, told from its first non-blank line: a tab, a semicolon
// (spreadsheets set to a decimal comma) or a comma, whichever it holds most of.
char GuessSeparator(std::string_view bytes);

// Delimited text as rows: quoted fields may hold separators, doubled quotes and line breaks.
// An unclosed quote gives nullopt and the line it opened on in `unclosedLine`.
std::optional<CellRows> SplitDelimited(std::string_view bytes, char separator,
                                       std::size_t& unclosedLine);

// The words of a line parted by blanks and tabs.
std::vector<std::string_view> Words(std::string_view line);

// A whole number written with digits alone (no sign, point or blank) up to `largest`; nullopt
// for anything else.
std::optional<int> DigitsValue(std::string_view text, int largest);

// A byte order mark at the start is no part of the data.
std::string_view WithoutByteOrderMark(std::string_view bytes);

}  // namespace tavrelle
