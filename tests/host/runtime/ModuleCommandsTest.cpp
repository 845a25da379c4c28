// Module commands: registered through "KCAD_REGISTERED_COMMANDS" by the probe
// and run from real scripts; the stack's rules for duplicates, empty local
// names, removing commands and groups; exceptions stop at the boundary; a
// module cannot be unloaded under its own command and finds its siblings.
#include <gtest/gtest.h>

#include <filesystem>

#include "ModuleTestSupport.h"
#include "ScriptRun.h"
#include "editor/CommandStack.h"
#include "kcedcommands.h"
#include "kcwindows.h"

namespace korva {
namespace {

KcEdCommandStack* commandStack() { return KcEdCommandStack::cast(kcrxSysRegistry()->at(L"KCAD_REGISTERED_COMMANDS")); }

int hostHandlerRuns = 0;
void countingHandler() { ++hostHandlerRuns; }
void throwingHandler() { throw 42; }

class ModuleCommands : public ::testing::Test {
protected:
    void SetUp() override { test::startHostOnce(); }
    void TearDown() override {
        test::unloadAllModules();
        commandStack()->removeGroup(L"TEST_GROUP");
    }
};

TEST_F(ModuleCommands, RunFromAScriptWithTheModulesResourcesCurrent) {
    test::ScriptRun run;
    test::ProbeLog log;
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    EXPECT_TRUE(run.run("PROBEHELLO\nPROBEDUP\nPROBEEMPTY\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"Probe says: Hello from the probe"));
    EXPECT_TRUE(run.outputContains(L"first registration ran")) << "a duplicate keeps the first registration";
    EXPECT_FALSE(run.outputContains(L"second registration ran"));
    EXPECT_TRUE(run.outputContains(L"empty local name ran"));
    EXPECT_TRUE(log.has("add PROBEDUP " + std::to_string(Kcad::eDuplicateKey)));
}

TEST_F(ModuleCommands, AnExceptionFromAHandlerIsReportedAndTheScriptGoesOn) {
    test::ScriptRun run;
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    EXPECT_TRUE(run.run("PROBETHROW\nPROBEHELLO\n"));
    EXPECT_TRUE(run.outputContains(L"ProbeModule.krx: an exception left the command PROBETHROW: probe command failure"))
        << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"Probe says:")) << "the next command still runs";
}

TEST_F(ModuleCommands, AModuleIsNotUnloadedUnderItsOwnCommand) {
    test::ScriptRun run;
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    EXPECT_TRUE(run.run("PROBEUNLOADSELF\n"));
    EXPECT_TRUE(run.outputContains(L"unload under itself: refused")) << run.outputUtf8();
    EXPECT_NE(GetModuleHandleW(L"ProbeModule.krx"), nullptr);
}

TEST_F(ModuleCommands, TheLinkerFindsAModuleBesideTheModuleThatAsks) {
    test::TempDir folder;
    test::copyProbeTo(folder.path());
    test::ScriptRun run;
    ASSERT_NE(test::loadModule(folder.file("ProbeModule.krx")), nullptr);
    EXPECT_TRUE(run.run("PROBELOADSIBLING\n"));
    EXPECT_TRUE(run.outputContains(L"sibling: not loaded")) << "not there yet: " << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"cannot find the module \"ProbeSibling.krx\"")) << "printIt reports why";

    std::filesystem::copy_file(test::probeModulePath(), folder.file("ProbeSibling.krx"));
    EXPECT_TRUE(run.run("PROBELOADSIBLING\n"));
    EXPECT_TRUE(run.outputContains(L"sibling: loaded")) << run.outputUtf8();
    EXPECT_NE(GetModuleHandleW(L"ProbeSibling.krx"), nullptr);
}

