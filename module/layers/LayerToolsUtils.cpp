// LayerToolsUtils: the profile key path is built from the host's product root
// key and the current profile (CPROFILE); a missing profile name or key leaves
// the flags untouched, and writing only opens the key, never creates it.
#include "layers/LayerToolsUtils.h"

#include <cstdlib>
#include <string>

#include "kcdbdatabase.h"
#include "kced.h"
#include "kcwindows.h"

bool LayerToolsUtils::bLockFlag = true;
bool LayerToolsUtils::bFreezeFlag = false;

namespace {

constexpr const wchar_t* kLockFlagValue = L"LockFlag";
constexpr const wchar_t* kFreezeFlagValue = L"FreezeFlag";

// The key of the layer-tool settings, or false when CPROFILE cannot be read.
bool layerToolsKeyPath(std::wstring& path) {
    resbuf profile{};
    if (kcedGetVar(L"CPROFILE", &profile) != RTNORM) return false;
    std::wstring profileName;
    if (profile.restype == RTSTR && profile.resval.rstring) {
        profileName = profile.resval.rstring;
        free(profile.resval.rstring);
    }
    const KcDbHostApplicationServices* services = kcdbHostApplicationServices();
    const wchar_t* root = services ? services->getRegistryProductRootKey() : nullptr;
    path = std::wstring(root ? root : L"") + L"\\Profiles\\" + profileName + L"\\UserInterfaceSettings\\" +
           L"LayerTools";
    return true;
}

// Reads one DWORD value into flag; the flag keeps its value when the query fails.
void readFlag(HKEY key, const wchar_t* valueName, bool& flag) {
    DWORD value = 0;
    DWORD size = sizeof(value);
    DWORD type = REG_NONE;
    if (RegQueryValueExW(key, valueName, nullptr, &type, reinterpret_cast<LPBYTE>(&value), &size) == ERROR_SUCCESS)
        flag = value != 0;
}

// A value that cannot be written keeps what was stored; the caller goes on with the other.
void writeFlag(HKEY key, const wchar_t* valueName, bool flag) {
    const DWORD value = flag ? 1 : 0;
    RegSetValueExW(key, valueName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof(value));
}

}  // namespace

void LayerToolsUtils::ReadFromProfile() {
    std::wstring path;
    if (!layerToolsKeyPath(path)) return;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    readFlag(key, kLockFlagValue, bLockFlag);
    readFlag(key, kFreezeFlagValue, bFreezeFlag);
    RegCloseKey(key);
}

void LayerToolsUtils::WriteToProfile() {
    std::wstring path;
    if (!layerToolsKeyPath(path)) return;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) return;
    writeFlag(key, kLockFlagValue, bLockFlag);
    writeFlag(key, kFreezeFlagValue, bFreezeFlag);
    RegCloseKey(key);
}
