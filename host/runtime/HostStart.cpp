// Start-up and shut-down of the host: the order matters. Qt and the font
// measurer come first (texts are measured from the first drawing on), then the
// editor and its commands, the profile, and the runtime objects modules look
// up in the system registry. Document events are wired to the module loader
// once, so that every document opened later is announced to modules.
#include "runtime/HostStart.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "commands/HostCommands.h"
#include "db/TextMetrics.h"
#include "editor/Document.h"
#include "editor/Editor.h"
#include "fonts/FontMetrics.h"
#include "fonts/GuiApplication.h"
#include "kcedcommands.h"
#include "runtime/documents/DocumentManager.h"
#include "runtime/documents/LongTransactions.h"
#include "runtime/modules/DynamicLinker.h"
#include "runtime/modules/HostModule.h"
#include "runtime/modules/ModuleCommandStack.h"
#include "runtime/modules/ModuleLisp.h"
#include "runtime/modules/ModuleLoader.h"
#include "runtime/modules/ModuleSearch.h"
#include "runtime/profile/ProfileStore.h"

namespace korva::runtime {

namespace {

constexpr const char* kNoUInfo = "no-uinfo";
constexpr const char* kBareProfile = "bare-profile";
constexpr const char* kLongTransaction = "long-transaction";
constexpr const wchar_t* kUInfoModule = L"KvUInfo.dll";

void startOnce() {
    static const bool started = [] {
        // Never destroyed: fonts and dialogs need Qt until exit, and a Qt
        // application must not be torn down among the static destructors.
        static const fonts::GuiApplication* const application = new fonts::GuiApplication;
        (void)application;
        // A measurer installed before the host starts (a test's) stays.
        if (!db::installedTextMeasurer()) fonts::installFontMetrics();
        editor::initializeEditor();
        commands::registerHostCommands();
        installModuleLispFunctions();
        KcRxDictionary* registry = kcrxSysRegistry();
        delete registry->atPut(L"KCAD_REGISTERED_COMMANDS", new ModuleCommandStack);
        delete registry->atPut(L"DynamicLinker", new DynamicLinker);
        editor::Session& session = editor::Session::instance();
        session.addOpenHook([](editor::Document& document) { ModuleLoader::instance().documentOpened(document); });
        session.addCloseHook([](editor::Document& document) {
            ModuleLoader::instance().documentClosing(document);
            DocumentManager::instance().forget(document);
            endLongTransaction(document);
        });
        return true;
    }();
    (void)started;
}

}  // namespace

const std::vector<TestSwitch>& knownTestSwitches() {
    static const std::vector<TestSwitch> switches{
        {kNoUInfo, "leave out the KvUInfo.dll pseudo-module (modules then refuse to start)"},
        {kBareProfile, "a new profile without the user interface keys an installer creates"},
        {kLongTransaction, "start a long transaction on the current document"},
    };
    return switches;
}

bool isKnownTestSwitch(std::string_view name) {
    for (const TestSwitch& known : knownTestSwitches()) {
        if (name == known.name) return true;
    }
    return false;
}

std::string defaultModulePath() { return (std::filesystem::path(defaultModuleFolder()) / "libKvExtend.krx").string(); }

bool startHost(const HostSettings& settings, std::string& error) {
    for (const std::string& name : settings.testSwitches) {
        if (!isKnownTestSwitch(name)) {
            error = "unknown test switch \"" + name + "\"";
            return false;
        }
    }
    startOnce();
    closeProfileStore();
    ProfileOptions profile{settings.profileFolder, !settings.testSwitches.count(kBareProfile)};
    std::string profileError;
    if (!openProfileStore(profile, profileError)) {
        std::fprintf(stderr, "korva: the profile cannot be used (%s); settings are kept in memory only\n", profileError.c_str());
    }
    if (settings.testSwitches.count(kNoUInfo)) unregisterPseudoModule(kUInfoModule);
    else registerPseudoModule(kUInfoModule);
    return true;
}

bool loadStartupModules(const HostSettings& settings, std::string& error) {
    ModuleLoader& loader = ModuleLoader::instance();
    std::error_code ignored;
    if (settings.defaultModule && std::filesystem::is_regular_file(defaultModulePath(), ignored)) {
        std::string reason;
        if (!loader.load(defaultModulePath(), programFolder(), reason)) {
            std::fprintf(stderr, "korva: the default module is not loaded: %s\n", reason.c_str());
        }
    }
    for (const std::string& name : settings.modules) {
        std::string reason;
        if (!loader.load(name, programFolder(), reason)) {
            error = reason;
            return false;
        }
    }
    if (settings.testSwitches.count(kLongTransaction)) {
        if (const editor::Document* current = editor::Session::instance().current()) startLongTransaction(*current);
    }
    return true;
}

void stopHost() { ModuleLoader::instance().quit(); }

}  // namespace korva::runtime
