// Annotation entities: viewport frozen layers (331 groups), dimension
// variables of leaders and tolerances (overrides, then the style), hatch
// boundaries read as vertices and bulges, the undocumented dimension kinds,
// OLE frames and MTEXT in a plane of its own.
#include <algorithm>
#include <cmath>

#include "EntityTestSupport.h"
#include "db/RecordFields.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;

void expectPoint(const KcGePoint3d& actual, double x, double y, double z = 0.0) {
    EXPECT_NEAR(actual.x, x, 1e-9);
    EXPECT_NEAR(actual.y, y, 1e-9);
    EXPECT_NEAR(actual.z, z, 1e-9);
}

KcDbObjectId layerId(KcDbDatabase& database, std::string_view name) {
    return db::ObjectAccess::id(database.drawing().tableRecord("LAYER", name));
}

std::vector<db::Handle> frozenHandles(const db::ObjectRecord& viewport) {
    std::vector<db::Handle> handles;
    for (db::TagRef tag : db::fieldsOf(viewport, "AcDbViewport", 331)) handles.push_back(tag.handle());
    return handles;
}

// A layout's viewports as written: one freezes Layer1, one Layer2, one nothing.
TEST(EntityViewport, ReadsFrozenLayersAndScale) {
    auto database = loadCorpus("ezdxf__viewport_frozen_layers.dxf");
    ASSERT_TRUE(database);
    Opened<KcDbViewport> frozen(*database, 0xB8, KcDb::kForRead);
    ASSERT_TRUE(frozen);
    EXPECT_EQ(frozen->number(), 4);
    EXPECT_TRUE(frozen->isLayerFrozenInViewport(layerId(*database, "Layer1")));
    EXPECT_FALSE(frozen->isLayerFrozenInViewport(layerId(*database, "Layer2")));
    KcDbObjectIdArray list;
    ASSERT_EQ(frozen->getFrozenLayerList(list), Kcad::eOk);
    ASSERT_EQ(list.length(), 1);
    EXPECT_EQ(list[0], layerId(*database, "Layer1"));
    EXPECT_DOUBLE_EQ(frozen->customScale(), 45.723742960289 / 486.294310488872);
    EXPECT_EQ(frozen->viewCenter(), KcGePoint2d(303.930770075367, 229.92478425806));
}

// Freezing adds each layer once after the list (or after 72 when empty); thawing removes only 331s.
TEST(EntityViewport, FreezeAndThawEditOnlyTheFrozenList) {
    auto database = loadCorpus("ezdxf__viewport_frozen_layers.dxf");
    ASSERT_TRUE(database);
    const KcDbObjectId layer1 = layerId(*database, "Layer1"), layer2 = layerId(*database, "Layer2");
    db::ObjectRecord& record = recordOf(*database, 0xB8);
    const std::vector<db::Tag> before = record.tags.decode();
    {
        Opened<KcDbViewport> viewport(*database, 0xB8, KcDb::kForWrite);
        KcDbObjectIdArray freeze;
        freeze.append(layer2).append(layer2).append(layer1);
        ASSERT_EQ(viewport->freezeLayersInViewport(freeze), Kcad::eOk);
        EXPECT_EQ(frozenHandles(record), (std::vector<db::Handle>{layer1.handle(), layer2.handle()}));
        KcDbObjectIdArray thaw;
        thaw.append(layer1);
        ASSERT_EQ(viewport->thawLayersInViewport(thaw), Kcad::eOk);
        EXPECT_EQ(frozenHandles(record), (std::vector<db::Handle>{layer2.handle()}));
        KcDbObjectIdArray notLayers;
        notLayers.append(viewport->objectId());
        EXPECT_EQ(viewport->freezeLayersInViewport(notLayers), Kcad::eInvalidInput);
    }
    for (const std::string& problem : diffTags(before, record.tags.decode(), {331})) ADD_FAILURE() << problem;

    db::ObjectRecord& empty = recordOf(*database, 0xB1);
    Opened<KcDbViewport> viewport(*database, 0xB1, KcDb::kForWrite);
    KcDbObjectIdArray freeze;
    freeze.append(layer1);
    ASSERT_EQ(viewport->freezeLayersInViewport(freeze), Kcad::eOk);
    const std::vector<db::Tag> tags = empty.tags.decode();
    const auto at = std::find_if(tags.begin(), tags.end(), [](const db::Tag& t) { return t.code == 331; });
    ASSERT_NE(at, tags.end());
    EXPECT_EQ((at - 1)->code, 72);
}

const std::string kBigStyle =
    dxfTags({{0, "DIMSTYLE"}, {105, "96"}, {330, "A"}, {100, "AcDbSymbolTableRecord"},
             {100, "AcDbDimStyleTableRecord"}, {2, "BIG"}, {70, "0"}, {40, "2.0"}, {41, "4.0"}, {140, "3.5"},
             {147, "1.5"}});

