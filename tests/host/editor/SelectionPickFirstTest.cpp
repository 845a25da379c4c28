// The pick-first set: kcedSSSetFirst and kcedSSGetFirst, the "I" mode, a
// command flagged to use the pick-first set taking it without a prompt, and
// PICKFIRST = 0 meaning there is none.
#include <gtest/gtest.h>

#include "SelectionScene.h"
#include "editor/CommandStack.h"
#include "kcdbfuncs.h"

namespace korva {
namespace {

using Handles = std::vector<std::string>;

// Makes {A1, A2} the pick-first set.
void setPickFirst() {
    kcad_name a1, a2, set, ignored;
    kcdbHandEnt(L"A1", a1);
    kcdbHandEnt(L"A2", a2);
    ASSERT_EQ(kcedSSAdd(a1, nullptr, set), RTNORM);
    kcedSSAdd(a2, set, ignored);
    ASSERT_EQ(kcedSSSetFirst(set, nullptr), RTNORM);
    kcedSSFree(set);
}

Handles pickFirstHandles() {
    resbuf* grips = nullptr;
    resbuf* first = nullptr;
    EXPECT_EQ(kcedSSGetFirst(&grips, &first), RTNORM);
    Handles out;
    if (first) {
        EXPECT_EQ(first->restype, RTPICKS);
        out = test::memberHandles(first->resval.rlname);
        kcedSSFree(first->resval.rlname);
    }
    db::releaseResbufs(first);
    db::releaseResbufs(grips);
    return out;
}

TEST(SelectionPickFirst, SetFirstAndGetFirstRoundTrip) {
    test::ScriptRun run = test::sceneRun();
    setPickFirst();
    EXPECT_EQ(pickFirstHandles(), (Handles{"A1", "A2"}));
    EXPECT_EQ(kcedSSSetFirst(nullptr, nullptr), RTNORM) << "null clears it";
    EXPECT_EQ(pickFirstHandles(), Handles{});
}

TEST(SelectionPickFirst, AFlaggedCommandTakesTheFilteredSetWithoutAsking) {
    const struct {
        const char* intent;
        const char* script;
        int32_t flags;
        bool circlesOnly;
        int status;
        Handles expected;
        bool prompted;
    } cases[] = {
        {"flag 2 takes the set", "PROBE\n", editor::kCmdUsePickSet, false, RTNORM, {"A1", "A2"}, false},
        {"the filter applies to it", "PROBE\n", editor::kCmdUsePickSet, true, RTNORM, {"A2"}, false},
        {"without the flag the command prompts", "PROBE\n(handent \"A9\")\n\n", 0, false, RTNORM, {"A9"}, true},
        {"PICKFIRST 0: there is no set", "PICKFIRST\n0\nPROBE\n(handent \"A9\")\n\n", editor::kCmdUsePickSet, false,
         RTNORM, {"A9"}, true},
    };
    for (const auto& c : cases) {
        test::ScriptRun run = test::sceneRun();
        test::Filter circles;
        circles.text(0, L"CIRCLE");
        test::ProbeResult result;
        test::registerProbe(L"PROBE", c.flags, nullptr, nullptr, nullptr, c.circlesOnly ? circles.list() : nullptr, result);
        setPickFirst();
        run.run(c.script);
        EXPECT_EQ(result.status, c.status) << c.intent;
        EXPECT_EQ(result.handles, c.expected) << c.intent;
        EXPECT_EQ(run.outputContains(L"Select objects:"), c.prompted) << c.intent;
    }
}

TEST(SelectionPickFirst, ImpliedModeFiltersTheSetAndFailsWithoutOne) {
    test::ScriptRun run = test::sceneRun();
    test::ProbeResult result;
    test::registerProbe(L"PROBEI", editor::kCmdUsePickSet | editor::kCmdRedraw, L"I", nullptr, nullptr, nullptr, result);
    run.run("PROBEI\n");
    EXPECT_EQ(result.status, RTERROR) << "no pick-first set";
    setPickFirst();
    run.run("PROBEI\n");
    EXPECT_EQ(result.status, RTNORM);
    EXPECT_EQ(result.handles, (Handles{"A1", "A2"}));
    EXPECT_EQ(pickFirstHandles(), (Handles{"A1", "A2"})) << "\"I\" leaves the set in place";
    run.run("PICKFIRST\n0\nPROBEI\n");
    EXPECT_EQ(result.status, RTERROR) << "no pick-first set exists while PICKFIRST is 0";
}

TEST(SelectionPickFirst, ACommandThatTakesTheSetClearsItUnlessItRedraws) {
    const struct {
        int32_t flags;
        Handles after;
    } cases[] = {{editor::kCmdUsePickSet, {}}, {editor::kCmdUsePickSet | editor::kCmdRedraw, {"A1", "A2"}}};
    for (const auto& c : cases) {
        test::ScriptRun run = test::sceneRun();
        test::ProbeResult result;
        test::registerProbe(L"PROBE", c.flags, nullptr, nullptr, nullptr, nullptr, result);
        setPickFirst();
        run.run("PROBE\n");
        EXPECT_EQ(result.handles, (Handles{"A1", "A2"}));
        EXPECT_EQ(pickFirstHandles(), c.after) << "flags " << c.flags;
    }
}

}  // namespace
}  // namespace korva
