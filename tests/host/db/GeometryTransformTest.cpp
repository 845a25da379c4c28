// transformBy of every entity type, checked by sample points computed in the test
// from the DXF groups: after the transformation the entity's samples must be the
// transformed samples of before (as a set: a mirror swaps the ends of an arc). The
// matrices are a rotation about an oblique axis with a scale, a mirror in the plane
// and a mirror of the plane. Every transformed drawing must save and reload with the
// same tags.
#include <cmath>
#include <functional>
#include <numbers>

#include "GeometryTestSupport.h"
#include "db/EntityGeometry.h"
#include "db/RecordFields.h"
#include "geom/Ocs.h"

namespace korva {
namespace {

using db::ObjectRecord;
using db::TagRef;
constexpr double kPi = std::numbers::pi;

KcGeVector3d normalOf(const ObjectRecord& r) {
    const KcGeVector3d n = db::fieldVector(r, {}, 210, {0, 0, 1});
    return n.normal();
}

KcGePoint3d onCurve(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double t) {
    return c + u * std::cos(t) + v * std::sin(t);
}

// Points of a circle or arc: centre, the ends (start, middle and end of the sweep).
std::vector<KcGePoint3d> roundSamples(const ObjectRecord& r) {
    const KcGeVector3d n = normalOf(r);
    const geom::OcsAxes axes = geom::ocsAxes(n);
    const double radius = db::fieldReal(r, {}, 40);
    const KcGePoint3d c = geom::ocsToWcs(db::fieldPoint(r, {}, 10), n);
    if (r.type == db::Type::Circle) return {c, c + n * radius};  // the centre and a point on the axis
    double s = db::fieldReal(r, {}, 50) * kPi / 180, e = db::fieldReal(r, {}, 51) * kPi / 180;
    if (e < s) e += 2 * kPi;
    return {c, onCurve(c, axes.x * radius, axes.y * radius, s), onCurve(c, axes.x * radius, axes.y * radius, e),
            onCurve(c, axes.x * radius, axes.y * radius, (s + e) / 2)};
}

std::vector<KcGePoint3d> ellipseSamples(const ObjectRecord& r) {
    const KcGePoint3d c = db::fieldPoint(r, {}, 10);
    const KcGeVector3d a = db::fieldVector(r, {}, 11, {1, 0, 0});
    const KcGeVector3d b = normalOf(r).crossProduct(a) * db::fieldReal(r, {}, 40);
    double s = db::fieldReal(r, {}, 41), e = db::fieldReal(r, {}, 42);
    if (e < s) e += 2 * kPi;
    return {c, onCurve(c, a, b, s), onCurve(c, a, b, e)};
}

// Vertices of an LWPOLYLINE and the middle of each bulged segment.
std::vector<KcGePoint3d> lwpolylineSamples(const ObjectRecord& r) {
    const KcGeVector3d n = normalOf(r);
    const double elevation = db::fieldReal(r, {}, 38);
    std::vector<std::pair<KcGePoint2d, double>> vertices;
    for (TagRef t : r.tags) {
        if (t.code() == 10) vertices.emplace_back(t.point().convert2d(), 0.0);
        if (t.code() == 42 && !vertices.empty()) vertices.back().second = t.real();
    }
    std::vector<KcGePoint3d> out;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const auto [p, bulge] = vertices[i];
        out.push_back(geom::ocsToWcs(KcGePoint3d(p.x, p.y, elevation), n));
        if (bulge == 0.0 || i + 1 == vertices.size()) continue;
        const KcGePoint2d q = vertices[i + 1].first;
        const KcGeVector2d chord = q - p;
        // The arc's middle lies a sagitta of bulge * chord / 2 to the right of the chord.
        const KcGeVector2d right = KcGeVector2d(chord.y, -chord.x) * (1.0 / chord.length());
        const KcGePoint2d mid = p + chord * 0.5 + right * (bulge * chord.length() / 2);
        out.push_back(geom::ocsToWcs(KcGePoint3d(mid.x, mid.y, elevation), n));
    }
    return out;
}

std::vector<KcGePoint3d> pointsOf(const ObjectRecord& r, std::initializer_list<int> codes, bool ocs) {
    std::vector<KcGePoint3d> out;
    for (TagRef t : r.tags) {
        if (t.code() == 1001) break;
        for (int code : codes) {
            if (t.code() != code || !t.isPoint()) continue;
            out.push_back(ocs ? geom::ocsToWcs(t.point(), normalOf(r)) : t.point());
        }
    }
    return out;
}

// A block reference's transform written out from its groups.
KcGeMatrix3d referenceTransform(const ObjectRecord& insert) {
    const KcGeVector3d n = normalOf(insert);
    const KcGePoint3d position = geom::ocsToWcs(db::fieldPoint(insert, {}, 10), n);
    const KcGeScale3d scale(db::fieldReal(insert, {}, 41, 1), db::fieldReal(insert, {}, 42, 1),
                            db::fieldReal(insert, {}, 43, 1));
    const ObjectRecord* block = insert.drawing->tableRecord("BLOCK_RECORD", db::fieldText(insert, {}, 2));
    const KcGePoint3d base = db::fieldPoint(*block->container->begin, {}, 10);
    return KcGeMatrix3d::translation(position.asVector()) * KcGeMatrix3d::planeToWorld(n) *
           KcGeMatrix3d::rotation(db::fieldReal(insert, {}, 50) * kPi / 180, KcGeVector3d::kZAxis) *
           KcGeMatrix3d::scaling(scale) * KcGeMatrix3d::translation(-base.asVector());
}

std::vector<KcGePoint3d> samples(const ObjectRecord& r) {
    switch (r.type) {
        case db::Type::Circle:
        case db::Type::Arc: return roundSamples(r);
        case db::Type::Ellipse: return ellipseSamples(r);
        case db::Type::LwPolyline: return lwpolylineSamples(r);
        case db::Type::Solid: return pointsOf(r, {10, 11, 12, 13}, true);
        case db::Type::Insert: {
            const KcGeMatrix3d b = referenceTransform(r);
            std::vector<KcGePoint3d> out;
            for (const KcGePoint3d& q : {KcGePoint3d(0, 0, 0), KcGePoint3d(1, 0, 0), KcGePoint3d(0, 1, 0),
                                         KcGePoint3d(0, 0, 1), KcGePoint3d(2, 3, 4)}) {
                out.push_back(b * q);
            }
            for (const ObjectRecord* attribute : r.container ? r.container->members : std::vector<ObjectRecord*>{}) {
                if (attribute->type == db::Type::Attrib) out.push_back(pointsOf(*attribute, {10}, true).front());
            }
            return out;
        }
        case db::Type::Polyline: {
            std::vector<KcGePoint3d> out;
            const bool planar = (db::fieldInteger(r, {}, 70) & (8 | 16 | 64)) == 0;
            const double elevation = db::fieldPoint(r, {}, 10).z;
            for (const ObjectRecord* v : r.container->members) {
                KcGePoint3d p = db::fieldPoint(*v, {}, 10);
                if (planar) p = geom::ocsToWcs(KcGePoint3d(p.x, p.y, elevation), normalOf(r));
                out.push_back(p);
            }
            return out;
        }
        case db::Type::Hatch: {
            std::vector<KcGePoint3d> out;
            const double elevation = db::fieldPoint(r, {}, 10).z;
            bool afterHeader = false;
            for (TagRef t : r.tags) {
                if (t.code() == 91) afterHeader = true;
                if (afterHeader && (t.code() == 10 || t.code() == 11) && t.isPoint()) {
                    out.push_back(geom::ocsToWcs(KcGePoint3d(t.point().x, t.point().y, elevation), normalOf(r)));
                }
            }
            return out;
        }
        case db::Type::Dimension: {
            std::vector<KcGePoint3d> out = pointsOf(r, {10, 13, 14}, false);
            for (const KcGePoint3d& p : pointsOf(r, {11}, true)) out.push_back(p);
            return out;
        }
        case db::Type::Spline: return pointsOf(r, {10, 11}, false);
        case db::Type::Image: {
            const KcGePoint3d o = db::fieldPoint(r, {}, 10);
            const KcGePoint3d size = db::fieldPoint(r, {}, 13);
            const KcGeVector3d u = db::fieldVector(r, {}, 11, {}) * size.x, v = db::fieldVector(r, {}, 12, {}) * size.y;
            return {o, o + u, o + v};
        }
        case db::Type::Xline: return {db::fieldPoint(r, {}, 10)};  // its direction stays a unit vector
        default: return pointsOf(r, {10, 11, 12, 13}, false);
    }
}

::testing::AssertionResult sameSets(const std::vector<KcGePoint3d>& actual, const std::vector<KcGePoint3d>& expected) {
    if (actual.size() != expected.size()) {
        return ::testing::AssertionFailure() << actual.size() << " samples instead of " << expected.size();
    }
    std::vector<bool> used(actual.size(), false);
    for (const KcGePoint3d& e : expected) {
        bool found = false;
        for (size_t i = 0; i < actual.size() && !found; ++i) {
            if (!used[i] && actual[i].distanceTo(e) < 1e-8) used[i] = found = true;
        }
        if (!found) {
            auto failure = ::testing::AssertionFailure() << "no sample at " << test::describe(e) << "; samples:";
            for (const KcGePoint3d& a : actual) failure << " " << test::describe(a);
            return failure;
        }
    }
    return ::testing::AssertionSuccess();
}

Kcad::ErrorStatus transformThroughApi(const test::SnippetDrawing& drawing, size_t index, const KcGeMatrix3d& m) {
    KcDbEntity* entity = nullptr;
    const Kcad::ErrorStatus opened = kcdbOpenObject(entity, drawing.id(drawing.entity(index)), KcDb::kForWrite);
    if (opened != Kcad::eOk) return opened;
    const Kcad::ErrorStatus status = entity->transformBy(m);
    entity->close();
    return status;
}

constexpr std::string_view kBlock = R"(0 BLOCK
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 B
70 0
10 1
20 1
30 0
3 B
0 LINE
100 AcDbEntity
8 0
100 AcDbLine
10 0
20 0
30 0
11 1
21 0
31 0
0 ENDBLK
100 AcDbEntity
8 0
100 AcDbBlockEnd
)";

