// The messages a module hears from load to quit, in order: DllMain, 1, 3 for
// every open document and for one opened later, 5 per LISP call, 8 then 2;
// a locked module gets no 2 and stays; a module whose start fails hears
// nothing more and is gone. Driven through the probe module and real scripts.
#include <gtest/gtest.h>

#include "ModuleTestSupport.h"
#include "ScriptRun.h"
#include "kcap.h"
#include "kcwindows.h"
#include "runtime/HostStart.h"

namespace korva {
namespace {

using Lines = std::vector<std::string>;

class ModuleMessages : public ::testing::Test {
protected:
    void TearDown() override { test::unloadAllModules(); }

    // Opens a copy of a corpus drawing as a further document.
    void openCopy(const char* corpusName, const std::string& as) {
        const auto copy = folder_.file(as);
        std::filesystem::copy_file(test::corpusFile(corpusName), copy);
        ASSERT_EQ(kcDocManagerPtr()->appContextOpenDocument(copy.wstring().c_str()), Kcad::eOk);
    }

    test::TempDir folder_;
};

TEST_F(ModuleMessages, FollowTheModuleFromLoadToQuit) {
    test::ScriptRun run;
    test::ProbeLog log;
    openCopy("ezdxf__3dface.dxf", "second.dxf");
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    openCopy("qcad__examples_flange.dxf", "third.dxf");
    ASSERT_TRUE(run.run("(probe_sum 1 2)\n(probe_quiet)\n"));
    runtime::stopHost();

    const Lines expected{"attach",        "msg 1", "msg 3 Drawing1.dwg",     "msg 3 second.dxf", "msg 3 third.dxf",
                         "msg 5 code=0 args=2", "msg 5 code=2 args=0", "msg 8", "msg 2", "detach"};
    EXPECT_EQ(log.messages(), expected);
    EXPECT_EQ(GetModuleHandleW(L"ProbeModule.krx"), nullptr) << "an unlocked module is unloaded at quit";
    EXPECT_TRUE(log.has("removeGroup 0") && log.has("removeGroup 22")) << "the group goes at 8; at 2 it is already gone";
    EXPECT_TRUE(log.has("free 1")) << "the module frees its resource library at 2";
}

TEST_F(ModuleMessages, ClosingADocumentIsAnnouncedAndTheCurrentOneStays) {
    test::ScriptRun run;
    test::ProbeLog log;
    openCopy("ezdxf__3dface.dxf", "second.dxf");
    KcApDocManager* manager = kcDocManagerPtr();
    KcApDocument* second = manager->curDocument();
    ASSERT_EQ(manager->setCurDocument(manager->document(&run.document().database())), Kcad::eOk);
    ASSERT_NE(test::loadModule(test::probeModulePath()), nullptr);
    log.clear();
    ASSERT_EQ(manager->closeDocument(second), Kcad::eOk);
    EXPECT_EQ(log.messages(), Lines{"msg 4 second.dxf"}) << "the closing document is current while it is announced";
    EXPECT_EQ(manager->curDocument()->database(), &run.document().database());
}

TEST_F(ModuleMessages, ALockedModuleHearsQuitButIsNotUnloaded) {
    test::ScriptRun run;
    test::ProbeLog log;
    test::ScopedEnvironment locked("PROBE_MODE", "stay-locked");
    runtime::LoadedModule* module = test::loadModule(test::probeModulePath());
    ASSERT_NE(module, nullptr);
    KcRxDynamicLinker* linker = KcRxDynamicLinker::cast(kcrxSysRegistry()->at(L"DynamicLinker"));
    EXPECT_TRUE(linker->isApplicationLocked(L"ProbeModule.krx"));
    runtime::stopHost();
    EXPECT_EQ(log.messages(), (Lines{"attach", "msg 1", "msg 3 Drawing1.dwg", "msg 8"}));
    EXPECT_NE(GetModuleHandleW(L"ProbeModule.krx"), nullptr) << "a locked module stays loaded";
    EXPECT_FALSE(linker->unloadModule(L"ProbeModule.krx")) << "nor can the linker unload it";

    ASSERT_TRUE(linker->unlockApplication(module->packet()));
    EXPECT_TRUE(linker->unloadModule(L"ProbeModule.krx"));
    EXPECT_EQ(log.messages().back(), "detach");
    EXPECT_TRUE(log.has("msg 2")) << "once unlocked it unloads with message 2";
}

TEST_F(ModuleMessages, AModuleThatFailsToStartHearsNothingMoreAndIsGone) {
    const struct {
        const char* mode;
        const char* reported;  // on the command line; empty: nothing
    } cases[] = {
        {"fail-init", ""},
        {"throw-init", "ProbeModule.krx: an exception left its entry point (message 1): probe initialisation failure"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mode);
        test::ScriptRun run;
        test::ProbeLog log;
        test::ScopedEnvironment mode("PROBE_MODE", c.mode);
        std::string error;
        EXPECT_EQ(runtime::ModuleLoader::instance().load(test::probeModulePath().string(), "", error), nullptr);
        EXPECT_NE(error.find("ProbeModule.krx could not be initialized"), std::string::npos) << error;
        EXPECT_NE(run.outputUtf8().find(c.reported), std::string::npos) << run.outputUtf8();
        EXPECT_EQ(GetModuleHandleW(L"ProbeModule.krx"), nullptr);
        openCopy("ezdxf__3dface.dxf", std::string(c.mode) + ".dxf");
        runtime::stopHost();
        EXPECT_EQ(log.messages(), (Lines{"attach", "msg 1", "detach"}));
    }
}

TEST_F(ModuleMessages, FilesThatAreNotModulesAreRefusedWithTheReason) {
    test::writeFileBytes(folder_.file("text.krx"), "not a shared object\n");
    const struct {
        std::string name;
        const char* reason;
    } cases[] = {
        {folder_.file("missing.krx").string(), "cannot find the module"},
        {"NoSuchModule.krx", "cannot find the module \"NoSuchModule.krx\" (searched "},
        {folder_.file("text.krx").string(), "cannot load the module"},
        {std::string(KORVA_BINARY_DIR) + "/lib/libkorva.so", "libkorva.so is not an extension module: it has no entry point kcrxEntryPoint"},
    };
    for (const auto& c : cases) {
        std::string error;
        EXPECT_EQ(runtime::ModuleLoader::instance().load(c.name, "", error), nullptr) << c.name;
        EXPECT_NE(error.find(c.reason), std::string::npos) << error;
    }
    EXPECT_TRUE(runtime::ModuleLoader::instance().modules().empty());
}

TEST_F(ModuleMessages, LoadingAgainGivesTheLoadedModuleWithoutAnotherStart) {
    test::ScriptRun run;
    test::ProbeLog log;
    runtime::LoadedModule* first = test::loadModule(test::probeModulePath());
    KcRxDynamicLinker* linker = KcRxDynamicLinker::cast(kcrxSysRegistry()->at(L"DynamicLinker"));
    EXPECT_EQ(test::loadModule(test::probeModulePath()), first);
    EXPECT_TRUE(linker->loadModule(L"probemodule.KRX", false)) << "a loaded module is found by its file name";
    const Lines lines = log.lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "msg 1"), 1);
}

}  // namespace
}  // namespace korva
