#pragma once

#include "base/ProgramError.h"

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

}  // namespace tavrelle
