// LAYLCK and LAYULK through scripts on the plan drawing: the layers locked or
// unlocked by picks, the messages and LAYLCK's closing summary (with its plain
// substring test), misses, and the refresh notices posted to the host frame.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "LayerTestSupport.h"
#include "ModuleSession.h"
#include "db/Utf8.h"
#include "runtime/dialogs/HostFrame.h"

namespace korva::test::layers {
namespace {

constexpr const char* kWorkCurrent = "(setvar \"CLAYER\" \"WORK\")\n";

size_t layerControlRefreshes() {
    size_t count = 0;
    for (const runtime::PostedMessage& posted : runtime::postedFrameMessages()) {
        if (posted.message == 273 && posted.wParam == 10683 && posted.lParam == 0) ++count;
    }
    return count;
}

// The summary LAYLCK closes with: the heading and the names it lists.
std::wstring summary(std::initializer_list<const wchar_t*> names) {
    std::wstring text = message(2245);
    for (const wchar_t* name : names) text += std::wstring(L" ") + name;
    return text;
}

struct LockCase {
    const char* intent;
    const char* picks;
    std::vector<const char*> locked;
    std::wstring closing;  // the summary, or empty when none is printed
    size_t refreshes;
};

void PrintTo(const LockCase& c, std::ostream* out) { *out << c.intent; }

class LayLck : public testing::TestWithParam<LockCase> {};

// Each pick locks its layer and reports it; the summary lists names not already in it.
TEST_P(LayLck, LocksPickedLayersAndSummarises) {
    const LockCase& c = GetParam();
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing()));
    runtime::clearPostedFrameMessages();
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYLCK\n" + c.picks)) << run.outputUtf8();
    for (const char* layer : c.locked) {
        EXPECT_TRUE(stateOf(run, layer).locked) << c.intent << ": " << layer;
        EXPECT_TRUE(run.outputContains(message(2244) + L" " + db::utf8ToWide(layer))) << c.intent << ": " << layer;
    }
    if (c.closing.empty()) {
        EXPECT_FALSE(run.outputContains(message(2245))) << c.intent;
    } else {
        EXPECT_TRUE(run.outputContains(c.closing + L"\n")) << c.intent << "\n" << run.outputUtf8();
    }
    EXPECT_EQ(layerControlRefreshes(), c.refreshes) << c.intent;
}

INSTANTIATE_TEST_SUITE_P(
    Picks, LayLck,
    testing::Values(
        LockCase{"two layers, one picked twice", "5,0\n5,20\n5,0\n\n", {"WALLS", "DOORS"},
                 summary({L"WALLS", L"DOORS"}), 3},
        LockCase{"A after BA is not listed again (plain substring test)", "5,60\n5,80\n\n", {"BA", "A"},
                 summary({L"BA"}), 2},
        LockCase{"BA after A is listed", "5,80\n5,60\n\n", {"A", "BA"}, summary({L"A", L"BA"}), 2},
        LockCase{"a pick inside a block locks the reference's layer", "105,0\n\n", {"REFS_OUT"},
                 summary({L"REFS_OUT"}), 1},
        LockCase{"the current layer is locked like any other", "5,140\n\n", {"WORK"}, summary({L"WORK"}), 1},
        LockCase{"a layer that is locked already can be picked", "5,100\n\n", {"LOCKED"}, summary({L"LOCKED"}), 1},
        LockCase{"a name with spaces", "5,120\n\n", {"Wall Detail"}, summary({L"Wall Detail"}), 1},
        LockCase{"cancel after a lock still closes with the summary", "5,0\n", {"WALLS"}, summary({L"WALLS"}), 1},
        LockCase{"Enter at once: no summary", "\n", {}, L"", 0}));

// A miss prints "nothing selected" and asks again; the other layers stay unlocked.
TEST(LayLckMiss, MissPrintsAndAsksAgain) {
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing()));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYLCK\n50,50\n5,20\n\n"));
    EXPECT_EQ(occurrences(run.output(), message(2249)), 1u);
    EXPECT_EQ(occurrences(run.output(), message(2246)), 3u);
    EXPECT_EQ(stateOf(run, "DOORS"), kLocked);
    EXPECT_EQ(stateOf(run, "WALLS"), kOn);
}

// LAYULK unlocks one layer and ends: the other locked layer stays locked and the prompt comes once.
TEST(LayUlk, UnlocksOneLayerAndEnds) {
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(nullptr, {{"WALLS", kLocked}})));
    runtime::clearPostedFrameMessages();
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYULK\n5,100\n")) << run.outputUtf8();
    EXPECT_EQ(stateOf(run, "LOCKED"), kOn);
    EXPECT_EQ(stateOf(run, "WALLS"), kLocked);
    EXPECT_EQ(occurrences(run.output(), message(2247)), 1u);
    EXPECT_TRUE(run.outputContains(message(2248, {L"LOCKED"})));
    EXPECT_EQ(layerControlRefreshes(), 1u);
}

// A miss and Enter both print "nothing selected" and ask again; cancel ends without changes.
TEST(LayUlk, MissAndEnterAskAgainCancelEnds) {
    {
        // One script run at a time: a new run closes the documents of the others.
        ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing()));
        ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYULK\n50,50\n\n5,100\n"));
        EXPECT_EQ(occurrences(run.output(), message(2249)), 2u);
        EXPECT_EQ(stateOf(run, "LOCKED"), kOn);
    }
    ScriptRun cancelled = withExtendModule(ScriptRun::fromDxfText(planDrawing()));
    runtime::clearPostedFrameMessages();
    ASSERT_TRUE(cancelled.run(std::string(kWorkCurrent) + "LAYULK\n"));
    EXPECT_EQ(stateOf(cancelled, "LOCKED"), kLocked);
    EXPECT_FALSE(cancelled.outputContains(message(2249)));
    EXPECT_EQ(layerControlRefreshes(), 0u);
}

}  // namespace
}  // namespace korva::test::layers
