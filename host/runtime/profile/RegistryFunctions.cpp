// The registry functions of the SDK over the profile store: keys are opened by
// path relative to an open key, values are read and written as typed bytes.
// Sizes are in bytes; REG_SZ data are wide characters (4 bytes each here) with
// their terminating null, stored exactly as given.
#include <cstring>
#include <cwchar>

#include "kcwindows.h"
#include "runtime/profile/KeyHandles.h"
#include "runtime/profile/ProfileStore.h"

using korva::runtime::KeyHandles;
using korva::runtime::OpenKey;
using korva::runtime::ProfileStore;
using korva::runtime::RegistryKey;
using korva::runtime::RegistryPath;
using korva::runtime::RegistryTree;
using korva::runtime::RegistryValue;

namespace {

std::optional<RegistryPath> pathBelow(const OpenKey& base, LPCWSTR subKey) {
    const auto names = korva::runtime::splitRegistryPath(subKey ? subKey : L"");
    if (!names) return std::nullopt;
    RegistryPath path = base.path;
    path.insert(path.end(), names->begin(), names->end());
    return path;
}

bool isValidValueName(LPCWSTR name) { return !name || std::wcslen(name) <= korva::runtime::kMaxValueNameLength; }

// ERROR_SUCCESS when `path` exists below an existing `base`.
LONG keyPresence(const RegistryTree& tree, const OpenKey& base, const RegistryPath& path) {
    if (!tree.findKey(base.path)) return ERROR_KEY_DELETED;
    return tree.findKey(path) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

}  // namespace

LONG RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, PHKEY result) {
    if (!result) return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    const auto base = KeyHandles::instance().find(key);
    if (!base) return ERROR_INVALID_HANDLE;
    const auto path = pathBelow(*base, subKey);
    if (!path) return ERROR_INVALID_PARAMETER;
    const LONG status =
        ProfileStore::instance().read([&](const RegistryTree& tree) { return keyPresence(tree, *base, *path); });
    if (status != ERROR_SUCCESS) return status;
    *result = KeyHandles::instance().add(OpenKey{*path, access});
    return ERROR_SUCCESS;
}

LONG RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM access, LPSECURITY_ATTRIBUTES,
                     PHKEY result, LPDWORD disposition) {
    if (!result) return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    const auto base = KeyHandles::instance().find(key);
    if (!base) return ERROR_INVALID_HANDLE;
    const auto path = pathBelow(*base, subKey);
    if (!path) return ERROR_INVALID_PARAMETER;
    ProfileStore& store = ProfileStore::instance();
    bool created = false;
    // Opening an existing key needs no lock and writes nothing.
    LONG status = store.read([&](const RegistryTree& tree) { return keyPresence(tree, *base, *path); });
    if (status == ERROR_FILE_NOT_FOUND) {
        status = store.change([&](RegistryTree& tree, bool& changed) -> LONG {
            if (!tree.findKey(base->path)) return ERROR_KEY_DELETED;
            tree.createKey(*path, &created);
            changed = created;
            return ERROR_SUCCESS;
        });
    }
    if (status != ERROR_SUCCESS) return status;
    if (disposition) *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    *result = KeyHandles::instance().add(OpenKey{*path, access});
    return ERROR_SUCCESS;
}

LONG RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD dataSize) {
    const auto open = KeyHandles::instance().find(key);
    if (!open) return ERROR_INVALID_HANDLE;
    if ((open->access & KEY_QUERY_VALUE) == 0) return ERROR_ACCESS_DENIED;
    if (data && !dataSize) return ERROR_INVALID_PARAMETER;
    if (!isValidValueName(valueName)) return ERROR_FILE_NOT_FOUND;
    return ProfileStore::instance().read([&](const RegistryTree& tree) -> LONG {
        const RegistryKey* found = tree.findKey(open->path);
        if (!found) return ERROR_KEY_DELETED;
        const RegistryValue* value = found->findValue(valueName ? valueName : L"");
        if (!value) return ERROR_FILE_NOT_FOUND;
        if (type) *type = value->type;
        const auto size = static_cast<DWORD>(value->data.size());
        if (!dataSize) return ERROR_SUCCESS;
        if (data && *dataSize < size) {
            *dataSize = size;
            return ERROR_MORE_DATA;
        }
        if (data && size) std::memcpy(data, value->data.data(), size);
        *dataSize = size;
        return ERROR_SUCCESS;
    });
}

LONG RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD, DWORD type, const BYTE* data, DWORD dataSize) {
    const auto open = KeyHandles::instance().find(key);
    if (!open) return ERROR_INVALID_HANDLE;
    if ((open->access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
    if ((!data && dataSize) || !isValidValueName(valueName)) return ERROR_INVALID_PARAMETER;
    const std::vector<uint8_t> bytes(data, data + (data ? dataSize : 0));
    return ProfileStore::instance().change([&](RegistryTree& tree, bool& changed) -> LONG {
        RegistryKey* found = tree.findKey(open->path);
        if (!found) return ERROR_KEY_DELETED;
        changed = found->setValue(valueName ? valueName : L"", type, bytes);
        return ERROR_SUCCESS;
    });
}

LONG RegDeleteValueW(HKEY key, LPCWSTR valueName) {
    const auto open = KeyHandles::instance().find(key);
    if (!open) return ERROR_INVALID_HANDLE;
    if ((open->access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
    if (!isValidValueName(valueName)) return ERROR_FILE_NOT_FOUND;
    return ProfileStore::instance().change([&](RegistryTree& tree, bool& changed) -> LONG {
        RegistryKey* found = tree.findKey(open->path);
        if (!found) return ERROR_KEY_DELETED;
        changed = found->removeValue(valueName ? valueName : L"");
        return changed ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    });
}

LONG RegCloseKey(HKEY key) { return KeyHandles::instance().remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE; }
