// Start-up: the runtime objects modules look up, the test switches (the
// KvUInfo.dll pseudo-module, the first-start profile keys, a long
// transaction), the start-up modules, and a refused unknown switch. Every
// test leaves the host as the tests start it (a profile in memory only).
#include <gtest/gtest.h>

#include "ModuleTestSupport.h"
#include "ScriptRun.h"
#include "kcap.h"
#include "kcedcommands.h"
#include "kcwindows.h"
#include "runtime/HostStart.h"
#include "runtime/profile/ProfileStore.h"
#include "runtime/profile/RegistryTree.h"

namespace korva {
namespace {

runtime::HostSettings withSwitch(const char* name) {
    runtime::HostSettings settings;
    settings.testSwitches.insert(name);
    return settings;
}

class HostStart : public ::testing::Test {
protected:
    void TearDown() override {
        test::unloadAllModules();
        std::string error;
        EXPECT_TRUE(runtime::startHost(runtime::HostSettings{}, error)) << error;
    }
    static bool start(runtime::HostSettings settings) {
        std::string error;
        const bool started = runtime::startHost(settings, error);
        EXPECT_TRUE(started) << error;
        return started;
    }
};

TEST_F(HostStart, TheSystemRegistryHoldsWhatModulesLookUp) {
    test::ScriptRun run;
    KcRxDictionary* registry = kcrxSysRegistry();
    EXPECT_NE(KcEdCommandStack::cast(registry->at(L"KCAD_REGISTERED_COMMANDS")), nullptr);
    EXPECT_NE(KcRxDynamicLinker::cast(registry->at(L"DynamicLinker")), nullptr);
    EXPECT_NE(KcRxDictionary::cast(registry->at(L"ServiceDictionary")), nullptr);
    ASSERT_TRUE(start({}));
    EXPECT_EQ(registry->numEntries(), 3u) << "starting again adds nothing";
}

TEST_F(HostStart, TheUInfoPseudoModuleCanBeSwitchedOff) {
    test::ScriptRun run;
    ASSERT_TRUE(start(withSwitch("no-uinfo")));
    EXPECT_EQ(GetModuleHandleW(L"KvUInfo.dll"), nullptr);
    std::string error;
    EXPECT_EQ(runtime::ModuleLoader::instance().load(test::probeModulePath().string(), "", error), nullptr)
        << "the probe, like a real module, refuses to start without it";
    ASSERT_TRUE(start({}));
    EXPECT_NE(GetModuleHandleW(L"KvUInfo.dll"), nullptr);
}

TEST_F(HostStart, ABareProfileLacksTheInterfaceKeys) {
    const std::wstring layerTools = runtime::joinRegistryPath(runtime::interfaceSettingsPath()) + L"\\LayerTools";
    for (const bool bare : {false, true}) {
        SCOPED_TRACE(bare ? "bare" : "installed");
        test::TempDir profile;
        runtime::HostSettings settings;
        settings.profileFolder = profile.path().string();
        if (bare) settings.testSwitches.insert("bare-profile");
        ASSERT_TRUE(start(settings));
        EXPECT_EQ(runtime::profileStoreFile().rfind(profile.path().string(), 0), 0u) << "the store lives in the folder";
        HKEY key = nullptr;
        const LONG status = RegOpenKeyExW(HKEY_CURRENT_USER, layerTools.c_str(), 0, KEY_READ, &key);
        EXPECT_EQ(status, bare ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS);
        if (key) RegCloseKey(key);
        ASSERT_TRUE(start({}));
    }
}

TEST_F(HostStart, StartupModulesLoadInOrderAndTheFirstFailureStops) {
    test::ScriptRun run;
    test::ProbeLog log;
    runtime::HostSettings settings = withSwitch("long-transaction");
    settings.modules = {test::probeModulePath().string(), "/no/such/Module.krx"};
    settings.defaultModule = false;
    ASSERT_TRUE(start(settings));
    std::string error;
    EXPECT_FALSE(runtime::loadStartupModules(settings, error));
    EXPECT_NE(error.find("/no/such/Module.krx"), std::string::npos) << error;
    EXPECT_TRUE(log.has("msg 1")) << "the modules before the failing one are loaded";

    settings.modules.pop_back();
    EXPECT_TRUE(runtime::loadStartupModules(settings, error)) << error;
    const KcDbObjectId transaction = kcapLongTransactionManagerPtr()->currentLongTransactionFor(kcDocManagerPtr()->curDocument());
    EXPECT_FALSE(transaction.isNull()) << "the switch starts one on the current document";
}

TEST_F(HostStart, AnUnknownSwitchIsRefused) {
    std::string error;
    EXPECT_FALSE(runtime::startHost(withSwitch("no-such-switch"), error));
    EXPECT_NE(error.find("no-such-switch"), std::string::npos);
    EXPECT_TRUE(runtime::isKnownTestSwitch("bare-profile"));
    EXPECT_FALSE(runtime::isKnownTestSwitch("Bare-Profile"));
}

TEST_F(HostStart, TheDefaultModuleLivesBesideTheLibraries) {
    EXPECT_EQ(runtime::defaultModulePath(),
              (std::filesystem::path(KORVA_BINARY_DIR) / "lib" / "korva" / "libKvExtend.krx").lexically_normal().string())
        << "<program folder>/../lib/korva from the tests' program folder";
}

}  // namespace
}  // namespace korva
