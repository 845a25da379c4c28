// LAYCUR and LAYCUR1 through scripts on the plan drawing: objects moved onto
// the current layer (and the count), the stop at an object LAYCUR may not
// change, the pick-first set, and the current layer taken from the first
// selected object.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "LayerTestSupport.h"
#include "ModuleSession.h"

namespace korva::test::layers {
namespace {

constexpr const char* kWorkCurrent = "(setvar \"CLAYER\" \"WORK\")\n";

// The fixed text of a message between its first two conversions (what every result line shows).
std::wstring middleOf(unsigned id) {
    const std::wstring text = message(id);
    const size_t first = text.find(L'%');
    const size_t second = text.find(L'%', first + 2);
    return text.substr(first + 2, second - first - 2);
}

// Selected objects move onto the current layer; objects there already are not counted.
TEST(LayCur, MovesObjectsOntoTheCurrentLayer) {
    PlanHandles h;
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(&h)));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYCUR\n5,0\n5,140\n105,0\n\n")) << run.outputUtf8();
    EXPECT_EQ(layerOf(run, h.walls), "WORK");
    EXPECT_EQ(layerOf(run, h.work), "WORK");
    EXPECT_EQ(layerOf(run, h.outer), "WORK");
    EXPECT_EQ(layerOf(run, h.doors), "DOORS");
    EXPECT_TRUE(run.outputContains(message(2262)));
    EXPECT_TRUE(run.outputContains(message(2263, {L"2", L"WORK"})));
    EXPECT_EQ(variable(L"CLAYER"), "WORK");
}

// With nothing selected only the opening prompt is printed.
TEST(LayCur, NothingSelectedPrintsOnlyThePrompt) {
    PlanHandles h;
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(&h)));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYCUR\n\n"));
    EXPECT_TRUE(run.outputContains(message(2262)));
    EXPECT_FALSE(run.outputContains(middleOf(2263)));
    EXPECT_EQ(layerOf(run, h.walls), "WALLS");
}

// An object on a locked layer cannot be changed: the command stops there without its message.
TEST(LayCur, StopsAtTheFirstObjectItCannotChange) {
    PlanHandles h;
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(&h)));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYCUR\n5,0\n5,100\n5,20\n\n")) << run.outputUtf8();
    EXPECT_EQ(layerOf(run, h.walls), "WORK");
    EXPECT_EQ(layerOf(run, h.locked), "LOCKED");
    EXPECT_EQ(layerOf(run, h.doors), "DOORS");
    EXPECT_FALSE(run.outputContains(middleOf(2263)));
}

// A pick-first set is taken without asking.
TEST(LayCur, TakesThePickFirstSet) {
    PlanHandles h;
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(&h)));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) +
                        "(sssetfirst nil (ssget \"X\" '((8 . \"DOORS,BA\"))))\nLAYCUR\n"))
        << run.outputUtf8();
    EXPECT_EQ(layerOf(run, h.doors), "WORK");
    EXPECT_EQ(layerOf(run, h.tailBa), "WORK");
    EXPECT_EQ(layerOf(run, h.walls), "WALLS");
    EXPECT_TRUE(run.outputContains(message(2263, {L"2", L"WORK"})));
}

struct CurrentCase {
    const char* intent;
    const char* picks;
    const char* current;
};

void PrintTo(const CurrentCase& c, std::ostream* out) { *out << c.intent; }

class LayCur1 : public testing::TestWithParam<CurrentCase> {};

// The layer of the first selected object becomes current; nothing selected changes nothing.
TEST_P(LayCur1, MakesTheFirstObjectsLayerCurrent) {
    const CurrentCase& c = GetParam();
    ScriptRun run = withExtendModule(ScriptRun::fromDxfText(planDrawing(nullptr, {{"A-1", kFrozen}})));
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYCUR1\n" + c.picks)) << run.outputUtf8();
    EXPECT_EQ(variable(L"CLAYER"), c.current) << c.intent;
    EXPECT_TRUE(run.outputContains(message(2194))) << c.intent;
    EXPECT_EQ(stateOf(run, "A-1"), kFrozen) << c.intent;  // only the named layer is thawed
}

INSTANTIATE_TEST_SUITE_P(
    Picks, LayCur1,
    testing::Values(CurrentCase{"of many objects only the first counts", "5,20\n5,0\n5,60\n\n", "DOORS"},
                    CurrentCase{"a name with spaces", "5,120\n\n", "Wall Detail"},
                    CurrentCase{"a name with wildcard characters", "5,40\n\n", "A.1"},
                    CurrentCase{"a block reference's own layer", "105,0\n\n", "REFS_OUT"},
                    CurrentCase{"a locked layer may become current", "5,100\n\n", "LOCKED"},
                    CurrentCase{"nothing selected", "\n", "WORK"}));

}  // namespace
}  // namespace korva::test::layers
