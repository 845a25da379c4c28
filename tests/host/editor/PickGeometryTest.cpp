// Picks on each kind of geometry: a point within the pick box of the real
// curve (or inside a filled shape) hits, a point just outside misses with
// ERRNO 7, and among several hits the nearest wins.
#include <gtest/gtest.h>

#include <cmath>

#include "SelectionScene.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

struct GeometryCase {
    const char* intent;
    const char* entity;  // "code value" lines of an entity with handle E1
    std::vector<KcGePoint3d> hits;
    std::vector<KcGePoint3d> misses;
};

// kcedNEntSelP at a given point: the handle picked, or "" on a miss (checking ERRNO 7).
std::string pickAt(const KcGePoint3d& p) {
    kcad_name entity;
    kcad_point point = {p.x, p.y, p.z};
    kcad_matrix xform;
    resbuf* containers = nullptr;
    const int status = kcedNEntSelP(nullptr, entity, point, 1, xform, &containers);
    db::releaseResbufs(containers);
    if (status != RTNORM) {
        EXPECT_EQ(status, RTERROR);
        EXPECT_EQ(editor::SystemVariables::instance().integer(L"ERRNO"), 7);
        return "";
    }
    return test::handleOf(entity);
}

const GeometryCase kCases[] = {
    {"line", "0 LINE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 10\n21 0\n31 0\n",
     {{5, 0.02, 0}, {0, 0, 0}}, {{5, 0.06, 0}, {10.06, 0, 0}}},
    {"circle", "0 CIRCLE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 5\n",
     {{5 * std::cos(1.0), 5 * std::sin(1.0), 0}, {0, -5.02, 0}}, {{0, 0, 0}, {0, 4.9, 0}}},
    {"circle in the OCS of (0,0,-1)",
     "0 CIRCLE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 2\n20 0\n30 0\n40 1\n210 0\n220 0\n230 -1\n",
     {{-1, 0, 0}, {-3, 0, 0}}, {{1, 0, 0}, {3, 0, 0}}},
    {"arc", "0 ARC\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 5\n100 AcDbArc\n50 0\n51 90\n",
     {{3.5355339, 3.5355339, 0}, {5, 0, 0}}, {{-5, 0, 0}, {0, -5, 0}}},
    {"bulged lwpolyline",
     "0 LWPOLYLINE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 2\n70 0\n10 0\n20 0\n42 1\n10 10\n20 0\n",
     {{5, -5, 0}, {5 + 5 * std::cos(-0.5), 5 * std::sin(-0.5), 0}}, {{5, 0, 0}, {5, 5, 0}}},
    {"closed lwpolyline",
     "0 LWPOLYLINE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 4\n70 1\n10 0\n20 0\n10 4\n20 0\n10 4\n20 4\n"
     "10 0\n20 4\n",
     {{0, 2, 0}, {4, 4, 0}}, {{2, 2, 0}}},
    {"2D polyline with a clockwise bulge",
     "0 POLYLINE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDb2dPolyline\n66 1\n10 0\n20 0\n30 0\n70 0\n0 VERTEX\n5 E2\n"
     "100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 0\n20 0\n30 0\n42 -1\n70 0\n0 VERTEX\n5 E3\n"
     "100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 10\n20 0\n30 0\n70 0\n0 SEQEND\n5 E4\n"
     "100 AcDbEntity\n8 0\n",
     {{5, 5, 0}}, {{5, -5, 0}, {5, 0, 0}}},
    {"ellipse",
     "0 ELLIPSE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbEllipse\n10 0\n20 0\n30 0\n11 6\n21 0\n31 0\n40 0.5\n41 0\n"
     "42 6.283185307179586\n",
     {{0, 3, 0}, {6, 0, 0}, {6 * std::cos(2.0), 3 * std::sin(2.0), 0}}, {{0, 2.9, 0}, {0, 0, 0}}},
    {"spline",
     "0 SPLINE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbSpline\n70 8\n71 3\n72 8\n73 4\n74 0\n40 0\n40 0\n40 0\n40 0\n"
     "40 1\n40 1\n40 1\n40 1\n10 0\n20 0\n30 0\n10 1\n20 2\n30 0\n10 3\n20 2\n30 0\n10 4\n20 0\n30 0\n",
     {{2, 1.5, 0}, {0, 0, 0}}, {{2, 1.3, 0}, {2, 2, 0}}},
    {"text by its box", "0 TEXT\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 0\n30 0\n40 2\n1 ABC\n100 AcDbText\n",
     {{3, 1, 0}, {5.9, 1.9, 0}}, {{3, 2.2, 0}, {6.2, 1, 0}}},
    {"mtext by its box",
     "0 MTEXT\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbMText\n10 0\n20 10\n30 0\n40 1\n41 10\n71 1\n1 Hello\n",
     {{5, 9.5, 0}}, {{5, 8, 0}, {11, 9.5, 0}}},
    {"solid inside",
     "0 SOLID\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbTrace\n10 0\n20 0\n30 0\n11 4\n21 0\n31 0\n12 0\n22 4\n32 0\n13 4\n"
     "23 4\n33 0\n",
     {{2, 2, 0}, {4, 2, 0}}, {{5, 5, 0}}},
    {"trace inside",
     "0 TRACE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbTrace\n10 0\n20 0\n30 0\n11 4\n21 0\n31 0\n12 0\n22 1\n32 0\n13 4\n"
     "23 1\n33 0\n",
     {{2, 0.5, 0}}, {{2, 1.5, 0}}},
    {"3D face inside",
     "0 3DFACE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbFace\n10 0\n20 0\n30 0\n11 4\n21 0\n31 0\n12 4\n22 4\n32 0\n13 0\n"
     "23 4\n33 0\n",
     {{2, 2, 0}}, {{4.5, 2, 0}}},
    {"hatch with an island",
     "0 HATCH\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbHatch\n10 0\n20 0\n30 0\n210 0\n220 0\n230 1\n2 SOLID\n70 1\n71 0\n"
     "91 2\n92 3\n72 0\n73 1\n93 4\n10 0\n20 0\n10 10\n20 0\n10 10\n20 10\n10 0\n20 10\n97 0\n92 2\n72 0\n73 1\n"
     "93 4\n10 4\n20 4\n10 6\n20 4\n10 6\n20 6\n10 4\n20 6\n97 0\n75 0\n76 1\n98 0\n",
     {{2, 2, 0}, {4, 5, 0}, {10, 5, 0}}, {{5, 5, 0}, {11, 5, 0}}},
    {"hatch bounded by line and arc edges",
     "0 HATCH\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbHatch\n10 0\n20 0\n30 0\n210 0\n220 0\n230 1\n2 SOLID\n70 1\n71 0\n"
     "91 1\n92 1\n93 4\n72 1\n10 0\n20 0\n11 10\n21 0\n72 2\n10 10\n20 5\n40 5\n50 270\n51 90\n73 1\n72 1\n10 10\n20 10\n"
     "11 0\n21 10\n72 1\n10 0\n20 10\n11 0\n21 0\n97 0\n75 0\n76 1\n98 0\n",
     {{12, 5, 0}, {15, 5, 0}}, {{15.2, 5, 0}, {-1, 5, 0}}},
    {"point", "0 POINT\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbPoint\n10 3\n20 3\n30 0\n", {{3.02, 3, 0}}, {{3.1, 3, 0}}},
    {"ray", "0 RAY\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbRay\n10 0\n20 0\n30 0\n11 0.7071067811865476\n21 0.7071067811865476\n31 0\n",
     {{100, 100.02, 0}}, {{-1, -1, 0}}},
    {"construction line",
     "0 XLINE\n5 E1\n100 AcDbEntity\n8 0\n100 AcDbXline\n10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n",
     {{-1000, 0.01, 0}, {1000, 0, 0}}, {{0, 1, 0}}},
};

