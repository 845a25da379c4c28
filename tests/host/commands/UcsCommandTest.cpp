// UCS through scripts and kcedCommand: the options the extension module sends
// (S, E, R, D, W, P) and the others, checked on the header's UCS variables
// ($UCSORG, $UCSXDIR, $UCSYDIR, $UCSNAME and the paper-space twins) and on the
// UCS table.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "db/RecordFields.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace korva {
namespace {

constexpr double kTolerance = 1e-9;

// TEXT E1 at (5,5) turned 30 degrees; TEXT E2 with extrusion (0,0,-1) at OCS (5,5);
// LINE E3 from (1,2,0) to (4,6,0); CIRCLE E4 centre (0,3,4) in the OCS of (1,0,0).
const char* const kEntities =
    "  0\nTEXT\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n5.0\n 20\n5.0\n 30\n0.0\n 40\n2.5\n"
    "  1\nA\n 50\n30.0\n100\nAcDbText\n"
    "  0\nTEXT\n  5\nE2\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n5.0\n 20\n5.0\n 30\n0.0\n 40\n2.5\n"
    "  1\nB\n210\n0.0\n220\n0.0\n230\n-1.0\n100\nAcDbText\n"
    "  0\nLINE\n  5\nE3\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 11\n4.0\n "
    "21\n6.0\n"
    " 31\n0.0\n"
    "  0\nCIRCLE\n  5\nE4\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbCircle\n 10\n0.0\n 20\n3.0\n 30\n4.0\n 40\n1.0\n"
    "210\n1.0\n220\n0.0\n230\n0.0\n";

KcGePoint3d header(test::ScriptRun& run, const char* name) {
    return run.drawing().header.getPoint(name).value_or(KcGePoint3d(-999, -999, -999));
}

std::string ucsName(test::ScriptRun& run, const char* variable = "$UCSNAME") {
    return run.drawing().header.getString(variable).value_or("<none>");
}

void expectPoint(const KcGePoint3d& actual, const KcGePoint3d& expected, const std::string& what) {
    EXPECT_NEAR(actual.x, expected.x, kTolerance) << what;
    EXPECT_NEAR(actual.y, expected.y, kTolerance) << what;
    EXPECT_NEAR(actual.z, expected.z, kTolerance) << what;
}

void expectUcs(test::ScriptRun& run, const KcGePoint3d& origin, const KcGePoint3d& x, const KcGePoint3d& y,
               const std::string& what, const char* prefix = "$UCS") {
    expectPoint(header(run, (std::string(prefix) + "ORG").c_str()), origin, what + ": origin");
    expectPoint(header(run, (std::string(prefix) + "XDIR").c_str()), x, what + ": x axis");
    expectPoint(header(run, (std::string(prefix) + "YDIR").c_str()), y, what + ": y axis");
}

const KcGePoint3d kWorldX{1, 0, 0}, kWorldY{0, 1, 0};

// The module's TEXTFIT sequence: save the UCS by name, align with a text, restore and delete the name.
TEST(UcsCommand, SaveEntityRestoreDeleteAsTheModuleCallsThem) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kEntities));
    ASSERT_TRUE(run.run("UCS\nO\n10,20,0\n"));
    const wchar_t* saved = L"_KORVA_EXTEND_TEXTFIT_SAVED_UCS_0702";
    ASSERT_EQ(kcedCommand(RTSTR, L"_.UCS", RTSTR, L"_S", RTSTR, saved, RTNONE), RTNORM);
    EXPECT_EQ(ucsName(run), "_KORVA_EXTEND_TEXTFIT_SAVED_UCS_0702");
    const db::ObjectRecord* record = run.drawing().tableRecord("UCS", "_KORVA_EXTEND_TEXTFIT_SAVED_UCS_0702");
    ASSERT_TRUE(record);
    expectPoint(db::fieldPoint(*record, {}, 10), {10, 20, 0}, "saved origin");
    expectPoint(db::fieldPoint(*record, {}, 11), kWorldX, "saved x axis");
    expectPoint(db::fieldPoint(*record, {}, 12), kWorldY, "saved y axis");

    kcad_name text = {0, 0};
    ASSERT_EQ(kcdbHandEnt(L"E1", text), RTNORM);
    ASSERT_EQ(kcedCommand(RTSTR, L"_.UCS", RTSTR, L"_E", RTENAME, text, RTNONE), RTNORM);
    const double c = std::cos(3.14159265358979323846 / 6), s = std::sin(3.14159265358979323846 / 6);
    expectUcs(run, {5, 5, 0}, {c, s, 0}, {-s, c, 0}, "aligned with the text");
    EXPECT_EQ(ucsName(run), "");

    ASSERT_EQ(kcedCommand(RTSTR, L"_.UCS", RTSTR, L"_R", RTSTR, saved, RTNONE), RTNORM);
    expectUcs(run, {10, 20, 0}, kWorldX, kWorldY, "restored");
    EXPECT_EQ(ucsName(run), "_KORVA_EXTEND_TEXTFIT_SAVED_UCS_0702");

    ASSERT_EQ(kcedCommand(RTSTR, L"_.UCS", RTSTR, L"_D", RTSTR, saved, RTNONE), RTNORM);
    EXPECT_FALSE(run.drawing().tableRecord("UCS", "_KORVA_EXTEND_TEXTFIT_SAVED_UCS_0702"));
    EXPECT_EQ(ucsName(run), "");
    expectUcs(run, {10, 20, 0}, kWorldX, kWorldY, "deleting keeps the axes");
}

