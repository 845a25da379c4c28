// Polylines: LWPOLYLINE vertex edits keep group 90 in step with the vertices
// and each vertex's own groups; old-style POLYLINEs read their kind from 70 and
// their vertices (2D ones in the polyline's OCS at its elevation) through the
// vertex iterator.
#include <functional>

#include "EntityTestSupport.h"
#include "db/RecordFields.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

void expectPoint(const KcGePoint3d& actual, double x, double y, double z) {
    EXPECT_NEAR(actual.x, x, 1e-9);
    EXPECT_NEAR(actual.y, y, 1e-9);
    EXPECT_NEAR(actual.z, z, 1e-9);
}

std::string lwpolyline(std::initializer_list<std::pair<int, std::string_view>> body) {
    return modernDxf({modernHead("LWPOLYLINE", "100", "AcDbPolyline") + dxfTags(body)});
}

// Vertices with widths on the second only, an elevation and an extrusion.
const std::string kWidePolyline =
    lwpolyline({{90, "3"}, {70, "0"}, {38, "2.0"}, {10, "0.0"}, {20, "0.0"}, {10, "4.0"}, {20, "0.0"}, {40, "1.0"},
                {41, "0.5"}, {10, "4.0"}, {20, "3.0"}, {210, "0.0"}, {220, "0.0"}, {230, "-1.0"}});

// A run of edits: after each, 90, the 10s and numVerts agree.
TEST(EntityPolyline, EditsKeepTheVertexCountInStep) {
    auto database = loadDatabase(kWidePolyline);
    ASSERT_TRUE(database);
    const db::ObjectRecord& record = recordOf(*database, 0x100);
    Opened<KcDbPolyline> polyline(*database, 0x100, KcDb::kForWrite);
    ASSERT_TRUE(polyline);
    const std::vector<std::function<Kcad::ErrorStatus()>> edits{
        [&] { return polyline->addVertexAt(3, {0, 3}); },
        [&] { return polyline->addVertexAt(0, {-1, -1}, 0.5); },
        [&] { return polyline->removeVertexAt(2); },
        [&] { return polyline->setPointAt(0, {-2, -2}); },
        [&] { return polyline->removeVertexAt(3); },
        [&] { return polyline->setBulgeAt(1, -0.25); },
    };
    for (size_t i = 0; i < edits.size(); ++i) {
        ASSERT_EQ(edits[i](), Kcad::eOk) << "edit " << i;
        const size_t points = db::fieldsOf(record, "AcDbPolyline", 10).size();
        EXPECT_EQ(db::fieldInteger(record, "AcDbPolyline", 90), static_cast<int64_t>(points)) << "edit " << i;
        EXPECT_EQ(polyline->numVerts(), points) << "edit " << i;
    }
    // Left: (-2, -2) with bulge 0.5 and its own zero widths (added while others had
    // widths), (0, 0) with bulge -0.25, (4, 3); the removed vertices took their widths along.
    KcGePoint2d p;
    ASSERT_EQ(polyline->getPointAt(2, p), Kcad::eOk);
    EXPECT_EQ(p, KcGePoint2d(4, 3));
    double bulge = 0, start = -1, end = -1;
    ASSERT_EQ(polyline->getBulgeAt(0, bulge), Kcad::eOk);
    EXPECT_EQ(bulge, 0.5);
    ASSERT_EQ(polyline->getBulgeAt(1, bulge), Kcad::eOk);
    EXPECT_EQ(bulge, -0.25);
    ASSERT_EQ(polyline->getWidthsAt(2, start, end), Kcad::eOk);
    EXPECT_EQ(start, 0.0);
    EXPECT_EQ(db::fieldsOf(record, "AcDbPolyline", 40).size(), 1u);
    EXPECT_EQ(db::fieldsOf(record, "AcDbPolyline", 42).size(), 2u);
    // The extrusion still closes the subclass after the vertex block.
    const std::vector<db::Tag> tags = record.tags.decode();
    EXPECT_EQ(tags.back().code, 210);
}

