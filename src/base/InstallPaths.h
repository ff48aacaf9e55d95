#pragma once

#include <filesystem>

namespace tavrelle {

// The share folder of an installed tree, relative to the folder of the programs.
inline constexpr const char* kInstalledShareFolder = "../share/tavrelle";

// Where a file that ships with Tavrelle lies, given the program's folder and the file's place
// relative to it (the tables, "TavrelleHelp", "User_Guide.pdf", "Questionnaire.xls",
// "../DemoFiles"). The place beside the program comes first, as in the build tree; then the
// share folder of an installed tree, which holds each under its own name. When neither exists
// the place beside the program is returned, so that a message about a missing file names it.
std::filesystem::path InstalledFile(const std::filesystem::path& programFolder,
                                    const std::filesystem::path& besideProgram);

}  // namespace tavrelle
