// Helpers of the module tests: the probe module's file (built with the tests),
// environment variables set for one scope, the probe's message log, and a
// fixture that leaves no module loaded behind it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "TestFiles.h"
#include "runtime/modules/ModuleLoader.h"

namespace korva::test {

inline std::filesystem::path probeModulePath() { return KORVA_PROBE_MODULE; }
inline std::filesystem::path probeFolder() { return probeModulePath().parent_path(); }

// Sets (or with null unsets) an environment variable until the end of the scope.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) previous_ = old;
        if (value) ::setenv(name, value, 1);
        else ::unsetenv(name);
    }
    ~ScopedEnvironment() {
        if (previous_) ::setenv(name_.c_str(), previous_->c_str(), 1);
        else ::unsetenv(name_.c_str());
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string name_;
    std::optional<std::string> previous_;
};

// The probe's log file (PROBE_LOG) for one test.
class ProbeLog {
public:
    ProbeLog() : environment_("PROBE_LOG", file().c_str()) {}
    std::string file() const { return (folder_.path() / "probe.log").string(); }
    // Every line, in order.
    std::vector<std::string> lines() const {
        std::ifstream in(file());
        std::vector<std::string> out;
        for (std::string line; std::getline(in, line);) out.push_back(line);
        return out;
    }
    // Only the messages and DllMain calls.
    std::vector<std::string> messages() const {
        std::vector<std::string> out;
        for (const std::string& line : lines()) {
            if (line.starts_with("msg ") || line == "attach" || line == "detach") out.push_back(line);
        }
        return out;
    }
    bool has(const std::string& line) const {
        const auto all = lines();
        return std::find(all.begin(), all.end(), line) != all.end();
    }
    void clear() const { std::ofstream(file(), std::ios::trunc); }

private:
    TempDir folder_;
    ScopedEnvironment environment_;
};

// Unloads every module a test left loaded, locked or not.
inline void unloadAllModules() {
    runtime::ModuleLoader& loader = runtime::ModuleLoader::instance();
    for (runtime::LoadedModule* module : loader.modules()) module->locked = false;
    loader.quit();
}

// Loads a module through the loader; fails the test when it does not load.
inline runtime::LoadedModule* loadModule(const std::filesystem::path& path) {
    std::string error;
    runtime::LoadedModule* module = runtime::ModuleLoader::instance().load(path.string(), "", error);
    EXPECT_NE(module, nullptr) << error;
    return module;
}

// A copy of the probe and its resource libraries in a fresh folder.
inline void copyProbeTo(const std::filesystem::path& folder, const std::string& moduleName = "ProbeModule.krx") {
    namespace fs = std::filesystem;
    fs::create_directories(folder);
    fs::copy_file(probeModulePath(), folder / moduleName, fs::copy_options::overwrite_existing);
    fs::copy_file(probeFolder() / "ProbeModuleRes.dll", folder / "ProbeModuleRes.dll", fs::copy_options::overwrite_existing);
}

}  // namespace korva::test
