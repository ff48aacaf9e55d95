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

}  // namespace tavrelle
