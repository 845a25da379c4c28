// LINE, CIRCLE, ARC, PLINE and POINT run as scripts, checked on the entities
// they leave: points in the current UCS, arcs and bulges worked out by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "DrawTestSupport.h"
#include "editor/Coordinates.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::drawedit::expectAngleNear;
using test::drawedit::expectCleanAudit;
using test::drawedit::expectPointNear;
using test::drawedit::modelSpaceEntities;
using test::drawedit::Opened;

constexpr double kPi = 3.14159265358979323846;

TEST(LineCommand, DrawsSegmentsTakesBackUndoneOnesAndCloses) {
    ScriptRun run;
    ASSERT_TRUE(run.run("LINE\n0,0\n10,0\nU\n20,0\n20,10\nC\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 3u) << "the undone segment is gone";
    const KcGePoint3d expected[][2] = {{{0, 0, 0}, {20, 0, 0}}, {{20, 0, 0}, {20, 10, 0}}, {{20, 10, 0}, {0, 0, 0}}};
    for (size_t i = 0; i < ids.size(); ++i) {
        Opened<KcDbLine> line(ids[i]);
        ASSERT_TRUE(line);
        expectPointNear(line->startPoint(), expected[i][0], "start");
        expectPointNear(line->endPoint(), expected[i][1], "end");
    }
    expectCleanAudit(run);
}

TEST(LineCommand, TakesPointsInTheCurrentUcs) {
    ScriptRun run;
    // A UCS at (5,5) turned a quarter turn: its X axis is the world's Y axis.
    editor::setCurrentUcs(run.document(), {{5, 5, 0}, {0, 1, 0}, {-1, 0, 0}});
    ASSERT_TRUE(run.run("LINE\n0,0\n10,0\n@0,3\n\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 2u);
    Opened<KcDbLine> first(ids[0]), second(ids[1]);
    expectPointNear(first->startPoint(), {5, 5, 0}, "UCS origin");
    expectPointNear(first->endPoint(), {5, 15, 0}, "10 along the UCS X axis");
    expectPointNear(second->endPoint(), {2, 15, 0}, "3 along the UCS Y axis, relative");
}

TEST(CircleCommand, EveryWayOfGivingACircle) {
    const struct {
        const char* script;
        KcGePoint3d center;
        double radius;
    } cases[] = {
        {"CIRCLE\n5,5\n2\n", {5, 5, 0}, 2.0},
        {"CIRCLE\n5,5\nD\n6\n", {5, 5, 0}, 3.0},
        {"CIRCLE\n0,0\n3,4\n", {0, 0, 0}, 5.0},  // a point on the circle gives the radius
        {"CIRCLE\n2P\n0,0\n4,0\n", {2, 0, 0}, 2.0},
        {"CIRCLE\n3P\n1,0\n0,1\n-1,0\n", {0, 0, 0}, 1.0},
        {"CIRCLE\n3P\n0,0\n6,0\n3,3\n", {3, 0, 0}, 3.0},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        ASSERT_TRUE(run.run(c.script));
        const auto ids = modelSpaceEntities(run);
        ASSERT_EQ(ids.size(), 1u) << c.script;
        Opened<KcDbCircle> circle(ids[0]);
        ASSERT_TRUE(circle) << c.script;
        expectPointNear(circle->center(), c.center, c.script);
        EXPECT_NEAR(circle->radius(), c.radius, 1e-9) << c.script;
    }
}

TEST(CircleCommand, CollinearPointsMakeNoCircle) {
    ScriptRun run;
    ASSERT_TRUE(run.run("CIRCLE\n3P\n0,0\n1,1\n2,2\n"));
    EXPECT_TRUE(modelSpaceEntities(run).empty());
    EXPECT_TRUE(run.outputContains(L"Circle does not exist."));
}

TEST(ArcCommand, EveryWayOfGivingAnArc) {
    const struct {
        const char* script;
        KcGePoint3d center;
        double radius, start, end;  // counter-clockwise, radians
    } cases[] = {
        {"ARC\n1,0\n0,1\n-1,0\n", {0, 0, 0}, 1, 0, kPi},
        {"ARC\n-1,0\n0,1\n1,0\n", {0, 0, 0}, 1, 0, kPi},  // clockwise points: the same arc
        {"ARC\nC\n0,0\n2,0\n0,2\n", {0, 0, 0}, 2, 0, kPi / 2},
        {"ARC\nC\n0,0\n2,0\nL\n2\n", {0, 0, 0}, 2, 0, kPi / 3},  // a chord as long as the radius
        {"ARC\n2,0\nC\n0,0\nA\n90\n", {0, 0, 0}, 2, 0, kPi / 2},
        {"ARC\n2,0\nC\n0,0\nA\n-90\n", {0, 0, 0}, 2, 3 * kPi / 2, 0},
        {"ARC\n0,0\nE\n2,0\n1,0\n", {1, 0, 0}, 1, kPi, 0},
        {"ARC\n0,0\nE\n2,0\nA\n180\n", {1, 0, 0}, 1, kPi, 0},  // counter-clockwise: under the chord
        {"ARC\n0,0\nE\n2,0\nD\n90\n", {1, 0, 0}, 1, 0, kPi},   // leaving upwards: over it
        {"ARC\n1,0\nE\n-1,0\nR\n1\n", {0, 0, 0}, 1, 0, kPi},
        {"ARC\n0,0\nE\n2,0\nA\n90\n", {1, 1, 0}, std::sqrt(2.0), 5 * kPi / 4, 7 * kPi / 4},
        {"ARC\n0,0\nE\n2,0\nA\n270\n", {1, -1, 0}, std::sqrt(2.0), 3 * kPi / 4, kPi / 4},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        ASSERT_TRUE(run.run(c.script));
        const auto ids = modelSpaceEntities(run);
        ASSERT_EQ(ids.size(), 1u) << c.script;
        Opened<KcDbArc> arc(ids[0]);
        ASSERT_TRUE(arc) << c.script;
        expectPointNear(arc->center(), c.center, c.script);
        EXPECT_NEAR(arc->radius(), c.radius, 1e-9) << c.script;
        expectAngleNear(arc->startAngle(), c.start, c.script);
        expectAngleNear(arc->endAngle(), c.end, c.script);
    }
}

TEST(ArcCommand, AnArcInATurnedUcsStoresItsAnglesInTheWorldPlane) {
    ScriptRun run;
    editor::setCurrentUcs(run.document(), {{0, 0, 0}, {0, 1, 0}, {-1, 0, 0}});
    ASSERT_TRUE(run.run("ARC\nC\n0,0\n2,0\n0,2\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u);
    Opened<KcDbArc> arc(ids[0]);
    // From the UCS X axis (world north) to its Y axis (world west).
    expectAngleNear(arc->startAngle(), kPi / 2, "start");
    expectAngleNear(arc->endAngle(), kPi, "end");
}

struct ExpectedVertex {
    KcGePoint3d point;
    double bulge;
};

void expectPolyline(ScriptRun& run, const std::vector<ExpectedVertex>& expected, bool closed, const char* what) {
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u) << what;
    Opened<KcDbPolyline> polyline(ids[0]);
    ASSERT_TRUE(polyline) << what;
    ASSERT_EQ(polyline->numVerts(), expected.size()) << what;
    EXPECT_EQ(polyline->isClosed(), closed) << what;
    for (size_t i = 0; i < expected.size(); ++i) {
        KcGePoint3d point;
        double bulge = 0.0;
        polyline->getPointAt(static_cast<Kcad::UInt32>(i), point);
        polyline->getBulgeAt(static_cast<Kcad::UInt32>(i), bulge);
        expectPointNear(point, expected[i].point, what);
        EXPECT_NEAR(bulge, expected[i].bulge, 1e-9) << what << " vertex " << i;
    }
}

TEST(PlineCommand, LineAndArcSegmentsBecomeVerticesAndBulges) {
    const struct {
        const char* script;
        std::vector<ExpectedVertex> vertices;
        bool closed;
    } cases[] = {
        // A half circle tangent to the first segment (bulge 1), back to lines, closed.
        {"PLINE\n0,0\n10,0\nA\n10,10\nL\n0,10\nC\n", {{{0, 0, 0}, 0}, {{10, 0, 0}, 1}, {{10, 10, 0}, 0}, {{0, 10, 0}, 0}}, true},
        // Through a second point, clockwise: bulge -1.
        {"PLINE\n0,0\nA\nS\n1,1\n2,0\n\n", {{{0, 0, 0}, -1}, {{2, 0, 0}, 0}}, false},
        // A quarter circle about a centre: bulge tan(pi / 8).
        {"PLINE\n10,0\nA\nCE\n0,0\n0,10\n\n", {{{10, 0, 0}, std::tan(kPi / 8)}, {{0, 10, 0}, 0}}, false},
        // An included angle of 90 degrees to an end point.
        {"PLINE\n0,0\nA\nA\n90\n10,10\n\n", {{{0, 0, 0}, std::tan(kPi / 8)}, {{10, 10, 0}, 0}}, false},
        // Undo takes back the last point; Length goes on in the last direction.
        {"PLINE\n0,0\n5,0\n10,10\nU\nL\n5\n\n", {{{0, 0, 0}, 0}, {{5, 0, 0}, 0}, {{10, 0, 0}, 0}}, false},
        // Arc mode CLose: tangent to the last segment (heading north), back to the start.
        {"PLINE\n0,0\n10,0\n10,10\nA\nCL\n",
         {{{0, 0, 0}, 0}, {{10, 0, 0}, 0}, {{10, 10, 0}, std::tan(3 * kPi / 8)}},
         true},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        ASSERT_TRUE(run.run(c.script));
        expectPolyline(run, c.vertices, c.closed, c.script);
        expectCleanAudit(run);
    }
}

TEST(PlineCommand, WidthsApplyToTheNextSegmentAndItsEndWidthCarriesOn) {
    ScriptRun run;
    ASSERT_TRUE(run.run("PLINE\n0,0\nW\n0\n2\n10,0\n20,0\nH\n1.5\n\n30,0\n\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u);
    Opened<KcDbPolyline> polyline(ids[0]);
    ASSERT_EQ(polyline->numVerts(), 4u);
    const double expected[][2] = {{0, 2}, {2, 2}, {3, 3}};
    for (Kcad::UInt32 i = 0; i < 3; ++i) {
        double start = -1, end = -1;
        polyline->getWidthsAt(i, start, end);
        EXPECT_DOUBLE_EQ(start, expected[i][0]) << "segment " << i;
        EXPECT_DOUBLE_EQ(end, expected[i][1]) << "segment " << i;
    }
}

TEST(PlineCommand, OneWidthForEverySegmentIsTheConstantWidth) {
    ScriptRun run;
    ASSERT_TRUE(run.run("PLINE\n0,0\nW\n0.5\n\n10,0\n10,10\n\n"));
    Opened<KcDbPolyline> polyline(modelSpaceEntities(run).at(0));
    double width = -1.0;
    ASSERT_EQ(polyline->getConstantWidth(width), Kcad::eOk);
    EXPECT_DOUBLE_EQ(width, 0.5);
}

TEST(PlineCommand, APolylineInAnUprightUcsHasItsVerticesInThatPlane) {
    ScriptRun run;
    // The UCS of the world's XZ plane: its Z axis is the world's -Y.
    editor::setCurrentUcs(run.document(), {{0, 0, 0}, {1, 0, 0}, {0, 0, 1}});
    ASSERT_TRUE(run.run("PLINE\n0,0\n10,0\nA\n10,10\n\n"));
    expectPolyline(run, {{{0, 0, 0}, 0}, {{10, 0, 0}, 1}, {{10, 0, 10}, 0}}, false, "upright");
    Opened<KcDbPolyline> polyline(modelSpaceEntities(run).at(0));
    expectPointNear(KcGePoint3d::kOrigin + polyline->normal(), {0, -1, 0}, "normal");
}

TEST(PointCommand, PutsAPointWhereItIsGiven) {
    ScriptRun run;
    ASSERT_TRUE(run.run("POINT\n3,4,5\n"));
    Opened<KcDbPoint> point(modelSpaceEntities(run).at(0));
    ASSERT_TRUE(point);
    expectPointNear(point->position(), {3, 4, 5}, "position");
    EXPECT_TRUE(run.outputContains(L"Current point modes:  PDMODE=0  PDSIZE=0.0000"));
}

TEST(DrawCommands, NewEntitiesTakeTheCurrentLayer) {
    ScriptRun run;
    KcDbLayerTable* layers = nullptr;
    ASSERT_EQ(run.document().database().getLayerTable(layers, KcDb::kForWrite), Kcad::eOk);
    auto* layer = new KcDbLayerTableRecord();
    layer->setName(L"WALLS");
    ASSERT_EQ(layers->add(layer), Kcad::eOk);
    layer->close();
    layers->close();
    ASSERT_TRUE(run.run("CLAYER\nWALLS\nLINE\n0,0\n1,1\n\nCIRCLE\n0,0\n1\n"));
    for (KcDbObjectId id : modelSpaceEntities(run)) {
        Opened<KcDbEntity> entity(id);
        wchar_t* name = entity->layer();
        EXPECT_STREQ(name, L"WALLS");
        kcutDelString(name);
    }
}

}  // namespace
}  // namespace korva