// Per-vertex widths: read back, vary (no constant width), and a constant width rewrites them.
TEST(EntityPolyline, WidthsPerVertexAndConstantWidth) {
    auto database = loadDatabase(kWidePolyline);
    ASSERT_TRUE(database);
    Opened<KcDbPolyline> polyline(*database, 0x100, KcDb::kForWrite);
    double start = 0, end = 0, width = -1;
    ASSERT_EQ(polyline->getWidthsAt(1, start, end), Kcad::eOk);
    EXPECT_EQ(start, 1.0);
    EXPECT_EQ(end, 0.5);
    EXPECT_EQ(polyline->getConstantWidth(width), Kcad::eNotApplicable);
    ASSERT_EQ(polyline->addVertexAt(1, {2, 0}, 0.0, 0.25, 0.25), Kcad::eOk);
    ASSERT_EQ(polyline->getWidthsAt(1, start, end), Kcad::eOk);
    EXPECT_EQ(start, 0.25);
    ASSERT_EQ(polyline->setConstantWidth(0.75), Kcad::eOk);
    ASSERT_EQ(polyline->getConstantWidth(width), Kcad::eOk);
    EXPECT_EQ(width, 0.75);
    for (Kcad::UInt32 i = 0; i < polyline->numVerts(); ++i) {
        ASSERT_EQ(polyline->getWidthsAt(i, start, end), Kcad::eOk);
        EXPECT_EQ(start, 0.75) << i;
        EXPECT_EQ(end, 0.75) << i;
    }
}

// World points: the OCS of -z mirrors x and puts the elevation 2 at world z -2.
TEST(EntityPolyline, WorldPointsUseTheElevationAndExtrusion) {
    auto database = loadDatabase(kWidePolyline);
    ASSERT_TRUE(database);
    Opened<KcDbPolyline> polyline(*database, 0x100, KcDb::kForRead);
    KcGePoint3d world;
    ASSERT_EQ(polyline->getPointAt(2, world), Kcad::eOk);
    expectPoint(world, -4, 3, -2);
    EXPECT_EQ(polyline->elevation(), 2.0);
    EXPECT_EQ(polyline->getPointAt(3, world), Kcad::eInvalidInput);
}

// The first vertex of an empty polyline goes before its extrusion, where DXF puts vertices.
TEST(EntityPolyline, FirstVertexGoesBeforeTheExtrusion) {
    auto database = loadDatabase(lwpolyline({{90, "0"}, {70, "0"}, {210, "0.0"}, {220, "0.0"}, {230, "1.0"}}));
    ASSERT_TRUE(database);
    Opened<KcDbPolyline> polyline(*database, 0x100, KcDb::kForWrite);
    ASSERT_EQ(polyline->addVertexAt(0, {1, 2}), Kcad::eOk);
    const std::vector<db::Tag> tags = recordOf(*database, 0x100).tags.decode();
    ASSERT_GE(tags.size(), 2u);
    EXPECT_EQ(tags[tags.size() - 2].code, 10);
    EXPECT_EQ(tags.back().code, 210);
    EXPECT_EQ(polyline->numVerts(), 1u);
}

