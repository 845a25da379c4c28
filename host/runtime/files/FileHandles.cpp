// CreateFileW and CloseHandle: opening, creating and truncating files by the
// Win32 creation modes, with the handles kept in a table so that a closed or
// garbage handle is refused instead of closing some other descriptor. Share
// modes are accepted and not enforced (this system has no mandatory sharing).
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <mutex>

#include "kcwindows.h"
#include "runtime/files/FileAttributes.h"
#include "runtime/files/LastError.h"
#include "runtime/files/NativePath.h"

using korva::runtime::setLastError;

namespace {

class FileHandleTable {
public:
    static FileHandleTable& instance() {
        static FileHandleTable* table = new FileHandleTable;  // never destroyed: handles may be closed at exit
        return *table;
    }
    HANDLE add(int fd) {
        std::lock_guard guard(mutex_);
        const uintptr_t handle = next_;
        next_ += 4;  // never reused, never null or INVALID_HANDLE_VALUE
        open_.emplace(handle, fd);
        return reinterpret_cast<HANDLE>(handle);
    }
    // The descriptor of an open handle, taken out of the table; -1 when there is none.
    int take(HANDLE handle) {
        std::lock_guard guard(mutex_);
        const auto found = open_.find(reinterpret_cast<uintptr_t>(handle));
        if (found == open_.end()) return -1;
        const int fd = found->second;
        open_.erase(found);
        return fd;
    }

private:
    std::mutex mutex_;
    std::map<uintptr_t, int> open_;
    uintptr_t next_ = 0x1000;
};

HANDLE failWith(DWORD code) {
    setLastError(code);
    return INVALID_HANDLE_VALUE;
}

}  // namespace

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD, LPSECURITY_ATTRIBUTES, DWORD creation, DWORD flags, HANDLE) {
    if (!path) return failWith(ERROR_INVALID_PARAMETER);
    const std::string native = korva::runtime::nativePath(path);
    const bool reading = (access & GENERIC_READ) != 0;
    const bool writing = (access & GENERIC_WRITE) != 0;
    struct stat info{};
    const bool existed = ::stat(native.c_str(), &info) == 0;
    if (existed && S_ISDIR(info.st_mode)) return failWith(ERROR_ACCESS_DENIED);

    int openFlags = O_CLOEXEC;
    bool truncates = false;
    switch (creation) {
        case CREATE_NEW:
            if (existed) return failWith(ERROR_FILE_EXISTS);
            openFlags |= O_CREAT | O_EXCL;
            break;
        case CREATE_ALWAYS:
            openFlags |= O_CREAT | O_TRUNC;
            truncates = true;
            break;
        case OPEN_EXISTING: break;
        case OPEN_ALWAYS: openFlags |= O_CREAT; break;
        case TRUNCATE_EXISTING:
            if (!writing) return failWith(ERROR_INVALID_PARAMETER);
            openFlags |= O_TRUNC;
            truncates = true;
            break;
        default: return failWith(ERROR_INVALID_PARAMETER);
    }
    if (existed && (writing || truncates) && korva::runtime::hasReadOnlyAttribute(native, info))
        return failWith(ERROR_ACCESS_DENIED);
    if (writing) {
        openFlags |= reading ? O_RDWR : O_WRONLY;
    } else {
        // Truncating needs a writable descriptor even when the caller asked only to read.
        openFlags |= truncates ? O_RDWR : O_RDONLY;
    }
    const mode_t mode = (flags & FILE_ATTRIBUTE_READONLY) ? 0444 : 0666;
    const int fd = ::open(native.c_str(), openFlags, mode);
    if (fd < 0) {
        korva::runtime::setLastErrorFromErrno(native);
        return INVALID_HANDLE_VALUE;
    }
    // On success its model reports whether an existing file was opened or overwritten.
    const bool reportsExisting = creation == CREATE_ALWAYS || creation == OPEN_ALWAYS;
    setLastError(existed && reportsExisting ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return FileHandleTable::instance().add(fd);
}

BOOL CloseHandle(HANDLE handle) {
    const int fd = FileHandleTable::instance().take(handle);
    if (fd < 0) {
        setLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    ::close(fd);
    return TRUE;
}