TEST_F(ModuleCommands, TheStackKeepsTheFirstOfADuplicateAndRemovesGroupsOnce) {
    KcEdCommandStack* stack = commandStack();
    ASSERT_NE(stack, nullptr);
    const struct {
        const char* step;
        Kcad::ErrorStatus status;
        Kcad::ErrorStatus expected;
    } steps[] = {
        {"first T1", stack->addCommand(L"TEST_GROUP", L"T1", L"T1LOCAL", 0, countingHandler), Kcad::eOk},
        {"T1 again", stack->addCommand(L"TEST_GROUP", L"t1", L"OTHER", 0, throwingHandler), Kcad::eDuplicateKey},
        {"T1 in another group", stack->addCommand(L"TEST_OTHER", L"T1", L"", 0, countingHandler), Kcad::eOk},
        {"no handler", stack->addCommand(L"TEST_GROUP", L"T2", L"T2", 0, nullptr), Kcad::eInvalidInput},
        {"no global name", stack->addCommand(L"TEST_GROUP", L"", L"T2", 0, countingHandler), Kcad::eInvalidInput},
        {"no group", stack->addCommand(nullptr, L"T2", L"T2", 0, countingHandler), Kcad::eInvalidInput},
        {"T3", stack->addCommand(L"TEST_GROUP", L"T3", L"T3", 0, countingHandler), Kcad::eOk},
        {"remove T3", stack->removeCmd(L"TEST_GROUP", L"T3"), Kcad::eOk},
        {"remove T3 again", stack->removeCmd(L"TEST_GROUP", L"T3"), Kcad::eKeyNotFound},
        {"unknown group", stack->removeGroup(L"NO_SUCH_GROUP"), Kcad::eKeyNotFound},
        {"other group", stack->removeGroup(L"TEST_OTHER"), Kcad::eOk},
        {"other group again", stack->removeGroup(L"TEST_OTHER"), Kcad::eKeyNotFound},
    };
    for (const auto& s : steps) EXPECT_EQ(s.status, s.expected) << s.step;

    const editor::CommandDefinition* t1 = editor::CommandStack::instance().find(L"T1LOCAL");
    ASSERT_NE(t1, nullptr);
    EXPECT_EQ(t1->globalName, L"T1") << "the first registration stays";
    hostHandlerRuns = 0;
    test::ScriptRun run;
    EXPECT_TRUE(run.run("T1LOCAL\n_T1\n"));
    EXPECT_EQ(hostHandlerRuns, 2) << "local and global name run the first handler";
    EXPECT_EQ(editor::CommandStack::instance().find(L"_T3"), nullptr);
}

TEST_F(ModuleCommands, AnEmptyLocalNameTakesTheGlobalName) {
    test::ScriptRun run;
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    for (const editor::CommandDefinition& command : editor::CommandStack::instance().commands()) {
        if (command.globalName == L"PROBEEMPTY") {
            EXPECT_EQ(command.localName, L"PROBEEMPTY");
        }
    }
    ASSERT_EQ(commandStack()->addCommand(L"TEST_GROUP", L"T4", nullptr, 0, throwingHandler), Kcad::eOk);
    EXPECT_TRUE(run.run("T4\n"));
    EXPECT_TRUE(run.outputContains(L"Command handler: an exception left the command T4: an exception of an unknown type"))
        << run.outputUtf8();
}

TEST_F(ModuleCommands, UnloadingAModuleTakesItsCommandsAlong) {
    test::ScriptRun run;
    runtime::LoadedModule* module = test::loadModule(test::probeModulePath());
    ASSERT_NE(module, nullptr);
    // A module that forgets its group at unload must not leave commands into closed code.
    commandStack()->addCommand(L"PROBE_LEFTOVER", L"PROBELEFT", L"PROBELEFT", 0,
                               reinterpret_cast<KcRxFunctionPtr>(module->symbol("probeModuleHandle")));
    ASSERT_NE(editor::CommandStack::instance().find(L"PROBELEFT"), nullptr);
    EXPECT_TRUE(runtime::ModuleLoader::instance().unload(*module));
    EXPECT_EQ(editor::CommandStack::instance().find(L"PROBELEFT"), nullptr);
    EXPECT_EQ(editor::CommandStack::instance().find(L"PROBEHELLO"), nullptr);
}

}  // namespace
}  // namespace korva
