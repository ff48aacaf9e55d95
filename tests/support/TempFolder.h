#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "population/InputDataSource.h"

namespace tavrelle::testing {

// A folder of its own for each test, removed afterwards; files are written byte for byte.
// Parameterised tests have a "/" in their names, which would otherwise leave a parent folder.
class TempFolder {
public:
    TempFolder() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("tavrelle-") + std::to_string(::getpid()) + "-" +
                           info->test_suite_name() + "-" + info->name();
        for (char& c : name)
            if (c == '/') c = '-';
        path_ = std::filesystem::temp_directory_path() / name;
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string File(const std::string& name) const { return (path_ / name).string(); }
    const std::filesystem::path& Path() const { return path_; }

    std::string Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(File(name), std::ios::binary) << bytes;
        return File(name);
    }

    std::string Read(const std::string& name) const {
        std::string bytes(static_cast<std::size_t>(std::filesystem::file_size(File(name))), '\0');
        std::ifstream(File(name), std::ios::binary)
            .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return bytes;
    }

private:
    std::filesystem::path path_;
};

// A request to read a file as Genepop; the other fields keep their defaults.
inline StoreRequest FileRequest(const std::string& fileName) {
    StoreRequest request;
    request.fileLocation = fileName;
    return request;
}

// Lines joined with the given terminator, which also ends the last line.
inline std::string Lines(std::initializer_list<std::string> lines,
                         const std::string& end = "\r\n") {
    std::string text;
    for (const std::string& line : lines)
        text += line + end;
    return text;
}

}  // namespace tavrelle::testing
