// LayerToolsUtils in the loaded module: its two flags and the profile
// operations are reached through the module's exported symbols (layer
// isolation, their user, is not part of this folder) and checked against the
// registry store under the profile's LayerTools key (product root, "Profiles",
// CPROFILE, "UserInterfaceSettings", "LayerTools"), written and read here with
// the SDK's registry functions.
#include <gtest/gtest.h>

#include <string>

#include "LayerTestSupport.h"
#include "ModuleSession.h"
#include "db/Utf8.h"
#include "kcwindows.h"
#include "runtime/profile/ProfileStore.h"

namespace korva::test::layers {
namespace {

// The module's settings store, as its symbols give it.
struct LayerToolSettings {
    bool* lockFlag = nullptr;
    bool* freezeFlag = nullptr;
    void (*read)() = nullptr;
    void (*write)() = nullptr;
};

LayerToolSettings moduleSettings() {
    LayerToolSettings settings;
    runtime::LoadedModule* module = extendModule();
    if (!module) return settings;
    settings.lockFlag = static_cast<bool*>(module->symbol("_ZN15LayerToolsUtils9bLockFlagE"));
    settings.freezeFlag = static_cast<bool*>(module->symbol("_ZN15LayerToolsUtils11bFreezeFlagE"));
    settings.read = reinterpret_cast<void (*)()>(module->symbol("_ZN15LayerToolsUtils15ReadFromProfileEv"));
    settings.write = reinterpret_cast<void (*)()>(module->symbol("_ZN15LayerToolsUtils14WriteToProfileEv"));
    return settings;
}

// The documented key: the product root key "Software\Korva\R1" and the current profile.
std::wstring layerToolsKey() {
    return L"Software\\Korva\\R1\\Profiles\\" + db::utf8ToWide(variable(L"CPROFILE")) +
           L"\\UserInterfaceSettings\\LayerTools";
}

class LayerToolsProfile : public testing::Test {
protected:
    void SetUp() override {
        startHostOnce();
        settings = moduleSettings();
        ASSERT_TRUE(settings.lockFlag && settings.freezeFlag && settings.read && settings.write)
            << "the module does not export LayerToolsUtils";
        resetKey();
    }
    void TearDown() override {
        resetKey();
        if (settings.lockFlag) *settings.lockFlag = true;
        if (settings.freezeFlag) *settings.freezeFlag = false;
    }

    // The key as an installer leaves it: present and empty.
    void resetKey() {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, layerToolsKey().c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                  KEY_ALL_ACCESS, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegDeleteValueW(key, L"LockFlag");
        RegDeleteValueW(key, L"FreezeFlag");
        RegCloseKey(key);
    }
    void removeKey() {
        runtime::RegistryPath path = runtime::interfaceSettingsPath();
        path.push_back(L"LayerTools");
        ASSERT_EQ(runtime::removeProfileKey(path), ERROR_SUCCESS);
    }
    void storeValue(const wchar_t* name, DWORD value) {
        HKEY key = nullptr;
        ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, layerToolsKey().c_str(), 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
    // The stored DWORD, or -1 when the value is missing or not a 4-byte DWORD.
    long long storedValue(const wchar_t* name) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, layerToolsKey().c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return -1;
        DWORD value = 0;
        DWORD size = sizeof value;
        DWORD type = REG_NONE;
        const LONG status = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<LPBYTE>(&value), &size);
        RegCloseKey(key);
        return status == ERROR_SUCCESS && type == REG_DWORD && size == 4 ? static_cast<long long>(value) : -1;
    }
    void setFlags(bool lock, bool freeze) {
        *settings.lockFlag = lock;
        *settings.freezeFlag = freeze;
    }

    LayerToolSettings settings;
};

struct ReadCase {
    DWORD lockValue;
    DWORD freezeValue;
    bool lock;
    bool freeze;
};

// Each stored value sets its flag: non-zero is true, zero false.
TEST_F(LayerToolsProfile, ReadSetsEachFlagFromItsValue) {
    for (const ReadCase& c : {ReadCase{0, 1, false, true}, ReadCase{1, 0, true, false},
                              ReadCase{7, 0xFFFFFFFF, true, true}, ReadCase{0, 0, false, false}}) {
        storeValue(L"LockFlag", c.lockValue);
        storeValue(L"FreezeFlag", c.freezeValue);
        setFlags(!c.lock, !c.freeze);
        settings.read();
        EXPECT_EQ(*settings.lockFlag, c.lock) << c.lockValue;
        EXPECT_EQ(*settings.freezeFlag, c.freeze) << c.freezeValue;
    }
}

// A flag whose value is missing keeps what it had.
TEST_F(LayerToolsProfile, ReadKeepsAFlagWithoutAValue) {
    storeValue(L"FreezeFlag", 1);
    setFlags(false, false);
    settings.read();
    EXPECT_FALSE(*settings.lockFlag);
    EXPECT_TRUE(*settings.freezeFlag);
}

// Without the key, reading leaves both flags and writing creates nothing.
TEST_F(LayerToolsProfile, WithoutTheKeyNothingIsReadOrWritten) {
    removeKey();
    setFlags(false, true);
    settings.read();
    EXPECT_FALSE(*settings.lockFlag);
    EXPECT_TRUE(*settings.freezeFlag);
    settings.write();
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, layerToolsKey().c_str(), 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
}

// Writing stores both flags as DWORDs 1/0, and reading them back restores the flags.
TEST_F(LayerToolsProfile, WriteStoresBothFlagsAsDwords) {
    setFlags(false, true);
    settings.write();
    EXPECT_EQ(storedValue(L"LockFlag"), 0);
    EXPECT_EQ(storedValue(L"FreezeFlag"), 1);
    setFlags(true, false);
    settings.write();
    EXPECT_EQ(storedValue(L"LockFlag"), 1);
    EXPECT_EQ(storedValue(L"FreezeFlag"), 0);
    setFlags(false, true);
    settings.read();
    EXPECT_TRUE(*settings.lockFlag);
    EXPECT_FALSE(*settings.freezeFlag);
}

}  // namespace
}  // namespace korva::test::layers
