#pragma once

#include <string_view>

#include "base/ProgramError.h"
#include "base/Prompter.h"

namespace tavrelle {

// The file error numbers the program's handlers are keyed on.
inline constexpr int kDialogCancelled = 32755;
inline constexpr int kDiskNotReady = 71;
inline constexpr int kDeviceUnavailable = 68;
inline constexpr int kPermissionDenied = 70;

// A failed file operation as the program reports it: the platform's error mapped onto the
// numbers above (no medium -> 71; missing device, folder or path -> 68; read-only media or no
// permission -> 70; a full disk -> 61; anything else -> 75), with the platform's own description.
ProgramError FileError(int errnum);

// The box a writer shows when a save failed, keyed on the error's number; nothing for a
// cancelled dialog. `otherAdvice` follows the description of an error the table doesn't name.
void ReportSaveFailure(const ProgramError& error, Prompter& prompter,
                       std::string_view otherAdvice = {});

}  // namespace tavrelle
