// The thread's last error and the translation of errno values (see LastError.h).
#include "runtime/files/LastError.h"

#include <sys/stat.h>

#include <cerrno>

namespace korva::runtime {

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

constexpr DWORD kTooManyOpenFiles = 4;
constexpr DWORD kGeneralFailure = 31;
constexpr DWORD kDiskFull = 112;
constexpr DWORD kDeviceError = 1117;

bool folderOfExists(const std::string& path) {
    std::string folder = path;
    while (!folder.empty() && folder.back() == '/') folder.pop_back();
    const size_t slash = folder.rfind('/');
    if (slash == std::string::npos) return true;  // the current folder
    folder.resize(slash == 0 ? 1 : slash);
    struct stat info{};
    return ::stat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

void setLastError(DWORD code) { lastError = code; }

DWORD win32FileError(int error, const std::string& nativePath) {
    switch (error) {
        case 0: return ERROR_SUCCESS;
        case ENOENT: return folderOfExists(nativePath) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
        case ENOTDIR:
        case ENAMETOOLONG:
        case ELOOP: return ERROR_PATH_NOT_FOUND;
        case EACCES:
        case EPERM:
        case EISDIR:
        case EROFS: return ERROR_ACCESS_DENIED;
        case EEXIST: return ERROR_FILE_EXISTS;
        case EBUSY:
        case ETXTBSY: return ERROR_SHARING_VIOLATION;
        case EINVAL: return ERROR_INVALID_PARAMETER;
        case EMFILE:
        case ENFILE: return kTooManyOpenFiles;
        case ENOSPC:
        case EDQUOT: return kDiskFull;
        case EIO: return kDeviceError;
        default: return kGeneralFailure;
    }
}

void setLastErrorFromErrno(const std::string& nativePath) {
    const int error = errno;
    setLastError(win32FileError(error, nativePath));
    errno = error;
}

}  // namespace korva::runtime

DWORD GetLastError() { return korva::runtime::lastError; }
