// The module's commands as the host holds them after a normal load: every row
// of the table and the commands after it, in order, in "KV_EXTEND_COMMANDS",
// with their flags and local names; and the commands whose work is not written
// yet, which print their notice and leave the drawing as it was.
#include <gtest/gtest.h>

#include "FrameworkTestSupport.h"
#include "dxf/DxfWriter.h"

namespace korva {
namespace {

// Commands other folders implement: they do more than print the notice.
bool implementedElsewhere(const std::wstring& name) {
    for (const wchar_t* other : {L"TCASE", L"LAYCUR1", L"LAYTHW", L"LAYLCK", L"LAYULK", L"LAYMCH", L"-LAYMCH", L"LAYON",
                                 L"LAYOFF", L"LAYCUR", L"BURST"}) {
        if (name == other) return true;
    }
    return false;
}

std::wstring notAvailableNotice(const std::wstring& globalName) {
    return L"The command " + globalName + L" is not available yet.";
}

TEST(CommandRegistration, TheHostHoldsEveryCommandInTableOrderWithFlagsAndLocalNames) {
    test::ScriptRun run = test::withExtendModule(test::ScriptRun());
    const auto registered = test::registeredKvCommands();
    const auto& expected = test::expectedCommands();
    ASSERT_EQ(registered.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(db::wideToUtf8(expected[i].globalName));
        EXPECT_EQ(registered[i]->globalName, expected[i].globalName);
        EXPECT_EQ(registered[i]->flags, expected[i].flags);
        EXPECT_EQ(registered[i]->localName, test::expectedLocalName(expected[i]));
        EXPECT_FALSE(registered[i]->builtIn);
    }
}

TEST(CommandRegistration, TypedNamesFindTheModuleCommands) {
    test::ScriptRun run = test::withExtendModule(test::ScriptRun());
    const editor::CommandStack& stack = editor::CommandStack::instance();
    for (const wchar_t* typed : {L"exp1", L"_BLOCK?", L"-laydel", L"_-SCALELISTEDIT", L"txt2mtxtoptions"}) {
        const editor::CommandDefinition* command = stack.find(typed);
        ASSERT_NE(command, nullptr) << db::wideToUtf8(typed);
        EXPECT_EQ(command->group, test::kKvGroup) << db::wideToUtf8(typed);
    }
}

TEST(CommandRegistration, UnwrittenCommandsPrintTheirNoticeAndChangeNothing) {
    test::ScriptRun run = test::withExtendModule(test::ScriptRun());
    const std::string drawingBefore = dxf::writeDxf(run.drawing());
    for (const test::ExpectedCommand& command : test::expectedCommands()) {
        const std::wstring name = command.globalName;
        if (implementedElsewhere(name) || name == L"CHSPACE") continue;
        SCOPED_TRACE(db::wideToUtf8(name));
        const size_t before = run.output().size();
        EXPECT_TRUE(run.run(db::wideToUtf8(name) + "\n"));
        const std::wstring shown = run.output().substr(before);
        // A dash name runs the handler of its plain twin, which names itself.
        const std::wstring reported = name == L"-LAYDEL" ? L"LAYDEL" : name;
        EXPECT_NE(shown.find(notAvailableNotice(reported)), std::wstring::npos) << db::wideToUtf8(shown);
    }
    EXPECT_EQ(dxf::writeDxf(run.drawing()), drawingBefore) << "no command changed the drawing";
}

TEST(CommandRegistration, TheHostAppliesTheLayoutOnlyFlagOfChangeSpace) {
    test::ScriptRun run = test::withExtendModule(test::ScriptRun());
    run.run("CHSPACE\n");
    EXPECT_FALSE(run.outputContains(notAvailableNotice(L"CHSPACE"))) << "refused in the model tab before it runs";
    const size_t before = run.output().size();
    run.run("TILEMODE\n0\nCHSPACE\n");
    EXPECT_NE(run.output().find(notAvailableNotice(L"CHSPACE"), before), std::wstring::npos) << run.outputUtf8();
}

TEST(CommandRegistration, DashAndPlainLayDelRunTheSameHandler) {
    test::ScriptRun run = test::withExtendModule(test::ScriptRun());
    run.run("-LAYDEL\nLAYDEL\n");
    const std::wstring notice = notAvailableNotice(L"LAYDEL");
    const size_t first = run.output().find(notice);
    ASSERT_NE(first, std::wstring::npos) << run.outputUtf8();
    EXPECT_NE(run.output().find(notice, first + notice.size()), std::wstring::npos) << run.outputUtf8();
    EXPECT_EQ(run.output().find(L"-LAYDEL is not available"), std::wstring::npos);
}

}  // namespace
}  // namespace korva
