#pragma once

#include <cstddef>
#include <string>

namespace tavrelle {

// A text file held whole in memory and read line by line, bytes as they are. A line ends at CR,
// CR LF or LF alone, so files from any platform read alike. A terminator at the very end does
// not make an extra empty line; a blank line before the end does.
class LineInput {
public:
    LineInput() = default;
    explicit LineInput(std::string bytes) : bytes_(std::move(bytes)) {}

    bool Eof() const { return position_ >= bytes_.size(); }
    // The next line without its terminator; reading at the end is "Input past end of file" (62).
    std::string ReadLine();
    // How many lines ReadLine would still give, counted without reading them.
    std::size_t LinesLeft() const;

private:
    std::string bytes_;
    std::size_t position_ = 0;
};

// The most bytes a data file may hold: far beyond any study, and a guard against a never-ending
// input eating the memory.
inline constexpr std::size_t kLargestInputFile = std::size_t{1} << 30;

// The whole file as bytes. Failures to open or read raise the file error of FileErrors.h; a
// device that is no terminal (such as /dev/zero) and a file over kLargestInputFile are refused.
std::string ReadWholeFile(const std::string& fileName);

}  // namespace tavrelle
