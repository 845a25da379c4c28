// OCS entities take and give world points while their tags hold OCS points:
// for several extrusions each setter's world point reads back unchanged and is
// stored as the arbitrary-axis OCS point (geom::wcsToOcs). Angles go in and out
// in radians and are stored in degrees.
#include <cmath>
#include <functional>

#include "EntityTestSupport.h"
#include "db/RecordFields.h"
#include "geom/Ocs.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;

void expectPoint(const KcGePoint3d& actual, const KcGePoint3d& expected, const std::string& what) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-9) << what;
    EXPECT_NEAR(actual.z, expected.z, 1e-9) << what;
}

std::string extrusion(const KcGeVector3d& n) {
    return dxfTags({{210, std::to_string(n.x)}, {220, std::to_string(n.y)}, {230, std::to_string(n.z)}});
}

struct OcsEntity {
    const char* name;
    std::function<std::string(const KcGeVector3d&)> dxf;  // handle 100, with the extrusion
    int code;                                            // the group the setter writes
    std::function<Kcad::ErrorStatus(KcDbEntity*, const KcGePoint3d&)> set;
    std::function<KcGePoint3d(KcDbEntity*)> get;
};

const OcsEntity kEntities[] = {
    {"Circle",
     [](const KcGeVector3d& n) {
         return modernHead("CIRCLE", "100", "AcDbCircle") + dxfTags({{10, "1.0"}, {20, "1.0"}, {30, "0.0"}, {40, "1.0"}}) +
                extrusion(n);
     },
     10, [](KcDbEntity* e, const KcGePoint3d& p) { return KcDbCircle::cast(e)->setCenter(p); },
     [](KcDbEntity* e) { return KcDbCircle::cast(e)->center(); }},
    {"Arc",
     [](const KcGeVector3d& n) {
         return modernHead("ARC", "100", "AcDbCircle") + dxfTags({{10, "1.0"}, {20, "1.0"}, {30, "0.0"}, {40, "1.0"}}) +
                extrusion(n) + dxfTags({{100, "AcDbArc"}, {50, "0.0"}, {51, "90.0"}});
     },
     10, [](KcDbEntity* e, const KcGePoint3d& p) { return KcDbArc::cast(e)->setCenter(p); },
     [](KcDbEntity* e) { return KcDbArc::cast(e)->center(); }},
    {"Text",
     [](const KcGeVector3d& n) {
         return modernHead("TEXT", "100", "AcDbText") +
                dxfTags({{10, "1.0"}, {20, "1.0"}, {30, "0.0"}, {40, "1.0"}, {1, "x"}}) + extrusion(n) +
                dxfTags({{100, "AcDbText"}});
     },
     10, [](KcDbEntity* e, const KcGePoint3d& p) { return KcDbText::cast(e)->setPosition(p); },
     [](KcDbEntity* e) { return KcDbText::cast(e)->position(); }},
    {"Insert",
     [](const KcGeVector3d& n) {
         return modernHead("INSERT", "100", "AcDbBlockReference") +
                dxfTags({{2, "BLK"}, {10, "1.0"}, {20, "1.0"}, {30, "0.0"}}) + extrusion(n);
     },
     10, [](KcDbEntity* e, const KcGePoint3d& p) { return KcDbBlockReference::cast(e)->setPosition(p); },
     [](KcDbEntity* e) { return KcDbBlockReference::cast(e)->position(); }},
    {"TraceCorner",
     [](const KcGeVector3d& n) {
         return modernHead("TRACE", "100", "AcDbTrace") +
                dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "1.0"}, {21, "0.0"}, {31, "0.0"}, {12, "0.0"},
                         {22, "1.0"}, {32, "0.0"}, {13, "1.0"}, {23, "1.0"}, {33, "0.0"}}) +
                extrusion(n);
     },
     12,
     [](KcDbEntity* e, const KcGePoint3d& p) { return KcDbTrace::cast(e)->setPointAt(2, p); },
     [](KcDbEntity* e) {
         KcGePoint3d p;
         KcDbTrace::cast(e)->getPointAt(2, p);
         return p;
     }},
};

struct OcsCase {
    const OcsEntity* entity;
    KcGeVector3d normal;
};

