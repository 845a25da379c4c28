// The registry functions in memory: opening and creating keys by path, values
// and their sizes, access masks, names without regard to case, bad handles, and
// keys removed while open.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ProfileTestSupport.h"
#include "kcwindows.h"
#include "runtime/profile/ProfileStore.h"

namespace korva::test {
namespace {

class RegistryInMemory : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(runtime::openProfileStore({"", false}, error));
    }
    void TearDown() override { runtime::closeProfileStore(); }
};

struct KeyCase {
    const char* intent;
    bool create;  // RegCreateKeyExW, else RegOpenKeyExW
    const wchar_t* subKey;
    LONG status;
    DWORD disposition;  // for successful creates
};

TEST_F(RegistryInMemory, OpenAndCreateFollowThePathRules) {
    const std::wstring longName(256, L'k');
    const std::wstring longPath = L"Software\\" + longName;
    const KeyCase cases[] = {
        {"a missing key cannot be opened", false, L"Software\\Korva\\R1\\Tools", ERROR_FILE_NOT_FOUND, 0},
        {"creating makes the key and its parents", true, L"Software\\Korva\\R1\\Tools", ERROR_SUCCESS, REG_CREATED_NEW_KEY},
        {"a parent made on the way exists", false, L"Software\\Korva", ERROR_SUCCESS, 0},
        {"names compare without case", false, L"SOFTWARE\\korva\\r1\\TOOLS", ERROR_SUCCESS, 0},
        {"\"/\" separates like \"\\\"", false, L"Software/Korva/R1/Tools", ERROR_SUCCESS, 0},
        {"a trailing separator is ignored", false, L"Software\\Korva\\R1\\Tools\\", ERROR_SUCCESS, 0},
        {"creating an existing key opens it", true, L"software/KORVA/r1/tools/", ERROR_SUCCESS, REG_OPENED_EXISTING_KEY},
        {"an empty subkey opens the key itself", false, L"", ERROR_SUCCESS, 0},
        {"a null subkey opens the key itself", false, nullptr, ERROR_SUCCESS, 0},
        {"a doubled separator is refused", false, L"Software\\\\Korva", ERROR_INVALID_PARAMETER, 0},
        {"a leading separator is refused", true, L"\\Software", ERROR_INVALID_PARAMETER, 0},
        {"a name of 256 characters is refused", true, longPath.c_str(), ERROR_INVALID_PARAMETER, 0},
        {"a control character is refused", true, L"Software\\a\nb", ERROR_INVALID_PARAMETER, 0},
    };
    for (const KeyCase& c : cases) {
        SCOPED_TRACE(c.intent);
        HKEY key = reinterpret_cast<HKEY>(0x1);
        DWORD disposition = 0;
        const LONG status =
            c.create ? RegCreateKeyExW(HKEY_CURRENT_USER, c.subKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                                       nullptr, &key, &disposition)
                     : RegOpenKeyExW(HKEY_CURRENT_USER, c.subKey, 0, KEY_READ, &key);
        EXPECT_EQ(status, c.status);
        if (status != ERROR_SUCCESS) {
            EXPECT_EQ(key, nullptr);
            continue;
        }
        if (c.create) {
            EXPECT_EQ(disposition, c.disposition);
        }
        EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    }
    EXPECT_FALSE(keyExists(longPath.c_str()));
}

// Keys and values keep the case of their first creation, whatever case later calls use.
TEST_F(RegistryInMemory, NamesKeepTheCaseTheyWereCreatedWith) {
    RegCloseKey(createKey(L"Software\\MixedCase"));
    HKEY child = createKey(L"SOFTWARE\\MIXEDCASE\\Child");
    ASSERT_EQ(setDword(child, L"CheckFlag", 1), ERROR_SUCCESS);
    ASSERT_EQ(setDword(child, L"CHECKFLAG", 2), ERROR_SUCCESS);
    EXPECT_EQ(queryDword(child, L"checkflag"), 2u);
    RegCloseKey(child);
    const auto [path, names] = runtime::ProfileStore::instance().read([](const runtime::RegistryTree& tree) {
        const runtime::RegistryKey* key = tree.findKey({L"software", L"mixedcase", L"child"});
        std::vector<std::wstring> valueNames;
        if (key) {
            for (const auto& value : key->values) valueNames.push_back(value.name);
        }
        return std::make_pair(key ? runtime::joinRegistryPath(key->path) : L"", valueNames);
    });
    EXPECT_EQ(path, L"Software\\MixedCase\\Child");
    EXPECT_EQ(names, std::vector<std::wstring>{L"CheckFlag"});
}

struct SizeCase {
    const char* intent;
    DWORD type;
    std::vector<uint8_t> stored;
};

