// kcedTrans over every form of coordinate-system code, in a drawing whose UCS
// is not the world (set through the header variables) and whose view is
// twisted: known answers worked out by hand, round trips through every pair of
// systems, vectors, and refused codes.
#include <gtest/gtest.h>

#include <cmath>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace korva {
namespace {

constexpr double kPi = 3.14159265358979323846;

// A CIRCLE whose extrusion points down, and a LINE (no 210 group).
constexpr const char* kEntities =
    "  0\nCIRCLE\n  5\nC1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbCircle\n 10\n1.0\n 20\n2.0\n 30\n3.0\n 40\n1.0\n"
    "210\n0.0\n220\n0.0\n230\n-1.0\n"
    "  0\nLINE\n  5\nC2\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
    " 11\n1.0\n 21\n0.0\n 31\n0.0\n";

// The current UCS: origin (10, 20, 5), x along world y, y along world -x (z stays up).
// The model view looks down at target (5, 5, 0) twisted by 30 degrees; paper space at (100, 0, 0).
class Trans : public ::testing::Test {
protected:
    Trans() : run_(test::ScriptRun::fromDxfText(test::drawingText(kEntities))) {
        auto& header = run_.drawing().header;
        header.setPoint("$UCSORG", 10, {10, 20, 5});
        header.setPoint("$UCSXDIR", 10, {0, 1, 0});
        header.setPoint("$UCSYDIR", 10, {-1, 0, 0});
        editor::ViewState& model = run_.document().view(false);
        model.target = {5, 5, 0};
        model.direction = {0, 0, 1};
        model.twist = kPi / 6;
        run_.document().view(true).target = {100, 0, 0};
        kcdbHandEnt(L"C1", circle_);
        kcdbHandEnt(L"C2", line_);
    }

    resbuf code(short number) const {
        resbuf rb{};
        rb.restype = RTSHORT;
        rb.resval.rint = number;
        return rb;
    }
    resbuf extrusion(double x, double y, double z) const {
        resbuf rb{};
        rb.restype = RT3DPOINT;
        rb.resval.rpoint[0] = x;
        rb.resval.rpoint[1] = y;
        rb.resval.rpoint[2] = z;
        return rb;
    }
    resbuf entity(const kcad_name name) const {
        resbuf rb{};
        rb.restype = RTENAME;
        rb.resval.rlname[0] = name[0];
        rb.resval.rlname[1] = name[1];
        return rb;
    }

    KcGePoint3d trans(const KcGePoint3d& p, const resbuf& from, const resbuf& to, bool vector = false) {
        kcad_point in = {p.x, p.y, p.z}, out = {0, 0, 0};
        EXPECT_EQ(kcedTrans(in, &from, &to, vector ? 1 : 0, out), RTNORM);
        return {out[0], out[1], out[2]};
    }

    test::ScriptRun run_;
    kcad_name circle_ = {0, 0};
    kcad_name line_ = {0, 0};
};

void expectNear(const KcGePoint3d& actual, const KcGePoint3d& expected, const std::string& what) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-9) << what;
    EXPECT_NEAR(actual.z, expected.z, 1e-9) << what;
}

// Answers worked out by hand from the frames' axes.
TEST_F(Trans, KnownAnswers) {
    const double c = std::cos(kPi / 6), s = std::sin(kPi / 6);
    const double n = 1 / std::sqrt(2.0), r = 1 / std::sqrt(3.0);
    const struct {
        const char* what;
        KcGePoint3d point;
        resbuf from, to;
        bool vector;
        KcGePoint3d expected;
    } cases[] = {
        {"UCS to world", {0, 2, 3}, code(1), code(0), false, {8, 20, 8}},
        {"world to UCS", {10, 21, 5}, code(0), code(1), false, {1, 0, 0}},
        {"UCS vector to world", {1, 0, 0}, code(1), code(0), true, {0, 1, 0}},
        {"OCS of -z to world", {1, 2, 3}, extrusion(0, 0, -1), code(0), false, {-1, 2, -3}},
        {"OCS of a long -z to world", {1, 2, 3}, extrusion(0, 0, -5), code(0), false, {-1, 2, -3}},
        {"OCS of x to world", {1, 2, 3}, extrusion(1, 0, 0), code(0), false, {3, 1, 2}},
        {"world to OCS of x", {3, 1, 2}, code(0), extrusion(1, 0, 0), false, {1, 2, 3}},
        {"circle's OCS to world", {1, 2, 3}, entity(circle_), code(0), false, {-1, 2, -3}},
        {"line's system is the world", {1, 2, 3}, entity(line_), code(0), false, {1, 2, 3}},
        {"DCS to world (twisted)", {1, 0, 0}, code(2), code(0), false, {5 + c, 5 - s, 0}},
        {"world to DCS (twisted)", {5, 6, 0}, code(0), code(2), false, {-s, c, 0}},
        {"DCS vector ignores the target", {0, 1, 0}, code(2), code(0), true, {s, c, 0}},
        {"PSDCS to world", {1, 2, 0}, code(3), code(0), false, {101, 2, 0}},
        {"UCS to OCS of -z", {0, 0, 0}, code(1), extrusion(0, 0, -1), false, {-10, 20, -5}},
    };
    for (const auto& t : cases) expectNear(trans(t.point, t.from, t.to, t.vector), t.expected, t.what);

    // A view direction off the z axis: the display x axis follows the arbitrary-axis rule.
    editor::ViewState& model = run_.document().view(false);
    model.direction = {1, 1, 1};
    model.twist = 0;
    expectNear(trans({1, 0, 0}, code(2), code(0)), {5 - n, 5 + n, 0}, "DCS x axis of an oblique view");
    expectNear(trans({0, 0, 1}, code(2), code(0), true), {r, r, r}, "DCS z is VIEWDIR");
}

