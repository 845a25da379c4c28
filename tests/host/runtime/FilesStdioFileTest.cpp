// CStdioFile: UTF-8 lines without a byte-order mark or newline translation, the
// open modes, and a closed file.
#include <gtest/gtest.h>

#include "TestFiles.h"
#include "db/Utf8.h"
#include "kcmfc.h"

namespace korva::test {
namespace {

std::wstring wide(const std::filesystem::path& path) { return db::utf8ToWide(path.string()); }

std::vector<std::wstring> readLines(const std::wstring& path) {
    CStdioFile file;
    std::vector<std::wstring> lines;
    if (!file.Open(path.c_str(), CStdioFile::modeRead | CStdioFile::typeText)) return lines;
    CString line;
    while (file.ReadString(line)) lines.push_back(line.str());
    return lines;
}

TEST(FilesStdioFile, LinesRoundTripWithCarriageReturnsKept) {
    TempDir dir;
    std::filesystem::create_directory(dir.file("fcmp"));
    const std::wstring path = wide(dir.path()) + L"\\fcmp\\result.txt";
    {
        CStdioFile file;
        ASSERT_TRUE(file.Open(path.c_str(), CStdioFile::modeCreate | CStdioFile::modeWrite | CStdioFile::typeText));
        file.WriteString(L"first\r");
        file.WriteString(L"second\n");
        file.WriteString(L"third\r\n");
        file.WriteString(L"\u00e9t\u00e9 \u65e5\u672c\n\n");
        file.WriteString(L"last");
    }  // closed by the destructor
    EXPECT_EQ(readFileBytes(dir.path() / "fcmp" / "result.txt"),
              "first\rsecond\nthird\r\n\xc3\xa9t\xc3\xa9 \xe6\x97\xa5\xe6\x9c\xac\n\nlast");
    const std::vector<std::wstring> expected = {L"first\rsecond", L"third\r", L"\u00e9t\u00e9 \u65e5\u672c", L"", L"last"};
    EXPECT_EQ(readLines(path), expected);
}

TEST(FilesStdioFile, AByteOrderMarkFromAnotherProgramIsNotText) {
    TempDir dir;
    writeFileBytes(dir.file("bom.txt"), "\xEF\xBB\xBFone\ntwo\n");
    const std::vector<std::wstring> expected = {L"one", L"two"};
    EXPECT_EQ(readLines(wide(dir.file("bom.txt"))), expected);
}

TEST(FilesStdioFile, OpenModesCreateTruncateOrKeep) {
    struct Case {
        const char* intent;
        bool existsBefore;  // holding "abcdef"
        UINT flags;
        bool opens;
        DWORD lastError;
        const char* afterWritingXY;  // null: nothing is written (reading or failing)
    } cases[] = {
        {"reading needs the file", false, CStdioFile::modeRead, false, ERROR_FILE_NOT_FOUND, nullptr},
        {"writing without create needs the file", false, CStdioFile::modeWrite, false, ERROR_FILE_NOT_FOUND, nullptr},
        {"create makes the file", false, CStdioFile::modeCreate | CStdioFile::modeWrite, true, 0, "XY"},
        {"create empties an existing file", true, CStdioFile::modeCreate | CStdioFile::modeWrite, true, 0, "XY"},
        {"no-truncate keeps the content", true, CStdioFile::modeCreate | CStdioFile::modeNoTruncate | CStdioFile::modeWrite,
         true, 0, "XYcdef"},
        {"write and read-write together are refused", true, CStdioFile::modeWrite | CStdioFile::modeReadWrite, false,
         ERROR_INVALID_PARAMETER, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.intent);
        TempDir dir;
        if (c.existsBefore) writeFileBytes(dir.file("f.txt"), "abcdef");
        CStdioFile file;
        EXPECT_EQ(file.Open(wide(dir.file("f.txt")).c_str(), c.flags), c.opens ? TRUE : FALSE);
        if (!c.opens) {
            EXPECT_EQ(GetLastError(), c.lastError);
            continue;
        }
        file.WriteString(L"XY");
        file.Close();
        EXPECT_EQ(readFileBytes(dir.file("f.txt")), c.afterWritingXY);
    }
}

TEST(FilesStdioFile, ReadAndWriteTakeTurnsInOneFile) {
    TempDir dir;
    writeFileBytes(dir.file("f.txt"), "one\ntwo\n");
    CStdioFile file;
    ASSERT_TRUE(file.Open(wide(dir.file("f.txt")).c_str(), CStdioFile::modeReadWrite));
    CString line;
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(line, CString(L"one"));
    file.WriteString(L"TWO\n");
    EXPECT_FALSE(file.ReadString(line));
    file.Close();
    EXPECT_EQ(readFileBytes(dir.file("f.txt")), "one\nTWO\n");
}

TEST(FilesStdioFile, AClosedFileReadsNothingAndIgnoresWrites) {
    CStdioFile file;
    CString line(L"unchanged");
    EXPECT_FALSE(file.ReadString(line));
    EXPECT_EQ(line, CString(L"unchanged"));
    file.WriteString(L"nowhere");
    file.Close();
    TempDir dir;
    EXPECT_FALSE(file.Open(wide(dir.path()).c_str(), CStdioFile::modeRead));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
}

}  // namespace
}  // namespace korva::test
