// Interactive selection through real scripts: a probe command calls kcedSSGet
// with no mode (or ":$", ":L", ":S") and the script answers "Select objects:"
// with points, windows, polygons, fences and the other options.
#include <gtest/gtest.h>

#include "SelectionScene.h"
#include "kcdbfuncs.h"

namespace korva {
namespace {

using Handles = std::vector<std::string>;

struct ScriptCase {
    const char* intent;
    const char* script;  // what follows the probe command's name
    int status;
    Handles expected;
    const wchar_t* output = nullptr;  // a text the command line must show
};

void runCases(const ScriptCase* begin, const ScriptCase* end, const wchar_t* mode = nullptr, const void* arg1 = nullptr,
              const resbuf* filter = nullptr) {
    for (const ScriptCase* c = begin; c != end; ++c) {
        test::UnitTextMeasurer measurer;
        test::ScriptRun run = test::sceneRun();
        test::ProbeResult result;
        test::registerProbe(L"SELPROBE", 0, mode, arg1, nullptr, filter, result);
        run.run(std::string("SELPROBE\n") + c->script);
        EXPECT_EQ(result.calls, 1) << c->intent;
        EXPECT_EQ(result.status, c->status) << c->intent << "\n" << run.outputUtf8();
        EXPECT_EQ(result.handles, c->expected) << c->intent;
        if (c->output) {
            EXPECT_TRUE(run.outputContains(c->output)) << c->intent << "\n" << run.outputUtf8();
        }
    }
}

TEST(SelectionOptions, EachOptionSelectsWhatItCovers) {
    const ScriptCase cases[] = {
        {"a window around a line", "W\n-1,-1\n5,1\n\n", RTNORM, {"A1"}, L"1 found"},
        {"a window that cuts the line takes nothing", "W\n-1,-1\n3,1\n\n", RTERROR, {}, L"0 found"},
        {"a crossing window takes what it cuts", "C\n3,-0.5\n9.5,0.5\n\n", RTNORM, {"A1", "A2"}, L"2 found"},
        {"a window over the row takes what shows, the locked polyline included", "W\n-5,-5\n65,5\n\n", RTNORM,
         {"A1", "A2", "A3", "A5", "A8", "A9", "AA"}},
        {"a pick on a line", "1,0\n\n", RTNORM, {"A1"}, L"1 found"},
        {"a pick beside the line misses", "1,0.5\n\n", RTERROR, {}},
        {"a pick on an arc", "21.414213562,1.414213562\n\n", RTNORM, {"A3"}},
        {"a pick on the half circle of a bulge", "31,-1.7320508\n\n", RTNORM, {"A5"}},
        {"a pick inside a text box", "1,10.5\n\n", RTNORM, {"A4"}},
        {"a pick on a block's line takes the reference", "42,1\n\n", RTNORM, {"A8"}},
        {"a pick on an attribute takes its reference", "40.25,3.25\n\n", RTNORM, {"A8"}},
        {"a pick on a nested block's line takes the outer reference", "12,40\n\n", RTNORM, {"AC"}},
        {"entities on off or frozen layers and invisible ones cannot be picked", "2,20\n12,20\n72,0\n\n", RTERROR, {}},
        {"a window polygon", "WP\n-1,-1\n5,-1\n5,1\n-1,1\n\n\n", RTNORM, {"A1"}},
        {"a crossing polygon", "CP\n9.5,-3\n12,-3\n12,3\n\n\n", RTNORM, {"A2"}},
        {"a fence", "F\n2,-1\n2,1\n10,-2\n10,2\n\n\n", RTNORM, {"A1", "A2"}},
        {"a polygon point can be undone", "WP\n-1,-1\n5,-1\n99,99\nU\n5,1\n-1,1\n\n\n", RTNORM, {"A1"}},
        {"ALL skips only frozen layers", "ALL\n\n", RTNORM, {"A1", "A2", "A3", "A4", "A5", "A6", "A8", "A9", "AA", "AB", "AC"}},
        {"Last", "L\n\n", RTNORM, {"AC"}},
        {"removing", "W\n-5,-5\n65,5\nR\n1,0\n\n", RTNORM, {"A2", "A3", "A5", "A8", "A9", "AA"},
         L"1 found, 1 removed, 6 total"},
        {"adding again after removing", "1,0\n10,1\nR\n1,0\nA\n1,0\n\n", RTNORM, {"A2", "A1"}, L"1 found, 2 total"},
        {"undoing the last step", "1,0\n10,1\nU\n\n", RTNORM, {"A1"}},
        {"a second pick of the same entity is a duplicate", "1,0\n1,0\n\n", RTNORM, {"A1"}, L"1 found (1 duplicate), 1 total"},
        {"an entity name value", "(handent \"A9\")\n\n", RTNORM, {"A9"}},
        {"the name of an attribute adds its reference", "(handent \"A81\")\n\n", RTNORM, {"A8"}},
        {"an answer that is no option is refused and the dialogue goes on", "XYZ\n1,0\n\n", RTNORM, {"A1"},
         L"*Invalid selection*"},
        {"the end of the input cancels", "1,0\n", RTCAN, {}},
    };
    runCases(std::begin(cases), std::end(cases));
}

TEST(SelectionOptions, PicksThatFailTheFilterAreIgnored) {
    test::Filter filter;
    filter.text(0, L"CIRCLE");
    const ScriptCase cases[] = {
        {"the line fails the filter, the circle passes", "1,0\n10,1\n\n", RTNORM, {"A2"}, L"0 found"},
        {"a window keeps only circles", "W\n-5,-5\n65,5\n\n", RTNORM, {"A2", "A9"}},
    };
    runCases(std::begin(cases), std::end(cases), nullptr, nullptr, filter.list());
}

TEST(SelectionOptions, OwnPromptsShowWhileAddingAndRemoving) {
    const wchar_t* const prompts[2] = {L"\nPick texts: ", L"\nDrop texts: "};
    const ScriptCase cases[] = {
        {"both prompts", "1,0\n10,1\nR\n1,0\n\n", RTNORM, {"A2"}, L"Drop texts: "},
        {"the adding prompt", "1,0\n\n", RTNORM, {"A1"}, L"Pick texts: "},
    };
    runCases(std::begin(cases), std::end(cases), L":$", prompts);
}

TEST(SelectionOptions, LockedLayersAreRefusedWithColonL) {
    const ScriptCase cases[] = {
        {"a pick on the locked polyline", "31,-1.7320508\n\n", RTERROR, {}},
        {"a window leaves the locked polyline out", "W\n-5,-5\n65,5\n\n", RTNORM, {"A1", "A2", "A3", "A8", "A9", "AA"}},
    };
    runCases(std::begin(cases), std::end(cases), L":L");
}

TEST(SelectionOptions, SingleSelectionEndsAfterTheFirstFind) {
    const ScriptCase cases[] = {
        {"no Enter needed", "1,0\n", RTNORM, {"A1"}},
        {"a miss does not end it", "1,5\n10,1\n", RTNORM, {"A2"}},
    };
    runCases(std::begin(cases), std::end(cases), L":S");
}

TEST(SelectionOptions, PreviousTakesTheLastCompletedSelection) {
    test::ScriptRun run = test::sceneRun();
    test::ProbeResult first, second;
    test::registerProbe(L"SELPROBE", 0, nullptr, nullptr, nullptr, nullptr, first);
    test::registerProbe(L"SELPROBE2", 0, nullptr, nullptr, nullptr, nullptr, second);
    run.run("SELPROBE\nW\n-1,-1\n11,1\n\nSELPROBE2\nP\n(handent \"AA\")\n\n");
    EXPECT_EQ(first.handles, (Handles{"A1", "A2"}));
    EXPECT_EQ(second.handles, (Handles{"A1", "A2", "AA"}));
}

TEST(SelectionOptions, EveryStepReportsWhatItFound) {
    test::ScriptRun run = test::sceneRun();
    test::ProbeResult result;
    test::registerProbe(L"SELPROBE", 0, nullptr, nullptr, nullptr, nullptr, result);
    run.run("SELPROBE\nW\n-1,-1\n11,1\nC\n9,-1\n21,1.8\n\n");
    EXPECT_EQ(result.handles, (Handles{"A1", "A2", "A3"}));
    EXPECT_TRUE(run.outputContains(L"Select objects: W\nSpecify first corner: -1,-1\nSpecify opposite corner: 11,1\n2 found\n"))
        << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"2 found (1 duplicate), 3 total")) << run.outputUtf8();
}

TEST(SelectionOptions, ASelectionSetGivenToAScriptedCommandAddsItsMembers) {
    test::ScriptRun run = test::sceneRun();
    test::ProbeResult result;
    test::registerProbe(L"SELPROBE", 0, nullptr, nullptr, nullptr, nullptr, result);
    test::registerTestCommand(L"FEEDSET", 0, [] {
        test::Filter circles;
        circles.text(0, L"CIRCLE");
        kcad_name set;
        ASSERT_EQ(kcedSSGet(L"X", nullptr, nullptr, circles.list(), set), RTNORM);
        kcad_name line;
        ASSERT_EQ(kcdbHandEnt(L"A1", line), RTNORM);
        EXPECT_EQ(kcedCommand(RTSTR, L"SELPROBE", RTPICKS, set, RTENAME, line, RTSTR, L"", RTNONE), RTNORM);
        kcedSSFree(set);
    });
    run.run("FEEDSET\n");
    EXPECT_EQ(result.status, RTNORM);
    EXPECT_EQ(result.handles, (Handles{"A2", "A9", "A1"}));
}

}  // namespace
}  // namespace korva