// Every pair of systems: there and back again is where it started, for points and vectors.
TEST_F(Trans, EveryPairRoundTrips) {
    const resbuf systems[] = {code(0), code(1), code(2), code(3), extrusion(0.3, -0.2, 0.9), extrusion(0, 0, -1),
                              extrusion(0.01, 0.001, 1), entity(circle_), entity(line_)};
    const KcGePoint3d start(3.5, -7.25, 2.0);
    for (const resbuf& from : systems) {
        for (const resbuf& to : systems) {
            for (bool vector : {false, true}) {
                const KcGePoint3d there = trans(start, from, to, vector);
                expectNear(trans(there, to, from, vector), start,
                           "from " + std::to_string(from.restype) + " to " + std::to_string(to.restype));
            }
        }
    }
}

// A chain WCS -> UCS -> OCS -> DCS -> PSDCS -> entity OCS -> WCS ends at the start.
TEST_F(Trans, ChainThroughEverySystemReturns) {
    const resbuf chain[] = {code(0), code(1), extrusion(0.3, -0.2, 0.9), code(2), code(3), entity(circle_), code(0)};
    const KcGePoint3d start(-4, 9, 1.5);
    KcGePoint3d p = start;
    for (size_t i = 0; i + 1 < std::size(chain); ++i) p = trans(p, chain[i], chain[i + 1]);
    expectNear(p, start, "chain");
    // Transforms change the point on the way: the chain is not the identity throughout.
    const KcGePoint3d inUcs = trans(start, chain[0], chain[1]);
    EXPECT_GT(inUcs.distanceTo(start), 1.0);
}

// Paper space has its own UCS (PUCS... variables); code 1 follows the current space.
TEST_F(Trans, UcsFollowsTheCurrentSpace) {
    auto& header = run_.drawing().header;
    header.setPoint("$PUCSORG", 10, {1, 1, 0});
    header.setPoint("$PUCSXDIR", 10, {1, 0, 0});
    header.setPoint("$PUCSYDIR", 10, {0, 1, 0});
    ASSERT_EQ(editor::SystemVariables::instance().setValue(L"TILEMODE", editor::VarValue::ofInteger(editor::VarType::Short, 0)), RTNORM);
    expectNear(trans({1, 2, 0}, code(1), code(0)), {2, 3, 0}, "paper-space UCS");
    ASSERT_EQ(editor::SystemVariables::instance().setValue(L"TILEMODE", editor::VarValue::ofInteger(editor::VarType::Short, 1)), RTNORM);
    expectNear(trans({1, 2, 0}, code(1), code(0)), {8, 21, 5}, "model-space UCS");
}

// Codes that name no system are refused, and the result is left as it was.
TEST_F(Trans, BadCodesAreRefused) {
    kcad_name unknown = {12345, 67890};
    resbuf text{};
    text.restype = RTSTR;
    const resbuf bad[] = {code(4), code(-1), extrusion(0, 0, 0), entity(unknown), text};
    const resbuf world = code(0);
    kcad_point in = {1, 2, 3};
    for (const resbuf& b : bad) {
        kcad_point out = {7, 7, 7};
        EXPECT_EQ(kcedTrans(in, &b, &world, 0, out), RTERROR) << b.restype;
        EXPECT_EQ(kcedTrans(in, &world, &b, 0, out), RTERROR) << b.restype;
        EXPECT_EQ(out[0], 7);
    }
    kcad_point out = {7, 7, 7};
    EXPECT_EQ(kcedTrans(nullptr, &world, &world, 0, out), RTERROR);
    EXPECT_EQ(kcedTrans(in, nullptr, &world, 0, out), RTERROR);
    EXPECT_EQ(kcedTrans(in, &world, &world, 0, nullptr), RTERROR);
}

// kcedGetCurrentUCS is the UCS-to-world matrix of the current UCS.
TEST_F(Trans, CurrentUcsMatrix) {
    KcGeMatrix3d ucs;
    ASSERT_EQ(kcedGetCurrentUCS(ucs), Kcad::eOk);
    expectNear(ucs * KcGePoint3d(1, 0, 0), {10, 21, 5}, "x");
    expectNear(ucs * KcGePoint3d(0, 1, 1), {9, 20, 6}, "y and z");
}

}  // namespace
}  // namespace korva
