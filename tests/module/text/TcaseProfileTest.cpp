// The TCASE mode in the application profile ("TcaseDialog"/"LastChoiced"):
// pressing OK without touching a button converts in the stored mode, a
// stored value that names no mode converts nothing and is stored again, the
// mode chosen in one run is the next run's.
#include <gtest/gtest.h>

#include <string>

#include "TcaseTestSupport.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::tcase::storedMode;
using test::tcase::storeMode;
using test::tcase::tcaseScript;
using test::tcase::textEntity;
using test::tcase::textOf;

constexpr const char* kOriginal = "hello WORLD. again";

ScriptRun oneTextRun() { return test::tcase::sceneRun({textEntity("TEXT", "100", kOriginal), {}, {}, {}}); }

// OK alone converts in the stored mode and stores it again; values that name no mode leave the text as it was.
TEST(TcaseProfile, OkAloneUsesTheStoredModeEvenWhenItNamesNone) {
    const struct {
        const char* intent;
        int stored;  // -1: nothing stored
        const wchar_t* expected;
        int storedAfter;
    } cases[] = {
        {"sentence case", 'S', L"Hello world. again", 'S'},
        {"lower case", 'L', L"hello world. again", 'L'},
        {"upper case", 'U', L"HELLO WORLD. AGAIN", 'U'},
        {"title case", 'T', L"Hello World. Again", 'T'},
        {"toggle case", 'G', L"HELLO world. AGAIN", 'G'},
        {"nothing stored: sentence case", -1, L"Hello world. again", 'S'},
        {"a lower-case letter names no mode", 'u', L"hello WORLD. again", 'u'},
        {"zero names no mode", 0, L"hello WORLD. again", 0},
        {"a large number names no mode", 1000, L"hello WORLD. again", 1000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.intent);
        if (c.stored == -1) test::tcase::forgetMode();
        else storeMode(c.stored);
        ScriptRun run = oneTextRun();
        ASSERT_TRUE(run.run(tcaseScript({"100"}, "@press OK\n"))) << run.outputUtf8();
        EXPECT_EQ(textOf(run, "100"), c.expected);
        EXPECT_EQ(storedMode(), c.storedAfter);
    }
}

// Choosing a button replaces even a stored value that names no mode.
TEST(TcaseProfile, AChosenButtonReplacesAnUnknownStoredValue) {
    storeMode(1000);
    ScriptRun run = oneTextRun();
    ASSERT_TRUE(run.run(tcaseScript({"100"}, "@check Sentence case\n@press OK\n"))) << run.outputUtf8();
    EXPECT_EQ(textOf(run, "100"), L"Hello world. again");
    EXPECT_EQ(storedMode(), 'S');
}

// The mode chosen in one run is the one the next run starts with, in a new drawing too.
TEST(TcaseProfile, TheChosenModeCarriesToTheNextRun) {
    storeMode('S');
    {
        ScriptRun first = oneTextRun();
        ASSERT_TRUE(first.run(tcaseScript({"100"}, "@check tOGGLE cASE\n@press OK\n"))) << first.outputUtf8();
        EXPECT_EQ(textOf(first, "100"), L"HELLO world. AGAIN");
    }
    ScriptRun second = oneTextRun();
    ASSERT_TRUE(second.run(tcaseScript({"100"}, "@press OK\n"))) << second.outputUtf8();
    EXPECT_EQ(textOf(second, "100"), L"HELLO world. AGAIN");
}

}  // namespace
}  // namespace korva