struct TransformCase {
    const char* name;
    const char* entity;
};

const TransformCase kTypes[] = {
    {"line", "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 1\n20 2\n30 3\n11 4\n21 -1\n31 5\n"},
    {"point", "0 POINT\n100 AcDbEntity\n8 0\n100 AcDbPoint\n10 2\n20 3\n30 4\n"},
    {"3D face", "0 3DFACE\n100 AcDbEntity\n8 0\n100 AcDbFace\n10 0\n20 0\n30 0\n11 1\n21 0\n31 1\n12 1\n22 2\n32 0\n"
                "13 0\n23 2\n33 -1\n"},
    {"circle", "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 2\n40 2\n"},
    {"arc in a tilted plane", "0 ARC\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 2\n30 3\n40 1.5\n210 0.6\n220 0\n"
                              "230 0.8\n100 AcDbArc\n50 30\n51 200\n"},
    {"elliptical arc", "0 ELLIPSE\n100 AcDbEntity\n8 0\n100 AcDbEllipse\n10 1\n20 1\n30 0\n11 3\n21 1\n31 0\n210 0\n"
                       "220 0\n230 1\n40 0.4\n41 0.5\n42 4\n"},
    {"spline", "0 SPLINE\n100 AcDbEntity\n8 0\n100 AcDbSpline\n70 8\n71 2\n72 6\n73 3\n74 0\n40 0\n40 0\n40 0\n40 1\n"
               "40 1\n40 1\n10 0\n20 0\n30 0\n10 1\n20 2\n30 0\n10 3\n20 0\n30 1\n"},
    {"bulged lwpolyline", "0 LWPOLYLINE\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 3\n70 0\n38 2\n10 0\n20 0\n42 0.5\n"
                          "10 4\n20 0\n10 4\n20 3\n42 -1\n"},
    {"2D polyline", "0 POLYLINE\n100 AcDbEntity\n8 0\n100 AcDb2dPolyline\n66 1\n10 0\n20 0\n30 2\n70 0\n"
                    "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 1\n20 1\n30 0\n70 0\n"
                    "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 5\n20 1\n30 0\n70 0\n"
                    "0 SEQEND\n100 AcDbEntity\n8 0\n"},
    {"3D polyline", "0 POLYLINE\n100 AcDbEntity\n8 0\n100 AcDb3dPolyline\n66 1\n10 0\n20 0\n30 0\n70 8\n"
                    "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 1\n20 2\n30 3\n70 32\n"
                    "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 4\n20 0\n30 -1\n"
                    "70 32\n"
                    "0 SEQEND\n100 AcDbEntity\n8 0\n"},
    {"solid", "0 SOLID\n100 AcDbEntity\n8 0\n100 AcDbTrace\n10 0\n20 0\n30 1\n11 3\n21 0\n31 1\n12 0\n22 2\n32 1\n"
              "13 3\n23 2\n33 1\n"},
    {"reference with an attribute",
     "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n66 1\n2 B\n10 5\n20 5\n30 0\n41 2\n42 1.5\n43 1\n50 30\n"
     "0 ATTRIB\n100 AcDbEntity\n8 0\n100 AcDbText\n10 5\n20 4\n30 0\n40 1\n1 V\n50 30\n100 AcDbAttribute\n2 T\n70 0\n"
     "0 SEQEND\n100 AcDbEntity\n8 0\n"},
    {"reference in the OCS of (0,0,-1)", "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 B\n10 5\n20 5\n"
                                         "30 2\n41 -1\n50 45\n210 0\n220 0\n230 -1\n"},
    {"hatch with a bulge and an arc edge",
     "0 HATCH\n100 AcDbEntity\n8 0\n100 AcDbHatch\n10 0\n20 0\n30 1\n210 0\n220 0\n230 1\n2 ANSI31\n70 0\n71 0\n"
     "91 2\n92 3\n72 1\n73 1\n93 3\n10 0\n20 0\n42 0.5\n10 4\n20 0\n10 4\n20 4\n97 0\n"
     "92 1\n93 2\n72 1\n10 10\n20 0\n11 12\n21 0\n72 2\n10 11\n20 0\n40 1\n50 0\n51 180\n73 1\n97 0\n"
     "75 0\n76 1\n52 0\n41 1\n77 0\n78 1\n53 45\n43 0\n44 0\n45 -2\n46 2\n79 0\n98 1\n10 1\n20 1\n"},
    {"dimension", "0 DIMENSION\n100 AcDbEntity\n8 0\n100 AcDbDimension\n2 *D5\n10 10\n20 2\n30 0\n11 5\n21 3\n31 0\n"
                  "70 32\n1 \n100 AcDbAlignedDimension\n13 0\n23 0\n33 0\n14 10\n24 0\n34 0\n"
                  "100 AcDbRotatedDimension\n"},
    {"image", "0 IMAGE\n100 AcDbEntity\n8 0\n100 AcDbRasterImage\n90 0\n10 1\n20 1\n30 0\n11 0.1\n21 0\n31 0\n12 0\n"
              "22 0.2\n32 0\n13 100\n23 50\n"},
    {"construction line", "0 XLINE\n100 AcDbEntity\n8 0\n100 AcDbXline\n10 1\n20 1\n30 1\n11 0.6\n21 0.8\n31 0\n"},
};

