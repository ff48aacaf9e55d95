#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavrelle {

// SHA-256 (FIPS 180-4) of bytes, as 64 lower-case hexadecimal digits: reports print it beside the
// input file's name so that a reader can tell that a result came from exactly that file.
std::string Sha256Hex(std::string_view bytes);

// The same of a file's contents, read in pieces; nothing when it cannot be read.
std::optional<std::string> Sha256OfFile(const std::filesystem::path& path);

}  // namespace tavrelle
