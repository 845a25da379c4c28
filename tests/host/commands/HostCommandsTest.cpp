// The host's commands are built-in commands of the "KORVA_HOST" group, so that
// "_." reaches them by their global names.
#include <gtest/gtest.h>

#include "ScriptRun.h"
#include "editor/CommandStack.h"

namespace korva {
namespace {

// Every command of the view, layer, space, xref and file families is registered as built in.
TEST(HostCommands, EveryBuiltInCommandIsRegistered) {
    test::ScriptRun run;  // starts the engine and registers the host's commands
    for (const wchar_t* name : {L"-LAYER", L"UCS", L"ORTHO", L"REDRAW", L"REGEN", L"ZOOM", L"MSPACE", L"PSPACE",
                                L"-LAYOUT", L"MVIEW", L"-XREF", L"SAVE", L"SAVEAS", L"QSAVE"}) {
        const editor::CommandDefinition* command = editor::CommandStack::instance().find(std::wstring(L"_.") + name);
        ASSERT_TRUE(command) << name;
        EXPECT_TRUE(command->builtIn);
        EXPECT_EQ(command->group, L"KORVA_HOST");
        EXPECT_EQ(command->globalName, name);
    }
}

}  // namespace
}  // namespace korva