struct NamedMatrix {
    const char* name;
    KcGeMatrix3d m;
};

std::vector<NamedMatrix> conformalMatrices() {
    const KcGeMatrix3d turn = KcGeMatrix3d::rotation(kPi / 6, {1, 1, 1}, {1, 2, 3});
    return {
        {"oblique rotation with scale and move",
         KcGeMatrix3d::translation({3, -2, 1}) * turn * KcGeMatrix3d::scaling(2.0)},
        {"mirror in the plane", KcGeMatrix3d::mirroring({1, 0, 0}, {1, 1, 0})},
        {"mirror of the plane", KcGeMatrix3d::mirroring({0, 0, 1}, {0, 0, 1})},
    };
}

class TransformByType : public ::testing::TestWithParam<TransformCase> {};

TEST_P(TransformByType, SamplesMoveWithTheMatrixAndTheDrawingReloads) {
    for (const NamedMatrix& matrix : conformalMatrices()) {
        SCOPED_TRACE(matrix.name);
        const auto drawing = test::readSnippet(GetParam().entity, kBlock);
        const ObjectRecord& entity = drawing.entity(0);
        std::vector<KcGePoint3d> expected;
        for (const KcGePoint3d& p : samples(entity)) expected.push_back(matrix.m * p);
        ASSERT_EQ(transformThroughApi(drawing, 0, matrix.m), Kcad::eOk);
        EXPECT_TRUE(sameSets(samples(entity), expected)) << test::dumpTags(entity);
        EXPECT_TRUE(test::reloadsUnchanged(drawing.drawing()));
    }
}

