// The profile file on disk, shared by every host process of the user. Changes
// are made under an exclusive lock (flock on a lock file beside it) and replace
// the file atomically: a temporary file in the same folder is written, flushed to
// disk and renamed over the store, and the folder is flushed. Readers therefore
// never see a half-written store, and notice another process's change because the
// file they last read is no longer the one on disk.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

struct stat;

namespace korva::runtime {

class StoreFile {
public:
    static constexpr const char* kFileName = "profile.reg";

    explicit StoreFile(std::filesystem::path folder);
    ~StoreFile();
    StoreFile(const StoreFile&) = delete;
    StoreFile& operator=(const StoreFile&) = delete;

    const std::filesystem::path& path() const { return path_; }

    // The exclusive lock of every change; released when destroyed.
    class Lock {
    public:
        Lock() = default;
        ~Lock();
        Lock(Lock&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
        Lock& operator=(Lock&&) = delete;
        Lock(const Lock&) = delete;
        bool held() const { return fd_ >= 0; }

    private:
        friend class StoreFile;
        int fd_ = -1;
    };
    Lock lock(std::string& error) const;

    // True when the file on disk is not the one last read or written (another
    // process replaced it, it was edited, removed or created).
    bool changedOnDisk() const;

    enum class ReadResult { Read, Missing, Failed };
    ReadResult read(std::string& bytes, std::string& error);

    // Replaces the file with `bytes`. With `keepCurrentAside` the file now on disk
    // is first kept as "<name>.damaged-<time>" (named in `keptAs`); when that is
    // impossible nothing is written. Call it while holding the lock.
    bool write(std::string_view bytes, bool keepCurrentAside, std::string& keptAs, std::string& error);

private:
    // What tells two versions of the file apart. The file last read stays open,
    // so its inode number cannot be given to a new file while we compare.
    struct Identity {
        bool exists = false;
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        int64_t modifiedNs = 0;
        int64_t changedNs = 0;
        bool operator==(const Identity&) const = default;
    };
    static Identity identityOf(const struct stat& info);
    Identity identityOnDisk() const;
    void hold(int fd);
    void removeStaleTemporaries() const;
    bool keepAside(std::string& keptAs, std::string& error) const;

    std::filesystem::path folder_;
    std::filesystem::path path_;
    std::filesystem::path lockPath_;
    Identity known_;
    int heldFd_ = -1;
};

}  // namespace korva::runtime
