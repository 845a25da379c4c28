// LAYMCH and -LAYMCH through scripts on the plan drawing: the selected objects
// (those on locked layers left out) take the destination object's layer; a
// missed destination pick asks again, Enter ends without changes.
#include <gtest/gtest.h>

#include <string>

#include "LayerTestSupport.h"
#include "ModuleSession.h"

namespace korva::test::layers {
namespace {

constexpr const char* kWorkCurrent = "(setvar \"CLAYER\" \"WORK\")\n";

class LayMch : public testing::TestWithParam<const char*> {};

// Both names: the unlocked selected objects move to the destination's layer, and the count is reported.
TEST_P(LayMch, SelectedObjectsTakeTheDestinationLayer) {
    PlanHandles h;
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(&h)));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + GetParam() + "\n5,0\n5,100\n105,0\n\n50,50\n5,20\n"))
        << run.outputUtf8();
    EXPECT_EQ(layerOf(run, h.walls), "DOORS");
    EXPECT_EQ(layerOf(run, h.outer), "DOORS");
    EXPECT_EQ(layerOf(run, h.locked), "LOCKED");
    EXPECT_EQ(layerOf(run, h.doors), "DOORS");
    EXPECT_TRUE(run.outputContains(message(2251)));
    EXPECT_EQ(occurrences(run.output(), message(2250)), 2u);  // asked again after the miss
    EXPECT_TRUE(run.outputContains(message(2252, {L"2", L"DOORS"})));
    EXPECT_EQ(variable(L"CLAYER"), "WORK");
}

INSTANTIATE_TEST_SUITE_P(BothNames, LayMch, testing::Values("LAYMCH", "-LAYMCH"));

// Enter at the destination prompt ends the command with nothing changed.
TEST(LayMchEnd, EnterAtTheDestinationChangesNothing) {
    PlanHandles h;
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(&h)));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYMCH\n5,0\n\n\n"));
    EXPECT_EQ(layerOf(run, h.walls), "WALLS");
    EXPECT_EQ(occurrences(run.output(), message(2250)), 1u);
}

}  // namespace
}  // namespace korva::test::layers
