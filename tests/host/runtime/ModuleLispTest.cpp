// LISP functions of modules: defined per document on message 3, called from
// scripts with their arguments (message 5), results from kcedRet* (nil when
// none), errors through kcdbFail, exceptions stopped at the boundary; the test
// entry hostInvokeLisp; nothing is callable outside a call or after unload.
#include <gtest/gtest.h>

#include "ModuleTestSupport.h"
#include "ScriptRun.h"
#include "db/ResultBuffers.h"
#include "kcap.h"
#include "kcdbfuncs.h"
#include "kcedcommands.h"
#include "runtime/modules/ModuleLisp.h"

namespace korva {
namespace {

class ModuleLisp : public ::testing::Test {
protected:
    void TearDown() override { test::unloadAllModules(); }
};

TEST_F(ModuleLisp, ScriptsCallModuleFunctionsWithArgumentsAndResults) {
    const struct {
        const char* expression;
        const char* shows;
    } cases[] = {
        {"(probe_sum 1 2 3)", "\n6\n"},
        {"(probe_sum 1 2.5)", "\n3.5\n"},
        {"(probe_sum 40000 2)", "\n40002\n"},
        {"(PROBE_JOIN \"ab\" \"c\")", "\n\"ab+c\"\n"},
        {"(probe_echo 1 \"x\" '(2 3))", "\n(1 \"x\" (2 3))\n"},
        {"(probe_quiet)", "\nnil\n"},
        {"(probe_sum \"x\")", "Application ERROR: probe_sum takes numbers"},
        {"(probe_bad)", "Application ERROR: Incorrect function code."},
        {"(probe_throw)", "ProbeModule.krx: an exception left its entry point (message 5): probe function failure"},
        {"(probe_throw)", "error: the function PROBE_THROW failed"},
        {"(setq total (probe_sum 2 2))\n(probe_sum total 1)", "\n5\n"},
    };
    test::ScriptRun run;
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    for (const auto& c : cases) {
        const size_t before = run.output().size();
        run.run(std::string(c.expression) + "\n");
        const std::string shown = run.outputUtf8().substr(before);
        EXPECT_NE(shown.find(c.shows), std::string::npos) << c.expression << " showed:\n" << shown;
    }
}

TEST_F(ModuleLisp, TheTestEntryCallsWithACopyOfTheArgumentsAndHandsBackTheResult) {
    test::ScriptRun run;
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    resbuf* args = kcutBuildList(RTSHORT, 2, RTREAL, 0.5, 0);
    resbuf* result = nullptr;
    ASSERT_EQ(hostInvokeLisp(L"probe_sum", args, &result), RTNORM);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->restype, RTREAL);
    EXPECT_DOUBLE_EQ(result->resval.rreal, 2.5);
    EXPECT_EQ(args->resval.rint, 2) << "the caller's arguments are untouched";
    kcutRelRb(result);

    ASSERT_EQ(hostInvokeLisp(L"probe_quiet", nullptr, &result), RTNORM);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->restype, RTNIL) << "no result set is nil";
    kcutRelRb(result);
    kcutRelRb(args);

    result = reinterpret_cast<resbuf*>(&run);
    EXPECT_EQ(hostInvokeLisp(L"no_such_function", nullptr, &result), RTERROR);
    EXPECT_EQ(result, nullptr);
}

TEST_F(ModuleLisp, OutsideACallThereIsNoCodeAndNoArguments) {
    test::ScriptRun run;
    EXPECT_EQ(kcedGetFunCode(), RTERROR);
    EXPECT_EQ(kcedGetArgs(), nullptr);
    EXPECT_EQ(kcedDefunEx(L"from_host_code", L"from_host_code", 0), RTERROR) << "host code is no module";
    EXPECT_EQ(kcedRetInt(3), RTNORM) << "a command ending quietly outside a function is harmless";
}

TEST_F(ModuleLisp, FunctionsBelongToTheirDocumentAndTheirModule) {
    test::ScriptRun run;
    runtime::LoadedModule* module = test::loadModule(test::probeModulePath());
    ASSERT_NE(module, nullptr);
    EXPECT_TRUE(runtime::isModuleLispFunction(L"PROBE_SUM"));

    // Message 3 again defines the same names again: each replaces its first definition.
    runtime::ModuleLoader::instance().send(*module, KcRx::kLoadDwgMsg);
    EXPECT_EQ(kcedUndef(L"probe_sum", 0), RTNORM);
    EXPECT_FALSE(runtime::isModuleLispFunction(L"probe_sum")) << "one definition per name";
    EXPECT_EQ(kcedUndef(L"probe_sum", 0), RTERROR);

    EXPECT_TRUE(runtime::isModuleLispFunction(L"probe_echo"));
    ASSERT_TRUE(runtime::ModuleLoader::instance().unload(*module));
    EXPECT_FALSE(runtime::isModuleLispFunction(L"probe_echo")) << "definitions go with their module";
    run.run("(probe_echo 1)\n");
    EXPECT_TRUE(run.outputContains(L"no function definition: PROBE_ECHO")) << run.outputUtf8();
}

TEST_F(ModuleLisp, ALocalizedNameCallsTheFunctionToo) {
    test::TempDir folder;
    test::copyProbeTo(folder.path());
    std::filesystem::create_directories(folder.file("de"));
    std::filesystem::copy_file(test::probeFolder() / "de" / "ProbeModuleRes.dll", folder.file("de") / "ProbeModuleRes.dll");
    test::ScopedEnvironment all("LC_ALL", nullptr);
    test::ScopedEnvironment messages("LC_MESSAGES", nullptr);
    test::ScopedEnvironment language("LANG", "de_DE.UTF-8");
    test::ScriptRun run;
    ASSERT_NE(test::loadModule(folder.file("ProbeModule.krx")), nullptr);
    run.run("(sonde_verbinden \"a\" \"b\")\n(probe_join \"c\")\n");
    EXPECT_TRUE(run.outputContains(L"\n\"a+b\"\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"\n\"c\"\n"));
}

}  // namespace
}  // namespace korva