std::vector<uint8_t> wideBytes(const std::wstring& text) {
    std::vector<uint8_t> bytes((text.size() + 1) * sizeof(wchar_t));
    std::memcpy(bytes.data(), text.c_str(), bytes.size());
    return bytes;
}

TEST_F(RegistryInMemory, QueriesReportSizesTypesAndShortBuffers) {
    const SizeCase cases[] = {
        {"REG_SZ data are 4-byte characters with the null", REG_SZ, wideBytes(L"1.000000")},
        {"REG_DWORD data are 4 bytes", REG_DWORD, {0x53, 0, 0, 0}},
        {"another type keeps its raw bytes", 3, {0x00, 0xFF, 0x10}},
        {"an empty value has size 0", REG_SZ, {}},
    };
    HKEY key = createKey(L"Software\\Korva\\R1\\Sizes");
    for (const SizeCase& c : cases) {
        SCOPED_TRACE(c.intent);
        ASSERT_EQ(RegSetValueExW(key, L"Value", 0, c.type, c.stored.data(), static_cast<DWORD>(c.stored.size())),
                  ERROR_SUCCESS);
        DWORD type = 0, size = 0;
        ASSERT_EQ(RegQueryValueExW(key, L"Value", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
        EXPECT_EQ(type, c.type);
        EXPECT_EQ(size, c.stored.size());
        if (!c.stored.empty()) {
            std::vector<uint8_t> shortBuffer(c.stored.size() - 1, 0xEE);
            DWORD shortSize = static_cast<DWORD>(shortBuffer.size());
            EXPECT_EQ(RegQueryValueExW(key, L"Value", nullptr, &type, shortBuffer.data(), &shortSize), ERROR_MORE_DATA);
            EXPECT_EQ(shortSize, c.stored.size());
        }
        std::vector<uint8_t> buffer(c.stored.size() + 8, 0xEE);
        DWORD bufferSize = static_cast<DWORD>(buffer.size());
        ASSERT_EQ(RegQueryValueExW(key, L"Value", nullptr, nullptr, buffer.data(), &bufferSize), ERROR_SUCCESS);
        EXPECT_EQ(bufferSize, c.stored.size());
        buffer.resize(bufferSize);
        EXPECT_EQ(buffer, c.stored);
    }
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(RegistryInMemory, MissingAndDeletedValuesAreNotFound) {
    HKEY key = createKey(L"Software\\Korva\\R1\\Values");
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"Missing", nullptr, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(setText(key, L"Name", L"text"), ERROR_SUCCESS);
    ASSERT_EQ(setText(key, nullptr, L"unnamed"), ERROR_SUCCESS);
    EXPECT_EQ(queryText(key, L""), L"unnamed");  // null and "" both name the default value
    EXPECT_EQ(RegDeleteValueW(key, L"NAME"), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(key, L"Name", nullptr, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegDeleteValueW(key, L"Name"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(queryText(key, nullptr), L"unnamed");
    RegCloseKey(key);
}

struct AccessCase {
    const char* intent;
    REGSAM access;
    LONG query;
    LONG set;
};

TEST_F(RegistryInMemory, AccessMasksDecideReadingAndWriting) {
    HKEY setup = createKey(L"Software\\Korva\\R1\\Access");
    ASSERT_EQ(setDword(setup, L"Flag", 0), ERROR_SUCCESS);
    RegCloseKey(setup);
    const AccessCase cases[] = {
        {"KEY_READ reads only", KEY_READ, ERROR_SUCCESS, ERROR_ACCESS_DENIED},
        {"KEY_WRITE writes only", KEY_WRITE, ERROR_ACCESS_DENIED, ERROR_SUCCESS},
        {"KEY_ALL_ACCESS does both", KEY_ALL_ACCESS, ERROR_SUCCESS, ERROR_SUCCESS},
        {"KEY_QUERY_VALUE reads", KEY_QUERY_VALUE, ERROR_SUCCESS, ERROR_ACCESS_DENIED},
        {"KEY_SET_VALUE writes", KEY_SET_VALUE, ERROR_ACCESS_DENIED, ERROR_SUCCESS},
        {"KEY_CREATE_SUB_KEY does neither", KEY_CREATE_SUB_KEY, ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED},
    };
    DWORD value = 0;
    for (const AccessCase& c : cases) {
        SCOPED_TRACE(c.intent);
        HKEY key = nullptr;
        ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Korva\\R1\\Access", 0, c.access, &key), ERROR_SUCCESS);
        const DWORD before = ++value;
        EXPECT_EQ(setDword(key, L"Flag", before), c.set);
        EXPECT_EQ(RegDeleteValueW(key, L"Other"), c.set == ERROR_SUCCESS ? ERROR_FILE_NOT_FOUND : ERROR_ACCESS_DENIED);
        DWORD size = sizeof value;
        EXPECT_EQ(RegQueryValueExW(key, L"Flag", nullptr, nullptr, nullptr, &size), c.query);
        RegCloseKey(key);
    }
    HKEY reader = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Korva\\R1\\Access", 0, KEY_READ, &reader), ERROR_SUCCESS);
    EXPECT_EQ(queryDword(reader, L"Flag"), 5u);  // the last write that was allowed
    RegCloseKey(reader);
}

TEST_F(RegistryInMemory, BadHandlesAreRefusedWithoutHarm) {
    HKEY closed = createKey(L"Software\\Korva\\R1\\Handles");
    ASSERT_EQ(RegCloseKey(closed), ERROR_SUCCESS);
    const HKEY badHandles[] = {
        nullptr,
        closed,
        reinterpret_cast<HKEY>(static_cast<uintptr_t>(0x12345)),
        reinterpret_cast<HKEY>(static_cast<uintptr_t>(0x80000002u)),  // a predefined key the store does not hold
        reinterpret_cast<HKEY>(~static_cast<uintptr_t>(0)),
    };
    for (HKEY bad : badHandles) {
        SCOPED_TRACE(reinterpret_cast<uintptr_t>(bad));
        HKEY result = nullptr;
        DWORD value = 1, size = sizeof value;
        EXPECT_EQ(RegOpenKeyExW(bad, L"", 0, KEY_READ, &result), ERROR_INVALID_HANDLE);
        EXPECT_EQ(RegCreateKeyExW(bad, L"X", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &result, nullptr), ERROR_INVALID_HANDLE);
        EXPECT_EQ(RegQueryValueExW(bad, L"X", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size), ERROR_INVALID_HANDLE);
        EXPECT_EQ(setDword(bad, L"X", 1), ERROR_INVALID_HANDLE);
        EXPECT_EQ(RegDeleteValueW(bad, L"X"), ERROR_INVALID_HANDLE);
        EXPECT_EQ(RegCloseKey(bad), ERROR_INVALID_HANDLE);
        EXPECT_EQ(result, nullptr);
    }
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
}

TEST_F(RegistryInMemory, BadParametersChangeNothing) {
    HKEY key = createKey(L"Software\\Korva\\R1\\Parameters");
    DWORD value = 7;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegSetValueExW(key, L"Flag", 0, REG_DWORD, nullptr, 4), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegQueryValueExW(key, L"Flag", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), nullptr),
              ERROR_INVALID_PARAMETER);
    const std::wstring longName(16384, L'v');
    EXPECT_EQ(setDword(key, longName.c_str(), 1), ERROR_INVALID_PARAMETER);
    const size_t values = runtime::ProfileStore::instance().read([](const runtime::RegistryTree& tree) {
        return tree.findKey({L"Software", L"Korva", L"R1", L"Parameters"})->values.size();
    });
    EXPECT_EQ(values, 0u);
    RegCloseKey(key);
}

// A key removed behind an open handle (another process, a hand edit) gives a status, never a crash.
TEST_F(RegistryInMemory, KeysRemovedWhileOpenGiveKeyDeleted) {
    HKEY key = createKey(L"Software\\Korva\\R1\\Removed\\Deep");
    ASSERT_EQ(setDword(key, L"Flag", 1), ERROR_SUCCESS);
    ASSERT_EQ(runtime::removeProfileKey({L"Software", L"Korva", L"R1", L"Removed"}), ERROR_SUCCESS);
    DWORD value = 0, size = sizeof value;
    HKEY child = nullptr;
    EXPECT_EQ(RegQueryValueExW(key, L"Flag", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size), ERROR_KEY_DELETED);
    EXPECT_EQ(setDword(key, L"Flag", 2), ERROR_KEY_DELETED);
    EXPECT_EQ(RegDeleteValueW(key, L"Flag"), ERROR_KEY_DELETED);
    EXPECT_EQ(RegOpenKeyExW(key, L"Below", 0, KEY_READ, &child), ERROR_KEY_DELETED);
    EXPECT_EQ(RegCreateKeyExW(key, L"Below", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &child, nullptr), ERROR_KEY_DELETED);
    EXPECT_FALSE(keyExists(L"Software\\Korva\\R1\\Removed"));
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(RegistryInMemory, KeysOpenRelativeToAnOpenKey) {
    HKEY root = createKey(L"Software\\Korva\\R1");
    HKEY child = nullptr;
    DWORD disposition = 0;
    ASSERT_EQ(RegCreateKeyExW(root, L"Relative\\Inner", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &child, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
    ASSERT_EQ(setDword(child, L"Flag", 9), ERROR_SUCCESS);
    HKEY again = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"software\\korva\\r1\\relative\\inner", 0, KEY_READ, &again), ERROR_SUCCESS);
    EXPECT_EQ(queryDword(again, L"Flag"), 9u);
    for (HKEY key : {root, child, again}) EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

}  // namespace
}  // namespace korva::test
