#include "population/LineInput.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "base/ProgramError.h"
#include "population/FileErrors.h"

namespace tavrelle {

namespace {
// "Bad file mode", the error of a file that cannot be read as data.
constexpr int kNotADataFile = 54;
}  // namespace

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

std::size_t LineInput::LinesLeft() const {
    if (Eof()) return 0;
    std::size_t lines = 0;
    for (std::size_t i = position_; i < bytes_.size(); ++i) {
        if (bytes_[i] == '\n') {
            ++lines;
        } else if (bytes_[i] == '\r') {
            ++lines;
            if (i + 1 < bytes_.size() && bytes_[i + 1] == '\n') ++i;
        }
    }
    const char last = bytes_.back();
    return last == '\n' || last == '\r' ? lines : lines + 1;
}

std::string ReadWholeFile(const std::string& fileName) {
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    errno = 0;
    std::unique_ptr<std::FILE, Closer> file(std::fopen(fileName.c_str(), "rb"));
    if (!file) throw FileError(errno);
    struct stat status {};
    if (fstat(fileno(file.get()), &status) == 0 && S_ISCHR(status.st_mode) &&
        !isatty(fileno(file.get())))
        throw ProgramError(kNotADataFile, fileName + " is a device, not a data file.");
    std::string bytes;
    if (S_ISREG(status.st_mode) && status.st_size > 0)
        bytes.reserve(static_cast<std::size_t>(status.st_size));
    char buffer[65536];
    std::size_t count = 0;
    while ((count = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) {
        if (bytes.size() + count > kLargestInputFile)
            throw ProgramError(kNotADataFile, fileName +
                                                  " is larger than 1 GiB, the most Tavrelle "
                                                  "reads as a data file.");
        bytes.append(buffer, count);
    }
    if (std::ferror(file.get())) throw FileError(errno);
    return bytes;
}

}  // namespace tavrelle
