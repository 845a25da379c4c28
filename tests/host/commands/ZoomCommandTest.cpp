// ZOOM, ORTHO, REDRAW and REGEN through scripts: views checked on the
// document's view state, on VIEWCTR/VIEWSIZE and on the "*Active" viewport
// record, with expected views worked out from the entities' coordinates.
#include <gtest/gtest.h>

#include <string>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "db/RecordFields.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva {
namespace {

constexpr double kTolerance = 1e-9;
constexpr double kAspect = 1024.0 / 768.0;  // SCREENSIZE

// A LINE from (0,0) to (100,50) and a CIRCLE at (200,0) with radius 10: extents (0,-10)-(210,50).
const char* const kEntities =
    "  0\nLINE\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n100.0\n"
    " 21\n50.0\n 31\n0.0\n"
    "  0\nCIRCLE\n  5\nE2\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbCircle\n 10\n200.0\n 20\n0.0\n 30\n0.0\n"
    " 40\n10.0\n";

struct View {
    double x, y, height;
};

void expectView(test::ScriptRun& run, const View& expected, const std::string& what) {
    const editor::ViewState& view = run.document().view(run.document().cvport() == 1);
    EXPECT_NEAR(view.center.x, expected.x, kTolerance) << what;
    EXPECT_NEAR(view.center.y, expected.y, kTolerance) << what;
    EXPECT_NEAR(view.height, expected.height, kTolerance) << what;
}

const View kExtents{105.0, 20.0, 210.0 / kAspect};  // wider than high: the width decides

struct ZoomCase {
    const char* intent;
    const char* script;
    View expected;
};

class ZoomOptions : public testing::TestWithParam<ZoomCase> {};

// Each option gives the view worked out by hand from the entities and the limits (0,0)-(420,297).
TEST_P(ZoomOptions, GiveTheExpectedView) {
    const ZoomCase& c = GetParam();
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kEntities));
    ASSERT_TRUE(run.run(c.script)) << run.outputUtf8();
    expectView(run, c.expected, c.intent);
}

INSTANTIATE_TEST_SUITE_P(
    Views, ZoomOptions,
    testing::Values(ZoomCase{"extents", "ZOOM\nE\n", kExtents},
                    ZoomCase{"extents, global keyword", "_.zoom\n_e\n", kExtents},
                    ZoomCase{"window by a point answer", "ZOOM\n10,10\n50,20\n", {30.0, 15.0, 40.0 / kAspect}},
                    ZoomCase{"a tall window", "ZOOM\nW\n0,0\n10,60\n", {5.0, 30.0, 60.0}},
                    ZoomCase{"center and height", "ZOOM\nC\n50,40\n25\n", {50.0, 40.0, 25.0}},
                    ZoomCase{"2x halves the view", "ZOOM\nE\nZOOM\n2x\n", {105.0, 20.0, 105.0 / kAspect}},
                    ZoomCase{"Scale option with nX", "ZOOM\nE\nZOOM\nS\n0.5X\n", {105.0, 20.0, 420.0 / kAspect}},
                    ZoomCase{
                        "a plain factor is relative to the limits", "ZOOM\nC\n1,2\n5\nZOOM\n3\n", {1.0, 2.0, 99.0}},
                    ZoomCase{"all: limits and extents", "ZOOM\nA\n", {210.0, 143.5, 420.0 / kAspect}}));

// Previous steps back through the views of the space and says when there is none.
TEST(ZoomCommand, PreviousRestoresEarlierViews) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kEntities));
    const editor::ViewState start = run.document().view(false);
    ASSERT_TRUE(run.run("ZOOM\nE\nZOOM\nC\n0,0\n10\n"));
    ASSERT_EQ(kcedCommand(RTSTR, L"_.zoom", RTSTR, L"_P", RTNONE), RTNORM);
    expectView(run, kExtents, "one step back");
    ASSERT_TRUE(run.run("ZOOM\nP\n"));
    expectView(run, {start.center.x, start.center.y, start.height}, "two steps back");
    ASSERT_TRUE(run.run("ZOOM\nP\n"));
    EXPECT_TRUE(run.outputContains(L"No previous view saved."));
}

// The view is what VIEWCTR and VIEWSIZE report, and the model view reaches the "*Active" viewport.
TEST(ZoomCommand, ViewVariablesAndActiveViewportFollow) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kEntities));
    ASSERT_TRUE(run.run("ZOOM\nE\n"));
    editor::SystemVariables& variables = editor::SystemVariables::instance();
    EXPECT_NEAR(variables.real(L"VIEWSIZE"), kExtents.height, kTolerance);
    EXPECT_NEAR(variables.value(L"VIEWCTR")->point.x, kExtents.x, kTolerance);
    const db::ObjectRecord* active = run.drawing().tableRecord("VPORT", "*Active");
    ASSERT_TRUE(active);
    EXPECT_NEAR(db::fieldReal(*active, {}, 40), kExtents.height, kTolerance);
    EXPECT_NEAR(db::fieldPoint(*active, {}, 12).x, kExtents.x, kTolerance);
}

// Object zooms to the extents of the selection (2.6's "_.zoom" "_o" set "").
TEST(ZoomCommand, ObjectFitsTheSelection) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kEntities));
    ASSERT_TRUE(run.run("_.zoom\n_o\n(handent \"E2\")\n\n"));
    expectView(run, {200.0, 0.0, 20.0}, "the circle alone");
}

// Paper space has a view and a history of its own.
TEST(ZoomCommand, PaperSpaceViewIsSeparate) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kEntities));
    const editor::ViewState model = run.document().view(false);
    ASSERT_TRUE(run.run("TILEMODE\n0\nZOOM\nC\n100,100\n50\n"));
    expectView(run, {100.0, 100.0, 50.0}, "paper view");
    EXPECT_NEAR(run.document().view(false).height, model.height, kTolerance);
    EXPECT_TRUE(run.document().viewHistory(false).empty());
}

// ORTHO sets ORTHOMODE; REDRAW and REGEN run without changing anything.
TEST(DisplayCommands, OrthoRedrawRegen) {
    test::ScriptRun run;
    ASSERT_EQ(kcedCommand(RTSTR, L"_.ORTHO", RTSTR, L"_ON", RTNONE), RTNORM);
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 1);
    EXPECT_EQ(kcedCommand(RTSTR, L"_.REDRAW", RTNONE), RTNORM);
    EXPECT_EQ(kcedCommand(RTSTR, L"_.redraw", RTNONE), RTNORM);
    ASSERT_TRUE(run.run("REGEN\nORTHO\nOFF\n"));
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 0);
    EXPECT_TRUE(run.outputContains(L"Regenerating model."));
}

}  // namespace
}  // namespace korva
