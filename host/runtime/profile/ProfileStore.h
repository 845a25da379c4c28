// The user profile: the process's one registry store. Before openProfileStore
// is called it lives in memory only (unit tests, library users without a
// profile). Once opened on a folder it is kept in one text file there (see
// RegistryText.h), shared safely with other host processes (see StoreFile.h):
// every change re-reads the file if another process changed it, applies the
// change and writes the file under the lock; every read first takes in changes
// that another process saved.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/profile/RegistryTree.h"

namespace korva::runtime {

struct ProfileOptions {
    // The profile folder, created when missing; empty: a fresh store in memory only.
    std::string folder;
    // At the first start (no store file yet) create the empty keys
    // <root>\Profiles\<CPROFILE>\UserInterfaceSettings\{TextTools, LayerTools,
    // FileCompare}, as an installer would. Tests switch it off to see the module
    // without them.
    bool createInterfaceKeys = true;
};

// Opens the profile; false with `error` when the folder or its store cannot be
// used, and the store then carries on in memory only. A damaged store file is
// reported on standard error and what could be read is used.
bool openProfileStore(const ProfileOptions& options, std::string& error);
// Back to an empty store in memory only.
void closeProfileStore();
// $XDG_CONFIG_HOME/korva, else $HOME/.config/korva (not created here).
std::string defaultProfileFolder();
// The store file, or empty while the store is in memory only.
std::string profileStoreFile();
// The key that holds the profile's user interface settings:
// <product root key>\Profiles\<CPROFILE>\UserInterfaceSettings.
RegistryPath interfaceSettingsPath();

// Whole values by key path, for host code (the application object); the
// registry functions are the API of modules.
std::optional<RegistryValue> findProfileValue(const RegistryPath& key, std::wstring_view name);
// Creates the key when it is missing; ERROR_SUCCESS or a registry error.
LONG writeProfileValue(const RegistryPath& key, std::wstring_view name, DWORD type, std::vector<uint8_t> data);
// ERROR_FILE_NOT_FOUND when the value or key is missing.
LONG removeProfileValue(const RegistryPath& key, std::wstring_view name);
// Removes the key and every key below it; ERROR_FILE_NOT_FOUND when it is missing.
LONG removeProfileKey(const RegistryPath& key);

class StoreFile;

class ProfileStore {
public:
    static ProfileStore& instance();
    ~ProfileStore();

    // Calls `reader` with the current keys, after taking in another process's changes.
    template <class Reader>
    auto read(Reader&& reader) {
        std::lock_guard guard(mutex_);
        takeInOtherChanges();
        return reader(static_cast<const RegistryTree&>(tree_));
    }

    // Applies `edit` (a registry status; `changed` set when it changed the keys)
    // under the lock shared with other processes, and saves the store when it
    // succeeded and changed something.
    using Edit = std::function<LONG(RegistryTree& tree, bool& changed)>;
    LONG change(const Edit& edit);

    bool open(const ProfileOptions& options, std::string& error);
    void close();
    std::string filePath() const;

private:
    ProfileStore();
    void freshStart(const ProfileOptions& options, const RegistryPath& interfaceKey);
    void takeInOtherChanges();
    void reload();
    void load(const std::string& bytes);
    bool save(std::string& error);
    void detach(const std::string& reason);

    mutable std::mutex mutex_;
    RegistryTree tree_;
    std::unique_ptr<StoreFile> file_;
    // The file on disk could not be read whole: it is kept aside before the next save.
    bool damagedOnDisk_ = false;
};

}  // namespace korva::runtime
