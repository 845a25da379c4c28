// The module's LISP function through the host: "ai_refedit_alert" is defined
// for every drawing and prints notice 6650, its arguments are released after
// the call, and codes outside 0..2 are refused with "Incorrect function code."
// and RTERROR.
#include <gtest/gtest.h>

#include <malloc.h>

#include "FrameworkTestSupport.h"
#include "RegistryStandIns.h"
#include "kcdbfuncs.h"
#include "runtime/modules/ModuleLisp.h"

namespace korva {
namespace {

constexpr const wchar_t* kBadCode = L"Application ERROR: Incorrect function code.";

class LispDispatch : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(module_, nullptr); }
    test::ScriptRun run_ = test::withExtendModule(test::ScriptRun());
    runtime::LoadedModule* module_ = test::extendModule();
};

TEST_F(LispDispatch, AScriptCallShowsTheRefEditNotice) {
    const std::wstring notice = test::resourceText(6650);
    ASSERT_FALSE(notice.empty()) << "the resource library has the notice";
    run_.run("(ai_refedit_alert)\n");
    EXPECT_TRUE(run_.outputContains(notice)) << run_.outputUtf8();
    EXPECT_FALSE(run_.outputContains(kBadCode));
}

TEST(LispDispatchPerDrawing, EveryDrawingOpenedAfterTheLoadGetsTheFunction) {
    ASSERT_NE(test::extendModule(), nullptr);
    for (int drawing = 0; drawing < 2; ++drawing) {
        test::ScriptRun run;  // opened while the module is loaded: the module hears of it
        run.run("(ai_refedit_alert \"with\" 2 \"arguments\")\n");
        EXPECT_TRUE(run.outputContains(test::resourceText(6650))) << run.outputUtf8();
    }
}

TEST_F(LispDispatch, TheArgumentsAreReleasedAfterTheCall) {
    // Each call hands the module a fresh copy of a 64 KB argument; kept copies would
    // add up to many megabytes.
    const std::wstring big(16 * 1024, L'x');
    resbuf* args = kcutBuildList(RTSTR, big.c_str(), RTSTR, big.c_str(), RTSHORT, 7, 0);
    ASSERT_NE(args, nullptr);
    resbuf* result = nullptr;
    ASSERT_EQ(hostInvokeLisp(L"ai_refedit_alert", args, &result), RTNORM);  // warm up
    kcutRelRb(result);
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(hostInvokeLisp(L"ai_refedit_alert", args, &result), RTNORM);
        kcutRelRb(result);
    }
    const size_t after = mallinfo2().uordblks;
    kcutRelRb(args);
    EXPECT_LT(after, before + 4 * 1024 * 1024) << "grew by " << (after - before) << " bytes";
}

TEST_F(LispDispatch, CodesOutsideTheTableAreRefused) {
    // Definitions with codes the module never uses, made while the host is sending
    // the module a message (a dependency notice whose lock request reaches us).
    {
        test::LinkerRecorder linker;
        linker.onLock = [] {
            kcedDefunEx(L"kv_test_code3", L"kv_test_code3", 3);
            kcedDefunEx(L"kv_test_code_minus1", L"kv_test_code_minus1", -1);
        };
        ASSERT_EQ(test::sendToModule(KcRx::kDependencyMsg, nullptr), KcRx::kRetOK);
        ASSERT_EQ(linker.locks.size(), 1u);
    }
    for (const char* call : {"(kv_test_code3)", "(kv_test_code_minus1 1 2)"}) {
        const size_t before = run_.output().size();
        run_.run(std::string(call) + "\n");
        const std::wstring shown = run_.output().substr(before);
        EXPECT_NE(shown.find(kBadCode), std::wstring::npos) << call << " showed: " << db::wideToUtf8(shown);
        EXPECT_EQ(shown.find(test::resourceText(6650)), std::wstring::npos) << "no handler ran";
    }
    kcedUndef(L"kv_test_code3", 3);
    kcedUndef(L"kv_test_code_minus1", -1);
}

TEST_F(LispDispatch, DispatchOutsideACallReportsTheErrorStatusButTheEntryPointAnswersZero) {
    auto dofun = reinterpret_cast<int (*)()>(module_->symbol("_Z5dofunv"));
    ASSERT_NE(dofun, nullptr);
    size_t before = run_.output().size();
    EXPECT_EQ(dofun(), RTERROR) << "no call in progress: the host's code is RTERROR";
    EXPECT_NE(run_.output().find(kBadCode, before), std::wstring::npos);
    before = run_.output().size();
    EXPECT_EQ(test::sendToModule(KcRx::kInvkSubrMsg), KcRx::kRetOK);
    EXPECT_NE(run_.output().find(kBadCode, before), std::wstring::npos);
}

TEST_F(LispDispatch, OnlyTheRefEditFunctionIsDefined) {
    for (const wchar_t* name : {L"C:CAL", L"CAL", L"ai_refedit_alert"}) {
        resbuf* result = nullptr;
        const int expected = std::wstring(name) == L"ai_refedit_alert" ? RTNORM : RTERROR;
        EXPECT_EQ(hostInvokeLisp(name, nullptr, &result), expected) << db::wideToUtf8(name);
        kcutRelRb(result);
    }
}

}  // namespace
}  // namespace korva
