// WIPEOUT as a script and through kcedCommand: the wipeout's groups (image
// frame, defaults, clip boundary in image coordinates), kcdbEntLast, a UCS,
// the Polyline and Frames options, and the independent reader's view of the
// boundary in world coordinates.
#include <gtest/gtest.h>

#include <vector>

#include "DrawTestSupport.h"
#include "editor/Coordinates.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::drawedit::askIndependentReader;
using test::drawedit::expectCleanAudit;
using test::drawedit::expectPointNear;
using test::drawedit::modelSpaceEntities;

struct WipeoutGroups {
    KcGePoint3d origin, u, v, size;
    std::vector<KcGePoint3d> boundary;
    std::vector<int> flags;  // 70, 280, 281, 282, 283, 71, 91 as found
};

WipeoutGroups readLastWipeout() {
    WipeoutGroups groups;
    kcad_name last = {0, 0};
    if (kcdbEntLast(last) != RTNORM) return groups;
    resbuf* list = kcdbEntGet(last);
    for (const resbuf* rb = list; rb; rb = rb->rbnext) {
        const KcGePoint3d p(rb->resval.rpoint[0], rb->resval.rpoint[1], rb->resval.rpoint[2]);
        switch (rb->restype) {
            case 0: EXPECT_STREQ(rb->resval.rstring, L"WIPEOUT"); break;
            case 10: groups.origin = p; break;
            case 11: groups.u = p; break;
            case 12: groups.v = p; break;
            case 13: groups.size = p; break;
            case 14: groups.boundary.push_back(p); break;
            case 70: case 280: case 281: case 282: case 283: case 71: groups.flags.push_back(rb->resval.rint); break;
            case 91: groups.flags.push_back(static_cast<int>(rb->resval.rlong)); break;
            default: break;
        }
    }
    kcutRelRb(list);
    return groups;
}

TEST(WipeoutCommand, ARectangleGivesTheSquareImageFrameAndItsBoundary) {
    ScriptRun run;
    ASSERT_TRUE(run.run("WIPEOUT\n0,0\n4,0\n4,2\n0,2\n0,0\n\n"));
    ASSERT_EQ(modelSpaceEntities(run).size(), 1u);
    const WipeoutGroups g = readLastWipeout();
    expectPointNear(g.origin, {0, 0, 0}, "lower left corner");
    expectPointNear(g.u, {4, 0, 0}, "u: the square's side along X");
    expectPointNear(g.v, {0, 4, 0}, "v: the square's side along Y");
    EXPECT_DOUBLE_EQ(g.size.x, 1.0);
    EXPECT_DOUBLE_EQ(g.size.y, 1.0);
    EXPECT_EQ(g.flags, (std::vector<int>{7, 1, 50, 50, 0, 2, 5}));
    // Image coordinates: x from -0.5 to 0.5 across the square, y downwards; the first point closes.
    const std::vector<KcGePoint3d> expected{{-0.5, 0.5, 0}, {0.5, 0.5, 0}, {0.5, 0, 0}, {-0.5, 0, 0}, {-0.5, 0.5, 0}};
    ASSERT_EQ(g.boundary.size(), expected.size()) << "the closing point given was dropped";
    for (size_t i = 0; i < expected.size(); ++i) expectPointNear(g.boundary[i], expected[i], "boundary");
    expectCleanAudit(run);
}

TEST(WipeoutCommand, TheIndependentReaderSeesTheOutlineInTheUcs) {
    ScriptRun run;
    editor::setCurrentUcs(run.document(), {{10, 10, 0}, {0, 1, 0}, {-1, 0, 0}});
    ASSERT_TRUE(run.run("WIPEOUT\n0,0\n2,0\n2,2\nC\n"));
    test::TempDir dir;
    const std::string answer = askIndependentReader(
        run, dir,
        "w = msp.query('WIPEOUT')[0]\n"
        "print(' '.join('%g,%g' % (round(p.x, 9), round(p.y, 9)) for p in w.boundary_path_wcs()))");
    EXPECT_EQ(answer, "10,10 10,12 8,12 10,10\n");
    EXPECT_TRUE(test::openWithIndependentReader({{dir.file("saved.dxf"), dir.file("saved.dxf")}}).empty());
}

TEST(WipeoutCommand, TheModulesScriptedFormMakesTheLastEntity) {
    ScriptRun run;
    const double p0[2] = {1, 1}, p1[2] = {3, 1}, p2[2] = {3, 2}, p3[2] = {1, 2};
    ASSERT_EQ(kcedCommand(RTSTR, L"_.WipeOut", RTPOINT, p0, RTPOINT, p1, RTPOINT, p2, RTPOINT, p3, RTPOINT, p0, RTSTR,
                          L"", RTNONE),
              RTNORM);
    const WipeoutGroups g = readLastWipeout();
    expectPointNear(g.origin, {1, 1, 0}, "origin");
    EXPECT_EQ(g.boundary.size(), 5u);
    expectPointNear(g.u, {2, 0, 0}, "u");
}

TEST(WipeoutCommand, APolylineGivesItsOutlineAndMayBeErased) {
    ScriptRun run;
    ASSERT_TRUE(run.run("PLINE\n0,0\n4,0\n4,4\n0,4\nC\nWIPEOUT\nP\n2,0\nY\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u) << "the polyline was erased";
    const WipeoutGroups g = readLastWipeout();
    EXPECT_EQ(g.boundary.size(), 5u);
    expectPointNear(g.v, {0, 4, 0}, "v");
}

TEST(WipeoutCommand, FramesTurnsWipeoutframeOff) {
    ScriptRun run;
    ASSERT_TRUE(run.run("WIPEOUT\nF\nOFF\n"));
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"WIPEOUTFRAME", 1), 0);
    EXPECT_TRUE(run.outputContains(L"Enter mode [ON/OFF] <ON>: "));
    EXPECT_TRUE(modelSpaceEntities(run).empty());
}

TEST(WipeoutCommand, TooFewPointsMakeNothing) {
    ScriptRun run;
    ASSERT_TRUE(run.run("WIPEOUT\n0,0\n4,0\n0,0\n\n"));
    EXPECT_TRUE(modelSpaceEntities(run).empty());
}

}  // namespace
}  // namespace korva
