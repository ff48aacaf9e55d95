#include "population/StringFunctions.h"

#include <algorithm>

#include "base/ProgramError.h"

namespace tavrelle {

long long InStr(std::string_view text, std::string_view pattern) {
    if (text.empty()) return 0;
    std::size_t found = text.find(pattern);
    if (found == std::string_view::npos) return 0;
    return static_cast<long long>(found) + 1;
}

std::string_view Mid(std::string_view text, long long start) {
    if (start < 1) throw ProgramError::InvalidCall();
    auto from = static_cast<std::size_t>(start - 1);
    if (from >= text.size()) return {};
    return text.substr(from);
}

std::string_view Mid(std::string_view text, long long start, long long length) {
    if (length < 0) throw ProgramError::InvalidCall();
    std::string_view rest = Mid(text, start);
    return rest.substr(0, std::min(rest.size(), static_cast<std::size_t>(length)));
}

std::string_view Left(std::string_view text, long long length) {
    if (length < 0) throw ProgramError::InvalidCall();
    return text.substr(0, std::min(text.size(), static_cast<std::size_t>(length)));
}

}  // namespace tavrelle
