// Whole-program runs of korva: options, exit statuses, the transcript, quiet
// mode, scripts on copies of corpus drawings and saved results that the
// independent reader opens.
#include <gtest/gtest.h>

#include <filesystem>

#include "RunKorva.h"
#include "TestFiles.h"
#include "db/RecordFields.h"
#include "dxf/DxfReader.h"

namespace korva {
namespace {

using test::runKorva;

TEST(Console, ExitStatusesFollowTheOutcome) {
    test::TempDir dir;
    test::writeFileBytes(dir.file("ok.scr"), "ORTHOMODE\n1\n");
    test::writeFileBytes(dir.file("stops.scr"), "NOSUCHCOMMAND\n");
    test::writeFileBytes(dir.file("broken.dxf"), "  0\nSECTION\n  2\n");
    const struct {
        std::vector<std::string> arguments;
        int status;
        const char* says;
    } cases[] = {
        {{"-s", dir.file("ok.scr").string()}, 0, "Command: ORTHOMODE"},
        {{"-s", dir.file("stops.scr").string()}, 1, "Unknown command \"NOSUCHCOMMAND\""},
        {{"--no-such-option"}, 2, "unknown option"},
        {{"-s", dir.file("missing.scr").string()}, 2, "cannot read the script"},
        {{dir.file("broken.dxf").string(), "-e", "ORTHOMODE 1"}, 3, "line 3"},
        {{test::corpusFile("ezdxf__3dface.dxf").string(), "-e", "ORTHOMODE 1", "-o", "/no/such/folder/out.dxf"}, 3, "cannot"},
        {{"--help"}, 0, "Exit status"},
    };
    for (const auto& c : cases) {
        const auto run = runKorva(c.arguments);
        EXPECT_EQ(run.exitStatus, c.status) << run.output;
        EXPECT_NE(run.output.find(c.says), std::string::npos) << run.output;
    }
}

TEST(Console, TranscriptHoldsThePromptsAndAnswersAndQuietModeShowsNothing) {
    test::TempDir dir;
    const auto transcript = dir.file("session.log");
    const auto run = runKorva({"-q", "--transcript", transcript.string(), "-e", "ORTHOMODE\n1\n"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "") << "quiet mode";
    const std::string log = test::readFileBytes(transcript);
    EXPECT_NE(log.find("Command: ORTHOMODE\nEnter new value for ORTHOMODE <0>: 1\n"), std::string::npos) << log;
}

TEST(Console, ScriptsRunInOrderAndTheSavedDrawingOpensElsewhere) {
    test::TempDir dir;
    test::writeFileBytes(dir.file("first.scr"), "CLAYER\n0\n");
    const auto saved = dir.file("out.dxf");
    const auto run = runKorva({test::corpusFile("qcad__examples_flange.dxf").string(), "-s", dir.file("first.scr").string(),
                               "-e", "ORTHOMODE 1", "-o", saved.string()});
    EXPECT_EQ(run.exitStatus, 0) << run.output;
    EXPECT_LT(run.output.find("Command: CLAYER"), run.output.find("Command: ORTHOMODE")) << "the script runs before --eval";
    for (const std::string& complaint : test::openWithIndependentReader({{saved, test::corpusFile("qcad__examples_flange.dxf")}})) {
        ADD_FAILURE() << complaint;
    }
    EXPECT_NE(test::readFileBytes(saved).find("$ORTHOMODE\n 70\n1\n"), std::string::npos);
}

TEST(Console, InputWithoutATerminalIsNotReadInteractively) {
    // Standard input is a pipe here: korva runs no command line and exits normally.
    const auto run = runKorva({}, "ORTHOMODE\n1\n");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output.find("Enter new value"), std::string::npos) << run.output;
}

// The bundled sample: a plain CAD script furnishes the plan without a single
// refused answer, and the result is saved, drawn and readable elsewhere.
TEST(Console, TheSampleScriptRunsUnchangedOnTheSamplePlan) {
    test::TempDir dir;
    const std::filesystem::path samples = std::filesystem::path(KORVA_SOURCE_DIR) / "samples";
    const auto saved = dir.file("plan.dxf"), picture = dir.file("plan.png");
    const auto run = runKorva({(samples / "plan.dxf").string(), "-s", (samples / "furnish.scr").string(), "-o",
                               saved.string(), "--render", picture.string()});
    EXPECT_EQ(run.exitStatus, 0) << run.output;
    for (const char* refusal : {"Invalid", "required", "Unknown", "*Invalid", "not found"}) {
        EXPECT_EQ(run.output.find(refusal), std::string::npos) << refusal << "\n" << run.output;
    }
    EXPECT_GT(std::filesystem::file_size(picture), 1000u);
    for (const std::string& complaint : test::openWithIndependentReader({{saved, samples / "plan.dxf"}})) {
        ADD_FAILURE() << complaint;
    }
    const auto read = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(read.ok()) << read.error;
    int chairs = 0, titles = 0;
    for (const db::ObjectRecord* entity : read.drawing->modelSpace()->container->members) {
        if (entity->type == db::Type::Insert && db::fieldText(*entity, "AcDbBlockReference", 2) == "CHAIR") ++chairs;
        if (entity->type == db::Type::Text && db::fieldText(*entity, "AcDbEntity", 8) == "TITLE") ++titles;
    }
    EXPECT_EQ(chairs, 2);
    EXPECT_EQ(titles, 1);
}

// The README's main job: the module's commands tag, burst, recase and lock on
// the sample plan, driven by a script with dialog actions.
TEST(Console, TheModuleSampleScriptTidiesTheSamplePlan) {
    test::TempDir dir;
    const std::filesystem::path samples = std::filesystem::path(KORVA_SOURCE_DIR) / "samples";
    const auto saved = dir.file("plan.dxf");
    const auto run = runKorva({(samples / "plan.dxf").string(), "-s", (samples / "tidy.scr").string(), "-o",
                               saved.string()});
    EXPECT_EQ(run.exitStatus, 0) << run.output;
    for (const char* refusal : {"Invalid", "required", "Unknown", "not available"}) {
        EXPECT_EQ(run.output.find(refusal), std::string::npos) << refusal << "\n" << run.output;
    }
    for (const std::string& complaint : test::openWithIndependentReader({{saved, samples / "plan.dxf"}})) {
        ADD_FAILURE() << complaint;
    }
    const auto read = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(read.ok()) << read.error;
    std::vector<std::string> texts;
    int references = 0;
    for (const db::ObjectRecord* entity : read.drawing->modelSpace()->container->members) {
        if (entity->erased) continue;
        if (entity->type == db::Type::Insert) ++references;
        if (entity->type == db::Type::Text) texts.emplace_back(db::fieldText(*entity, "AcDbText", 1));
    }
    EXPECT_EQ(references, 0) << "every tag was burst";
    EXPECT_EQ(texts, (std::vector<std::string>{"LIVING ROOM", "BEDROOM", "KITCHEN", "101", "102", "103"}));
    const db::ObjectRecord* walls = read.drawing->tableRecord("LAYER", "WALLS");
    ASSERT_NE(walls, nullptr);
    EXPECT_EQ(db::fieldInteger(*walls, "AcDbLayerTableRecord", 70) & 4, 4) << "the walls' layer is locked";
}

}  // namespace
}  // namespace korva
