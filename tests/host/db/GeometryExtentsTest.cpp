// World extents of every entity type against boxes computed by hand from the DXF
// groups: arcs crossing an axis, bulged polylines in a downward OCS, texts measured
// by a fixed measurer (MTEXT with the fallback font), nested and arrayed block
// references, dimensions, hatches.
#include <cmath>
#include <numbers>

#include "../fonts/FontExpectations.h"
#include "GeometryTestSupport.h"
#include "db/EntityGeometry.h"

namespace korva {
namespace {

const double kRoot2 = std::numbers::sqrt2;

// Blocks used by the reference cases: INNER holds a unit line; OUTER (base point
// (1,0)) holds INNER at (2,0) scaled by 2 and a circle of radius 0.5 at (1,1); *D1
// holds a dimension's graphics; SELF contains a reference to itself.
constexpr std::string_view kBlocks =
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 INNER\n70 0\n10 0\n20 0\n30 0\n3 INNER\n0 LINE\n"
    "100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n0 ENDBLK\n100 AcDbEntity\n8 0\n"
    "100 AcDbBlockEnd\n0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 OUTER\n70 0\n10 1\n20 0\n30 0\n3 OUTER\n"
    "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 INNER\n10 2\n20 0\n30 0\n41 2\n42 2\n0 CIRCLE\n"
    "100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 0\n40 0.5\n0 ENDBLK\n100 AcDbEntity\n8 0\n"
    "100 AcDbBlockEnd\n0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 *D1\n70 1\n10 0\n20 0\n30 0\n3 *D1\n"
    "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 -1\n30 0\n11 10\n21 3\n31 0\n0 ENDBLK\n100 AcDbEntity\n"
    "8 0\n100 AcDbBlockEnd\n0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 SELF\n70 0\n10 0\n20 0\n30 0\n"
    "3 SELF\n0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 2\n21 1\n31 0\n0 INSERT\n"
    "100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 SELF\n10 5\n20 5\n30 0\n0 ENDBLK\n100 AcDbEntity\n8 0\n"
    "100 AcDbBlockEnd\n";

struct ExtentsCase {
    const char* name;
    const char* entity;
    KcGePoint3d min, max;
};

const ExtentsCase kCases[] = {
    {"line",
     "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 1\n20 2\n30 3\n11 4\n21 -1\n31 5\n",
     {1, -1, 3}, {4, 2, 5}},
    {"point with thickness along z",
     "0 POINT\n100 AcDbEntity\n8 0\n100 AcDbPoint\n10 2\n20 3\n30 4\n39 1.5\n",
     {2, 3, 4}, {2, 3, 5.5}},
    {"circle",
     "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 0\n40 2\n",
     {-1, -1, 0}, {3, 3, 0}},
    {"arc crossing 90 degrees",
     "0 ARC\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 2\n100 AcDbArc\n50 45\n51 135\n",
     {-kRoot2, kRoot2, 0}, {kRoot2, 2, 0}},
    {"arc crossing 0 degrees",
     "0 ARC\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 1\n100 AcDbArc\n50 270\n51 90\n",
     {0, -1, 0}, {1, 1, 0}},
    {"arc in the OCS of (0,0,-1)",
     "0 ARC\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 2\n20 0\n30 5\n40 1\n210 0\n220 0\n230 -1\n100 AcDbArc\n"
     "50 0\n51 90\n",
     {-3, 0, -5}, {-2, 1, -5}},
    {"upper half of an ellipse",
     "0 ELLIPSE\n100 AcDbEntity\n8 0\n100 AcDbEllipse\n10 0\n20 0\n30 0\n11 3\n21 0\n31 0\n40 0.5\n41 0\n"
     "42 3.141592653589793\n",
     {-3, 0, 0}, {3, 1.5, 0}},
    {"cubic spline from its control points",
     "0 SPLINE\n100 AcDbEntity\n8 0\n100 AcDbSpline\n70 8\n71 3\n72 8\n73 4\n74 0\n40 0\n40 0\n40 0\n40 0\n"
     "40 1\n40 1\n40 1\n40 1\n10 0\n20 0\n30 0\n10 1\n20 2\n30 0\n10 3\n20 2\n30 0\n10 4\n20 0\n30 0\n",
     {0, 0, 0}, {4, 1.5, 0}},
    {"spline with fit points only",
     "0 SPLINE\n100 AcDbEntity\n8 0\n100 AcDbSpline\n70 8\n71 3\n72 0\n73 0\n74 3\n11 0\n21 0\n31 0\n11 2\n"
     "21 5\n31 1\n11 4\n21 1\n31 0\n",
     {0, 0, 0}, {4, 5, 1}},
    {"bulged lwpolyline at elevation 3 in the OCS of (0,0,-1)",
     "0 LWPOLYLINE\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 3\n70 0\n38 3\n10 0\n20 0\n42 1\n10 2\n20 0\n"
     "10 2\n20 2\n210 0\n220 0\n230 -1\n",
     {-2, -1, -3}, {0, 2, -3}},
    {"closed lwpolyline whose closing segment bulges",
     "0 LWPOLYLINE\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 2\n70 1\n10 0\n20 0\n10 2\n20 0\n42 -1\n",
     {0, -1, 0}, {2, 0, 0}},
    {"2D polyline with a bulged vertex",
     "0 POLYLINE\n100 AcDbEntity\n8 0\n100 AcDb2dPolyline\n66 1\n10 0\n20 0\n30 1\n70 0\n0 VERTEX\n"
     "100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 0\n20 0\n30 0\n42 1\n70 0\n0 VERTEX\n"
     "100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 4\n20 0\n30 0\n70 0\n0 SEQEND\n100 AcDbEntity\n"
     "8 0\n",
     {0, -2, 1}, {4, 0, 1}},
    {"3D polyline",
     "0 POLYLINE\n100 AcDbEntity\n8 0\n100 AcDb3dPolyline\n66 1\n10 0\n20 0\n30 0\n70 8\n0 VERTEX\n"
     "100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 1\n20 2\n30 3\n70 32\n0 VERTEX\n"
     "100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 -1\n20 5\n30 -3\n70 32\n0 SEQEND\n"
     "100 AcDbEntity\n8 0\n",
     {-1, 2, -3}, {1, 5, 3}},
    {"polyface mesh: its face records hold no points",
     "0 POLYLINE\n100 AcDbEntity\n8 0\n100 AcDbPolyFaceMesh\n66 1\n10 0\n20 0\n30 0\n70 64\n71 3\n72 1\n"
     "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDbPolyFaceMeshVertex\n10 1\n20 1\n30 1\n70 192\n"
     "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDbPolyFaceMeshVertex\n10 3\n20 1\n30 1\n70 192\n"
     "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDbPolyFaceMeshVertex\n10 3\n20 4\n30 2\n70 192\n"
     "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbFaceRecord\n10 0\n20 0\n30 0\n70 128\n71 1\n72 2\n73 3\n0 SEQEND\n"
     "100 AcDbEntity\n8 0\n",
     {1, 1, 1}, {3, 4, 2}},
    {"solid in the OCS of (0,0,-1)",
     "0 SOLID\n100 AcDbEntity\n8 0\n100 AcDbTrace\n10 0\n20 0\n30 2\n11 3\n21 0\n31 2\n12 0\n22 1\n32 2\n13 3\n"
     "23 1\n33 2\n210 0\n220 0\n230 -1\n",
     {-3, 0, -2}, {0, 1, -2}},
    {"3D face",
     "0 3DFACE\n100 AcDbEntity\n8 0\n100 AcDbFace\n10 0\n20 0\n30 0\n11 1\n21 0\n31 1\n12 1\n22 2\n32 0\n13 0\n"
     "23 2\n33 -1\n",
     {0, 0, -1}, {1, 2, 1}},
    {"image frame",
     "0 IMAGE\n100 AcDbEntity\n8 0\n100 AcDbRasterImage\n90 0\n10 1\n20 1\n30 0\n11 0.1\n21 0\n31 0\n12 0\n"
     "22 0.2\n32 0\n13 100\n23 50\n",
     {1, 1, 0}, {11, 11, 0}},
    {"viewport",
     "0 VIEWPORT\n100 AcDbEntity\n67 1\n8 0\n100 AcDbViewport\n10 5\n20 5\n30 0\n40 4\n41 2\n68 1\n69 2\n",
     {3, 4, 0}, {7, 6, 0}},
    {"leader",
     "0 LEADER\n100 AcDbEntity\n8 0\n100 AcDbLeader\n3 Standard\n71 1\n72 0\n73 3\n74 1\n75 0\n40 1\n41 1\n"
     "76 3\n10 0\n20 0\n30 0\n10 2\n20 3\n30 0\n10 5\n20 3\n30 0\n",
     {0, 0, 0}, {5, 3, 0}},
    {"rotated and scaled reference with a nested reference",
     "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 OUTER\n10 10\n20 10\n30 0\n41 3\n42 3\n43 1\n"
     "50 90\n",
     {5.5, 8.5, 0}, {10, 19, 0}},
    {"reference in the OCS of (0,0,-1)",
     "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 INNER\n10 1\n20 2\n30 3\n210 0\n220 0\n230 -1\n",
     {-2, 2, -3}, {-1, 2, -3}},
    {"array of 3 columns and 2 rows",
     "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 INNER\n10 0\n20 0\n30 0\n70 3\n71 2\n44 5\n"
     "45 10\n",
     {0, 0, 0}, {11, 10, 0}},
    {"a block's reference to itself adds nothing",
     "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 SELF\n10 0\n20 0\n30 0\n",
     {0, 0, 0}, {2, 1, 0}},
    {"dimension: the entities of its block",
     "0 DIMENSION\n100 AcDbEntity\n8 0\n100 AcDbDimension\n2 *D1\n10 10\n20 0\n30 0\n11 5\n21 2\n31 0\n70 32\n"
     "1 \n100 AcDbAlignedDimension\n13 0\n23 0\n33 0\n14 10\n24 0\n34 0\n100 AcDbRotatedDimension\n",
     {0, -1, 0}, {10, 3, 0}},
    {"hatch: polyline path with a bulge, line and arc edges",
     "0 HATCH\n100 AcDbEntity\n8 0\n100 AcDbHatch\n10 0\n20 0\n30 1\n210 0\n220 0\n230 1\n2 SOLID\n70 1\n71 0\n"
     "91 2\n92 3\n72 1\n73 1\n93 2\n10 0\n20 0\n42 1\n10 2\n20 0\n97 0\n92 1\n93 2\n72 1\n10 5\n20 5\n11 6\n"
     "21 5\n72 2\n10 6\n20 6\n40 1\n50 270\n51 90\n73 1\n97 0\n75 0\n76 1\n98 1\n10 1\n20 1\n",
     {0, -1, 1}, {7, 7, 1}},
    {"hatch: clockwise ellipse edge",
     "0 HATCH\n100 AcDbEntity\n8 0\n100 AcDbHatch\n10 0\n20 0\n30 0\n210 0\n220 0\n230 1\n2 SOLID\n70 1\n71 0\n"
     "91 1\n92 1\n93 1\n72 3\n10 0\n20 0\n11 4\n21 0\n40 0.5\n50 0\n51 180\n73 0\n97 0\n75 0\n76 1\n98 0\n",
     {-4, -2, 0}, {4, 0, 0}},
};

class EntityExtents : public ::testing::TestWithParam<ExtentsCase> {};

TEST_P(EntityExtents, MatchesTheBoxComputedByHand) {
    const ExtentsCase& c = GetParam();
    const auto drawing = test::readSnippet(c.entity, kBlocks);
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    EXPECT_TRUE(test::boxNear(box, c.min, c.max, 1e-9));
}

std::string caseName(const ::testing::TestParamInfo<ExtentsCase>& param) {
    std::string name = param.param.name;
    for (char& ch : name) {
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Types, EntityExtents, ::testing::ValuesIn(kCases), caseName);

TEST(TextExtents, BoxOfTheMeasuredTextRotatedAtTheInsertionPoint) {
    test::UnitTextMeasurer measurer;
    const auto drawing = test::readSnippet(
        "0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 1\n20 1\n30 0\n40 2\n1 ABC\n50 90\n100 AcDbText\n");
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    // "ABC" is 6 wide and 2 high before the quarter turn.
    EXPECT_TRUE(test::boxNear(box, {-1, 1, 0}, {1, 7, 0}));
}

TEST(TextExtents, ExtrusionDownwardMirrorsTheOcs) {
    test::UnitTextMeasurer measurer;
    const auto drawing = test::readSnippet(
        "0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 5\n20 0\n30 1\n40 1\n1 AB\n41 1.5\n210 0\n220 0\n230 -1\n"
        "100 AcDbText\n");
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    // OCS box x 5..8 (2 characters, width factor 1.5), y 0..1, z 1; world x = -x, z = -z.
    EXPECT_TRUE(test::boxNear(box, {-8, 0, -1}, {-5, 1, -1}));
}

TEST(TextExtents, JustifiedTextStartsAtGroup10AndHonoursBackwardGeneration) {
    test::UnitTextMeasurer measurer;
    const auto drawing = test::readSnippet(
        "0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 4\n20 0\n30 0\n40 1\n1 ABCD\n71 2\n72 1\n11 2\n21 0\n31 0\n"
        "100 AcDbText\n73 0\n");
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    // Backward text runs from group 10 towards -x.
    EXPECT_TRUE(test::boxNear(box, {0, 0, 0}, {4, 1, 0}));
}

TEST(TextExtents, AttributeDefinitionShowsItsTag) {
    test::UnitTextMeasurer measurer;
    const auto drawing = test::readSnippet(
        "0 ATTDEF\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 0\n30 0\n40 1\n1 a long default value\n"
        "100 AcDbAttributeDefinition\n3 Prompt\n2 TAG\n70 0\n");
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    EXPECT_TRUE(test::boxNear(box, {0, 0, 0}, {3, 1, 0}));
}

// The box is the measured text (the stored 42 and 43 are ignored), placed by the
// attachment point and turned by the direction. No style table: the fallback font.
TEST(MTextExtents, MeasuredSizePlacedByAttachmentAndDirection) {
    const auto drawing = test::readSnippet(
        "0 MTEXT\n100 AcDbEntity\n8 0\n100 AcDbMText\n10 10\n20 10\n30 0\n40 1\n41 8\n71 5\n72 1\n1 Some text\n"
        "11 0\n21 1\n31 0\n42 8\n43 4\n");
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    const double width = test::FontExpectation(test::kFallbackFamily).box("Some text", 1.0).right;
    // Middle centre: the width along the direction (world y), the height of one line across it (world -x for up).
    EXPECT_TRUE(test::boxNear(box, {9.5, 10 - width / 2, 0}, {10.5, 10 + width / 2, 0}, 1e-6));
}

// Wrapping within the reference width leaves the lines as they are: the widest
// line is the width, the line count at the pitch the height.
TEST(MTextExtents, ActualSizeIsTheWidestLineAndTheLineCount) {
    const auto drawing = test::readSnippet(
        "0 MTEXT\n100 AcDbEntity\n8 0\n100 AcDbMText\n10 0\n20 0\n30 0\n40 1.5\n41 6\n71 1\n"
        "1 {\\fArial|b1;One}\\PTwo\n");
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    const test::FontExpectation font(test::kFallbackFamily);
    const double width = std::max(font.box("One", 1.5).right, font.box("Two", 1.5).right);
    EXPECT_TRUE(test::boxNear(box, {0, -1.5 * (1 + 5.0 / 3.0), 0}, {width, 0, 0}, 1e-6));
}

TEST(InsertExtents, VisibleAttributesAddTheirBoxes) {
    test::UnitTextMeasurer measurer;
    const auto drawing = test::readSnippet(
        "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n66 1\n2 INNER\n10 0\n20 0\n30 0\n0 ATTRIB\n"
        "100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 -3\n30 0\n40 1\n1 VALUE\n100 AcDbAttribute\n2 TAG\n70 0\n"
        "0 ATTRIB\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 20\n30 0\n40 1\n1 HIDDEN\n100 AcDbAttribute\n"
        "2 OTHER\n70 1\n0 SEQEND\n100 AcDbEntity\n8 0\n", kBlocks);
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    EXPECT_TRUE(test::boxNear(box, {0, -3, 0}, {5, 0, 0}));
}

TEST(EntityExtentsRefusal, InfiniteModelerAndErasedEntitiesHaveNone) {
    const auto drawing = test::readSnippet(
        "0 RAY\n100 AcDbEntity\n8 0\n100 AcDbRay\n10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n0 XLINE\n100 AcDbEntity\n"
        "8 0\n100 AcDbXline\n10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n0 REGION\n100 AcDbEntity\n8 0\n"
        "100 AcDbModelerGeometry\n70 1\n0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 1\n21 0\n"
        "31 0\n");
    geom::Box3d box;
    for (size_t i = 0; i < 3; ++i) EXPECT_FALSE(db::entityExtents(drawing.entity(i), box)) << i;
    drawing.entity(3).erased = true;
    EXPECT_FALSE(db::entityExtents(drawing.entity(3), box));
    EXPECT_TRUE(box.isEmpty()) << "a refused entity leaves the box alone";
}

TEST(EntityExtentsApi, GetGeomExtentsReportsTheBoxOrInvalidExtents) {
    const auto drawing = test::readSnippet(
        "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 0\n40 2\n0 XLINE\n100 AcDbEntity\n8 0\n"
        "100 AcDbXline\n10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n");
    KcDbEntity* circle = nullptr;
    ASSERT_EQ(kcdbOpenObject(circle, drawing.id(drawing.entity(0)), KcDb::kForRead), Kcad::eOk);
    KcDbExtents extents;
    EXPECT_EQ(circle->getGeomExtents(extents), Kcad::eOk);
    EXPECT_TRUE(test::near(extents.minPoint(), {-1, -1, 0}));
    EXPECT_TRUE(test::near(extents.maxPoint(), {3, 3, 0}));
    circle->close();
    KcDbEntity* xline = nullptr;
    ASSERT_EQ(kcdbOpenObject(xline, drawing.id(drawing.entity(1)), KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(xline->getGeomExtents(extents), Kcad::eInvalidExtents);
    xline->close();
}

}  // namespace
}  // namespace korva