std::string leader(std::string_view handle, std::string_view xdata) {
    return modernHead("LEADER", handle, "AcDbLeader") +
           dxfTags({{3, "BIG"}, {71, "1"}, {72, "0"}, {73, "3"}, {40, "2.5"}, {41, "10.0"}, {76, "2"}, {10, "0.0"},
                    {20, "0.0"}, {30, "0.0"}, {10, "3.0"}, {20, "4.0"}, {30, "0.0"}}) +
           std::string(xdata);
}

// Dimension variables: an override in the ACAD DSTYLE list, else the named style, else the default.
TEST(EntityDimensionStyleValues, OverridesThenStyleThenDefaults) {
    const std::string overrides =
        dxfTags({{1001, "ACAD"}, {1000, "DSTYLE"}, {1002, "{"}, {1070, "147"}, {1040, "0.25"}, {1002, "}"}});
    const std::string tolerance = modernHead("TOLERANCE", "103", "AcDbFcf") +
                                  dxfTags({{3, "BIG"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {1, "x"}});
    const std::string unstyled = modernHead("TOLERANCE", "104", "AcDbFcf") +
                                 dxfTags({{3, "NONE"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {1, "x"}});
    DxfParts parts{leader("101", "") + leader("102", overrides) + tolerance + unstyled};
    parts.dimStyles = kBigStyle;
    auto database = loadDatabase(modernDxf(parts));
    ASSERT_TRUE(database);
    Opened<KcDbLeader> styled(*database, 0x101, KcDb::kForRead);
    ASSERT_TRUE(styled);
    EXPECT_EQ(styled->dimasz(), 4.0);
    EXPECT_EQ(styled->dimgap(), 1.5);
    EXPECT_EQ(styled->dimscale(), 2.0);
    Opened<KcDbLeader> overridden(*database, 0x102, KcDb::kForRead);
    EXPECT_EQ(overridden->dimgap(), 0.25);
    EXPECT_EQ(overridden->dimasz(), 4.0);
    Opened<KcDbFcf> fcf(*database, 0x103, KcDb::kForRead);
    EXPECT_EQ(fcf->dimtxt(), 3.5);
    Opened<KcDbFcf> plain(*database, 0x104, KcDb::kForRead);
    EXPECT_EQ(plain->dimgap(), 0.625);
    EXPECT_EQ(plain->dimscale(), 1.0);
    EXPECT_EQ(plain->dimtxt(), 2.5);
}

// A second colour override joins the DSTYLE list, and setting one again replaces its value.
TEST(EntityDimensionStyleValues, ColourOverridesShareOneList) {
    DxfParts parts{modernHead("TOLERANCE", "103", "AcDbFcf") +
                   dxfTags({{3, "Standard"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {1, "x"}})};
    auto database = loadDatabase(modernDxf(parts));
    ASSERT_TRUE(database);
    Opened<KcDbFcf> fcf(*database, 0x103, KcDb::kForWrite);
    KcCmColor red, blue;
    red.setColorIndex(1);
    blue.setColorIndex(5);
    ASSERT_EQ(fcf->setDimclrd(red), Kcad::eOk);
    ASSERT_EQ(fcf->setDimclrt(red), Kcad::eOk);
    ASSERT_EQ(fcf->setDimclrd(blue), Kcad::eOk);
    std::vector<int64_t> values;
    for (const db::Tag& tag : db::extendedData(recordOf(*database, 0x103).tags)) {
        if (tag.code == 1070) values.push_back(tag.integer);
    }
    EXPECT_EQ(values, (std::vector<int64_t>{176, 5, 178, 1}));
}

// Boundary paths: lines and arcs (clockwise ones stored as 360 minus their
// angles), a spline whose path ends with its source boundary, a polyline with
// bulges and a full circle; then one dashed pattern line.
TEST(EntityHatch, EdgesReadAsVerticesAndBulges) {
    const std::string hatch =
        modernHead("HATCH", "100", "AcDbHatch") +
        dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {210, "0.0"}, {220, "0.0"}, {230, "1.0"}, {2, "DASHY"},
                 {70, "0"}, {71, "1"}, {91, "4"},
                 // a line and a counter-clockwise half circle
                 {92, "1"}, {93, "2"}, {72, "1"}, {10, "0.0"}, {20, "0.0"}, {11, "10.0"}, {21, "0.0"}, {72, "2"},
                 {10, "10.0"}, {20, "5.0"}, {40, "5.0"}, {50, "270.0"}, {51, "90.0"}, {73, "1"}, {97, "0"},
                 // a clockwise quarter from world angle 0 down to -90, and a spline, with one source boundary
                 {92, "0"}, {93, "2"}, {72, "2"}, {10, "0.0"}, {20, "0.0"}, {40, "2.0"}, {50, "0.0"}, {51, "90.0"},
                 {73, "0"}, {72, "4"}, {94, "3"}, {73, "0"}, {74, "0"}, {95, "8"}, {96, "4"}, {40, "0.0"},
                 {40, "0.0"}, {40, "0.0"}, {40, "0.0"}, {40, "1.0"}, {40, "1.0"}, {40, "1.0"}, {40, "1.0"},
                 {10, "7.0"}, {20, "8.0"}, {10, "9.0"}, {20, "8.0"}, {10, "9.0"}, {20, "9.0"}, {10, "7.0"},
                 {20, "9.0"}, {97, "1"}, {330, "1F"},
                 // a polyline with a bulge
                 {92, "2"}, {72, "1"}, {73, "1"}, {93, "2"}, {10, "1.0"}, {20, "1.0"}, {42, "0.5"}, {10, "2.0"},
                 {20, "1.0"}, {42, "0.0"}, {97, "0"},
                 // a full circle
                 {92, "16"}, {93, "1"}, {72, "2"}, {10, "5.0"}, {20, "5.0"}, {40, "1.0"}, {50, "0.0"},
                 {51, "360.0"}, {73, "1"}, {97, "0"},
                 {75, "0"}, {76, "1"}, {52, "30.0"}, {41, "2.0"}, {77, "0"}, {78, "1"}, {53, "30.0"}, {43, "0.0"},
                 {44, "0.0"}, {45, "1.0"}, {46, "1.0"}, {79, "2"}, {49, "0.5"}, {49, "-0.25"}, {98, "0"}});
    auto database = loadDatabase(modernDxf({hatch}));
    ASSERT_TRUE(database);
    Opened<KcDbHatch> opened(*database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(opened);
    ASSERT_EQ(opened->numLoops(), 4);
    struct Expected {
        Kcad::Int32 type;
        std::vector<KcGePoint2d> vertices;
        std::vector<double> bulges;
    };
    const Expected expected[] = {
        {1, {{0, 0}, {10, 0}}, {0, 1}},
        {0, {{2, 0}, {7, 8}}, {-std::tan(kPi / 8), 0}},
        {2, {{1, 1}, {2, 1}}, {0.5, 0}},
        {16, {{6, 5}, {4, 5}}, {1, 1}},
    };
    for (int i = 0; i < 4; ++i) {
        Kcad::Int32 type = -1;
        KcGePoint2dArray vertices;
        KcGeDoubleArray bulges;
        ASSERT_EQ(opened->getLoopAt(i, type, vertices, bulges), Kcad::eOk) << i;
        EXPECT_EQ(type, expected[i].type) << i;
        EXPECT_EQ(opened->loopTypeAt(i), expected[i].type) << i;
        ASSERT_EQ(vertices.length(), static_cast<int>(expected[i].vertices.size())) << i;
        for (int v = 0; v < vertices.length(); ++v) {
            EXPECT_NEAR(vertices[v].x, expected[i].vertices[v].x, 1e-9) << i << "/" << v;
            EXPECT_NEAR(vertices[v].y, expected[i].vertices[v].y, 1e-9) << i << "/" << v;
            EXPECT_NEAR(bulges[v], expected[i].bulges[v], 1e-12) << i << "/" << v;
        }
    }
    EXPECT_NEAR(opened->patternAngle(), kPi / 6, 1e-12);
    EXPECT_EQ(opened->patternScale(), 2.0);
    ASSERT_EQ(opened->numPatternDefinitions(), 1);
    double angle = 0, baseX = 0, baseY = 0, offsetX = 0, offsetY = 0;
    KcGeDoubleArray dashes;
    ASSERT_EQ(opened->getPatternDefinitionAt(0, angle, baseX, baseY, offsetX, offsetY, dashes), Kcad::eOk);
    EXPECT_NEAR(angle, kPi / 6, 1e-12);
    EXPECT_EQ(offsetY, 1.0);
    ASSERT_EQ(dashes.length(), 2);
    EXPECT_EQ(dashes[1], -0.25);
    Kcad::Int32 type = 0;
    KcGePoint2dArray vertices;
    KcGeDoubleArray bulges;
    EXPECT_EQ(opened->getLoopAt(4, type, vertices, bulges), Kcad::eInvalidInput);
}

// ARC_DIMENSION and LARGE_RADIAL_DIMENSION open as their own classes with their points.
TEST(EntityDimension, UndocumentedKindsReadTheirPoints) {
    const std::string arc = modernHead("ARC_DIMENSION", "100", "AcDbDimension") +
                            dxfTags({{2, ""}, {10, "1.0"}, {20, "7.0"}, {30, "0.0"}, {11, "0.0"}, {21, "8.0"},
                                     {31, "0.0"}, {70, "5"}, {3, "Standard"}, {100, "AcDbArcDimension"}, {13, "5.0"},
                                     {23, "0.0"}, {33, "0.0"}, {14, "0.0"}, {24, "5.0"}, {34, "0.0"}, {15, "0.0"},
                                     {25, "0.0"}, {35, "0.0"}, {40, "0.0"}, {41, "1.5707963267948966"}, {70, "0"},
                                     {71, "0"}});
    const std::string large = modernHead("LARGE_RADIAL_DIMENSION", "101", "AcDbDimension") +
                              dxfTags({{2, ""}, {10, "2.0"}, {20, "2.0"}, {30, "0.0"}, {11, "9.0"}, {21, "9.0"},
                                       {31, "0.0"}, {70, "9"}, {3, "Standard"}, {100, "AcDbRadialDimensionLarge"},
                                       {13, "6.0"}, {23, "5.0"}, {33, "0.0"}, {14, "20.0"}, {24, "20.0"}, {34, "0.0"},
                                       {15, "8.0"}, {25, "8.0"}, {35, "0.0"}, {40, "0.7853981633974483"}});
    auto database = loadDatabase(modernDxf({arc + large}));
    ASSERT_TRUE(database);
    Opened<KcDbArcDimension> arcDimension(*database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(arcDimension) << arcDimension.status();
    expectPoint(arcDimension->centerPoint(), 0, 0);
    expectPoint(arcDimension->xLine1Point(), 5, 0);
    expectPoint(arcDimension->xLine2Point(), 0, 5);
    expectPoint(arcDimension->arcPoint(), 1, 7);
    Opened<KcDbRadialDimensionLarge> jogged(*database, 0x101, KcDb::kForRead);
    ASSERT_TRUE(jogged) << jogged.status();
    expectPoint(jogged->center(), 2, 2);
    expectPoint(jogged->chordPoint(), 6, 5);
    expectPoint(jogged->overrideCenter(), 20, 20);
    expectPoint(jogged->jogPoint(), 8, 8);
    EXPECT_DOUBLE_EQ(jogged->jogAngle(), kPi / 4);
    expectPoint(jogged->textPosition(), 9, 9);
}

// An OLE frame's rectangle from its upper left and lower right corners.
TEST(EntityOle2Frame, CornersRunClockwiseFromTheUpperLeft) {
    auto database = loadDatabase(modernDxf(
        {modernHead("OLE2FRAME", "100", "AcDbOle2Frame") +
         dxfTags({{70, "2"}, {3, "Paintbrush Picture"}, {10, "1.0"}, {20, "5.0"}, {30, "0.0"}, {11, "4.0"},
                  {21, "2.0"}, {31, "0.0"}, {71, "2"}, {72, "0"}, {90, "0"}, {1, "OLE"}})}));
    ASSERT_TRUE(database);
    Opened<KcDbOle2Frame> frame(*database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(frame) << frame.status();
    KcGePoint3d corners[4];
    frame->position(corners);
    expectPoint(corners[0], 1, 5);
    expectPoint(corners[1], 4, 5);
    expectPoint(corners[2], 4, 2);
    expectPoint(corners[3], 1, 2);
    EXPECT_EQ(frame->getType(), 2);
}

// MTEXT turned into another plane keeps its location and its rotation within the plane.
TEST(EntityMText, NewNormalKeepsTheRotationInThePlane) {
    auto database = loadDatabase(modernDxf(
        {modernHead("MTEXT", "100", "AcDbMText") +
         dxfTags({{10, "1.0"}, {20, "2.0"}, {30, "3.0"}, {40, "2.5"}, {41, "0.0"}, {71, "5"}, {72, "1"}, {1, "m"},
                  {7, "Standard"}, {11, "0.0"}, {21, "1.0"}, {31, "0.0"}, {73, "2"}, {44, "1.5"}})}));
    ASSERT_TRUE(database);
    Opened<KcDbMText> mtext(*database, 0x100, KcDb::kForWrite);
    ASSERT_TRUE(mtext);
    EXPECT_NEAR(mtext->rotation(), kPi / 2, 1e-12);
    EXPECT_EQ(mtext->attachment(), KcDbMText::kMiddleCenter);
    EXPECT_EQ(mtext->lineSpacingStyle(), KcDb::kExactly);
    EXPECT_EQ(mtext->lineSpacingFactor(), 1.5);
    ASSERT_EQ(mtext->setNormal({1, 0, 0}), Kcad::eOk);
    EXPECT_NEAR(mtext->rotation(), kPi / 2, 1e-12);
    EXPECT_NEAR(mtext->direction().dotProduct({1, 0, 0}), 0.0, 1e-12);
    expectPoint(mtext->location(), 1, 2, 3);
}

}  // namespace
}  // namespace korva::test