// An R12 2D polyline in the plane of -z at elevation 3, with a bulge and default widths.
const std::string kR12Polyline =
    r12Dxf(dxfTags({{0, "POLYLINE"}, {5, "30"}, {8, "0"}, {66, "1"}, {10, "0.0"}, {20, "0.0"}, {30, "3.0"},
                    {70, "1"}, {40, "0.5"}, {41, "0.5"}, {210, "0.0"}, {220, "0.0"}, {230, "-1.0"}}) +
           dxfTags({{0, "VERTEX"}, {5, "31"}, {8, "0"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"}, {42, "0.5"},
                    {70, "0"}}) +
           dxfTags({{0, "VERTEX"}, {5, "32"}, {8, "0"}, {10, "4.0"}, {20, "2.0"}, {30, "0.0"}, {40, "1.0"},
                    {70, "0"}}) +
           dxfTags({{0, "VERTEX"}, {5, "33"}, {8, "0"}, {10, "4.0"}, {20, "6.0"}, {30, "0.0"}, {70, "0"}}) +
           dxfTags({{0, "SEQEND"}, {5, "34"}, {8, "0"}}));

TEST(EntityPolyline, OldStyle2dVerticesLieInThePolylinesPlane) {
    auto database = loadDatabase(kR12Polyline);
    ASSERT_TRUE(database);
    Opened<KcDb2dPolyline> polyline(*database, 0x30, KcDb::kForRead);
    ASSERT_TRUE(polyline) << polyline.status();
    EXPECT_TRUE(polyline->isClosed());
    EXPECT_EQ(polyline->elevation(), 3.0);
    EXPECT_EQ(polyline->polyType(), KcDb::k2dSimplePoly);
    std::unique_ptr<KcDbObjectIterator> it(polyline->vertexIterator());
    std::vector<KcGePoint3d> positions;
    std::vector<double> bulges, startWidths;
    for (; !it->done(); it->step()) {
        auto* vertex = KcDb2dVertex::cast(it->entity());
        ASSERT_NE(vertex, nullptr);
        positions.push_back(vertex->position());
        bulges.push_back(vertex->bulge());
        startWidths.push_back(vertex->startWidth());
    }
    ASSERT_EQ(positions.size(), 3u);
    expectPoint(positions[0], -1, 2, -3);
    expectPoint(positions[2], -4, 6, -3);
    EXPECT_EQ(bulges, (std::vector<double>{0.5, 0.0, 0.0}));
    EXPECT_EQ(startWidths, (std::vector<double>{0.5, 1.0, 0.5}));  // a vertex without 40 takes the default
}

// Walking backwards, from the end, and past an erased vertex.
TEST(EntityPolyline, VertexIteratorWalksBothWaysAndSkipsErased) {
    auto database = loadDatabase(kR12Polyline);
    ASSERT_TRUE(database);
    recordOf(*database, 0x32).erased = true;
    Opened<KcDb2dPolyline> polyline(*database, 0x30, KcDb::kForRead);
    std::unique_ptr<KcDbObjectIterator> it(polyline->vertexIterator());
    std::vector<KcDbHandle> forward, backward;
    for (it->start(); !it->done(); it->step()) forward.push_back(it->objectId().handle());
    for (it->start(true); !it->done(); it->step(true)) backward.push_back(it->objectId().handle());
    EXPECT_EQ(forward, (std::vector<KcDbHandle>{0x31, 0x33}));
    EXPECT_EQ(backward, (std::vector<KcDbHandle>{0x33, 0x31}));
    it->start();
    it->step(false, false);
    EXPECT_EQ(it->objectId().handle(), KcDbHandle(0x32));
    ASSERT_NE(it->entity(), nullptr);  // asked for, an erased vertex opens too
    EXPECT_TRUE(it->entity()->isErased());
}

// Spline-fit 3D polylines and polygon meshes read their kind and sizes.
TEST(EntityPolyline, KindsAndSizesOfOldStylePolylines) {
    const std::string entities =
        dxfTags({{0, "POLYLINE"}, {5, "40"}, {8, "0"}, {66, "1"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {70, "12"},
                 {75, "6"}}) +
        dxfTags({{0, "VERTEX"}, {5, "41"}, {8, "0"}, {10, "1.0"}, {20, "2.0"}, {30, "3.0"}, {70, "32"}}) +
        dxfTags({{0, "SEQEND"}, {5, "42"}, {8, "0"}}) +
        dxfTags({{0, "POLYLINE"}, {5, "50"}, {8, "0"}, {66, "1"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {70, "16"},
                 {71, "3"}, {72, "4"}}) +
        dxfTags({{0, "SEQEND"}, {5, "51"}, {8, "0"}});
    auto database = loadDatabase(r12Dxf(entities));
    ASSERT_TRUE(database);
    Opened<KcDb3dPolyline> spline(*database, 0x40, KcDb::kForRead);
    ASSERT_TRUE(spline) << spline.status();
    EXPECT_EQ(spline->polyType(), KcDb::k3dCubicSplinePoly);
    std::unique_ptr<KcDbObjectIterator> it(spline->vertexIterator());
    auto* vertex = KcDb3dPolylineVertex::cast(it->entity());
    ASSERT_NE(vertex, nullptr);
    expectPoint(vertex->position(), 1, 2, 3);
    Opened<KcDbPolygonMesh> mesh(*database, 0x50, KcDb::kForRead);
    ASSERT_TRUE(mesh) << mesh.status();
    EXPECT_EQ(mesh->mSize(), 3);
    EXPECT_EQ(mesh->nSize(), 4);
}

}  // namespace
}  // namespace korva::test
