// The SDK's path-based file functions: the temporary folder, copying, deleting
// and attributes. Paths accept "\" and "/" alike (NativePath.h); failures set
// the thread's last error (LastError.h).
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "kcwindows.h"
#include "runtime/files/FileAttributes.h"
#include "runtime/files/LastError.h"
#include "runtime/files/NativePath.h"

using korva::runtime::nativePath;
using korva::runtime::setLastError;
using korva::runtime::setLastErrorFromErrno;

namespace {

BOOL fail(DWORD code) {
    setLastError(code);
    return FALSE;
}

BOOL failFromErrno(const std::string& path) {
    setLastErrorFromErrno(path);
    return FALSE;
}

bool copyContents(int from, int to) {
    char buffer[65536];
    while (true) {
        const ssize_t got = ::read(from, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) return true;
        for (ssize_t done = 0; done < got;) {
            const ssize_t written = ::write(to, buffer + done, static_cast<size_t>(got - done));
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) return false;
            done += written;
        }
    }
}

}  // namespace

DWORD GetTempPathW(DWORD bufferLength, LPWSTR buffer) {
    const char* configured = std::getenv("TMPDIR");
    std::string folder = configured && *configured ? configured : "/tmp";
    if (folder.back() != '/') folder += '/';
    const std::wstring path = korva::runtime::apiPath(folder);
    const auto length = static_cast<DWORD>(path.size());
    // Too small a buffer: the size needed, counting the terminating null.
    if (!buffer || bufferLength <= length) return length + 1;
    std::wmemcpy(buffer, path.c_str(), path.size() + 1);
    return length;
}

BOOL CopyFileW(LPCWSTR existingFile, LPCWSTR newFile, BOOL failIfExists) {
    if (!existingFile || !newFile) return fail(ERROR_INVALID_PARAMETER);
    const std::string source = nativePath(existingFile), target = nativePath(newFile);
    const int in = ::open(source.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) return failFromErrno(source);
    struct stat sourceInfo{};
    if (::fstat(in, &sourceInfo) != 0 || S_ISDIR(sourceInfo.st_mode)) {
        ::close(in);
        return fail(ERROR_ACCESS_DENIED);
    }
    struct stat targetInfo{};
    if (::stat(target.c_str(), &targetInfo) == 0) {
        DWORD refusal = ERROR_SUCCESS;
        if (failIfExists) {
            refusal = ERROR_FILE_EXISTS;
        } else if (targetInfo.st_dev == sourceInfo.st_dev && targetInfo.st_ino == sourceInfo.st_ino) {
            refusal = ERROR_SHARING_VIOLATION;  // copying a file onto itself would empty it
        } else if (S_ISDIR(targetInfo.st_mode) || korva::runtime::hasReadOnlyAttribute(target, targetInfo)) {
            refusal = ERROR_ACCESS_DENIED;
        }
        if (refusal != ERROR_SUCCESS) {
            ::close(in);
            return fail(refusal);
        }
    }
    const int createFlags = O_WRONLY | O_CREAT | O_CLOEXEC | (failIfExists ? O_EXCL : O_TRUNC);
    const int out = ::open(target.c_str(), createFlags, sourceInfo.st_mode & 0777);
    if (out < 0) {
        setLastErrorFromErrno(target);
        ::close(in);
        return FALSE;
    }
    const bool copied = copyContents(in, out);
    const int copyError = errno;
    // The copy keeps the source's permissions and modification time, as its model does.
    ::fchmod(out, sourceInfo.st_mode & 07777);
    const struct timespec times[2] = {sourceInfo.st_atim, sourceInfo.st_mtim};
    ::futimens(out, times);
    const bool closed = ::close(out) == 0;
    ::close(in);
    if (!copied || !closed) {
        errno = copied ? errno : copyError;
        setLastErrorFromErrno(target);
        ::unlink(target.c_str());
        return FALSE;
    }
    return TRUE;
}

BOOL DeleteFileW(LPCWSTR path) {
    if (!path) return fail(ERROR_INVALID_PARAMETER);
    const std::string native = nativePath(path);
    struct stat info{};
    if (::lstat(native.c_str(), &info) != 0) return failFromErrno(native);
    if (S_ISDIR(info.st_mode)) return fail(ERROR_ACCESS_DENIED);
    if (!S_ISLNK(info.st_mode) && korva::runtime::hasReadOnlyAttribute(native, info)) return fail(ERROR_ACCESS_DENIED);
    if (::unlink(native.c_str()) != 0) return failFromErrno(native);
    return TRUE;
}

DWORD GetFileAttributesW(LPCWSTR path) {
    if (!path) {
        setLastError(ERROR_INVALID_PARAMETER);
        return INVALID_FILE_ATTRIBUTES;
    }
    const std::string native = nativePath(path);
    struct stat info{};
    if (native.empty()) {
        setLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_FILE_ATTRIBUTES;
    }
    if (::stat(native.c_str(), &info) != 0) {
        setLastErrorFromErrno(native);
        return INVALID_FILE_ATTRIBUTES;
    }
    return korva::runtime::win32Attributes(native, info);
}