TEST(PickGeometry, APickHitsTheRealGeometryWithinThePickBox) {
    test::UnitTextMeasurer measurer;
    for (const GeometryCase& c : kCases) {
        test::ScriptRun run = test::ScriptRun::fromDxfText(test::entitiesDrawing(c.entity));
        run.document().view(false).height = 9.0;  // a pick box of 9 * 3 / 768 units
        for (const KcGePoint3d& p : c.hits) EXPECT_EQ(pickAt(p), "E1") << c.intent << " at " << p.x << "," << p.y;
        for (const KcGePoint3d& p : c.misses) EXPECT_EQ(pickAt(p), "") << c.intent << " at " << p.x << "," << p.y;
    }
}

TEST(PickGeometry, TheNearestHitWinsAndTiesGoToTheEntityDrawnLast) {
    const std::string entities =
        "0 LINE\n5 D1\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 10\n21 0\n31 0\n"
        "0 LINE\n5 D2\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0.03\n30 0\n11 10\n21 0.03\n31 0\n"
        "0 LINE\n5 D3\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 5\n30 0\n11 10\n21 5\n31 0\n"
        "0 LINE\n5 D4\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 5\n30 0\n11 10\n21 5\n31 0\n";
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::entitiesDrawing(entities));
    run.document().view(false).height = 9.0;
    EXPECT_EQ(pickAt({5, 0.02, 0}), "D2");
    EXPECT_EQ(pickAt({5, 0.01, 0}), "D1");
    EXPECT_EQ(pickAt({5, 5, 0}), "D4") << "of two equal lines the later one";
}

TEST(PickGeometry, ThePickBoxFollowsPickboxAndTheViewSize) {
    const struct {
        int pickbox;
        double viewSize;
        bool hits;
    } cases[] = {{3, 9.0, false}, {10, 9.0, true}, {3, 30.0, true}, {0, 30.0, false}};
    for (const auto& c : cases) {
        test::ScriptRun run = test::sceneRun();
        editor::SystemVariables::instance().setValue(L"PICKBOX", editor::VarValue::ofInteger(editor::VarType::Short, c.pickbox));
        run.document().view(false).height = c.viewSize;
        // 0.1 from the line A1: inside a box of PICKBOX * VIEWSIZE / 768 only when that exceeds 0.1.
        EXPECT_EQ(pickAt({2, 0.1, 0}), c.hits ? "A1" : "") << "PICKBOX " << c.pickbox << " VIEWSIZE " << c.viewSize;
    }
}

}  // namespace
}  // namespace korva
