// The module's entry point as the host drives it: initialisation (unlock, the
// resource library, the service, every command row fetched and added in order
// with its flags and local name), the refusal without "KvUInfo.dll", unload
// and quit (group and service removed, also twice and without a resource
// library), and the dependency messages that only ever see a null reference.
#include <gtest/gtest.h>

#include <set>

#include "FrameworkTestSupport.h"
#include "RegistryStandIns.h"
#include "runtime/modules/HostModule.h"

namespace korva {
namespace {

class ModuleLifecycle : public ::testing::Test {
protected:
    void SetUp() override {
        module_ = test::extendModule();
        ASSERT_NE(module_, nullptr);
    }
    // Every test leaves the module as a fresh load does.
    void TearDown() override {
        runtime::registerPseudoModule(L"KvUInfo.dll");
        test::reinitialiseModule();
    }

    static KcRxDictionary* services() { return KcRxDictionary::cast(kcrxSysRegistry()->at(L"ServiceDictionary")); }
    static bool hasKvGroup() { return editor::CommandStack::instance().hasGroup(test::kKvGroup); }

    test::ScriptRun run_;
    runtime::LoadedModule* module_ = nullptr;
};

TEST_F(ModuleLifecycle, InitialisationUnlocksAndAddsEveryRowWithAFreshlyFetchedStack) {
    test::LinkerRecorder linker;
    test::CommandStackRecorder stack(/*rotate=*/true);
    ASSERT_EQ(test::sendToModule(KcRx::kInitAppMsg, module_->packet()), KcRx::kRetOK);

    EXPECT_EQ(linker.unlocks, (std::vector<const void*>{module_->packet()})) << "unlocked for its own packet";
    EXPECT_TRUE(linker.locks.empty());
    EXPECT_TRUE(module_->mdiAware);
    const auto& expected = test::expectedCommands();
    ASSERT_EQ(stack.adds.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const test::AddCommandCall& call = stack.adds[i];
        SCOPED_TRACE(db::wideToUtf8(expected[i].globalName));
        EXPECT_EQ(call.group, test::kKvGroup);
        EXPECT_EQ(call.globalName, expected[i].globalName);
        EXPECT_EQ(call.flags, expected[i].flags);
        EXPECT_EQ(call.localName, expected[i].localNameId ? test::resourceText(expected[i].localNameId)
                                                          : std::wstring(expected[i].globalName));
        EXPECT_NE(call.handler, nullptr);
        EXPECT_EQ(call.uiContext, nullptr);
        EXPECT_EQ(call.functionCode, -1);
        EXPECT_EQ(call.resourceHandle, nullptr);
        EXPECT_EQ(call.commandOut, nullptr);
        EXPECT_EQ(call.stackInstance, static_cast<int>(i)) << "the stack is fetched anew for every row";
    }
}

TEST_F(ModuleLifecycle, DashNamesShareTheirHandlersAndEveryOtherCommandHasItsOwn) {
    test::CommandStackRecorder stack(/*rotate=*/false);
    ASSERT_EQ(test::sendToModule(KcRx::kInitAppMsg, module_->packet()), KcRx::kRetOK);
    std::map<std::wstring, KcRxFunctionPtr> handlers;
    std::set<KcRxFunctionPtr> distinct;
    for (const test::AddCommandCall& call : stack.adds) {
        handlers[call.globalName] = call.handler;
        distinct.insert(call.handler);
    }
    EXPECT_EQ(handlers[L"-LAYDEL"], handlers[L"LAYDEL"]);
    EXPECT_EQ(handlers[L"-LAYMCH"], handlers[L"LAYMCH"]);
    EXPECT_NE(handlers[L"-SCALELISTEDIT"], handlers[L"SCALELISTEDIT"]);
    EXPECT_EQ(distinct.size(), test::expectedCommands().size() - 2);
}

TEST_F(ModuleLifecycle, InitialisingTwiceRegistersTheServiceOnce) {
    KcRxObject* service = services()->at(test::kKvService);
    ASSERT_NE(service, nullptr) << "registered by the first initialisation";
    const unsigned int entries = services()->numEntries();
    test::CommandStackRecorder stack(/*rotate=*/false);
    ASSERT_EQ(test::sendToModule(KcRx::kInitAppMsg, module_->packet()), KcRx::kRetOK);
    ASSERT_EQ(test::sendToModule(KcRx::kInitAppMsg, module_->packet()), KcRx::kRetOK);
    EXPECT_EQ(services()->at(test::kKvService), service);
    EXPECT_EQ(services()->numEntries(), entries);
    EXPECT_EQ(stack.adds.size(), 2 * test::expectedCommands().size());
}

TEST_F(ModuleLifecycle, WithoutTheUserInfoModuleInitialisationFailsAndRegistersNothing) {
    ASSERT_EQ(test::sendToModule(KcRx::kUnloadAppMsg), KcRx::kRetOK);
    runtime::unregisterPseudoModule(L"KvUInfo.dll");
    test::LinkerRecorder linker;
    test::CommandStackRecorder stack(/*rotate=*/false);
    EXPECT_EQ(test::sendToModule(KcRx::kInitAppMsg, module_->packet()), KcRx::kRetError);
    EXPECT_TRUE(stack.adds.empty());
    EXPECT_TRUE(linker.unlocks.empty()) << "refused before unlocking";
    EXPECT_FALSE(kcrxServiceIsRegistered(test::kKvService));
    EXPECT_FALSE(hasKvGroup());
}

TEST_F(ModuleLifecycle, UnloadRemovesTheGroupAndTheServiceAndMayRunTwice) {
    ASSERT_TRUE(hasKvGroup());
    ASSERT_TRUE(kcrxServiceIsRegistered(test::kKvService));
    EXPECT_EQ(test::sendToModule(KcRx::kQuitMsg), KcRx::kRetOK);
    EXPECT_FALSE(hasKvGroup());
    EXPECT_FALSE(kcrxServiceIsRegistered(test::kKvService));
    EXPECT_TRUE(test::registeredKvCommands().empty());
    test::CommandStackRecorder stack(/*rotate=*/false);
    EXPECT_EQ(test::sendToModule(KcRx::kUnloadAppMsg), KcRx::kRetOK) << "quit, then unload";
    EXPECT_EQ(stack.removedGroups, (std::vector<std::wstring>{test::kKvGroup}));
}

TEST_F(ModuleLifecycle, UnloadWithoutAResourceLibraryStillRemovesTheGroup) {
    ASSERT_EQ(test::sendToModule(KcRx::kUnloadAppMsg), KcRx::kRetOK);  // frees the library
    auto initApp = reinterpret_cast<void (*)()>(module_->symbol("_Z7initAppv"));
    ASSERT_NE(initApp, nullptr);
    initApp();  // registers with no library: every local name is missing
    const auto commands = test::registeredKvCommands();
    ASSERT_EQ(commands.size(), test::expectedCommands().size()) << "a missing local name stops nothing";
    EXPECT_EQ(commands.front()->localName, L"DIMEX") << "an empty local name takes the global one";
    EXPECT_EQ(test::sendToModule(KcRx::kUnloadAppMsg), KcRx::kRetOK);
    EXPECT_FALSE(hasKvGroup());
}

TEST_F(ModuleLifecycle, DependencyMessagesActOnlyOnTheNeverSetNullReference) {
    test::LinkerRecorder linker;
    int someService = 0;
    const struct {
        KcRx::AppMsgCode message;
        void* packet;
        size_t locks;
        size_t unlocks;
    } cases[] = {
        {KcRx::kDependencyMsg, &someService, 0, 0},
        {KcRx::kNoDependencyMsg, &someService, 0, 0},
        {KcRx::kDependencyMsg, nullptr, 1, 0},
        {KcRx::kNoDependencyMsg, nullptr, 1, 1},
        {KcRx::kInitDialogMsg, nullptr, 1, 1},
        {KcRx::kUnloadDwgMsg, nullptr, 1, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.message));
        EXPECT_EQ(test::sendToModule(c.message, c.packet), KcRx::kRetOK);
        EXPECT_EQ(linker.locks.size(), c.locks);
        EXPECT_EQ(linker.unlocks.size(), c.unlocks);
    }
    EXPECT_EQ(linker.locks, (std::vector<const void*>{nullptr})) << "the stored module handle is never set";
    EXPECT_EQ(linker.unlocks, (std::vector<const void*>{nullptr}));
    EXPECT_TRUE(hasKvGroup()) << "none of them touches the commands";
}

TEST_F(ModuleLifecycle, DllMainKeepsTheModuleHandleAndAlwaysAnswersOne) {
    auto dllMain = reinterpret_cast<int (*)(void*, unsigned long, void*)>(module_->symbol("DllMain"));
    ASSERT_NE(dllMain, nullptr);
    auto* stored = static_cast<void**>(module_->symbol("hCurrentModule"));
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(*stored, module_->handle()) << "stored when the host attached the module";
    int other = 0;
    EXPECT_EQ(dllMain(&other, 2, nullptr), 1);
    EXPECT_EQ(*stored, module_->handle()) << "other reasons change nothing";
    EXPECT_EQ(dllMain(&other, 1, nullptr), 1);
    EXPECT_EQ(*stored, static_cast<void*>(&other));
    EXPECT_EQ(dllMain(module_->handle(), 1, nullptr), 1);
}

}  // namespace
}  // namespace korva