struct EntityCase {
    const wchar_t* handle;
    KcGePoint3d origin, x, y;
};

class UcsEntity : public testing::TestWithParam<EntityCase> {};

// Entity alignment: texts by insertion point, rotation and extrusion; lines by start and direction; others by OCS.
TEST_P(UcsEntity, AlignsWithTheEntity) {
    const EntityCase& c = GetParam();
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kEntities));
    kcad_name entity = {0, 0};
    ASSERT_EQ(kcdbHandEnt(c.handle, entity), RTNORM);
    ASSERT_EQ(kcedCommand(RTSTR, L"_.ucs", RTSTR, L"_OB", RTENAME, entity, RTNONE), RTNORM);
    std::string what = "entity ";
    for (const wchar_t* p = c.handle; *p; ++p) what.push_back(static_cast<char>(*p));
    expectUcs(run, c.origin, c.x, c.y, what);
}

INSTANTIATE_TEST_SUITE_P(Entities, UcsEntity,
                         testing::Values(EntityCase{L"E2", {-5, 5, 0}, {-1, 0, 0}, {0, 1, 0}},
                                         EntityCase{L"E3", {1, 2, 0}, {0.6, 0.8, 0}, {-0.8, 0.6, 0}},
                                         EntityCase{L"E4", {4, 0, 3}, {0, 1, 0}, {0, 0, 1}}));

// World and Previous as 2.6 sends them; Previous walks back one change at a time.
TEST(UcsCommand, WorldAndPreviousFollowTheHistory) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("UCS\nO\n1,1\nUCS\nZ\n90\n"));
    expectUcs(run, {1, 1, 0}, {0, 1, 0}, {-1, 0, 0}, "turned");
    ASSERT_EQ(kcedCommand(RTSTR, L"_.ucs", RTSTR, L"_w", RTNONE), RTNORM);
    expectUcs(run, {0, 0, 0}, kWorldX, kWorldY, "world");
    ASSERT_EQ(kcedCommand(RTSTR, L"_.ucs", RTSTR, L"_P", RTNONE), RTNORM);
    expectUcs(run, {1, 1, 0}, {0, 1, 0}, {-1, 0, 0}, "previous of world");
    ASSERT_TRUE(run.run("UCS\nP\n"));
    expectUcs(run, {1, 1, 0}, kWorldX, kWorldY, "before the turn");
    ASSERT_TRUE(run.run("UCS\nP\nUCS\nP\n"));
    expectUcs(run, {0, 0, 0}, kWorldX, kWorldY, "the start");
    EXPECT_TRUE(run.outputContains(L"No previous UCS"));
}

