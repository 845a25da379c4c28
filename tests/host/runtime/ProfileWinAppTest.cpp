// The application object's profile entries: integers and strings under
// HKEY_CURRENT_USER\<product root key>\<section>.
#include <gtest/gtest.h>

#include "ProfileTestSupport.h"
#include "kcmfc.h"

namespace korva::test {
namespace {

class WinAppProfile : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(runtime::openProfileStore({"", false}, error));
    }
    void TearDown() override { runtime::closeProfileStore(); }
    CWinApp& app() { return *kcedGetKcadWinApp(); }
};

TEST_F(WinAppProfile, IntegersAreDwordsUnderTheProductRootKey) {
    EXPECT_EQ(app().GetProfileInt(L"TcaseDialog", L"LastChoiced", 83), 83u);
    EXPECT_FALSE(keyExists(L"Software\\Korva\\R1\\TcaseDialog"));  // reading creates nothing
    ASSERT_TRUE(app().WriteProfileInt(L"TcaseDialog", L"LastChoiced", 85));
    EXPECT_EQ(app().GetProfileInt(L"tcasedialog", L"LASTCHOICED", 83), 85u);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Korva\\R1\\TcaseDialog", 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(queryDword(key, L"LastChoiced"), 85u);
    RegCloseKey(key);
    ASSERT_TRUE(app().WriteProfileInt(L"TcaseDialog", L"Negative", -2));
    EXPECT_EQ(static_cast<int>(app().GetProfileInt(L"TcaseDialog", L"Negative", 0)), -2);
}

struct StoredCase {
    const char* intent;
    DWORD type;
    std::vector<uint8_t> data;
    UINT expected;
};

std::vector<uint8_t> textData(const std::wstring& text) {
    std::vector<uint8_t> data((text.size() + 1) * sizeof(wchar_t));
    std::memcpy(data.data(), text.c_str(), data.size());
    return data;
}

TEST_F(WinAppProfile, IntegersReadFromOtherValueTypes) {
    const StoredCase cases[] = {
        {"a real written as text reads as its integer part", REG_SZ, textData(L"1.000000"), 1},
        {"blanks before the number are skipped", REG_SZ, textData(L"  42abc"), 42},
        {"a minus sign wraps as unsigned", REG_SZ, textData(L"-3"), 0u - 3u},
        {"hexadecimal text", REG_SZ, textData(L"0x1F"), 31},
        {"text without digits is 0", REG_SZ, textData(L"abc"), 0},
        {"a binary value gives the default", 3, {1, 0, 0, 0}, 77},
        {"a DWORD of the wrong size gives the default", REG_DWORD, {1, 0}, 77},
    };
    for (const StoredCase& c : cases) {
        SCOPED_TRACE(c.intent);
        ASSERT_EQ(runtime::writeProfileValue({L"Software", L"Korva", L"R1", L"Section"}, L"Entry", c.type, c.data),
                  ERROR_SUCCESS);
        EXPECT_EQ(app().GetProfileInt(L"Section", L"Entry", 77), c.expected);
    }
}

TEST_F(WinAppProfile, StringsAreWrittenReadAndRemoved) {
    EXPECT_EQ(app().GetProfileString(L"Files", L"Last", L"none"), CString(L"none"));
    EXPECT_EQ(app().GetProfileString(L"Files", L"Last"), CString(L""));
    ASSERT_TRUE(app().WriteProfileString(L"Files", L"Last", L"C:\\drawings\\plan \u00e9.dwg"));
    ASSERT_TRUE(app().WriteProfileString(L"Files", L"Other", L"x"));
    EXPECT_EQ(app().GetProfileString(L"Files", L"last", L"none"), CString(L"C:\\drawings\\plan \u00e9.dwg"));
    ASSERT_TRUE(app().WriteProfileInt(L"Files", L"Count", 3));
    EXPECT_EQ(app().GetProfileString(L"Files", L"Count", L"not text"), CString(L"not text"));
    ASSERT_TRUE(app().WriteProfileString(L"Files", L"Last", nullptr));  // no value: the entry goes
    EXPECT_EQ(app().GetProfileString(L"Files", L"Last", L"gone"), CString(L"gone"));
    EXPECT_EQ(app().GetProfileString(L"Files", L"Other", L"gone"), CString(L"x"));
    ASSERT_TRUE(app().WriteProfileString(L"Files", nullptr, nullptr));  // no entry: the section goes
    EXPECT_FALSE(keyExists(L"Software\\Korva\\R1\\Files"));
    EXPECT_FALSE(app().WriteProfileString(L"Files", nullptr, nullptr));
    EXPECT_FALSE(app().WriteProfileInt(nullptr, L"Entry", 1));
    EXPECT_EQ(kcedGetKcadWinApp(), &app());
}

}  // namespace
}  // namespace korva::test
