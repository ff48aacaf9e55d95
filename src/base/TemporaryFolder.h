#pragma once

#include <cstdlib>
#include <filesystem>

namespace tavrelle {

// The folder for scratch files: $TMPDIR when it names a folder, otherwise /tmp. A TMPDIR that is
// unset, empty or gone is no reason for a read or a save to fail.
inline std::filesystem::path TemporaryFolder() {
    std::error_code error;
    if (const char* folder = std::getenv("TMPDIR");
        folder != nullptr && *folder != '\0' && std::filesystem::is_directory(folder, error))
        return folder;
    return "/tmp";
}

}  // namespace tavrelle
