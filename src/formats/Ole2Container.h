#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavrelle {

// An OLE2 compound file (the container of .xls files) holding one stream by the name given,
// with the class id of an Excel 97-2003 workbook on its root. Written through libgsf, in memory.
// Throws ProgramError when the library fails.
std::string Ole2CompoundFile(std::string_view streamName, std::string_view stream);

// The stream of that name at the top of an OLE2 compound file, read through libgsf; nothing when
// the bytes are no compound file, the stream is missing, unreadable or longer than maxSize.
std::optional<std::string> Ole2Stream(const std::string& file, std::string_view streamName,
                                      std::size_t maxSize);

}  // namespace tavrelle
