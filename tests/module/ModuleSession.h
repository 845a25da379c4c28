// The KvExtend module in the test process, loaded as korva loads it: the host
// starts, the module is loaded from the build's lib/korva folder (beside its
// resource library) and stays loaded for the whole test binary; each new
// ScriptRun document is announced to it like any drawing korva opens.
//
//     test::ScriptRun run = test::withExtendModule(test::ScriptRun::fromFile(path));
//     EXPECT_TRUE(run.run("TCASE\nALL\n\n"));
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "ScriptRun.h"
#include "runtime/modules/LoadedModule.h"
#include "runtime/modules/ModuleLoader.h"

namespace korva::test {

inline std::filesystem::path extendModulePath() { return KORVA_EXTEND_MODULE; }

// The loaded module (loading it on first use); null, with a test failure, when it does not load.
inline runtime::LoadedModule* extendModule() {
    startHostOnce();
    runtime::ModuleLoader& loader = runtime::ModuleLoader::instance();
    if (runtime::LoadedModule* loaded = loader.find(extendModulePath().filename().wstring())) return loaded;
    std::string error;
    runtime::LoadedModule* loaded = loader.load(extendModulePath().string(), "", error);
    EXPECT_NE(loaded, nullptr) << "the module does not load: " << error;
    return loaded;
}

// The run, with the module loaded and told about its document.
inline ScriptRun withExtendModule(ScriptRun run) {
    extendModule();
    return run;
}

}  // namespace korva::test
