// The host's file dialog answered by scripts: the next line is the path.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "DialogTestSupport.h"
#include "ScriptRun.h"
#include "TestFiles.h"

namespace korva::test {
namespace {

constexpr int kOpen = 0;
constexpr int kSave = 1;

class FileNavDialog : public ::testing::Test {
protected:
    void SetUp() override {
        registerDialogTestCommands();
        resetDialogTestRecords();
        writeFileBytes(existing_, "x");
        std::filesystem::create_directory(folder_.file("sub"));
    }
    // Answers the file dialog with the line; the call's status.
    int answer(int flags, const std::string& line, ScriptRun& run) {
        hostDialogCall().fileFlags = flags;
        EXPECT_TRUE(run.run("FILEPICK\n" + line + "\n"));
        return hostDialogCall().fileStatus;
    }
    static std::string backslashed(std::string path) {
        for (char& c : path) {
            if (c == '/') c = '\\';
        }
        return path;
    }

    TempDir folder_;
    std::filesystem::path existing_ = folder_.file("views.svf");
};

TEST_F(FileNavDialog, TypedPathsAnswerOrCancel) {
    const std::string base = folder_.path().string();
    const struct {
        int flags;
        std::string line;
        int status;
        std::string path;        // expected on RTNORM
        const wchar_t* message;  // printed on RTCAN, or null
    } cases[] = {
        {kOpen, existing_.string(), RTNORM, existing_.string(), nullptr},
        {kOpen, backslashed(existing_.string()), RTNORM, existing_.string(), nullptr},
        {kOpen, "\"" + existing_.string() + "\"", RTNORM, existing_.string(), nullptr},
        {kOpen, base + "/sub/../views.svf", RTNORM, existing_.string(), nullptr},
        {kOpen, base + "/missing.svf", RTCAN, "", L"does not exist"},
        {kOpen, base + "/sub", RTCAN, "", L"is a folder, not a file"},
        {kOpen, "", RTCAN, "", nullptr},
        {kSave, base + "/new.scr", RTNORM, base + "/new.scr", nullptr},
        {kSave, existing_.string(), RTNORM, existing_.string(), nullptr},  // overwriting is the answer's choice
        {kSave, base + "/plain", RTNORM, base + "/plain.svf", nullptr},    // the first extension is added
        {kSave, base + "/nowhere/new.svf", RTCAN, "", L"The folder of"},
    };
    for (const auto& c : cases) {
        resetDialogTestRecords();
        ScriptRun run;
        EXPECT_EQ(answer(c.flags, c.line, run), c.status) << c.line;
        if (c.status == RTNORM) {
            EXPECT_EQ(hostDialogCall().filePath, std::filesystem::path(c.path).wstring()) << c.line;
        } else {
            EXPECT_TRUE(hostDialogCall().filePath.empty()) << c.line;
        }
        if (c.message) {
            EXPECT_TRUE(run.outputContains(c.message)) << c.line << "\n" << run.outputUtf8();
        }
    }
}

TEST_F(FileNavDialog, TheAnswerIsEchoedAfterTheTitle) {
    ScriptRun run;
    ASSERT_EQ(answer(kOpen, existing_.string(), run), RTNORM);
    EXPECT_TRUE(run.outputContains(L"Pick a file: " + existing_.wstring() + L"\n"));
}

TEST_F(FileNavDialog, TheEndOfTheInputCancels) {
    ScriptRun run;
    ASSERT_TRUE(run.run("FILEPICK\n"));
    EXPECT_EQ(hostDialogCall().fileStatus, RTCAN);
}

TEST_F(FileNavDialog, ANullResultPointerIsAnError) {
    EXPECT_EQ(kcedGetFileNavDialog(L"t", L"", L"svf", L"", 0, nullptr), RTERROR);
}

}  // namespace
}  // namespace korva::test
