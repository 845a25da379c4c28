// Module handles: the host program under its names, the KvUInfo.dll
// pseudo-module, a loaded module by file name with its path and exports, and
// the handle DllMain was given; the MDI flag and the packet rules.
#include <gtest/gtest.h>

#include <filesystem>

#include "ModuleTestSupport.h"
#include "ScriptRun.h"
#include "kcwindows.h"

namespace korva {
namespace {

std::wstring fileNameOf(HMODULE module) {
    wchar_t buffer[4096];
    return GetModuleFileNameW(module, buffer, 4096) > 0 ? std::wstring(buffer) : std::wstring();
}

class ModuleHandles : public ::testing::Test {
protected:
    void SetUp() override { run_ = std::make_unique<test::ScriptRun>(); }
    void TearDown() override { test::unloadAllModules(); }
    std::unique_ptr<test::ScriptRun> run_;
};

TEST_F(ModuleHandles, TheHostProgramAnswersToItsNames) {
    const HMODULE host = GetModuleHandleW(nullptr);
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(GetModuleHandleW(L"korva.exe"), host);
    EXPECT_EQ(GetModuleHandleW(L"KORVA.EXE"), host);
    EXPECT_EQ(fileNameOf(nullptr), std::filesystem::read_symlink("/proc/self/exe").wstring());
    EXPECT_EQ(fileNameOf(host), fileNameOf(nullptr));
    EXPECT_EQ(GetProcAddress(host, "GetModuleHandleW"), nullptr) << "exports are offered for modules only";
}

TEST_F(ModuleHandles, ThePseudoModuleIsFoundWithoutRegardToCase) {
    const HMODULE uinfo = GetModuleHandleW(L"KvUInfo.dll");
    ASSERT_NE(uinfo, nullptr);
    EXPECT_EQ(GetModuleHandleW(L"kvuinfo.DLL"), uinfo);
    EXPECT_NE(uinfo, GetModuleHandleW(nullptr));
    EXPECT_EQ(GetModuleHandleW(L"NoSuch.dll"), nullptr);
    EXPECT_EQ(GetProcAddress(uinfo, "anything"), nullptr);
    EXPECT_FALSE(FreeLibrary(uinfo));
}

TEST_F(ModuleHandles, ALoadedModuleHasItsPathExportsAndTheHandleDllMainGot) {
    runtime::LoadedModule* module = test::loadModule(test::probeModulePath());
    ASSERT_NE(module, nullptr);
    const HMODULE handle = GetModuleHandleW(L"ProbeModule.krx");
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(GetModuleHandleW(test::probeModulePath().wstring().c_str()), handle) << "by full path too";
    EXPECT_EQ(fileNameOf(handle), std::filesystem::canonical(test::probeModulePath()).wstring());

    using HandleQuery = void* (*)();
    // Through void(*)(), the generic function pointer type, as callers of GetProcAddress do.
    auto query = reinterpret_cast<HandleQuery>(reinterpret_cast<void (*)()>(GetProcAddress(handle, "probeModuleHandle")));
    ASSERT_NE(query, nullptr);
    EXPECT_EQ(query(), static_cast<void*>(handle)) << "DllMain's handle is the one GetModuleHandleW gives";
    EXPECT_EQ(GetProcAddress(handle, "noSuchExport"), nullptr);
    EXPECT_EQ(GetProcAddress(handle, nullptr), nullptr);

    wchar_t small[5];
    EXPECT_EQ(GetModuleFileNameW(handle, small, 5), 5u) << "a cut path gives the buffer size";
    EXPECT_EQ(std::wstring(small), fileNameOf(handle).substr(0, 4));
    EXPECT_EQ(GetModuleFileNameW(reinterpret_cast<HMODULE>(small), small, 5), 0u) << "an unknown handle";

    EXPECT_TRUE(module->mdiAware) << "the probe declared itself MDI aware";
    EXPECT_FALSE(module->locked) << "the probe unlocked itself";
}

TEST_F(ModuleHandles, PacketsAreCheckedBeforeUse) {
    runtime::LoadedModule* module = test::loadModule(test::probeModulePath());
    ASSERT_NE(module, nullptr);
    KcRxDynamicLinker* linker = KcRxDynamicLinker::cast(kcrxSysRegistry()->at(L"DynamicLinker"));
    int notAPacket = 0;
    const struct {
        const char* call;
        bool result;
        bool expected;
    } cases[] = {
        {"lock null", linker->lockApplication(nullptr), false},
        {"unlock unknown", linker->unlockApplication(&notAPacket), false},
        {"lock the module", linker->lockApplication(module->packet()), true},
        {"locked now", linker->isApplicationLocked(L"ProbeModule.krx"), true},
        {"unlock the module", linker->unlockApplication(module->packet()), true},
        {"unlocked now", linker->isApplicationLocked(L"ProbeModule.krx"), false},
        {"unknown name", linker->isApplicationLocked(L"NoSuch.krx"), false},
        {"unload unknown", linker->unloadModule(L"NoSuch.krx"), false},
    };
    for (const auto& c : cases) EXPECT_EQ(c.result, c.expected) << c.call;
    EXPECT_EQ(kcrxRegisterAppMDIAware(&notAPacket), Kcad::eInvalidInput);
    EXPECT_EQ(kcrxRegisterAppMDIAware(nullptr), Kcad::eInvalidInput);
    EXPECT_EQ(kcrxRegisterAppMDIAware(module->packet()), Kcad::eOk);
}

}  // namespace
}  // namespace korva
