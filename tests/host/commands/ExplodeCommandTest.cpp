// EXPLODE as a script: a reference to a block that holds another reference
// comes apart one level at a time, attributes give way to the definitions,
// polylines become lines and arcs, and what cannot be exploded is counted.
#include <gtest/gtest.h>

#include "DrawTestSupport.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::drawedit::expectAngleNear;
using test::drawedit::expectCleanAudit;
using test::drawedit::expectPointNear;
using test::drawedit::modelSpaceEntities;
using test::drawedit::Opened;

constexpr double kPi = 3.14159265358979323846;

// Block IN: a circle at (1,0). Block OUT: IN at (10,0) and a line. OUT at (100,0) turned 90 degrees.
constexpr const char* kNested =
    "CIRCLE\n1,0\n0.5\n-BLOCK\nIN\n0,0\nALL\n\n-INSERT\nIN\n10,0\n\n\n\n"
    "LINE\n0,0\n5,0\n\n-BLOCK\nOUT\n0,0\nALL\n\n-INSERT\nOUT\n100,0\n\n\n90\n";

TEST(ExplodeCommand, ANestedReferenceComesApartOneLevelAtATime) {
    ScriptRun run;
    ASSERT_TRUE(run.run(std::string(kNested) + "EXPLODE\nALL\n\n"));
    auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 2u);
    {
        Opened<KcDbBlockReference> inner(ids[0]);
        ASSERT_TRUE(inner) << "the nested reference stays a reference";
        expectPointNear(inner->position(), {100, 10, 0}, "(10,0) turned about (100,0)");
        expectAngleNear(inner->rotation(), kPi / 2, "the outer rotation");
        Opened<KcDbLine> line(ids[1]);
        ASSERT_TRUE(line);
        expectPointNear(line->endPoint(), {100, 5, 0}, "line end");
    }
    ASSERT_TRUE(run.run("EXPLODE\nALL\n\n"));
    ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 2u);
    Opened<KcDbLine> line(ids[0]);
    EXPECT_TRUE(line) << "the line could not be exploded and stays";
    Opened<KcDbCircle> circle(ids[1]);
    ASSERT_TRUE(circle);
    expectPointNear(circle->center(), {100, 11, 0}, "circle of the inner block");
    EXPECT_TRUE(run.outputContains(L"1 was not able to be exploded."));
    kcad_name last = {0, 0};
    ASSERT_EQ(kcdbEntLast(last), RTNORM);
    KcDbObjectId lastId;
    kcdbGetObjectId(lastId, last);
    EXPECT_EQ(lastId, ids[1]) << "the last part is the last entity";
    expectCleanAudit(run);
}

TEST(ExplodeCommand, AttributesGiveWayToTheBlocksDefinitions) {
    ScriptRun run;
    ASSERT_TRUE(run.run("-ATTDEF\n\nROOM\nRoom\n101\n1,1\n1\n0\n-BLOCK\nR\n0,0\nALL\n\n"
                        "-INSERT\nR\n10,10\n2\n\n\n205\nEXPLODE\nL\n\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u) << "the reference and its attribute are gone";
    Opened<KcDbAttributeDefinition> attdef(ids[0]);
    ASSERT_TRUE(attdef);
    EXPECT_STREQ(attdef->tagConst(), L"ROOM");
    EXPECT_STREQ(attdef->textStringConst(), L"101") << "the definition's default, not the answer";
    expectPointNear(attdef->position(), {12, 12, 0}, "placed by the reference");
    EXPECT_DOUBLE_EQ(attdef->height(), 2.0);
}

TEST(ExplodeCommand, APolylineBecomesLinesAndArcs) {
    ScriptRun run;
    ASSERT_TRUE(run.run("PLINE\n0,0\n10,0\nA\n10,10\n\nEXPLODE\nALL\n\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 2u);
    Opened<KcDbLine> line(ids[0]);
    ASSERT_TRUE(line);
    expectPointNear(line->endPoint(), {10, 0, 0}, "line");
    Opened<KcDbArc> arc(ids[1]);
    ASSERT_TRUE(arc);
    expectPointNear(arc->center(), {10, 5, 0}, "half circle");
    EXPECT_NEAR(arc->radius(), 5.0, 1e-9);
    expectCleanAudit(run);
}

}  // namespace
}  // namespace korva
