#include "population/FileErrors.h"

#include <cerrno>
#include <cstring>
#include <string>

namespace tavrelle {

ProgramError FileError(int errnum) {
    std::string description = errnum != 0 ? std::strerror(errnum) : "Path/File access error";
    switch (errnum) {
#ifdef ENOMEDIUM
        case ENOMEDIUM:
            return {kDiskNotReady, description};
#endif
        case ENOENT:
        case ENOTDIR:
        case ENXIO:
        case ENODEV:
            return {kDeviceUnavailable, description};
        case EROFS:
        case EACCES:
        case EPERM:
            return {kPermissionDenied, description};
        case ENOSPC:
            return {61, description};
        default:
            return {75, description};
    }
}

void ReportSaveFailure(const ProgramError& error, Prompter& prompter,
                       std::string_view otherAdvice) {
    std::string text;
    switch (error.Number()) {
        case kDialogCancelled:
            return;
        case kDeviceUnavailable:
            text = "The drive or path does not exist.";
            break;
        case kPermissionDenied:
            text = "The selected drive media is read only.\r\n" + error.Description();
            break;
        default:
            text = "An error has occurred during the save operation.\r\n" + error.Description() +
                   std::string(otherAdvice);
            break;
    }
    prompter.Show({text, "", MessageIcon::Exclamation, MessageButtons::Ok});
}

}  // namespace tavrelle
