// Explode of block references, polylines, MTEXT and dimensions, and
// explodeToOwnerSpace. Parts of a reference must sit where the block transform
// (written out in the test from the reference's groups) puts the definition's
// points; the reference's own attributes never appear among them.
#include <cmath>
#include <numbers>

#include "GeometryTestSupport.h"
#include "db/EntityGeometry.h"
#include "db/RecordFields.h"
#include "geom/Ocs.h"

namespace korva {
namespace {

using db::ObjectRecord;
constexpr double kPi = std::numbers::pi;

// PART (base point (1,1)): a line, a circle, an attribute definition, a
// reference to INNER, a 2D polyline and a colour-BYBLOCK line on layer 0.
constexpr std::string_view kBlocks =
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 INNER\n70 0\n10 0\n20 0\n30 0\n3 INNER\n"
    "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 0\n21 1\n31 0\n"
    "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 PART\n70 2\n10 1\n20 1\n30 0\n3 PART\n"
    "0 LINE\n100 AcDbEntity\n8 LINES\n100 AcDbLine\n10 1\n20 1\n30 0\n11 3\n21 1\n31 0\n"
    "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 2\n20 2\n30 0\n40 0.5\n"
    "0 ATTDEF\n100 AcDbEntity\n8 0\n100 AcDbText\n10 1\n20 0\n30 0\n40 0.25\n1 default\n"
    "100 AcDbAttributeDefinition\n3 Value?\n2 TAG\n70 0\n"
    "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 INNER\n10 2\n20 0\n30 0\n50 90\n"
    "0 POLYLINE\n100 AcDbEntity\n8 0\n100 AcDb2dPolyline\n66 1\n10 0\n20 0\n30 0\n70 0\n"
    "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 0\n20 3\n30 0\n70 0\n"
    "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 4\n20 3\n30 0\n70 0\n"
    "0 SEQEND\n100 AcDbEntity\n8 0\n"
    "0 LINE\n100 AcDbEntity\n8 0\n62 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 1\n21 1\n31 0\n"
    "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 ROUND\n70 0\n10 0\n20 0\n30 0\n3 ROUND\n"
    "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 1\n20 0\n30 0\n40 1\n"
    "0 ARC\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 2\n100 AcDbArc\n50 0\n51 90\n"
    "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 LABEL\n70 0\n10 0\n20 0\n30 0\n3 LABEL\n"
    "0 TEXT\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 0\n30 0\n40 1\n1 A\n100 AcDbText\n"
    "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 *D3\n70 1\n10 0\n20 0\n30 0\n3 *D3\n"
    "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 10\n21 0\n31 0\n"
    "0 SOLID\n100 AcDbEntity\n8 0\n100 AcDbTrace\n10 0\n20 0\n30 0\n11 1\n21 0.2\n31 0\n12 1\n22 -0.2\n32 0\n"
    "13 1\n23 -0.2\n33 0\n"
    "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n";

// A reference to PART rotated, scaled and extruded downward, with an attribute of its own.
constexpr const char* kReference =
    "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n66 1\n2 PART\n10 10\n20 5\n30 2\n41 2\n42 2\n43 2\n50 30\n"
    "210 0\n220 0\n230 -1\n"
    "0 ATTRIB\n100 AcDbEntity\n8 0\n100 AcDbText\n10 10\n20 4\n30 -2\n40 0.5\n1 value\n210 0\n220 0\n230 -1\n"
    "100 AcDbAttribute\n2 TAG\n70 0\n"
    "0 SEQEND\n100 AcDbEntity\n8 0\n";

KcGeVector3d normalOf(const ObjectRecord& r) { return db::fieldVector(r, {}, 210, {0, 0, 1}).normal(); }

KcGeMatrix3d referenceTransform(const ObjectRecord& insert) {
    const KcGeVector3d n = normalOf(insert);
    const KcGePoint3d position = geom::ocsToWcs(db::fieldPoint(insert, {}, 10), n);
    const KcGeScale3d scale(db::fieldReal(insert, {}, 41, 1), db::fieldReal(insert, {}, 42, 1),
                            db::fieldReal(insert, {}, 43, 1));
    const std::string_view name = db::fieldText(insert, {}, 2);
    const ObjectRecord* block = insert.drawing ? insert.drawing->tableRecord("BLOCK_RECORD", name) : nullptr;
    const KcGePoint3d base = block ? db::fieldPoint(*block->container->begin, {}, 10) : KcGePoint3d::kOrigin;
    return KcGeMatrix3d::translation(position.asVector()) * KcGeMatrix3d::planeToWorld(n) *
           KcGeMatrix3d::rotation(db::fieldReal(insert, {}, 50) * kPi / 180, KcGeVector3d::kZAxis) *
           KcGeMatrix3d::scaling(scale) * KcGeMatrix3d::translation(-base.asVector());
}

std::vector<std::unique_ptr<KcDbEntity>> explodeThroughApi(const test::SnippetDrawing& drawing, size_t index,
                                                           Kcad::ErrorStatus& status) {
    KcDbEntity* entity = nullptr;
    std::vector<std::unique_ptr<KcDbEntity>> parts;
    status = kcdbOpenObject(entity, drawing.id(drawing.entity(index)), KcDb::kForRead);
    if (status != Kcad::eOk) return parts;
    KcDbVoidPtrArray array;
    status = entity->explode(array);
    entity->close();
    for (int i = 0; i < array.length(); ++i) parts.emplace_back(static_cast<KcDbEntity*>(array[i]));
    return parts;
}

ObjectRecord& recordOf(KcDbEntity& part) { return db::ObjectAccess::record(part); }

TEST(ExplodeInsert, PartsSitWhereTheBlockTransformPutsTheDefinition) {
    const auto drawing = test::readSnippet(kReference, kBlocks);
    const ObjectRecord& reference = drawing.entity(0);
    const KcGeMatrix3d b = referenceTransform(reference);
    Kcad::ErrorStatus status;
    auto parts = explodeThroughApi(drawing, 0, status);
    ASSERT_EQ(status, Kcad::eOk);
    ASSERT_EQ(parts.size(), 6u);
    for (auto& part : parts) {
        EXPECT_TRUE(part->isNewObject());
        EXPECT_NE(recordOf(*part).type, db::Type::Attrib) << "the reference's attributes are not parts";
    }
    const ObjectRecord& line = recordOf(*parts[0]);
    EXPECT_EQ(line.type, db::Type::Line);
    EXPECT_TRUE(test::near(db::fieldPoint(line, {}, 10), b * KcGePoint3d(1, 1, 0)));
    EXPECT_TRUE(test::near(db::fieldPoint(line, {}, 11), b * KcGePoint3d(3, 1, 0)));
    EXPECT_EQ(db::fieldText(line, {}, 8), "LINES");

    const ObjectRecord& circle = recordOf(*parts[1]);
    EXPECT_TRUE(test::near(geom::ocsToWcs(db::fieldPoint(circle, {}, 10), normalOf(circle)), b * KcGePoint3d(2, 2, 0)));
    EXPECT_DOUBLE_EQ(db::fieldReal(circle, {}, 40), 1.0);
    EXPECT_TRUE(test::near(db::fieldPoint(circle, {}, 210), {0, 0, -1}));

    const ObjectRecord& attdef = recordOf(*parts[2]);
    EXPECT_EQ(attdef.type, db::Type::AttDef);
    EXPECT_TRUE(test::near(geom::ocsToWcs(db::fieldPoint(attdef, {}, 10), normalOf(attdef)), b * KcGePoint3d(1, 0, 0)));
    EXPECT_DOUBLE_EQ(db::fieldReal(attdef, {}, 40), 0.5);

    // The nested reference stays a reference: its transform is the outer one composed with its own.
    ObjectRecord& nested = recordOf(*parts[3]);
    EXPECT_EQ(nested.type, db::Type::Insert);
    const KcGeMatrix3d innerBefore =
        KcGeMatrix3d::translation({2, 0, 0}) * KcGeMatrix3d::rotation(kPi / 2, KcGeVector3d::kZAxis);
    nested.drawing = &drawing.drawing();  // let the test's transform find the block
    const KcGeMatrix3d innerAfter = referenceTransform(nested);
    nested.drawing = nullptr;
    for (const KcGePoint3d& q : {KcGePoint3d(0, 0, 0), KcGePoint3d(0, 1, 0), KcGePoint3d(1, 0, 1)}) {
        EXPECT_TRUE(test::near(innerAfter * q, b * (innerBefore * q)));
    }

    const ObjectRecord& polyline = recordOf(*parts[4]);
    ASSERT_TRUE(polyline.container);
    ASSERT_EQ(polyline.container->members.size(), 2u);
    const KcGePoint3d vertex = db::fieldPoint(*polyline.container->members[1], {}, 10);
    EXPECT_TRUE(test::near(geom::ocsToWcs(KcGePoint3d(vertex.x, vertex.y, db::fieldPoint(polyline, {}, 10).z),
                                          normalOf(polyline)),
                           b * KcGePoint3d(4, 3, 0)));

    const ObjectRecord& byBlock = recordOf(*parts[5]);
    EXPECT_EQ(db::fieldText(byBlock, {}, 8), "0") << "layer 0 is left for the caller to resolve";
    EXPECT_EQ(db::fieldInteger(byBlock, {}, 62, 256), 0) << "BYBLOCK is left for the caller to resolve";
}

// A point lies on the ellipse of an ELLIPSE record (in its plane, on the curve).
::testing::AssertionResult onEllipse(const ObjectRecord& ellipse, const KcGePoint3d& p) {
    const KcGePoint3d c = db::fieldPoint(ellipse, {}, 10);
    const KcGeVector3d a = db::fieldVector(ellipse, {}, 11, {});
    const KcGeVector3d b = normalOf(ellipse).crossProduct(a) * db::fieldReal(ellipse, {}, 40);
    const KcGeVector3d d = p - c;
    const double x = d.dotProduct(a) / a.lengthSqrd(), y = d.dotProduct(b) / b.lengthSqrd();
    const double off = d.dotProduct(normalOf(ellipse));
    if (std::abs(x * x + y * y - 1.0) < 1e-9 && std::abs(off) < 1e-9) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << test::describe(p) << " is off the ellipse: " << x * x + y * y;
}

TEST(ExplodeInsert, NonUniformScaleTurnsCirclesAndArcsIntoEllipses) {
    const auto drawing = test::readSnippet(
        "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 ROUND\n10 5\n20 5\n30 0\n41 3\n42 1\n43 1\n50 30\n",
        kBlocks);
    const KcGeMatrix3d b = referenceTransform(drawing.entity(0));
    Kcad::ErrorStatus status;
    auto parts = explodeThroughApi(drawing, 0, status);
    ASSERT_EQ(status, Kcad::eOk);
    ASSERT_EQ(parts.size(), 2u);
    const ObjectRecord& fromCircle = recordOf(*parts[0]);
    const ObjectRecord& fromArc = recordOf(*parts[1]);
    ASSERT_EQ(fromCircle.type, db::Type::Ellipse);
    ASSERT_EQ(fromArc.type, db::Type::Ellipse);
    for (double angle : {0.0, 0.4, 1.3, 2.5, 4.0}) {
        EXPECT_TRUE(onEllipse(fromCircle, b * KcGePoint3d(1 + std::cos(angle), std::sin(angle), 0)));
    }
    // The elliptical arc runs from the image of the arc's start to the image of its end.
    const KcGePoint3d c = db::fieldPoint(fromArc, {}, 10);
    const KcGeVector3d a = db::fieldVector(fromArc, {}, 11, {});
    const KcGeVector3d minor = normalOf(fromArc).crossProduct(a) * db::fieldReal(fromArc, {}, 40);
    const double s = db::fieldReal(fromArc, {}, 41), e = db::fieldReal(fromArc, {}, 42);
    EXPECT_TRUE(test::near(c + a * std::cos(s) + minor * std::sin(s), b * KcGePoint3d(2, 0, 0)));
    EXPECT_TRUE(test::near(c + a * std::cos(e) + minor * std::sin(e), b * KcGePoint3d(0, 2, 0)));
}

TEST(ExplodeInsert, ZeroDepthScaleOfATwoDimensionalBlockIsFine) {
    const auto drawing = test::readSnippet(
        "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 ROUND\n10 5\n20 5\n30 0\n41 2\n42 2\n43 0\n",
        kBlocks);
    Kcad::ErrorStatus status;
    auto parts = explodeThroughApi(drawing, 0, status);
    ASSERT_EQ(status, Kcad::eOk);
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(recordOf(*parts[0]).type, db::Type::Circle);
    EXPECT_TRUE(test::near(db::fieldPoint(recordOf(*parts[0]), {}, 10), {7, 5, 0}));
    EXPECT_DOUBLE_EQ(db::fieldReal(recordOf(*parts[0]), {}, 40), 2.0);
}

TEST(ExplodeRefusal, EntitiesThatCannotBeExplodedGiveNoParts) {
    struct Case { const char* name; const char* entity; Kcad::ErrorStatus status; };
    const Case cases[] = {
        {"text under a non-uniform scale",
         "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 LABEL\n10 0\n20 0\n30 0\n41 2\n42 1\n43 1\n",
         Kcad::eCannotScaleNonUniformly},
        {"array reference", "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 INNER\n10 0\n20 0\n30 0\n70 2\n"
                            "71 1\n44 5\n", Kcad::eNotApplicable},
        {"line", "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n",
         Kcad::eNotApplicable},
        {"circle", "0 CIRCLE\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 1\n", Kcad::eNotApplicable},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto drawing = test::readSnippet(c.entity, kBlocks);
        Kcad::ErrorStatus status;
        const auto parts = explodeThroughApi(drawing, 0, status);
        EXPECT_EQ(status, c.status);
        EXPECT_TRUE(parts.empty());
    }
}

TEST(ExplodeRefusal, ErasedBlock) {
    const auto drawing = test::readSnippet(kReference, kBlocks);
    drawing.block("PART")->erased = true;
    Kcad::ErrorStatus status;
    EXPECT_TRUE(explodeThroughApi(drawing, 0, status).empty());
    EXPECT_EQ(status, Kcad::eNotApplicable);
}

TEST(ExplodeRefusal, BlockMarkedNotExplodable) {
    const auto drawing = test::readSnippet(kReference, kBlocks);
    db::setField(*drawing.block("PART"), "AcDbBlockTableRecord", db::Tag::integerValue(280, 0));
    Kcad::ErrorStatus status;
    const auto parts = explodeThroughApi(drawing, 0, status);
    EXPECT_EQ(status, Kcad::eNotApplicable);
    EXPECT_TRUE(parts.empty());
}

TEST(ExplodePolyline, SegmentsBecomeLinesAndArcsWithThePolylineProperties) {
    const auto drawing = test::readSnippet(
        "0 LWPOLYLINE\n100 AcDbEntity\n8 WALLS\n6 DASHED\n62 3\n100 AcDbPolyline\n90 3\n70 1\n38 2\n43 0.5\n"
        "10 0\n20 0\n42 1\n10 2\n20 0\n10 2\n20 2\n");
    Kcad::ErrorStatus status;
    const auto parts = explodeThroughApi(drawing, 0, status);
    ASSERT_EQ(status, Kcad::eOk);
    ASSERT_EQ(parts.size(), 3u);
    const ObjectRecord& arc = recordOf(*parts[0]);
    ASSERT_EQ(arc.type, db::Type::Arc);
    EXPECT_TRUE(test::near(db::fieldPoint(arc, {}, 10), {1, 0, 2}));
    EXPECT_DOUBLE_EQ(db::fieldReal(arc, {}, 40), 1.0);
    // Bulge 1 from (0,0) to (2,0): the lower half, counter-clockwise from 180 to 360 degrees.
    EXPECT_NEAR(db::fieldReal(arc, {}, 50), 180.0, 1e-9);
    EXPECT_NEAR(db::fieldReal(arc, {}, 51), 0.0, 1e-9);
    const ObjectRecord& closing = recordOf(*parts[2]);
    ASSERT_EQ(closing.type, db::Type::Line);
    EXPECT_TRUE(test::near(db::fieldPoint(closing, {}, 10), {2, 2, 2}));
    EXPECT_TRUE(test::near(db::fieldPoint(closing, {}, 11), {0, 0, 2}));
    for (const auto& part : parts) {
        const ObjectRecord& r = recordOf(*part);
        EXPECT_EQ(db::fieldText(r, {}, 8), "WALLS");
        EXPECT_EQ(db::fieldText(r, {}, 6), "DASHED");
        EXPECT_EQ(db::fieldInteger(r, {}, 62), 3);
    }
}

TEST(ExplodePolyline, ThreeDimensionalPolylineGivesLines) {
    const auto drawing = test::readSnippet(
        "0 POLYLINE\n100 AcDbEntity\n8 0\n100 AcDb3dPolyline\n66 1\n10 0\n20 0\n30 0\n70 9\n"
        "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 0\n20 0\n30 0\n70 32\n"
        "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 1\n20 2\n30 3\n70 32\n"
        "0 VERTEX\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 4\n20 0\n30 1\n70 32\n"
        "0 SEQEND\n100 AcDbEntity\n8 0\n");
    Kcad::ErrorStatus status;
    const auto parts = explodeThroughApi(drawing, 0, status);
    ASSERT_EQ(status, Kcad::eOk);
    ASSERT_EQ(parts.size(), 3u) << "closed: three segments";
    for (const auto& part : parts) EXPECT_EQ(recordOf(*part).type, db::Type::Line);
    EXPECT_TRUE(test::near(db::fieldPoint(recordOf(*parts[1]), {}, 11), {4, 0, 1}));
}

TEST(ExplodeMText, OneTextPerLineWithoutFormatCodes) {
    const auto drawing = test::readSnippet("0 MTEXT\n100 AcDbEntity\n8 NOTES\n100 AcDbMText\n10 0\n20 10\n30 0\n40 2\n"
                                           "41 0\n71 1\n7 Standard\n1 {\\fArial|b1;First}\\P\\H3;Second line\n");
    Kcad::ErrorStatus status;
    const auto parts = explodeThroughApi(drawing, 0, status);
    ASSERT_EQ(status, Kcad::eOk);
    ASSERT_EQ(parts.size(), 2u);
    const ObjectRecord& first = recordOf(*parts[0]);
    const ObjectRecord& second = recordOf(*parts[1]);
    EXPECT_EQ(first.type, db::Type::Text);
    EXPECT_EQ(db::fieldText(first, {}, 1), "First");
    EXPECT_EQ(db::fieldText(second, {}, 1), "Second line");
    EXPECT_TRUE(test::near(db::fieldPoint(first, {}, 10), {0, 8, 0}));
    // "\H3;" makes the second line 3 high: it lies its pitch below the first.
    EXPECT_TRUE(test::near(db::fieldPoint(second, {}, 10), {0, 8 - 3 * 5.0 / 3.0, 0}));
    EXPECT_DOUBLE_EQ(db::fieldReal(second, {}, 40), 3.0);
    EXPECT_EQ(db::fieldText(second, {}, 8), "NOTES");
}

TEST(ExplodeDimension, CopiesOfTheBlockEntities) {
    const auto drawing = test::readSnippet(
        "0 DIMENSION\n100 AcDbEntity\n8 0\n100 AcDbDimension\n2 *D3\n10 10\n20 0\n30 0\n11 5\n21 1\n31 0\n70 33\n1 \n"
        "100 AcDbAlignedDimension\n13 0\n23 0\n33 0\n14 10\n24 0\n34 0\n", kBlocks);
    Kcad::ErrorStatus status;
    const auto parts = explodeThroughApi(drawing, 0, status);
    ASSERT_EQ(status, Kcad::eOk);
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(recordOf(*parts[0]).type, db::Type::Line);
    EXPECT_EQ(recordOf(*parts[1]).type, db::Type::Solid);
    EXPECT_TRUE(test::near(db::fieldPoint(recordOf(*parts[0]), {}, 11), {10, 0, 0}));
}

TEST(ExplodeToOwnerSpace, PartsJoinTheReferenceOwnerAndTheDrawingReloads) {
    const auto drawing = test::readSnippet(kReference, kBlocks);
    ObjectRecord& reference = drawing.entity(0);
    const KcGeMatrix3d b = referenceTransform(reference);
    const size_t before = drawing.drawing().layoutEntities.size();
    KcDbBlockReference* opened = nullptr;
    ASSERT_EQ(kcdbOpenObject(opened, drawing.id(reference), KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(opened->explodeToOwnerSpace(), Kcad::eOk);
    opened->close();
    const auto& entities = drawing.drawing().layoutEntities;
    ASSERT_EQ(entities.size(), before + 6);
    EXPECT_FALSE(reference.erased) << "the reference stays";
    ObjectRecord* modelSpace = drawing.drawing().modelSpace();
    for (size_t i = before; i < entities.size(); ++i) {
        const ObjectRecord& part = *entities[i];
        EXPECT_NE(part.handle, 0u);
        EXPECT_EQ(part.owner, modelSpace);
        EXPECT_EQ(db::fieldHandle(part, {}, 330), modelSpace->handle);
        EXPECT_FALSE(part.isOpen());
    }
    // The polyline's vertices came along as resident records of their polyline.
    const ObjectRecord& polyline = *entities[before + 4];
    ASSERT_TRUE(polyline.container);
    for (const ObjectRecord* vertex : polyline.container->members) {
        EXPECT_FALSE(vertex->erased);
        EXPECT_EQ(vertex->owner, &polyline);
        EXPECT_EQ(db::fieldHandle(*vertex, {}, 330), polyline.handle);
        EXPECT_EQ(drawing.drawing().findByHandle(vertex->handle), vertex);
    }
    EXPECT_TRUE(test::near(db::fieldPoint(*entities[before], {}, 11), b * KcGePoint3d(3, 1, 0)));
    EXPECT_TRUE(test::reloadsUnchanged(drawing.drawing()));
}

TEST(ExplodeToOwnerSpace, PartsOfAPaperSpaceReferenceStayInPaperSpace) {
    const auto drawing = test::readSnippet(
        "0 INSERT\n100 AcDbEntity\n67 1\n8 0\n100 AcDbBlockReference\n2 ROUND\n10 5\n20 5\n30 0\n", kBlocks);
    ObjectRecord& reference = drawing.entity(0);
    ASSERT_EQ(reference.owner, drawing.drawing().paperSpace());
    KcDbBlockReference* opened = nullptr;
    ASSERT_EQ(kcdbOpenObject(opened, drawing.id(reference), KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(opened->explodeToOwnerSpace(), Kcad::eOk);
    opened->close();
    ASSERT_EQ(drawing.drawing().layoutEntities.size(), 3u);
    for (size_t i = 1; i < 3; ++i) {
        EXPECT_EQ(drawing.entity(i).owner, drawing.drawing().paperSpace());
        EXPECT_EQ(db::fieldInteger(drawing.entity(i), "AcDbEntity", 67), 1);
    }
    EXPECT_TRUE(test::reloadsUnchanged(drawing.drawing()));
}

}  // namespace
}  // namespace korva
