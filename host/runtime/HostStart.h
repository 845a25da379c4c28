// Start-up and shut-down of the host, shared by the korva console and the
// tests:
//   startHost          the Qt application and font metrics, the editor and the
//                      host commands, the profile store, the pseudo-modules and
//                      the system registry's command stack and dynamic linker;
//   loadStartupModules after the first document is open: the default module
//                      (when its file exists) and the modules asked for;
//   stopHost           message 8 to every module, then 2 to each unlocked one
//                      as it is unloaded.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace korva::runtime {

struct HostSettings {
    // The profile folder; empty: a profile in memory only (the console passes
    // defaultProfileFolder() when no --profile is given).
    std::string profileFolder;
    // Further modules to load, in order (paths, or names searched as loadModule does).
    std::vector<std::string> modules;
    // Load the default module, libKvExtend.krx in the default module folder, when it exists.
    bool defaultModule = true;
    // Test switches (see knownTestSwitches()).
    std::set<std::string> testSwitches;
};

// The test switches and what each does, for validation and --help.
struct TestSwitch {
    const char* name;
    const char* effect;
};
const std::vector<TestSwitch>& knownTestSwitches();
bool isKnownTestSwitch(std::string_view name);

// The default module's file: <program folder>/../lib/korva/libKvExtend.krx.
std::string defaultModulePath();

// Starts the host. The parts that exist once per process are made on the first
// call; the profile, the pseudo-modules and the test switches follow the
// settings of every call. False with the reason when the host cannot run; a
// profile that cannot be used is a warning on standard error (it is then kept
// in memory only).
bool startHost(const HostSettings& settings, std::string& error);
// Loads the default module (absent: nothing, silently; failing: a warning on
// standard error) and then the modules of the settings. False with the reason
// at the first of these that cannot be loaded. Applies the document test
// switches to the current document.
bool loadStartupModules(const HostSettings& settings, std::string& error);
// Sends 8 to every module, then unloads the unlocked ones (message 2).
void stopHost();

}  // namespace korva::runtime
