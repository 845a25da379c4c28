// The host's commands through scripts on real drawings.
#include <gtest/gtest.h>

#include "ScriptRun.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

TEST(HostCommands, EveryBuiltInCommandIsRegistered) {
    test::ScriptRun run;
    EXPECT_TRUE(run.run("ORTHOMODE\n0\n"));
}

}  // namespace
}  // namespace korva