void PrintTo(const OcsCase& c, std::ostream* out) {
    *out << c.entity->name << " (" << c.normal.x << "," << c.normal.y << "," << c.normal.z << ")";
}

class EntityOcs : public ::testing::TestWithParam<OcsCase> {};

TEST_P(EntityOcs, WorldPointRoundTripsAndIsStoredInTheOcs) {
    const OcsCase& c = GetParam();
    DxfParts parts{c.entity->dxf(c.normal)};
    auto database = loadDatabase(modernDxf(addBlock(parts, "BLK", "90", "91", "92")));
    ASSERT_TRUE(database);
    const KcGePoint3d world(3.5, -2.0, 7.25);
    Opened<KcDbEntity> entity(*database, 0x100, KcDb::kForWrite);
    ASSERT_TRUE(entity);
    ASSERT_EQ(c.entity->set(entity.get(), world), Kcad::eOk);
    expectPoint(c.entity->get(entity.get()), world, "read back");
    expectPoint(db::fieldPoint(recordOf(*database, 0x100), {}, c.entity->code), geom::wcsToOcs(world, c.normal),
                "stored");
}

std::vector<OcsCase> ocsCases() {
    std::vector<OcsCase> cases;
    const KcGeVector3d normals[] = {{0, 0, 1}, {0, 0, -1}, KcGeVector3d(1, 1, 1).normal(), {0, 1, 0}};
    for (const OcsEntity& entity : kEntities) {
        for (const KcGeVector3d& normal : normals) cases.push_back({&entity, normal});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Entities, EntityOcs, ::testing::ValuesIn(ocsCases()));

struct AngleCase {
    double radians;
    double storedDegrees;  // normalised to [0, 360)
};

class EntityAngles : public ::testing::TestWithParam<AngleCase> {};

// Arc, text and insert angles: radians in the API, degrees from 0 to 360 in the tags.
TEST_P(EntityAngles, AreRadiansInTheApiAndDegreesInTheTags) {
    const AngleCase& c = GetParam();
    DxfParts parts{
        {modernHead("ARC", "100", "AcDbCircle") +
         dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {100, "AcDbArc"}, {50, "0.0"}, {51, "90.0"}}) +
         modernHead("TEXT", "101", "AcDbText") +
         dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {1, "x"}, {100, "AcDbText"}}) +
         modernHead("INSERT", "102", "AcDbBlockReference") + dxfTags({{2, "BLK"}, {10, "0.0"}, {20, "0.0"},
                                                                       {30, "0.0"}})}};
    auto database = loadDatabase(modernDxf(addBlock(parts, "BLK", "90", "91", "92")));
    ASSERT_TRUE(database);
    const double expected = c.storedDegrees * kPi / 180.0;
    {
        Opened<KcDbArc> arc(*database, 0x100, KcDb::kForWrite);
        ASSERT_EQ(arc->setStartAngle(c.radians), Kcad::eOk);
        EXPECT_NEAR(arc->startAngle(), expected, 1e-12);
        Opened<KcDbText> text(*database, 0x101, KcDb::kForWrite);
        ASSERT_EQ(text->setRotation(c.radians), Kcad::eOk);
        EXPECT_NEAR(text->rotation(), expected, 1e-12);
        Opened<KcDbBlockReference> insert(*database, 0x102, KcDb::kForWrite);
        ASSERT_EQ(insert->setRotation(c.radians), Kcad::eOk);
        EXPECT_NEAR(insert->rotation(), expected, 1e-12);
    }
    EXPECT_NEAR(db::fieldReal(recordOf(*database, 0x100), "AcDbArc", 50), c.storedDegrees, 1e-9);
    EXPECT_NEAR(db::fieldReal(recordOf(*database, 0x101), "AcDbText", 50), c.storedDegrees, 1e-9);
    EXPECT_NEAR(db::fieldReal(recordOf(*database, 0x102), "AcDbBlockReference", 50), c.storedDegrees, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Entities, EntityAngles,
                         ::testing::Values(AngleCase{kPi / 6, 30}, AngleCase{-kPi / 2, 270}, AngleCase{5 * kPi, 180},
                                           AngleCase{0.0, 0.0}));

}  // namespace
}  // namespace korva::test
