#pragma once

#include <string_view>

namespace tavrelle {

// The string functions the file formats were defined with: positions count from 1 and 0 means
// "not found". Their failures are part of the formats (a line without a comma is refused because
// Left is asked for a negative length), so they raise the same errors.

// Position of the first occurrence of pattern in text, 0 when absent; 1 for an empty pattern in a
// non-empty text, as the platform answers.
long long InStr(std::string_view text, std::string_view pattern);

// The text from position start on; "" when start lies beyond the end. start below 1 is an invalid
// call (5).
std::string_view Mid(std::string_view text, long long start);
// At most length characters from position start; a negative length is an invalid call.
std::string_view Mid(std::string_view text, long long start, long long length);

// The first length characters; a negative length is an invalid call.
std::string_view Left(std::string_view text, long long length);

}  // namespace tavrelle
