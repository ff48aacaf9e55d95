#include "population/LineInput.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "base/ProgramError.h"
#include "population/FileErrors.h"

namespace tavrelle {

std::string LineInput::ReadLine() {
    if (Eof()) throw ProgramError::InputPastEndOfFile();
    std::size_t end = bytes_.find_first_of("\r\n", position_);
    if (end == std::string::npos) end = bytes_.size();
    std::string line = bytes_.substr(position_, end - position_);
    position_ = end;
    if (position_ < bytes_.size()) {
        bool carriageReturn = bytes_[position_] == '\r';
        ++position_;
        if (carriageReturn && position_ < bytes_.size() && bytes_[position_] == '\n') ++position_;
    }
    return line;
}

std::string ReadWholeFile(const std::string& fileName) {
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    errno = 0;
    std::unique_ptr<std::FILE, Closer> file(std::fopen(fileName.c_str(), "rb"));
    if (!file) throw FileError(errno);
    std::string bytes;
    char buffer[65536];
    std::size_t count = 0;
    while ((count = std::fread(buffer, 1, sizeof buffer, file.get())) > 0)
        bytes.append(buffer, count);
    if (std::ferror(file.get())) throw FileError(errno);
    return bytes;
}

}  // namespace tavrelle
