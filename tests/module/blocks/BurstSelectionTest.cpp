// What BURST works on: a pick-first set exactly as it is, or what the user
// selects, cut down to references that are not external references and not
// on locked layers, with the counts reported; and what it leaves of the
// system variables, including a cancelled run that keeps them silenced.
#include <gtest/gtest.h>

#include "BurstTestSupport.h"

namespace korva::test::blocks {
namespace {

constexpr uint32_t kNothingSelected = 3239;
constexpr uint32_t kIgnoredObjects = 2452;
constexpr uint32_t kReferencesToBurst = 2453;

// A line, a reference to an external-reference block and a reference to an ordinary block.
struct MixedDrawing {
    BlockDrawing drawing;
    std::string line;
    std::string xref;
    std::string reference;
};

MixedDrawing mixedDrawing() {
    MixedDrawing made;
    made.drawing.layer("LOCKED", 1, true);
    const std::string external = made.drawing.beginBlock("SITEPLAN", {}, 4);
    made.drawing.endBlock();
    const std::string block = made.drawing.beginBlock("DOOR");
    made.drawing.circle(block, {0, 0, 0}, 1);
    made.drawing.endBlock();
    made.line = made.drawing.line(BlockDrawing::modelSpace(), {0, 0, 0}, {5, 5, 0});
    made.xref = made.drawing.insert(BlockDrawing::modelSpace(), "SITEPLAN", {{20, 0, 0}});
    made.reference = made.drawing.insert(BlockDrawing::modelSpace(), "DOOR", {{40, 0, 0}});
    return made;
}

TEST(BurstSelection, ObjectsSelectedAtThePromptAreCutDownToOrdinaryReferences) {
    MixedDrawing made = mixedDrawing();
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({made.line, made.xref, made.reference})));
    EXPECT_TRUE(run.outputContains(messageWithCount(kIgnoredObjects, 2))) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(messageWithCount(kReferencesToBurst, 1))) << run.outputUtf8();
    EXPECT_TRUE(EntityList::ofHandle(made.line)) << "the line is dropped, not touched";
    EXPECT_TRUE(EntityList::ofHandle(made.xref)) << "the external reference is dropped, not touched";
    EXPECT_FALSE(EntityList::ofHandle(made.reference)) << "the ordinary reference is burst";
    EXPECT_EQ(topLevelEntities(L"CIRCLE").size(), 1u);
}

TEST(BurstSelection, APickFirstSetIsBurstAsItIsWithoutFiltering) {
    MixedDrawing made = mixedDrawing();
    ScriptRun run = burstRun(made.drawing);
    RestoreVariable pickFirst(L"PICKFIRST");
    ASSERT_TRUE(run.run("(setvar \"PICKFIRST\" 1)\n(sssetfirst nil (ssget \"X\"))\nBURST\n"));
    EXPECT_FALSE(run.outputContains(messageWithCount(kIgnoredObjects, 2))) << "nothing is dropped or counted";
    EXPECT_FALSE(run.outputContains(messageWithCount(kReferencesToBurst, 1)));
    EXPECT_TRUE(EntityList::ofHandle(made.line)) << "a line cannot be opened as a reference and stays";
    EXPECT_FALSE(EntityList::ofHandle(made.xref)) << "the external reference is burst too";
    EXPECT_FALSE(EntityList::ofHandle(made.reference));
    EXPECT_EQ(topLevelEntities(L"CIRCLE").size(), 1u);
    resbuf* pickFirstSet = nullptr;
    ASSERT_EQ(kcedSSGetFirst(nullptr, &pickFirstSet), RTNORM);
    EXPECT_EQ(pickFirstSet, nullptr) << "the pick-first set is cleared";
    if (pickFirstSet) kcutRelRb(pickFirstSet);
}

TEST(BurstSelection, ThePickFirstSetIsClearedEvenWhenNothingExplodes) {
    MixedDrawing made = mixedDrawing();
    ScriptRun run = burstRun(made.drawing);
    RestoreVariable pickFirst(L"PICKFIRST");
    ASSERT_TRUE(run.run("(setvar \"PICKFIRST\" 1)\n(sssetfirst nil (ssget \"X\" '((0 . \"LINE\"))))\nBURST\n"));
    EXPECT_TRUE(EntityList::ofHandle(made.line));
    resbuf* pickFirstSet = nullptr;
    ASSERT_EQ(kcedSSGetFirst(nullptr, &pickFirstSet), RTNORM);
    EXPECT_EQ(pickFirstSet, nullptr);
    if (pickFirstSet) kcutRelRb(pickFirstSet);
}