// The history keeps the last ten coordinate systems.
TEST(UcsCommand, PreviousRemembersTen) {
    test::ScriptRun run;
    std::string script;
    for (int i = 1; i <= 12; ++i) script += "UCS\n1,0\n";  // each moves the origin one unit along X
    for (int i = 0; i < 10; ++i) script += "UCS\nP\n";
    ASSERT_TRUE(run.run(script));
    expectPoint(header(run, "$UCSORG"), {2, 0, 0}, "ten steps back from the twelfth");
    ASSERT_TRUE(run.run("UCS\nP\n"));
    expectPoint(header(run, "$UCSORG"), {2, 0, 0}, "no eleventh step");
}

// A point answer is the new origin, given in the current UCS.
TEST(UcsCommand, PointAnswerMovesTheOriginInUcsCoordinates) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("UCS\nZ\n90\nUCS\n1,0\n"));
    expectUcs(run, {0, 1, 0}, {0, 1, 0}, {-1, 0, 0}, "origin one unit along the turned X axis");
}

// Rotations about X and Y; Enter takes 90 degrees.
TEST(UcsCommand, RotationsAboutTheAxes) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("UCS\nX\n\n"));
    expectUcs(run, {0, 0, 0}, kWorldX, {0, 0, 1}, "about X");
    ASSERT_TRUE(run.run("UCS\nW\nUCS\nY\n-90\n"));
    expectUcs(run, {0, 0, 0}, {0, 0, 1}, kWorldY, "about Y");
}

struct ReplaceCase {
    const char* answer;
    KcGePoint3d stored;
};

class UcsReplace : public testing::TestWithParam<ReplaceCase> {};

// Saving under an existing name asks, and only yes replaces the record (the second
// origin, 7,8 in the UCS at 1,2, is 8,10 in the world).
TEST_P(UcsReplace, AsksBeforeReplacing) {
    test::ScriptRun run;
    ASSERT_TRUE(
        run.run(std::string("UCS\nO\n1,2\nUCS\nS\nPLAN\nUCS\nO\n7,8\nUCS\nS\nplan\n") + GetParam().answer + "\n"));
    EXPECT_TRUE(run.outputContains(L"already exists"));
    const db::ObjectRecord* record = run.drawing().tableRecord("UCS", "PLAN");
    ASSERT_TRUE(record);
    expectPoint(db::fieldPoint(*record, {}, 10), GetParam().stored, GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Answers, UcsReplace,
                         testing::Values(ReplaceCase{"Y", {8, 10, 0}}, ReplaceCase{"N", {1, 2, 0}},
                                         ReplaceCase{"_Y", {8, 10, 0}}));

// NAmed reaches the same operations; a missing name changes nothing.
TEST(UcsCommand, NamedOptionsAndMissingNames) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("UCS\n3,3\nUCS\nNA\nS\nA1\nUCS\nW\nUCS\nNA\nR\nNOSUCH\n"));
    EXPECT_TRUE(run.outputContains(L"Cannot find UCS NOSUCH"));
    expectPoint(header(run, "$UCSORG"), {0, 0, 0}, "unchanged by a missing name");
    ASSERT_TRUE(run.run("UCS\nNA\nR\na1\n"));
    expectPoint(header(run, "$UCSORG"), {3, 3, 0}, "restored");
    EXPECT_EQ(ucsName(run), "A1");
    ASSERT_TRUE(run.run("UCS\nNA\nD\nA*\n"));
    EXPECT_FALSE(run.drawing().tableRecord("UCS", "A1"));
}

// In a layout the paper-space UCS changes and model space keeps its own.
TEST(UcsCommand, PaperSpaceHasItsOwnUcs) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("UCS\n5,5\nTILEMODE\n0\nUCS\n1,2\nUCS\nS\nSHEET\n"));
    expectPoint(header(run, "$PUCSORG"), {1, 2, 0}, "paper space");
    expectPoint(header(run, "$UCSORG"), {5, 5, 0}, "model space");
    EXPECT_EQ(ucsName(run, "$PUCSNAME"), "SHEET");
    ASSERT_TRUE(run.run("UCS\nP\n"));
    expectPoint(header(run, "$PUCSORG"), {0, 0, 0}, "paper space history");
    expectPoint(header(run, "$UCSORG"), {5, 5, 0}, "model space untouched");
}

}  // namespace
}  // namespace korva
