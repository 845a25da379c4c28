// Message boxes during a script: printed as "** text" or "** caption: text" and
// answered OK (Yes for a question).
#include <gtest/gtest.h>

#include <functional>

#include "ScriptRun.h"
#include "kcmfc.h"

namespace korva::test {
namespace {

TEST(MessageBox, ScriptedBoxesArePrintedAndAnswered) {
    const struct {
        std::function<int()> show;
        const wchar_t* printed;
        int answer;
    } cases[] = {
        {[] { return AfxMessageBox(L"Saved."); }, L"** Saved.\n", IDOK},
        {[] { return AfxMessageBox(L"Go on?", MB_YESNO); }, L"** Go on?\n", IDYES},
        {[] { return AfxMessageBox(L"Stop?", MB_OKCANCEL | MB_ICONWARNING); }, L"** Stop?\n", IDOK},
        {[] { return MessageBoxW(nullptr, L"3 variables read", L"Sysvdlg Alert", MB_OK | MB_ICONINFORMATION); },
         L"** Sysvdlg Alert: 3 variables read\n", IDOK},
        {[] { return MessageBoxW(nullptr, L"No caption", nullptr, MB_OK); }, L"** No caption\n", IDOK},
        // An owner handle that is no window is only not used as the parent.
        {[] { return MessageBoxW(reinterpret_cast<HWND>(0x1234), L"Odd owner", L"", MB_YESNO); }, L"** Odd owner\n", IDYES},
        {[] { return kcedGetKcadFrame()->MessageBox(L"From the frame", L"Frame"); }, L"** Frame: From the frame\n", IDOK},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        EXPECT_EQ(c.show(), c.answer);
        EXPECT_TRUE(run.outputContains(c.printed)) << run.outputUtf8();
    }
}

}  // namespace
}  // namespace korva::test