TEST(BurstSelection, WithPickfirstOffAStoredSetIsIgnoredAndTheUserIsAsked) {
    MixedDrawing made = mixedDrawing();
    ScriptRun run = burstRun(made.drawing);
    RestoreVariable pickFirst(L"PICKFIRST");
    ASSERT_TRUE(run.run("(setvar \"PICKFIRST\" 0)\n(sssetfirst nil (ssget \"X\"))\n" + burstOf({made.reference})));
    EXPECT_TRUE(EntityList::ofHandle(made.xref)) << "the stored set was not taken";
    EXPECT_FALSE(EntityList::ofHandle(made.reference)) << "the object picked at the prompt is burst";
    EXPECT_TRUE(run.outputContains(messageWithCount(kReferencesToBurst, 1)));
}

TEST(BurstSelection, AReferenceOnALockedLayerIsDroppedBeforeAnythingElse) {
    MixedDrawing made = mixedDrawing();
    const std::string locked =
        made.drawing.insert(BlockDrawing::modelSpace(), "DOOR", {{60, 0, 0}, {1, 1, 1}, 0, Look{"LOCKED", {}}});
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({locked, made.reference})));
    EXPECT_TRUE(EntityList::ofHandle(locked)) << "the locked reference stays";
    EXPECT_FALSE(EntityList::ofHandle(made.reference));
    EXPECT_TRUE(run.outputContains(messageWithCount(kReferencesToBurst, 1))) << run.outputUtf8();
    EXPECT_FALSE(run.outputContains(messageWithCount(kIgnoredObjects, 1))) << "locked members are not counted";
}

TEST(BurstSelection, NothingLeftAfterTheLockedLayerFilterIsReported) {
    MixedDrawing made = mixedDrawing();
    const std::string locked =
        made.drawing.insert(BlockDrawing::modelSpace(), "DOOR", {{60, 0, 0}, {1, 1, 1}, 0, Look{"LOCKED", {}}});
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({locked})));
    EXPECT_TRUE(run.outputContains(extendText(kNothingSelected))) << run.outputUtf8();
    EXPECT_TRUE(EntityList::ofHandle(locked));
}

// CMDECHO, BLIPMODE and EXPERT are set to 0 while BURST runs and come back afterwards, except
// when the selection is cancelled: then they deliberately stay 0.
struct VariablesCase {
    const char* name;
    const char* answers;  // after "BURST\n"
    int expectedAfter;    // the value each variable has afterwards (they start at 1)
};
void PrintTo(const VariablesCase& c, std::ostream* out) { *out << c.name; }

class BurstVariablesAfterwards : public ::testing::TestWithParam<VariablesCase> {};

TEST_P(BurstVariablesAfterwards, VariablesComeBackExceptAfterACancel) {
    const VariablesCase& c = GetParam();
    MixedDrawing made = mixedDrawing();
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run("(setvar \"CMDECHO\" 1)\n(setvar \"BLIPMODE\" 1)\n(setvar \"EXPERT\" 1)\n"));
    std::string script = std::string("BURST\n") + c.answers;
    run.run(script);  // a script ending inside the selection cancels it
    EXPECT_EQ(integerVariable(L"CMDECHO"), c.expectedAfter);
    EXPECT_EQ(integerVariable(L"BLIPMODE"), c.expectedAfter);
    EXPECT_EQ(integerVariable(L"EXPERT"), c.expectedAfter);
}

INSTANTIATE_TEST_SUITE_P(Cases, BurstVariablesAfterwards,
                         ::testing::Values(VariablesCase{"Burst", "ALL\n\n", 1},
                                           VariablesCase{"EmptySelection", "\n", 1},
                                           VariablesCase{"Cancelled", "", 0}),
                         CaseName());

TEST(BurstSelection, ACancelledSelectionChangesNothingInTheDrawing) {
    MixedDrawing made = mixedDrawing();
    ScriptRun run = burstRun(made.drawing);
    run.run("BURST\n");
    EXPECT_TRUE(EntityList::ofHandle(made.reference));
    EXPECT_TRUE(topLevelEntities(L"CIRCLE").empty());
    EXPECT_FALSE(run.outputContains(extendText(kNothingSelected)));
}

TEST(BurstSelection, AnEmptySelectionIsReportedAsNothingSelected) {
    MixedDrawing made = mixedDrawing();
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run("BURST\n\n"));
    EXPECT_TRUE(run.outputContains(extendText(kNothingSelected))) << run.outputUtf8();
    EXPECT_TRUE(EntityList::ofHandle(made.reference));
}

}  // namespace
}  // namespace korva::test::blocks
