// The profile store in its file: the text format, first-start keys, values kept
// across openings, damaged and unreadable files, changes made by another writer,
// and where the profile folder is.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "ProfileTestSupport.h"
#include "runtime/profile/RegistryText.h"

namespace korva::test {
namespace {

using runtime::RegistryTextProblem;
using runtime::RegistryTree;

std::vector<uint8_t> bytesOf(const void* data, size_t size) {
    const auto* first = static_cast<const uint8_t*>(data);
    return std::vector<uint8_t>(first, first + size);
}

std::vector<uint8_t> textBytes(const std::wstring& text) { return bytesOf(text.c_str(), (text.size() + 1) * sizeof(wchar_t)); }

TEST(ProfileText, EveryKindOfValueSurvivesWritingAndReading) {
    RegistryTree tree;
    runtime::RegistryKey& key = tree.createKey({L"Software", L"Korva", L"Odd]Name [x]"});
    const std::wstring awkward = L"quote \" backslash \\ newline \n return \r tab \t \u00e9 \u65e5\u672c \x01 \x7f";
    const wchar_t twoChars[] = {L'a', L'b'};
    const wchar_t embeddedNull[] = {L'a', L'\0', L'b', L'\0'};
    const wchar_t surrogate[] = {static_cast<wchar_t>(0xD800), L'\0'};
    const uint16_t shortNumber = 7;
    key.setValue(L"Text", REG_SZ, textBytes(awkward));
    key.setValue(L"Na\"me \u00e9\\", REG_DWORD, {0xEF, 0xBE, 0xAD, 0xDE});
    key.setValue(L"", REG_SZ, textBytes(L"unnamed"));
    key.setValue(L"Binary", 3, {0x00, 0xFF, 0x10});
    key.setValue(L"NoNull", REG_SZ, bytesOf(twoChars, sizeof twoChars));
    key.setValue(L"OddSize", REG_SZ, {0x41, 0x00, 0x00});
    key.setValue(L"EmbeddedNull", REG_SZ, bytesOf(embeddedNull, sizeof embeddedNull));
    key.setValue(L"Surrogate", REG_SZ, bytesOf(surrogate, sizeof surrogate));
    key.setValue(L"ShortDword", REG_DWORD, bytesOf(&shortNumber, sizeof shortNumber));
    key.setValue(L"Empty", 0xFFFFFFFFu, {});
    tree.createKey({L"Software", L"Korva", L"Empty", L"Deep"});
    tree.createKey({}).setValue(L"AtRoot", REG_DWORD, {1, 0, 0, 0});

    const std::string text = runtime::writeRegistryText(tree);
    std::vector<RegistryTextProblem> problems;
    const RegistryTree read = runtime::readRegistryText(text, problems);
    EXPECT_TRUE(problems.empty()) << problems.front().line << ": " << problems.front().message;
    EXPECT_EQ(read, tree) << text;
}

TEST(ProfileText, AHandWrittenStoreReadsAsItSays) {
    const std::string text =
        "; a comment\r\n"
        "# another comment\r\n"
        "\r\n"
        "[HKEY_CURRENT_USER\\Software\\Korva\\R1\\TcaseDialog]\r\n"
        "\"LastChoiced\"=dword:00000053\r\n"
        "  \"CheckFlag\" = \"1.000000\"\r\n"
        "\"Escapes\"=\"a\\\"b\\\\c\\n\\u{e9}\"\n"
        "@=hex(b):01,02, ff\n"
        "[hkey_current_user\\SOFTWARE\\korva]\n"
        "\"Short\"=dword:2a\n";
    std::vector<RegistryTextProblem> problems;
    const RegistryTree tree = runtime::readRegistryText(text, problems);
    ASSERT_TRUE(problems.empty()) << problems.front().line << ": " << problems.front().message;
    const runtime::RegistryKey* dialog = tree.findKey({L"software", L"korva", L"r1", L"tcasedialog"});
    ASSERT_NE(dialog, nullptr);
    ASSERT_EQ(dialog->values.size(), 4u);
    EXPECT_EQ(dialog->values[0].data, (std::vector<uint8_t>{0x53, 0, 0, 0}));
    EXPECT_EQ(dialog->values[1].data, textBytes(L"1.000000"));
    EXPECT_EQ(dialog->values[2].data, textBytes(L"a\"b\\c\n\u00e9"));
    EXPECT_EQ(dialog->values[3].type, 0xBu);
    EXPECT_EQ(dialog->values[3].data, (std::vector<uint8_t>{1, 2, 0xFF}));
    const runtime::RegistryKey* korva = tree.findKey({L"Software", L"Korva"});
    ASSERT_NE(korva, nullptr);
    EXPECT_EQ(korva->path, (runtime::RegistryPath{L"Software", L"Korva"}));  // the first spelling wins
    EXPECT_EQ(korva->findValue(L"short")->data, (std::vector<uint8_t>{0x2A, 0, 0, 0}));
}

struct DamageCase {
    const char* line;
    bool laterValuesRead;  // false when the damage is the section header itself
};

TEST(ProfileText, ADamagedLineIsReportedAndTheRestIsRead) {
    const DamageCase cases[] = {
        {"\"Bad\"=dword:zz", true},
        {"\"Bad\"=dword:123456789", true},
        {"\"Bad\"=\"no closing quote", true},
        {"\"Bad\"=\"\\q\"", true},
        {"\"Bad\"=\"\\u{110000\"", true},
        {"\"Bad\"=hex(3):1", true},
        {"\"Bad\"=hex(3):01,", true},
        {"\"Bad\"=qword:1", true},
        {"\"Bad\"=dword:1 trailing", true},
        {"\"\"=dword:1", true},
        {"\"Bad\"=\"\xff\xfe\"", true},
        {"garbage", true},
        {"[HKEY_LOCAL_MACHINE\\Software]", false},
        {"[HKEY_CURRENT_USER\\Software\\\\Korva]", false},
        {"[HKEY_CURRENT_USER\\Software", false},
        {"[HKEY_CURRENT_USER\\Software] x", false},
    };
    for (const DamageCase& c : cases) {
        SCOPED_TRACE(c.line);
        const std::string text = std::string("[HKEY_CURRENT_USER\\Software\\Korva]\n\"Before\"=dword:00000001\n") +
                                 c.line + "\n\"After\"=dword:00000002\n";
        std::vector<RegistryTextProblem> problems;
        const RegistryTree tree = runtime::readRegistryText(text, problems);
        ASSERT_EQ(problems.size(), 1u);
        EXPECT_EQ(problems[0].line, 3);
        EXPECT_FALSE(problems[0].message.empty());
        const runtime::RegistryKey* key = tree.findKey({L"Software", L"Korva"});
        ASSERT_NE(key, nullptr);
        EXPECT_NE(key->findValue(L"Before"), nullptr);
        EXPECT_EQ(key->findValue(L"After") != nullptr, c.laterValuesRead);
        EXPECT_EQ(key->findValue(L"Bad"), nullptr);
    }
}

TEST(ProfileStoreFile, FirstStartCreatesTheInterfaceKeysUnlessSwitchedOff) {
    const wchar_t* families[] = {
        L"Software\\Korva\\R1\\Profiles\\Default\\UserInterfaceSettings\\TextTools",
        L"Software\\Korva\\R1\\Profiles\\Default\\UserInterfaceSettings\\LayerTools",
        L"Software\\Korva\\R1\\Profiles\\Default\\UserInterfaceSettings\\FileCompare",
    };
    for (const bool createKeys : {true, false}) {
        SCOPED_TRACE(createKeys ? "keys created" : "keys switched off");
        ProfileFolder profile(createKeys);
        EXPECT_TRUE(std::filesystem::exists(profile.storeFile()));
        for (const wchar_t* family : families) EXPECT_EQ(keyExists(family), createKeys);
        // The next start is not a first start: the switch changes nothing any more.
        profile.reopen(!createKeys);
        for (const wchar_t* family : families) EXPECT_EQ(keyExists(family), createKeys);
    }
}

TEST(ProfileStoreFile, ValuesSurviveClosingAndOpeningTheProfile) {
    ProfileFolder profile;
    HKEY key = createKey(L"Software\\Korva\\R1\\TcaseDialog");
    ASSERT_EQ(setDword(key, L"LastChoiced", 83), ERROR_SUCCESS);
    ASSERT_EQ(setText(key, L"Name", L"\u00e9t\u00e9 \"quoted\""), ERROR_SUCCESS);
    RegCloseKey(key);
    runtime::closeProfileStore();
    EXPECT_FALSE(keyExists(L"Software\\Korva\\R1\\TcaseDialog"));
    profile.reopen();
    key = createKey(L"Software\\Korva\\R1\\TcaseDialog", KEY_READ);
    EXPECT_EQ(queryDword(key, L"LastChoiced"), 83u);
    EXPECT_EQ(queryText(key, L"Name"), L"\u00e9t\u00e9 \"quoted\"");
    RegCloseKey(key);
    const std::string text = readFileBytes(profile.storeFile());
    EXPECT_NE(text.find("[HKEY_CURRENT_USER\\Software\\Korva\\R1\\TcaseDialog]\n\"LastChoiced\"=dword:00000053\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\"Name\"=\"\xc3\xa9t\xc3\xa9 \\\"quoted\\\"\"\n"), std::string::npos) << text;
}

TEST(ProfileStoreFile, ADamagedStoreIsReportedKeptAsideAndReplaced) {
    TempDir folder;
    const std::string damaged =
        "[HKEY_CURRENT_USER\\Software\\Korva\\R1\\TcaseDialog]\n"
        "\"Good\"=dword:00000005\n"
        "\"Broken\"=dword:\n"
        "\"AlsoGood\"=\"yes\"\n";
    writeFileBytes(folder.file("profile.reg"), damaged);
    testing::internal::CaptureStderr();
    std::string error;
    ASSERT_TRUE(runtime::openProfileStore({folder.path().string(), true}, error)) << error;
    const std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_NE(messages.find(folder.file("profile.reg").string() + ":3:"), std::string::npos) << messages;

    HKEY key = createKey(L"Software\\Korva\\R1\\TcaseDialog");
    EXPECT_EQ(queryDword(key, L"Good"), 5u);
    EXPECT_EQ(queryText(key, L"AlsoGood"), L"yes");
    EXPECT_EQ(readFileBytes(folder.file("profile.reg")), damaged);  // reading leaves the file alone

    testing::internal::CaptureStderr();
    ASSERT_EQ(setDword(key, L"New", 1), ERROR_SUCCESS);
    const std::string keptMessage = testing::internal::GetCapturedStderr();
    RegCloseKey(key);
    std::vector<std::string> kept;
    for (const std::string& name : fileNamesIn(folder.path())) {
        if (name.starts_with("profile.reg.damaged-")) kept.push_back(name);
    }
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_NE(keptMessage.find(kept[0]), std::string::npos) << keptMessage;
    EXPECT_EQ(readFileBytes(folder.file(kept[0])), damaged);
    EXPECT_TRUE(problemsOfFile(folder.file("profile.reg")).empty());
    runtime::closeProfileStore();
    ASSERT_TRUE(runtime::openProfileStore({folder.path().string(), true}, error)) << error;
    key = createKey(L"Software\\Korva\\R1\\TcaseDialog", KEY_READ);
    EXPECT_EQ(queryDword(key, L"Good"), 5u);
    EXPECT_EQ(queryDword(key, L"New"), 1u);
    RegCloseKey(key);
    runtime::closeProfileStore();
}

TEST(ProfileStoreFile, AnUnreadableStoreIsReportedAndKeptAside) {
    TempDir folder;
    std::filesystem::create_directory(folder.file("profile.reg"));  // cannot be read as a file
    testing::internal::CaptureStderr();
    std::string error;
    ASSERT_TRUE(runtime::openProfileStore({folder.path().string(), true}, error)) << error;
    const std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_NE(messages.find(folder.file("profile.reg").string()), std::string::npos) << messages;
    testing::internal::CaptureStderr();
    HKEY key = createKey(L"Software\\Korva\\R1\\TcaseDialog");
    EXPECT_EQ(setDword(key, L"Flag", 1), ERROR_SUCCESS);
    const std::string keptMessage = testing::internal::GetCapturedStderr();
    EXPECT_NE(keptMessage.find("profile.reg.damaged-"), std::string::npos) << keptMessage;
    RegCloseKey(key);
    EXPECT_TRUE(std::filesystem::is_regular_file(folder.file("profile.reg")));
    EXPECT_TRUE(problemsOfFile(folder.file("profile.reg")).empty());
    size_t keptFolders = 0;
    for (const std::string& name : fileNamesIn(folder.path())) {
        if (name.starts_with("profile.reg.damaged-") && std::filesystem::is_directory(folder.file(name))) ++keptFolders;
    }
    EXPECT_EQ(keptFolders, 1u);
    runtime::closeProfileStore();
}

// Writes the store file as another process would: a new file renamed into place.
void replaceStoreFile(const std::filesystem::path& file, const std::string& text) {
    const std::filesystem::path temporary = file.string() + ".other";
    writeFileBytes(temporary, text);
    std::filesystem::rename(temporary, file);
}

TEST(ProfileStoreFile, ReadsSeeWhatAnotherWriterSaved) {
    ProfileFolder profile;
    HKEY key = createKey(L"Software\\Korva\\R1\\Shared");
    ASSERT_EQ(setDword(key, L"Flag", 1), ERROR_SUCCESS);
    replaceStoreFile(profile.storeFile(), "[HKEY_CURRENT_USER\\Software\\Korva\\R1\\Shared]\n\"Flag\"=dword:00000002\n");
    EXPECT_EQ(queryDword(key, L"Flag"), 2u);
    // An edit in place (same file, other size) is seen too.
    std::ofstream(profile.storeFile(), std::ios::app) << "\"Extra\"=dword:00000003\n";
    EXPECT_EQ(queryDword(key, L"Extra"), 3u);
    // A change made now starts from what the other writer saved.
    ASSERT_EQ(setDword(key, L"Mine", 4), ERROR_SUCCESS);
    runtime::closeProfileStore();
    profile.reopen();
    EXPECT_EQ(queryDword(key, L"Flag"), 2u);
    EXPECT_EQ(queryDword(key, L"Extra"), 3u);
    EXPECT_EQ(queryDword(key, L"Mine"), 4u);
    RegCloseKey(key);
}

TEST(ProfileStoreFile, TemporaryFilesOfAKilledWriterAreRemovedByTheNextChange) {
    ProfileFolder profile;
    HKEY key = createKey(L"Software\\Korva\\R1\\Cleanup");
    const std::filesystem::path leftOver = profile.storeFile().string() + ".tmp-999999-0";
    writeFileBytes(leftOver, "[HKEY_CURRENT_USER\\Soft");
    EXPECT_EQ(queryDword(key, L"Flag"), std::nullopt);  // reading writes nothing, so removes nothing
    EXPECT_TRUE(std::filesystem::exists(leftOver));
    ASSERT_EQ(setDword(key, L"Flag", 1), ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_FALSE(std::filesystem::exists(leftOver));
}

TEST(ProfileStoreFile, AFolderThatCannotBeUsedFailsAndTheStoreCarriesOnInMemory) {
    TempDir folder;
    writeFileBytes(folder.file("not-a-folder"), "x");
    std::string error;
    EXPECT_FALSE(runtime::openProfileStore({folder.file("not-a-folder").string(), true}, error));
    EXPECT_NE(error.find("not-a-folder"), std::string::npos) << error;
    EXPECT_EQ(runtime::profileStoreFile(), "");
    EXPECT_TRUE(keyExists(L"Software\\Korva\\R1\\Profiles\\Default\\UserInterfaceSettings\\TextTools"));
    HKEY key = createKey(L"Software\\Korva\\R1\\Memory");
    EXPECT_EQ(setDword(key, L"Flag", 1), ERROR_SUCCESS);
    EXPECT_EQ(queryDword(key, L"Flag"), 1u);
    RegCloseKey(key);
    EXPECT_EQ(readFileBytes(folder.file("not-a-folder")), "x");
    runtime::closeProfileStore();
}

TEST(ProfileStoreFile, OpeningCreatesMissingFolders) {
    TempDir folder;
    const std::filesystem::path nested = folder.path() / "a" / "b" / "korva";
    std::string error;
    ASSERT_TRUE(runtime::openProfileStore({nested.string(), false}, error)) << error;
    EXPECT_EQ(runtime::profileStoreFile(), (nested / "profile.reg").string());
    EXPECT_TRUE(std::filesystem::is_regular_file(nested / "profile.reg"));
    runtime::closeProfileStore();
}

struct FolderCase {
    const char* intent;
    const char* xdgConfigHome;  // null: unset
    const char* home;
    const char* expected;
};

TEST(ProfileStoreFile, TheDefaultFolderFollowsXdgConfigHomeThenHome) {
    const FolderCase cases[] = {
        {"XDG_CONFIG_HOME wins", "/x/config", "/home/u", "/x/config/korva"},
        {"without it, HOME/.config", nullptr, "/home/u", "/home/u/.config/korva"},
        {"an empty one is ignored", "", "/home/u", "/home/u/.config/korva"},
        {"a relative one is ignored", "rel/config", "/home/u", "/home/u/.config/korva"},
    };
    const char* savedXdg = std::getenv("XDG_CONFIG_HOME");
    const char* savedHome = std::getenv("HOME");
    const std::optional<std::string> xdgBefore = savedXdg ? std::optional<std::string>(savedXdg) : std::nullopt;
    const std::optional<std::string> homeBefore = savedHome ? std::optional<std::string>(savedHome) : std::nullopt;
    for (const FolderCase& c : cases) {
        SCOPED_TRACE(c.intent);
        if (c.xdgConfigHome) {
            ::setenv("XDG_CONFIG_HOME", c.xdgConfigHome, 1);
        } else {
            ::unsetenv("XDG_CONFIG_HOME");
        }
        ::setenv("HOME", c.home, 1);
        EXPECT_EQ(runtime::defaultProfileFolder(), c.expected);
    }
    if (xdgBefore) ::setenv("XDG_CONFIG_HOME", xdgBefore->c_str(), 1); else ::unsetenv("XDG_CONFIG_HOME");
    if (homeBefore) ::setenv("HOME", homeBefore->c_str(), 1); else ::unsetenv("HOME");
}

}  // namespace
}  // namespace korva::test
