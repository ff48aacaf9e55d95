#include "base/InstallPaths.h"

namespace tavrelle {

std::filesystem::path InstalledFile(const std::filesystem::path& programFolder,
                                    const std::filesystem::path& besideProgram) {
    const std::filesystem::path beside = (programFolder / besideProgram).lexically_normal();
    std::error_code error;
    if (std::filesystem::exists(beside, error)) return beside;
    const std::filesystem::path shared =
        (programFolder / kInstalledShareFolder / besideProgram.filename()).lexically_normal();
    if (std::filesystem::exists(shared, error)) return shared;
    return beside;
}

}  // namespace tavrelle
