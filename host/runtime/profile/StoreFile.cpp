// The profile file on disk: locking, change detection and atomic replacement
// (see StoreFile.h).
#include "runtime/profile/StoreFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>

namespace korva::runtime {

namespace {

constexpr const char* kTemporaryInfix = ".tmp-";

std::string describeErrno(const std::string& what, const std::filesystem::path& path) {
    return what + " " + path.string() + ": " + std::strerror(errno);
}

int openRetrying(const char* path, int flags, mode_t mode = 0) {
    int fd;
    do {
        fd = ::open(path, flags, mode);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool readAll(int fd, std::string& bytes) {
    bytes.clear();
    char buffer[65536];
    while (true) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        if (got == 0) return true;
        bytes.append(buffer, static_cast<size_t>(got));
    }
}

std::string timestamp() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &local);
    return text;
}

}  // namespace

StoreFile::Lock::~Lock() {
    if (fd_ >= 0) ::close(fd_);  // closing the descriptor releases the flock
}

StoreFile::StoreFile(std::filesystem::path folder)
    : folder_(std::move(folder)),
      path_(folder_ / kFileName),
      lockPath_(folder_ / (std::string(kFileName) + ".lock")) {}

StoreFile::~StoreFile() {
    if (heldFd_ >= 0) ::close(heldFd_);
}

StoreFile::Lock StoreFile::lock(std::string& error) const {
    Lock lock;
    const int fd = openRetrying(lockPath_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        error = describeErrno("cannot open the lock file", lockPath_);
        return lock;
    }
    int locked;
    do {
        locked = ::flock(fd, LOCK_EX);
    } while (locked < 0 && errno == EINTR);
    if (locked < 0) {
        error = describeErrno("cannot lock", lockPath_);
        ::close(fd);
        return lock;
    }
    lock.fd_ = fd;
    return lock;
}

StoreFile::Identity StoreFile::identityOf(const struct stat& info) {
    Identity identity;
    identity.exists = true;
    identity.device = info.st_dev;
    identity.inode = info.st_ino;
    identity.size = info.st_size;
    identity.modifiedNs = int64_t(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
    identity.changedNs = int64_t(info.st_ctim.tv_sec) * 1000000000 + info.st_ctim.tv_nsec;
    return identity;
}

StoreFile::Identity StoreFile::identityOnDisk() const {
    struct stat info{};
    if (::stat(path_.c_str(), &info) != 0) return Identity{};
    return identityOf(info);
}

bool StoreFile::changedOnDisk() const { return identityOnDisk() != known_; }

void StoreFile::hold(int fd) {
    if (heldFd_ >= 0) ::close(heldFd_);
    heldFd_ = fd;
}

StoreFile::ReadResult StoreFile::read(std::string& bytes, std::string& error) {
    bytes.clear();
    const int fd = openRetrying(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        const bool missing = errno == ENOENT;
        if (!missing) error = describeErrno("cannot open", path_);
        hold(-1);
        // Remember what is there, so that the same failure is not reported again.
        known_ = identityOnDisk();
        return missing ? ReadResult::Missing : ReadResult::Failed;
    }
    struct stat info{};
    if (::fstat(fd, &info) != 0 || !readAll(fd, bytes)) {
        error = describeErrno("cannot read", path_);
        ::close(fd);
        known_ = identityOnDisk();
        return ReadResult::Failed;
    }
    // The identity of the file actually read, which may be newer than a stat before it.
    known_ = identityOf(info);
    hold(fd);
    return ReadResult::Read;
}

void StoreFile::removeStaleTemporaries() const {
    // Under the lock no other writer is active: a temporary file left here belongs
    // to a writer that was killed before its rename.
    const std::string prefix = std::string(kFileName) + kTemporaryInfix;
    std::error_code code;
    for (const auto& entry : std::filesystem::directory_iterator(folder_, code)) {
        if (entry.path().filename().string().starts_with(prefix)) std::filesystem::remove(entry.path(), code);
    }
}

bool StoreFile::keepAside(std::string& keptAs, std::string& error) const {
    if (!identityOnDisk().exists) return true;
    const std::string base = path_.string() + ".damaged-" + timestamp();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::string aside = attempt == 0 ? base : base + "-" + std::to_string(attempt);
        // A hard link keeps the old file while the store name never goes missing.
        if (::link(path_.c_str(), aside.c_str()) == 0) {
            keptAs = aside;
            return true;
        }
        if (errno == EEXIST) continue;
        if (::rename(path_.c_str(), aside.c_str()) == 0) {
            keptAs = aside;
            return true;
        }
        error = describeErrno("cannot keep the damaged store aside as", aside);
        return false;
    }
    error = "cannot find a free name to keep the damaged store " + path_.string() + " aside";
    return false;
}

bool StoreFile::write(std::string_view bytes, bool keepCurrentAside, std::string& keptAs, std::string& error) {
    static std::atomic<unsigned> counter{0};
    removeStaleTemporaries();
    const std::filesystem::path temporary =
        path_.string() + kTemporaryInfix + std::to_string(::getpid()) + "-" + std::to_string(counter++);
    const int fd = openRetrying(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) {
        error = describeErrno("cannot create", temporary);
        return false;
    }
    auto abandon = [&](const std::string& message) {
        error = message;
        ::close(fd);
        ::unlink(temporary.c_str());
        return false;
    };
    if (!writeAll(fd, bytes) || ::fsync(fd) != 0) return abandon(describeErrno("cannot write", temporary));
    if (keepCurrentAside) {
        std::string asideError;
        if (!keepAside(keptAs, asideError)) return abandon(asideError);
    }
    if (::rename(temporary.c_str(), path_.c_str()) != 0) return abandon(describeErrno("cannot replace", path_));
    // The rename is durable only once the folder itself is flushed.
    const int folderFd = openRetrying(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderFd >= 0) {
        ::fsync(folderFd);
        ::close(folderFd);
    }
    struct stat info{};
    if (::fstat(fd, &info) == 0) {
        known_ = identityOf(info);
    } else {
        known_ = identityOnDisk();
    }
    hold(fd);
    return true;
}

}  // namespace korva::runtime
