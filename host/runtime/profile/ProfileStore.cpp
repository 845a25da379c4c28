// The process's registry store, in memory or kept in the profile folder (see
// ProfileStore.h).
#include "runtime/profile/ProfileStore.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "db/Utf8.h"
#include "editor/SystemVariables.h"
#include "editor/VariableTable.h"
#include "kcdbdatabase.h"
#include "runtime/profile/RegistryText.h"
#include "runtime/profile/StoreFile.h"

namespace korva::runtime {

namespace {

constexpr const wchar_t* kDefaultProfile = L"Default";
constexpr const wchar_t* kInterfaceFamilies[] = {L"TextTools", L"LayerTools", L"FileCompare"};
constexpr size_t kMaxReportedProblems = 20;

void complain(const std::string& message) {
    std::fprintf(stderr, "korva: %s\n", message.c_str());
    std::fflush(stderr);
}

// The profile name: the CPROFILE system variable when the editor knows it.
std::wstring currentProfileName() {
    if (!editor::findVariable(L"CPROFILE")) return kDefaultProfile;
    const std::wstring name = editor::SystemVariables::instance().text(L"CPROFILE");
    const auto path = splitRegistryPath(name);
    return path && path->size() == 1 ? name : kDefaultProfile;
}

}  // namespace

RegistryPath interfaceSettingsPath() {
    RegistryPath path = splitRegistryPath(kcdbHostApplicationServices()->getRegistryProductRootKey()).value_or(RegistryPath{});
    path.push_back(L"Profiles");
    path.push_back(currentProfileName());
    path.push_back(L"UserInterfaceSettings");
    return path;
}

ProfileStore::ProfileStore() = default;
ProfileStore::~ProfileStore() = default;

ProfileStore& ProfileStore::instance() {
    // Never destroyed: modules may still read settings while they unload at exit.
    static ProfileStore* store = new ProfileStore;
    return *store;
}

std::string ProfileStore::filePath() const {
    std::lock_guard guard(mutex_);
    return file_ ? file_->path().string() : std::string();
}

void ProfileStore::freshStart(const ProfileOptions& options, const RegistryPath& interfaceKey) {
    tree_ = RegistryTree();
    if (!options.createInterfaceKeys) return;
    for (const wchar_t* family : kInterfaceFamilies) {
        RegistryPath path = interfaceKey;
        path.push_back(family);
        tree_.createKey(path);
    }
}

bool ProfileStore::open(const ProfileOptions& options, std::string& error) {
    // Read before taking the store's mutex: the variable may itself live in the profile.
    const RegistryPath interfaceKey = interfaceSettingsPath();
    std::lock_guard guard(mutex_);
    file_.reset();
    damagedOnDisk_ = false;
    freshStart(options, interfaceKey);
    if (options.folder.empty()) return true;

    const std::filesystem::path folder(options.folder);
    std::error_code code;
    std::filesystem::create_directories(folder, code);
    if (code || !std::filesystem::is_directory(folder, code)) {
        error = "cannot use the profile folder " + folder.string() + (code ? ": " + code.message() : "");
        return false;
    }
    file_ = std::make_unique<StoreFile>(folder);
    const StoreFile::Lock lock = file_->lock(error);
    if (!lock.held()) {
        file_.reset();
        return false;
    }
    std::string bytes, readError;
    switch (file_->read(bytes, readError)) {
        case StoreFile::ReadResult::Read: load(bytes); break;
        case StoreFile::ReadResult::Failed:
            complain("the profile store " + readError + "; it is kept as it is and the profile starts empty");
            tree_ = RegistryTree();
            damagedOnDisk_ = true;
            break;
        case StoreFile::ReadResult::Missing:
            // The first start: the store is written at once, so the next start is not one.
            if (!save(error)) {
                file_.reset();
                return false;
            }
            break;
    }
    return true;
}

void ProfileStore::close() {
    std::lock_guard guard(mutex_);
    file_.reset();
    damagedOnDisk_ = false;
    tree_ = RegistryTree();
}

void ProfileStore::load(const std::string& bytes) {
    std::vector<RegistryTextProblem> problems;
    tree_ = readRegistryText(bytes, problems);
    damagedOnDisk_ = !problems.empty();
    if (problems.empty()) return;
    const std::string path = file_->path().string();
    complain("the profile store " + path + " is damaged:");
    for (size_t i = 0; i < problems.size() && i < kMaxReportedProblems; ++i) {
        std::fprintf(stderr, "%s:%d: %s\n", path.c_str(), problems[i].line, problems[i].message.c_str());
    }
    if (problems.size() > kMaxReportedProblems) {
        std::fprintf(stderr, "%s: %zu more damaged lines\n", path.c_str(), problems.size() - kMaxReportedProblems);
    }
    complain("the values that could be read are used; the damaged file is kept as " + path +
             ".damaged-<time> when the profile is next saved");
}

void ProfileStore::reload() {
    std::string bytes, error;
    switch (file_->read(bytes, error)) {
        case StoreFile::ReadResult::Read: load(bytes); break;
        case StoreFile::ReadResult::Failed:
            complain("the profile store " + error + "; the values read before are used");
            damagedOnDisk_ = true;
            break;
        case StoreFile::ReadResult::Missing:
            // Removed behind our back: the values read before are used and saved again.
            damagedOnDisk_ = false;
            break;
    }
}

void ProfileStore::takeInOtherChanges() {
    if (file_ && file_->changedOnDisk()) reload();
}

bool ProfileStore::save(std::string& error) {
    std::string keptAs;
    if (!file_->write(writeRegistryText(tree_), damagedOnDisk_, keptAs, error)) return false;
    if (!keptAs.empty()) complain("the damaged profile store was kept as " + keptAs);
    damagedOnDisk_ = false;
    return true;
}

void ProfileStore::detach(const std::string& reason) {
    complain("the profile store cannot be saved (" + reason + "); changes are kept for this session only");
    file_.reset();
}

LONG ProfileStore::change(const Edit& edit) {
    std::lock_guard guard(mutex_);
    bool changed = false;
    if (!file_) return edit(tree_, changed);
    std::string error;
    const StoreFile::Lock lock = file_->lock(error);
    if (!lock.held()) {
        detach(error);
        return edit(tree_, changed);
    }
    takeInOtherChanges();
    const LONG status = edit(tree_, changed);
    if (status == ERROR_SUCCESS && changed && !save(error)) detach(error);
    return status;
}

bool openProfileStore(const ProfileOptions& options, std::string& error) {
    return ProfileStore::instance().open(options, error);
}

void closeProfileStore() { ProfileStore::instance().close(); }

std::string profileStoreFile() { return ProfileStore::instance().filePath(); }

std::optional<RegistryValue> findProfileValue(const RegistryPath& key, std::wstring_view name) {
    return ProfileStore::instance().read([&](const RegistryTree& tree) -> std::optional<RegistryValue> {
        const RegistryKey* found = tree.findKey(key);
        const RegistryValue* value = found ? found->findValue(name) : nullptr;
        if (!value) return std::nullopt;
        return *value;
    });
}

LONG writeProfileValue(const RegistryPath& key, std::wstring_view name, DWORD type, std::vector<uint8_t> data) {
    if (name.size() > kMaxValueNameLength) return ERROR_INVALID_PARAMETER;
    return ProfileStore::instance().change([&](RegistryTree& tree, bool& changed) -> LONG {
        bool created = false;
        RegistryKey& found = tree.createKey(key, &created);
        changed = found.setValue(name, type, std::move(data)) || created;
        return ERROR_SUCCESS;
    });
}

LONG removeProfileValue(const RegistryPath& key, std::wstring_view name) {
    return ProfileStore::instance().change([&](RegistryTree& tree, bool& changed) -> LONG {
        RegistryKey* found = tree.findKey(key);
        changed = found && found->removeValue(name);
        return changed ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    });
}

LONG removeProfileKey(const RegistryPath& key) {
    return ProfileStore::instance().change([&](RegistryTree& tree, bool& changed) -> LONG {
        changed = tree.removeKey(key);
        return changed ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    });
}

std::string defaultProfileFolder() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    // The base directory rules ignore a relative XDG_CONFIG_HOME.
    if (config && config[0] == '/') return std::string(config) + "/korva";
    const char* home = std::getenv("HOME");
    std::string homeFolder = home && *home ? home : "";
    if (homeFolder.empty()) {
        if (const passwd* user = ::getpwuid(::getuid()); user && user->pw_dir) homeFolder = user->pw_dir;
    }
    if (homeFolder.empty()) return {};
    return homeFolder + "/.config/korva";
}

}  // namespace korva::runtime
