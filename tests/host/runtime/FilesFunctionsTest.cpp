// The Win32 file functions: both separators, creation modes, attributes,
// copying, deleting, the temporary folder and the thread's last error.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "TestFiles.h"
#include "db/Utf8.h"
#include "kcwindows.h"

namespace korva::test {
namespace {

std::wstring wide(const std::filesystem::path& path) { return db::utf8ToWide(path.string()); }

// The same path written with "\" separators, as modules join them.
std::wstring backslashed(const std::filesystem::path& path) {
    std::wstring text = wide(path);
    for (wchar_t& c : text) {
        if (c == L'/') c = L'\\';
    }
    return text;
}

void makeReadOnly(const std::filesystem::path& path) { ::chmod(path.c_str(), 0444); }

TEST(FilesFunctions, BothSeparatorsNameTheSameFiles) {
    TempDir dir;
    std::filesystem::create_directory(dir.file("sub"));
    for (const bool useBackslashes : {false, true}) {
        SCOPED_TRACE(useBackslashes ? "\\" : "/");
        const std::filesystem::path file = dir.path() / "sub" / "r\u00e9sult.txt";
        const std::wstring path = useBackslashes ? backslashed(file) : wide(file);
        HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_NE(handle, INVALID_HANDLE_VALUE);
        EXPECT_TRUE(CloseHandle(handle));
        EXPECT_TRUE(std::filesystem::exists(file));
        EXPECT_EQ(GetFileAttributesW(path.c_str()), FILE_ATTRIBUTE_NORMAL);
        const std::wstring copy = path + L".copy";
        EXPECT_TRUE(CopyFileW(path.c_str(), copy.c_str(), FALSE));
        EXPECT_TRUE(DeleteFileW(copy.c_str()));
        EXPECT_TRUE(DeleteFileW(path.c_str()));
        EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    }
}

TEST(FilesFunctions, AttributesTellFilesFoldersAndMissingPaths) {
    TempDir dir;
    writeFileBytes(dir.file("plain.txt"), "x");
    writeFileBytes(dir.file("locked.txt"), "x");
    makeReadOnly(dir.file("locked.txt"));
    struct Case {
        std::filesystem::path path;
        DWORD attributes;
        DWORD lastError;
    } cases[] = {
        {dir.file("plain.txt"), FILE_ATTRIBUTE_NORMAL, 0},
        {dir.file("locked.txt"), FILE_ATTRIBUTE_READONLY, 0},
        {dir.path(), FILE_ATTRIBUTE_DIRECTORY, 0},
        {dir.file("missing.txt"), INVALID_FILE_ATTRIBUTES, ERROR_FILE_NOT_FOUND},
        {dir.path() / "fcmp" / "old.dwg", INVALID_FILE_ATTRIBUTES, ERROR_PATH_NOT_FOUND},
        {dir.path() / "plain.txt" / "below", INVALID_FILE_ATTRIBUTES, ERROR_PATH_NOT_FOUND},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path.string());
        EXPECT_EQ(GetFileAttributesW(backslashed(c.path).c_str()), c.attributes);
        if (c.lastError) {
            EXPECT_EQ(GetLastError(), c.lastError);
        }
    }
    EXPECT_EQ(GetFileAttributesW(nullptr), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

TEST(FilesFunctions, CreationModesFollowTheirRules) {
    struct Case {
        const char* intent;
        bool existsBefore;
        bool readOnly;
        DWORD access;
        DWORD creation;
        bool opens;
        DWORD lastError;
        std::uintmax_t sizeAfter;  // of a file that held "abc"
    } cases[] = {
        {"CREATE_NEW makes a missing file", false, false, GENERIC_WRITE, CREATE_NEW, true, 0, 0},
        {"CREATE_NEW refuses an existing file", true, false, GENERIC_WRITE, CREATE_NEW, false, ERROR_FILE_EXISTS, 3},
        {"CREATE_ALWAYS empties an existing file", true, false, GENERIC_WRITE, CREATE_ALWAYS, true, ERROR_ALREADY_EXISTS, 0},
        {"CREATE_ALWAYS makes a missing file", false, false, GENERIC_WRITE, CREATE_ALWAYS, true, 0, 0},
        {"OPEN_EXISTING needs the file", false, false, GENERIC_READ, OPEN_EXISTING, false, ERROR_FILE_NOT_FOUND, 0},
        {"OPEN_EXISTING keeps the content", true, false, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING, true, 0, 3},
        {"OPEN_ALWAYS keeps an existing file", true, false, GENERIC_WRITE, OPEN_ALWAYS, true, ERROR_ALREADY_EXISTS, 3},
        {"TRUNCATE_EXISTING empties the file", true, false, GENERIC_WRITE, TRUNCATE_EXISTING, true, 0, 0},
        {"TRUNCATE_EXISTING needs write access", true, false, GENERIC_READ, TRUNCATE_EXISTING, false, ERROR_INVALID_PARAMETER, 3},
        {"a read-only file is not written", true, true, GENERIC_WRITE, OPEN_EXISTING, false, ERROR_ACCESS_DENIED, 3},
        {"a read-only file is not overwritten", true, true, GENERIC_WRITE, CREATE_ALWAYS, false, ERROR_ACCESS_DENIED, 3},
        {"a read-only file can be read", true, true, GENERIC_READ, OPEN_EXISTING, true, 0, 3},
        {"an unknown creation mode is refused", true, false, GENERIC_WRITE, 99, false, ERROR_INVALID_PARAMETER, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.intent);
        TempDir dir;
        const std::filesystem::path file = dir.file("result.txt");
        if (c.existsBefore) writeFileBytes(file, "abc");
        if (c.readOnly) makeReadOnly(file);
        HANDLE handle = CreateFileW(backslashed(file).c_str(), c.access, FILE_SHARE_READ, nullptr, c.creation,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
        EXPECT_EQ(GetLastError(), c.lastError);
        EXPECT_EQ(handle != INVALID_HANDLE_VALUE, c.opens);
        if (handle != INVALID_HANDLE_VALUE) {
            EXPECT_TRUE(CloseHandle(handle));
        }
        if (c.existsBefore || c.opens) {
            EXPECT_EQ(std::filesystem::file_size(file), c.sizeAfter);
        } else {
            EXPECT_FALSE(std::filesystem::exists(file));
        }
    }
}

TEST(FilesFunctions, CreateFailsInMissingFoldersAndOnFolders) {
    TempDir dir;
    const std::wstring inMissing = backslashed(dir.path() / "fcmp" / "result.txt");
    EXPECT_EQ(CreateFileW(inMissing.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(CreateFileW(wide(dir.path()).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
}

TEST(FilesFunctions, ClosingABadHandleFailsWithInvalidHandle) {
    TempDir dir;
    HANDLE handle = CreateFileW(wide(dir.file("f")).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    ASSERT_TRUE(CloseHandle(handle));
    for (HANDLE bad : {handle, static_cast<HANDLE>(nullptr), INVALID_HANDLE_VALUE, reinterpret_cast<HANDLE>(0x7)}) {
        SCOPED_TRACE(reinterpret_cast<uintptr_t>(bad));
        EXPECT_FALSE(CloseHandle(bad));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    }
}

TEST(FilesFunctions, CopyKeepsOrRefusesTheTargetByItsRules) {
    struct Case {
        const char* intent;
        const char* source;  // under the folder; the folder holds "a.txt" ("new") and "b.txt" ("old")
        const char* target;
        BOOL failIfExists;
        bool copies;
        DWORD lastError;
        const char* targetAfter;  // null: the target does not exist
    } cases[] = {
        {"a copy to a new name", "a.txt", "c.txt", TRUE, true, 0, "new"},
        {"failIfExists keeps an existing target", "a.txt", "b.txt", TRUE, false, ERROR_FILE_EXISTS, "old"},
        {"without it the target is overwritten", "a.txt", "b.txt", FALSE, true, 0, "new"},
        {"a missing target folder is not created", "a.txt", "fcmp\\a.txt", FALSE, false, ERROR_PATH_NOT_FOUND, nullptr},
        {"a missing source", "none.txt", "d.txt", FALSE, false, ERROR_FILE_NOT_FOUND, nullptr},
        {"a file copied onto itself stays whole", "a.txt", "a.txt", FALSE, false, ERROR_SHARING_VIOLATION, "new"},
        {"a read-only target is kept", "a.txt", "locked.txt", FALSE, false, ERROR_ACCESS_DENIED, "old"},
        {"a folder is not a target", "a.txt", "folder", FALSE, false, ERROR_ACCESS_DENIED, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.intent);
        TempDir dir;
        writeFileBytes(dir.file("a.txt"), "new");
        writeFileBytes(dir.file("b.txt"), "old");
        writeFileBytes(dir.file("locked.txt"), "old");
        makeReadOnly(dir.file("locked.txt"));
        std::filesystem::create_directory(dir.file("folder"));
        const std::wstring source = backslashed(dir.path()) + L"\\" + db::utf8ToWide(c.source);
        const std::wstring target = wide(dir.path()) + L"/" + db::utf8ToWide(c.target);
        EXPECT_EQ(CopyFileW(source.c_str(), target.c_str(), c.failIfExists), c.copies ? TRUE : FALSE);
        if (!c.copies) {
            EXPECT_EQ(GetLastError(), c.lastError);
        }
        std::string targetPath = db::wideToUtf8(target);
        std::replace(targetPath.begin(), targetPath.end(), '\\', '/');
        if (c.targetAfter) {
            EXPECT_EQ(readFileBytes(targetPath), c.targetAfter);
        } else {
            EXPECT_FALSE(std::filesystem::is_regular_file(targetPath));
        }
    }
}

TEST(FilesFunctions, DeleteRemovesFilesOnly) {
    TempDir dir;
    writeFileBytes(dir.file("locked.txt"), "x");
    makeReadOnly(dir.file("locked.txt"));
    struct Case {
        std::filesystem::path path;
        DWORD lastError;
    } cases[] = {
        {dir.file("missing.txt"), ERROR_FILE_NOT_FOUND},
        {dir.path() / "no" / "file.txt", ERROR_PATH_NOT_FOUND},
        {dir.path(), ERROR_ACCESS_DENIED},
        {dir.file("locked.txt"), ERROR_ACCESS_DENIED},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path.string());
        EXPECT_FALSE(DeleteFileW(backslashed(c.path).c_str()));
        EXPECT_EQ(GetLastError(), c.lastError);
    }
    EXPECT_TRUE(std::filesystem::exists(dir.file("locked.txt")));
    EXPECT_TRUE(std::filesystem::exists(dir.path()));
}

TEST(FilesFunctions, TheTemporaryPathEndsWithASeparatorAndReportsSizes) {
    const char* saved = std::getenv("TMPDIR");
    const std::optional<std::string> before = saved ? std::optional<std::string>(saved) : std::nullopt;
    struct Case {
        const char* tmpdir;  // null: unset
        const wchar_t* expected;
    } cases[] = {
        {"/var/tmp/korva", L"/var/tmp/korva/"},
        {"/var/tmp/korva/", L"/var/tmp/korva/"},
        {nullptr, L"/tmp/"},
        {"", L"/tmp/"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.tmpdir ? c.tmpdir : "(unset)");
        if (c.tmpdir) ::setenv("TMPDIR", c.tmpdir, 1); else ::unsetenv("TMPDIR");
        const auto length = static_cast<DWORD>(std::wcslen(c.expected));
        EXPECT_EQ(GetTempPathW(0, nullptr), length + 1);
        wchar_t small[4] = {L'?', L'?', L'?', L'?'};
        EXPECT_EQ(GetTempPathW(4, small), length + 1);
        EXPECT_EQ(small[0], L'?');  // a buffer that is too small is left alone
        std::vector<wchar_t> exact(length + 1, L'?');
        EXPECT_EQ(GetTempPathW(length + 1, exact.data()), length);
        EXPECT_EQ(std::wstring(exact.data()), c.expected);
    }
    if (before) ::setenv("TMPDIR", before->c_str(), 1); else ::unsetenv("TMPDIR");
}

TEST(FilesFunctions, TheLastErrorBelongsToEachThread) {
    TempDir dir;
    EXPECT_FALSE(DeleteFileW(wide(dir.file("missing")).c_str()));
    DWORD otherThreadError = 0;
    std::thread other([&] {
        writeFileBytes(dir.file("exists"), "x");
        CreateFileW(wide(dir.file("exists")).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
        otherThreadError = GetLastError();
    });
    other.join();
    EXPECT_EQ(otherThreadError, static_cast<DWORD>(ERROR_FILE_EXISTS));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

}  // namespace
}  // namespace korva::test
