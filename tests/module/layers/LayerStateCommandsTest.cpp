// LAYON and LAYTHW on the plan drawing, and the frame every layer state command
// runs in: CMDECHO, BLIPMODE and EXPERT are 0 while it runs (the host's -LAYER
// does not echo) and back to their earlier values however it ends.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "LayerTestSupport.h"
#include "ModuleSession.h"

namespace korva::test::layers {
namespace {

// LAYON turns every layer on, the current one included, and says so.
TEST(LayOn, TurnsEveryLayerOn) {
    ScriptRun run = withExtendModule(
        ScriptRun::fromDxfText(planDrawing(nullptr, {{"WALLS", kOff}, {"WORK", kOff}, {"XR|PIPES", kOff}})));
    ASSERT_TRUE(run.run("(setvar \"CLAYER\" \"WORK\")\nLAYON\n")) << run.outputUtf8();
    for (const char* layer : {"WALLS", "WORK", "XR|PIPES", "DOORS"}) EXPECT_EQ(stateOf(run, layer), kOn) << layer;
    EXPECT_EQ(stateOf(run, "LOCKED"), kLocked);
    EXPECT_TRUE(run.outputContains(message(6197)));
}

// LAYTHW thaws every layer and says so; other states stay.
TEST(LayThw, ThawsEveryLayer) {
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(
        planDrawing(nullptr, {{"WALLS", kFrozen}, {"A-1", kFrozen}, {"DOORS", {true, true, false}}})));
    ASSERT_TRUE(run.run("LAYTHW\n")) << run.outputUtf8();
    EXPECT_EQ(stateOf(run, "WALLS"), kOn);
    EXPECT_EQ(stateOf(run, "A-1"), kOn);
    EXPECT_EQ(stateOf(run, "DOORS"), kOff);
    EXPECT_EQ(stateOf(run, "LOCKED"), kLocked);
    EXPECT_TRUE(run.outputContains(message(3563)));
}

struct FrameCase {
    const char* intent;
    const char* script;  // after CLAYER is WORK
};

void PrintTo(const FrameCase& c, std::ostream* out) { *out << c.intent; }

class LayerCommandFrame : public testing::TestWithParam<FrameCase> {};

// The three variables come back to their earlier values, and no host -LAYER prompt is echoed.
TEST_P(LayerCommandFrame, RestoresTheVariablesOnEveryPath) {
    const FrameCase& c = GetParam();
    for (const char* echo : {"0", "1"}) {
        ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing()));
        ASSERT_TRUE(run.run(std::string("(setvar \"CLAYER\" \"WORK\")\n(setvar \"CMDECHO\" ") + echo +
                            ")\n(setvar \"BLIPMODE\" 1)\n(setvar \"EXPERT\" 3)\n"));
        run.run(c.script);
        EXPECT_EQ(variable(L"CMDECHO"), echo) << c.intent;
        EXPECT_EQ(variable(L"BLIPMODE"), "1") << c.intent;
        EXPECT_EQ(variable(L"EXPERT"), "3") << c.intent;
        EXPECT_FALSE(run.outputContains(L"Enter an option")) << c.intent << " with CMDECHO " << echo;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Commands, LayerCommandFrame,
    testing::Values(FrameCase{"LAYOFF ended by Enter", "LAYOFF\n5,0\n\n"},
                    FrameCase{"LAYOFF cancelled at the current-layer question", "LAYOFF\n5,140\n"},
                    FrameCase{"LAYOFF cancelled at the options", "LAYOFF\nO\n"},
                    FrameCase{"LAYLCK ended by Enter", "LAYLCK\n5,0\n\n"},
                    FrameCase{"LAYLCK cancelled", "LAYLCK\n"},
                    FrameCase{"LAYULK", "LAYULK\n5,100\n"},
                    FrameCase{"LAYULK cancelled", "LAYULK\n50,50\n"},
                    FrameCase{"LAYON", "LAYON\n"},
                    FrameCase{"LAYTHW", "LAYTHW\n"},
                    FrameCase{"LAYCUR", "LAYCUR\n5,0\n\n"},
                    FrameCase{"LAYCUR stopped by a locked object", "LAYCUR\n5,100\n\n"},
                    FrameCase{"LAYCUR1 (sets CMDECHO to 1 inside)", "LAYCUR1\n5,0\n\n"},
                    FrameCase{"LAYCUR1 with nothing selected", "LAYCUR1\n\n"},
                    FrameCase{"LAYMCH", "LAYMCH\n5,0\n\n5,20\n"},
                    FrameCase{"-LAYMCH cancelled at the destination", "-LAYMCH\n5,0\n\n"}));

}  // namespace
}  // namespace korva::test::layers
