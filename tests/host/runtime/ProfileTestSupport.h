// Helpers of the profile tests: a store opened on a fresh folder for one test,
// and short forms of the registry calls.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "TestFiles.h"
#include "kcwindows.h"
#include "runtime/profile/ProfileStore.h"
#include "runtime/profile/RegistryText.h"

namespace korva::test {

// The profile store kept in a temporary folder for the life of the object;
// afterwards the store is back in memory.
class ProfileFolder {
public:
    explicit ProfileFolder(bool createInterfaceKeys = true) { reopen(createInterfaceKeys); }
    ~ProfileFolder() { runtime::closeProfileStore(); }
    ProfileFolder(const ProfileFolder&) = delete;
    ProfileFolder& operator=(const ProfileFolder&) = delete;

    void reopen(bool createInterfaceKeys = true) {
        std::string error;
        EXPECT_TRUE(runtime::openProfileStore({folder_.path().string(), createInterfaceKeys}, error)) << error;
    }
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::filesystem::path storeFile() const { return folder_.file("profile.reg"); }

private:
    TempDir folder_;
};

inline HKEY createKey(const wchar_t* path, REGSAM access = KEY_ALL_ACCESS) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, access, nullptr, &key, nullptr), ERROR_SUCCESS);
    return key;
}

inline LONG setDword(HKEY key, const wchar_t* name, DWORD value) {
    return RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
}

inline LONG setText(HKEY key, const wchar_t* name, const std::wstring& text) {
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

inline std::optional<DWORD> queryDword(HKEY key, const wchar_t* name) {
    DWORD value = 0, type = 0, size = sizeof value;
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) != ERROR_SUCCESS) return std::nullopt;
    if (type != REG_DWORD || size != sizeof value) return std::nullopt;
    return value;
}

inline std::optional<std::wstring> queryText(HKEY key, const wchar_t* name) {
    DWORD type = 0, size = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS || type != REG_SZ) return std::nullopt;
    std::wstring text(size / sizeof(wchar_t), L'\0');
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size) != ERROR_SUCCESS)
        return std::nullopt;
    if (!text.empty() && text.back() == L'\0') text.pop_back();
    return text;
}

// Whether a key exists, asked through the registry functions.
inline bool keyExists(const wchar_t* path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

inline std::vector<runtime::RegistryTextProblem> problemsOfFile(const std::filesystem::path& file) {
    std::vector<runtime::RegistryTextProblem> problems;
    runtime::readRegistryText(readFileBytes(file), problems);
    return problems;
}

inline std::vector<std::string> fileNamesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    return names;
}

}  // namespace korva::test