std::string typeName(const ::testing::TestParamInfo<TransformCase>& param) {
    std::string name = param.param.name;
    for (char& ch : name) {
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Types, TransformByType, ::testing::ValuesIn(kTypes), typeName);

TEST(TransformRadius, CircleRadiusAndArcAnglesFollowTheMatrix) {
    const auto drawing = test::readSnippet("0 ARC\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 2\n"
                                           "100 AcDbArc\n50 10\n51 80\n");
    const KcGeMatrix3d mirror = KcGeMatrix3d::mirroring({0, 0, 0}, {1, 0, 0}) * KcGeMatrix3d::scaling(3.0);
    ASSERT_EQ(transformThroughApi(drawing, 0, mirror), Kcad::eOk);
    const ObjectRecord& arc = drawing.entity(0);
    EXPECT_DOUBLE_EQ(db::fieldReal(arc, "AcDbCircle", 40), 6.0);
    // Mirrored about the y axis, the arc from 10 to 80 degrees runs from 100 to 170.
    EXPECT_NEAR(db::fieldReal(arc, "AcDbArc", 50), 100.0, 1e-9);
    EXPECT_NEAR(db::fieldReal(arc, "AcDbArc", 51), 170.0, 1e-9);
    EXPECT_TRUE(test::near(db::fieldPoint(arc, {}, 210, {0, 0, 1}), {0, 0, 1}))
        << "a mirror in the plane keeps the extrusion";
}

TEST(TransformDirection, ConstructionLineDirectionStaysAUnitVector) {
    const auto drawing = test::readSnippet(
        "0 XLINE\n100 AcDbEntity\n8 0\n100 AcDbXline\n10 1\n20 1\n30 1\n11 0.6\n21 0.8\n31 0\n");
    ASSERT_EQ(transformThroughApi(drawing, 0, KcGeMatrix3d::scaling(KcGeScale3d(2, 1, 1))), Kcad::eOk);
    // (0.6, 0.8) stretched to (1.2, 0.8), normalized.
    const double length = std::hypot(1.2, 0.8);
    EXPECT_TRUE(test::near(db::fieldPoint(drawing.entity(0), {}, 11), {1.2 / length, 0.8 / length, 0}));
    EXPECT_TRUE(test::near(db::fieldPoint(drawing.entity(0), {}, 10), {2, 1, 1}));
}

TEST(TransformPolyline, MirrorFlipsBulgesAndScalesWidths) {
    const auto drawing = test::readSnippet("0 LWPOLYLINE\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 2\n70 0\n43 0.5\n"
                                           "10 0\n20 0\n42 0.25\n10 4\n20 0\n");
    const KcGeMatrix3d mirror = KcGeMatrix3d::mirroring({0, 0, 0}, {0, 1, 0}) * KcGeMatrix3d::scaling(2.0);
    ASSERT_EQ(transformThroughApi(drawing, 0, mirror), Kcad::eOk);
    EXPECT_DOUBLE_EQ(db::fieldReal(drawing.entity(0), {}, 42), -0.25);
    EXPECT_DOUBLE_EQ(db::fieldReal(drawing.entity(0), {}, 43), 1.0);
}

TEST(TransformText, RotationMovesInsertionAndHeight) {
    const auto drawing = test::readSnippet("0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 1\n20 0\n30 0\n40 2\n"
                                           "1 ABC\n50 10\n100 AcDbText\n");
    ASSERT_EQ(transformThroughApi(drawing, 0, KcGeMatrix3d::rotation(kPi / 2, KcGeVector3d::kZAxis) *
                                                  KcGeMatrix3d::scaling(1.5)),
              Kcad::eOk);
    const ObjectRecord& text = drawing.entity(0);
    EXPECT_TRUE(test::near(db::fieldPoint(text, {}, 10), {0, 1.5, 0}));
    EXPECT_DOUBLE_EQ(db::fieldReal(text, {}, 40), 3.0);
    EXPECT_NEAR(db::fieldReal(text, {}, 50), 100.0, 1e-9);
}

// Readable mirroring: the master point is mirrored and the text keeps its up side.
TEST(TransformText, MirrorKeepsTheTextReadable) {
    struct Case { const char* name; KcGeMatrix3d mirror; KcGePoint3d position; double rotation; };
    const Case cases[] = {
        {"about a vertical line: the baseline direction is kept", KcGeMatrix3d::mirroring({0, 0, 0}, {1, 0, 0}),
         {-2, 1, 0}, 0.0},
        {"about a horizontal line: the text stays upright", KcGeMatrix3d::mirroring({0, 0, 0}, {0, 1, 0}),
         {2, -1, 0}, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto drawing = test::readSnippet("0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 2\n20 1\n30 0\n40 1\n"
                                               "1 ABC\n100 AcDbText\n");
        ASSERT_EQ(transformThroughApi(drawing, 0, c.mirror), Kcad::eOk);
        const ObjectRecord& text = drawing.entity(0);
        EXPECT_TRUE(test::near(db::fieldPoint(text, {}, 10), c.position));
        EXPECT_NEAR(db::fieldReal(text, {}, 50, 0.0), c.rotation, 1e-9);
        EXPECT_EQ(db::fieldInteger(text, {}, 71, 0), 0) << "no backward or upside-down flags";
        EXPECT_TRUE(test::near(db::fieldPoint(text, {}, 210, {0, 0, 1}), {0, 0, 1}));
    }
}

TEST(TransformText, MirroredJustifiedTextKeepsItsAlignmentPoint) {
    test::UnitTextMeasurer measurer;
    // Right-justified "ABC" (3 wide) ending at (10, 0): 10 is at (7, 0).
    const auto drawing = test::readSnippet("0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 7\n20 0\n30 0\n40 1\n"
                                           "1 ABC\n72 2\n11 10\n21 0\n31 0\n100 AcDbText\n73 0\n");
    ASSERT_EQ(transformThroughApi(drawing, 0, KcGeMatrix3d::mirroring({0, 0, 0}, {1, 0, 0})), Kcad::eOk);
    const ObjectRecord& text = drawing.entity(0);
    EXPECT_TRUE(test::near(db::fieldPoint(text, {}, 11), {-10, 0, 0}));
    EXPECT_TRUE(test::near(db::fieldPoint(text, {}, 10), {-13, 0, 0}));
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(text, box));
    EXPECT_TRUE(test::boxNear(box, {-13, 0, 0}, {-10, 1, 0}));
}

TEST(TransformMText, MirrorKeepsDirectionReadableAndScalesSizes) {
    const auto drawing = test::readSnippet(
        "0 MTEXT\n100 AcDbEntity\n8 0\n100 AcDbMText\n10 2\n20 3\n30 0\n40 1\n41 10\n71 1\n1 Note\n11 1\n21 0\n31 0\n");
    const KcGeMatrix3d mirror = KcGeMatrix3d::mirroring({0, 0, 0}, {1, 0, 0}) * KcGeMatrix3d::scaling(2.0);
    ASSERT_EQ(transformThroughApi(drawing, 0, mirror), Kcad::eOk);
    const ObjectRecord& mtext = drawing.entity(0);
    EXPECT_TRUE(test::near(db::fieldPoint(mtext, {}, 10), {-4, 6, 0}));
    EXPECT_TRUE(test::near(db::fieldPoint(mtext, {}, 11), {1, 0, 0}));
    EXPECT_DOUBLE_EQ(db::fieldReal(mtext, {}, 40), 2.0);
    EXPECT_DOUBLE_EQ(db::fieldReal(mtext, {}, 41), 20.0);
}

TEST(TransformInsert, MirrorMakesTheXScaleNegative) {
    struct Case { const char* name; KcGeMatrix3d mirror; double sx, sy, rotation; };
    const Case cases[] = {
        {"about a vertical line", KcGeMatrix3d::mirroring({0, 0, 0}, {1, 0, 0}), -2, 2, 0},
        {"about a horizontal line", KcGeMatrix3d::mirroring({0, 0, 0}, {0, 1, 0}), -2, 2, 180},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto drawing = test::readSnippet("0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 B\n10 5\n"
                                               "20 5\n30 0\n41 2\n42 2\n43 2\n", kBlock);
        ASSERT_EQ(transformThroughApi(drawing, 0, c.mirror), Kcad::eOk);
        const ObjectRecord& insert = drawing.entity(0);
        EXPECT_NEAR(db::fieldReal(insert, {}, 41), c.sx, 1e-12);
        EXPECT_NEAR(db::fieldReal(insert, {}, 42), c.sy, 1e-12);
        EXPECT_NEAR(db::fieldReal(insert, {}, 50, 0.0), c.rotation, 1e-9);
    }
}

TEST(TransformInsert, NonUniformScaleAlongTheBlockAxesIsKeptAndAttributesStretch) {
    const auto drawing = test::readSnippet(
        "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n66 1\n2 B\n10 0\n20 0\n30 0\n"
        "0 ATTRIB\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 -2\n30 0\n40 1\n1 V\n100 AcDbAttribute\n2 T\n70 0\n"
        "0 SEQEND\n100 AcDbEntity\n8 0\n", kBlock);
    ASSERT_EQ(transformThroughApi(drawing, 0, KcGeMatrix3d::scaling(KcGeScale3d(3, 1, 1))), Kcad::eOk);
    const ObjectRecord& insert = drawing.entity(0);
    EXPECT_DOUBLE_EQ(db::fieldReal(insert, {}, 41), 3.0);
    EXPECT_DOUBLE_EQ(db::fieldReal(insert, {}, 42, 1.0), 1.0);
    const ObjectRecord& attribute = *insert.container->members.front();
    EXPECT_DOUBLE_EQ(db::fieldReal(attribute, {}, 41), 3.0) << "the width factor takes the stretch";
    EXPECT_DOUBLE_EQ(db::fieldReal(attribute, {}, 40), 1.0);
    EXPECT_TRUE(test::reloadsUnchanged(drawing.drawing()));
}

TEST(TransformRefusal, NonUniformScaleLeavesRoundAndTextEntitiesUnchanged) {
    const char* entities[] = {
        "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 0\n40 2\n",
        "0 ARC\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 0\n40 2\n100 AcDbArc\n50 0\n51 90\n",
        "0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 1\n20 1\n30 0\n40 2\n1 A\n100 AcDbText\n",
        "0 MTEXT\n100 AcDbEntity\n8 0\n100 AcDbMText\n10 1\n20 1\n30 0\n40 2\n41 0\n71 1\n1 A\n",
        "0 LWPOLYLINE\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 2\n70 0\n10 0\n20 0\n42 1\n10 1\n20 0\n",
        "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 B\n10 0\n20 0\n30 0\n50 30\n",
    };
    const KcGeMatrix3d stretch = KcGeMatrix3d::scaling(KcGeScale3d(2, 1, 1));
    for (const char* snippet : entities) {
        const auto drawing = test::readSnippet(snippet, kBlock);
        const db::TagList before = drawing.entity(0).tags;
        EXPECT_EQ(transformThroughApi(drawing, 0, stretch), Kcad::eCannotScaleNonUniformly) << snippet;
        EXPECT_TRUE(drawing.entity(0).tags == before) << snippet;
    }
}

TEST(TransformNonUniform, EllipseTakesTheStretchWithNewAxes) {
    // A circle of radius 1 as an ellipse, stretched by 3 along y: major axis (0, 3), ratio 1/3.
    const auto drawing = test::readSnippet("0 ELLIPSE\n100 AcDbEntity\n8 0\n100 AcDbEllipse\n10 0\n20 0\n30 0\n11 1\n"
                                           "21 0\n31 0\n40 1\n41 0\n42 1.5707963267948966\n");
    const KcGeMatrix3d stretch = KcGeMatrix3d::scaling(KcGeScale3d(1, 3, 1));
    const std::vector<KcGePoint3d> before = ellipseSamples(drawing.entity(0));
    ASSERT_EQ(transformThroughApi(drawing, 0, stretch), Kcad::eOk);
    const ObjectRecord& ellipse = drawing.entity(0);
    EXPECT_NEAR(db::fieldVector(ellipse, {}, 11, {}).length(), 3.0, 1e-12);
    EXPECT_NEAR(db::fieldReal(ellipse, {}, 40), 1.0 / 3.0, 1e-12);
    std::vector<KcGePoint3d> expected;
    for (const KcGePoint3d& p : before) expected.push_back(stretch * p);
    EXPECT_TRUE(sameSets(ellipseSamples(ellipse), expected));
}

TEST(TransformExtendedData, WorldPointsDistancesAndDirectionsFollow) {
    const auto drawing = test::readSnippet("0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 1\n21 0\n"
                                           "31 0\n1001 APP\n1010 5\n1020 5\n1030 0\n1011 1\n1021 2\n1031 0\n"
                                           "1013 1\n1023 0\n1033 0\n1041 2\n1070 7\n");
    ASSERT_EQ(transformThroughApi(drawing, 0, KcGeMatrix3d::rotation(kPi / 2, KcGeVector3d::kZAxis) *
                                                  KcGeMatrix3d::scaling(2.0)),
              Kcad::eOk);
    std::vector<db::Tag> xdata;
    for (TagRef t : drawing.entity(0).tags) {
        if (t.code() >= 1000) xdata.push_back(t.toTag());
    }
    ASSERT_EQ(xdata.size(), 6u);
    EXPECT_TRUE(test::near(xdata[1].pointValue(), {5, 5, 0})) << "1010 is a plain point";
    EXPECT_TRUE(test::near(xdata[2].pointValue(), {-4, 2, 0}));
    EXPECT_TRUE(test::near(xdata[3].pointValue(), {0, 1, 0}));
    EXPECT_DOUBLE_EQ(xdata[4].realValue(), 4.0);
    EXPECT_EQ(xdata[5].integer, 7);
}

TEST(TransformRefusal, BadMatricesAndTypesWithoutGeometryChangeNothing) {
    const auto drawing = test::readSnippet("0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 1\n21 0\n"
                                           "31 0\n0 REGION\n100 AcDbEntity\n8 0\n100 AcDbModelerGeometry\n70 1\n");
    const KcGeMatrix3d ontoALine = KcGeMatrix3d::scaling(KcGeScale3d(1, 0, 0));
    KcGeMatrix3d projective;
    projective.entry[3][0] = 1.0;
    const db::TagList before = drawing.entity(0).tags;
    EXPECT_EQ(transformThroughApi(drawing, 0, ontoALine), Kcad::eInvalidInput);
    EXPECT_EQ(transformThroughApi(drawing, 0, projective), Kcad::eInvalidInput);
    EXPECT_TRUE(drawing.entity(0).tags == before);
    EXPECT_EQ(transformThroughApi(drawing, 1, KcGeMatrix3d::translation({1, 0, 0})), Kcad::eNotApplicable);
}

// Flattening space onto the xy plane (a zero z scale) keeps what lies in that plane
// and refuses what it would collapse.
TEST(TransformFlattening, PlanarEntitiesInThePlaneSurviveOthersAreRefused) {
    const auto drawing = test::readSnippet(
        "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 5\n40 2\n"
        "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 1\n210 1\n220 0\n230 0\n");
    const KcGeMatrix3d flatten = KcGeMatrix3d::scaling(KcGeScale3d(2, 2, 0));
    ASSERT_EQ(transformThroughApi(drawing, 0, flatten), Kcad::eOk);
    EXPECT_TRUE(test::near(db::fieldPoint(drawing.entity(0), {}, 10), {2, 2, 0}));
    EXPECT_DOUBLE_EQ(db::fieldReal(drawing.entity(0), {}, 40), 4.0);
    const db::TagList before = drawing.entity(1).tags;
    EXPECT_EQ(transformThroughApi(drawing, 1, flatten), Kcad::eInvalidInput);
    EXPECT_TRUE(drawing.entity(1).tags == before);
}

TEST(TransformCopy, TransformedCopyLeavesTheOriginal) {
    const auto drawing = test::readSnippet("0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 1\n30 0\n40 2\n");
    KcDbEntity* circle = nullptr;
    ASSERT_EQ(kcdbOpenObject(circle, drawing.id(drawing.entity(0)), KcDb::kForRead), Kcad::eOk);
    KcDbEntity* copy = nullptr;
    ASSERT_EQ(circle->getTransformedCopy(KcGeMatrix3d::translation({10, 0, 0}), copy), Kcad::eOk);
    circle->close();
    ASSERT_NE(copy, nullptr);
    KcDbExtents extents;
    ASSERT_EQ(copy->getGeomExtents(extents), Kcad::eOk);
    EXPECT_TRUE(test::near(extents.minPoint(), {9, -1, 0}));
    EXPECT_TRUE(test::near(db::fieldPoint(drawing.entity(0), {}, 10), {1, 1, 0}));
    delete copy;
}

}  // namespace
}  // namespace korva
