// SAVE, SAVEAS and QSAVE through scripts into a temporary folder, with the
// saved files read back by the project's reader and the independent reader.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "ScriptRun.h"
#include "TestFiles.h"
#include "dxf/DxfReader.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

std::string versionOf(const std::filesystem::path& file) {
    auto read = dxf::readDxfFile(file.string());
    return read.ok() ? read.drawing->format.version : "unreadable: " + read.error;
}

struct SaveAsCase {
    const char* format;  // answer to the format prompt, "" for none
    const char* version;
};

class FileCommandSaveAs : public testing::TestWithParam<SaveAsCase> {};

// SAVEAS writes the version asked for (or the drawing's own) and renames the drawing.
TEST_P(FileCommandSaveAs, WritesTheVersionAndRenames) {
    const SaveAsCase& c = GetParam();
    test::TempDir dir;
    const auto target = dir.file("out.dxf");
    const auto original = test::corpusFile("qcad__examples_flange.dxf");
    test::ScriptRun run = test::ScriptRun::fromFile(original.string());
    const std::string format = *c.format ? std::string(c.format) + "\n" : std::string();
    ASSERT_TRUE(run.run("SAVEAS\n" + format + target.string() + "\n")) << run.outputUtf8();
    EXPECT_EQ(versionOf(target), c.version) << c.format;
    EXPECT_EQ(run.document().path(), target.string());
    EXPECT_EQ(editor::SystemVariables::instance().text(L"DWGNAME"), L"out.dxf");
    EXPECT_TRUE(test::openWithIndependentReader({{target, original}}).empty()) << c.format;
}

INSTANTIATE_TEST_SUITE_P(Formats, FileCommandSaveAs,
                         testing::Values(SaveAsCase{"", "AC1027"}, SaveAsCase{"2000", "AC1015"},
                                         SaveAsCase{"2018", "AC1032"}, SaveAsCase{"R12", "AC1009"},
                                         SaveAsCase{"2010", "AC1024"}));

// A name without extension gets ".dxf"; QSAVE then writes to the new name without asking.
TEST(FileCommand, QsaveWritesToTheDrawingsFile) {
    test::TempDir dir;
    test::ScriptRun run;
    ASSERT_TRUE(run.run("QSAVE\n" + dir.file("first").string() + "\n"));
    const auto first = dir.file("first.dxf");
    ASSERT_TRUE(std::filesystem::exists(first));
    EXPECT_EQ(run.document().path(), first.string());
    ASSERT_TRUE(run.run("-LAYER\nN\nADDED\n\nQSAVE\n"));
    auto reread = dxf::readDxfFile(first.string());
    ASSERT_TRUE(reread.ok());
    EXPECT_TRUE(reread.drawing->tableRecord("LAYER", "ADDED"));
}

// SAVE to another name writes a copy and keeps the drawing's own name.
TEST(FileCommand, SaveToAnotherNameKeepsTheName) {
    test::TempDir dir;
    const auto own = dir.file("own.dxf");
    test::writeFileBytes(own, test::readFileBytes(test::corpusFile("ezdxf__text.dxf")));
    test::ScriptRun run = test::ScriptRun::fromFile(own.string());
    ASSERT_TRUE(run.run("SAVE\n" + dir.file("copy.dxf").string() + "\n"));
    EXPECT_EQ(run.document().path(), own.string());
    EXPECT_EQ(versionOf(dir.file("copy.dxf")), "AC1032");
}

// An existing other file is replaced only after a yes.
TEST(FileCommand, ReplacingAnotherFileNeedsYes) {
    test::TempDir dir;
    const auto existing = dir.file("existing.dxf");
    test::writeFileBytes(existing, "keep me");
    test::ScriptRun run;
    ASSERT_TRUE(run.run("SAVEAS\n" + existing.string() + "\nN\n"));
    EXPECT_EQ(test::readFileBytes(existing), "keep me");
    EXPECT_TRUE(run.document().path().empty());
    ASSERT_TRUE(run.run("SAVEAS\n" + existing.string() + "\nY\n"));
    EXPECT_EQ(versionOf(existing), "AC1032");
    EXPECT_EQ(run.document().path(), existing.string());
}

// A folder that does not exist: the error is reported and nothing changes.
TEST(FileCommand, FailedSaveIsReported) {
    test::TempDir dir;
    test::ScriptRun run;
    const auto target = dir.file("no/such/folder/x.dxf");
    ASSERT_TRUE(run.run("SAVEAS\n2004\n" + target.string() + "\nORTHO\nON\n"));
    EXPECT_TRUE(run.outputContains(L"** Error: the drawing could not be saved"));
    EXPECT_TRUE(run.document().path().empty());
    EXPECT_FALSE(std::filesystem::exists(target));
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 1);
}

}  // namespace
}  // namespace korva
