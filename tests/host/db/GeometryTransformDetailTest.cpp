// transformBy details the sample-point table does not reach: hatch arc edges and
// pattern lines, dimension graphics, MINSERT spacing, old drawings without
// subclass markers (missing groups are inserted where R12 files hold them), and
// the corpus: every entity of real drawings moved and moved back is where it was.
#include <cmath>
#include <numbers>

#include "GeometryTestSupport.h"
#include "TestFiles.h"
#include "db/EntityGeometry.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"

namespace korva {
namespace {

using db::ObjectRecord;
using db::TagRef;
constexpr double kPi = std::numbers::pi;

Kcad::ErrorStatus transformRecord(ObjectRecord& record, const KcGeMatrix3d& m) {
    return db::transformEntity(record, m);
}

// The ends of the arc edges of a hatch, as world points (the hatch lies in the xy plane).
std::vector<KcGePoint3d> arcEdgeEnds(const ObjectRecord& hatch) {
    std::vector<KcGePoint3d> ends;
    bool polylinePath = false;
    bool inArc = false;
    KcGePoint3d centre;
    double radius = 0, start = 0, end = 0;
    for (TagRef t : hatch.tags) {
        if (t.code() == 92) polylinePath = (t.integer() & 2) != 0;
        if (t.code() == 72 && !polylinePath) inArc = t.integer() == 2;
        if (!inArc) continue;
        if (t.code() == 10) centre = t.point();
        if (t.code() == 40) radius = t.real();
        if (t.code() == 50) start = t.real();
        if (t.code() == 51) end = t.real();
        if (t.code() == 73) {
            // A clockwise edge stores the complements of its angles.
            const double a = (t.integer() ? start : -start) * kPi / 180, b = (t.integer() ? end : -end) * kPi / 180;
            ends.push_back(centre + KcGeVector3d(std::cos(a), std::sin(a), 0) * radius);
            ends.push_back(centre + KcGeVector3d(std::cos(b), std::sin(b), 0) * radius);
            inArc = false;
        }
    }
    return ends;
}

constexpr const char* kHatch =
    "0 HATCH\n100 AcDbEntity\n8 0\n100 AcDbHatch\n10 0\n20 0\n30 0\n210 0\n220 0\n230 1\n2 ANSI31\n70 0\n71 0\n91 1\n"
    "92 1\n93 2\n72 1\n10 10\n20 0\n11 12\n21 0\n72 2\n10 11\n20 0\n40 1\n50 0\n51 90\n73 1\n97 0\n"
    "75 0\n76 1\n52 0\n41 1\n77 0\n78 1\n53 45\n43 1\n44 0\n45 -2\n46 2\n79 1\n49 3\n98 1\n10 1\n20 1\n";

TEST(TransformHatch, ArcEdgeEndsFollowAMirrorAndTheEdgeTurnsClockwise) {
    const auto drawing = test::readSnippet(kHatch);
    ObjectRecord& hatch = drawing.entity(0);
    const KcGeMatrix3d mirror = KcGeMatrix3d::mirroring({0, 0, 0}, {1, 0, 0});
    const auto before = arcEdgeEnds(hatch);
    ASSERT_EQ(transformRecord(hatch, mirror), Kcad::eOk);
    const auto after = arcEdgeEnds(hatch);
    ASSERT_EQ(after.size(), 2u);
    // The edge ran from (12, 0) to (11, 1); mirrored it runs from (-12, 0) to (-11, 1), clockwise.
    EXPECT_TRUE(test::near(after[0], mirror * before[0])) << test::dumpTags(hatch);
    EXPECT_TRUE(test::near(after[1], mirror * before[1]));
    EXPECT_TRUE(test::reloadsUnchanged(drawing.drawing()));
}

TEST(TransformHatch, PatternLinesTurnAndScaleWithTheHatch) {
    const auto drawing = test::readSnippet(kHatch);
    ObjectRecord& hatch = drawing.entity(0);
    const KcGeMatrix3d turn = KcGeMatrix3d::rotation(kPi / 2, KcGeVector3d::kZAxis) * KcGeMatrix3d::scaling(2.0);
    ASSERT_EQ(transformRecord(hatch, turn), Kcad::eOk);
    std::vector<double> values;
    for (TagRef t : hatch.tags) {
        const int c = t.code();
        if (c == 52 || c == 41 || (c >= 43 && c <= 46) || c == 49 || c == 53) {
            values.push_back(t.real());
        }
    }
    const std::vector<double> expected{90, 2, 135, 0, 2, -4, -4, 6};  // 52 41 53 43 44 45 46 49
    ASSERT_EQ(values.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(values[i], expected[i], 1e-9) << i;
    EXPECT_TRUE(test::near(db::fieldPoint(hatch, {}, 10), {0, 0, 0}));
}

TEST(TransformHatch, NonUniformScaleRefusedWithArcEdges) {
    const auto drawing = test::readSnippet(kHatch);
    const db::TagList before = drawing.entity(0).tags;
    EXPECT_EQ(transformRecord(drawing.entity(0), KcGeMatrix3d::scaling(KcGeScale3d(1, 2, 1))),
              Kcad::eCannotScaleNonUniformly);
    EXPECT_TRUE(drawing.entity(0).tags == before);
}

constexpr std::string_view kDimensionBlock =
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 *D2\n70 1\n10 0\n20 0\n30 0\n3 *D2\n"
    "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 10\n21 0\n31 0\n"
    "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n";
constexpr const char* kDimension =
    "0 DIMENSION\n100 AcDbEntity\n8 0\n100 AcDbDimension\n2 *D2\n10 10\n20 0\n30 0\n11 5\n21 1\n31 0\n70 33\n1 \n"
    "100 AcDbAlignedDimension\n13 0\n23 0\n33 0\n14 10\n24 0\n34 0\n";

TEST(TransformDimension, GraphicsBlockMovesWithTheDimension) {
    const auto drawing = test::readSnippet(kDimension, kDimensionBlock);
    ASSERT_EQ(transformRecord(drawing.entity(0), KcGeMatrix3d::translation({0, 5, 0})), Kcad::eOk);
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    EXPECT_TRUE(test::boxNear(box, {0, 5, 0}, {10, 5, 0}));
    EXPECT_TRUE(test::near(db::fieldPoint(drawing.entity(0), {}, 14), {10, 5, 0}));
    EXPECT_TRUE(test::reloadsUnchanged(drawing.drawing()));
}

TEST(TransformDimension, TransformedCopyLeavesTheSharedBlockAlone) {
    const auto drawing = test::readSnippet(kDimension, kDimensionBlock);
    KcDbEntity* dimension = nullptr;
    ASSERT_EQ(kcdbOpenObject(dimension, drawing.id(drawing.entity(0)), KcDb::kForRead), Kcad::eOk);
    KcDbEntity* copy = nullptr;
    ASSERT_EQ(dimension->getTransformedCopy(KcGeMatrix3d::translation({0, 5, 0}), copy), Kcad::eOk);
    dimension->close();
    delete copy;
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(drawing.entity(0), box));
    EXPECT_TRUE(test::boxNear(box, {0, 0, 0}, {10, 0, 0}));
}

TEST(TransformInsert, ArraySpacingFollowsRotationAndMirror) {
    const auto drawing = test::readSnippet(
        "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 *D2\n10 0\n20 0\n30 0\n70 2\n71 3\n44 20\n45 5\n",
        kDimensionBlock);
    ObjectRecord& array = drawing.entity(0);
    geom::Box3d before;
    ASSERT_TRUE(db::entityExtents(array, before));
    const KcGeMatrix3d mirror = KcGeMatrix3d::mirroring({0, 0, 0}, {0, 1, 0}) * KcGeMatrix3d::scaling(2.0);
    ASSERT_EQ(transformRecord(array, mirror), Kcad::eOk);
    geom::Box3d after;
    ASSERT_TRUE(db::entityExtents(array, after));
    // The array's box, of axis-aligned lines, is the mirrored box.
    EXPECT_TRUE(test::boxNear(after, {0, -20, 0}, {60, 0, 0})) << test::dumpTags(array);
    EXPECT_TRUE(test::boxNear(before.transformedBy(mirror), after.min(), after.max()));
}

// Old drawings have no subclass markers: groups a transformation adds go where R12 files hold them.
TEST(TransformLegacy, GroupsAreInsertedIntoRecordsWithoutMarkers) {
    const auto drawing = test::readSnippet("0 TEXT\n8 0\n10 1\n20 2\n30 0\n40 1\n1 R12\n"
                                           "0 CIRCLE\n8 0\n10 0\n20 0\n30 0\n40 1\n"
                                           "0 INSERT\n8 0\n2 R12BLOCK\n10 0\n20 0\n30 0\n",
                                           "0 BLOCK\n8 0\n2 R12BLOCK\n70 0\n10 0\n20 0\n30 0\n"
                                           "0 LINE\n8 0\n10 0\n20 0\n30 0\n11 1\n21 1\n31 0\n0 ENDBLK\n8 0\n",
                                           "AC1009");
    const KcGeMatrix3d turn = KcGeMatrix3d::rotation(kPi / 2, KcGeVector3d::kXAxis);
    for (size_t i = 0; i < 3; ++i) ASSERT_EQ(transformRecord(drawing.entity(i), turn), Kcad::eOk) << i;
    ASSERT_EQ(transformRecord(drawing.entity(2), KcGeMatrix3d::mirroring({0, 0, 0}, {0, 0, 1})), Kcad::eOk);
    for (size_t i = 0; i < 3; ++i) {
        const ObjectRecord& r = drawing.entity(i);
        EXPECT_FALSE(db::hasSubclassMarkers(r.tags)) << test::dumpTags(r);
        EXPECT_TRUE(test::near(db::fieldPoint(r, {}, 210), {0, -1, 0})) << test::dumpTags(r);
    }
    EXPECT_TRUE(test::reloadsUnchanged(drawing.drawing()));
}

// Moving every entity of a real drawing and moving it back restores its extents.
class CorpusTransform : public ::testing::TestWithParam<const char*> {};

TEST_P(CorpusTransform, MovedAndMovedBackEntitiesHaveTheirExtents) {
    auto loaded = dxf::readDxfFile(test::corpusFile(GetParam()).string());
    ASSERT_TRUE(loaded.ok()) << loaded.error;
    KcDbDatabase database(std::move(loaded.drawing));
    db::Drawing& drawing = database.drawing();
    const KcGeMatrix3d there = KcGeMatrix3d::translation({100, -50, 7}) *
                               KcGeMatrix3d::rotation(0.7, KcGeVector3d(0.2, -0.3, 1.0)) * KcGeMatrix3d::scaling(1.5);
    const KcGeMatrix3d back = there.inverse();
    size_t moved = 0;
    for (ObjectRecord* entity : drawing.layoutEntities) {
        geom::Box3d before, after;
        const bool measured = db::entityExtents(*entity, before);
        if (db::transformEntity(*entity, there) != Kcad::eOk) continue;
        ASSERT_EQ(db::transformEntity(*entity, back), Kcad::eOk) << test::dumpTags(*entity);
        ++moved;
        if (!measured) continue;
        ASSERT_TRUE(db::entityExtents(*entity, after));
        const double size = std::max(1.0, before.min().distanceTo(before.max()));
        EXPECT_TRUE(test::boxNear(after, before.min(), before.max(), 1e-6 * size)) << test::dumpTags(*entity);
    }
    EXPECT_GT(moved, 0u);
    EXPECT_TRUE(test::reloadsUnchanged(drawing));
}

INSTANTIATE_TEST_SUITE_P(Drawings, CorpusTransform,
                         ::testing::Values("ezdxf__hatches_1.dxf", "ezdxf__text.dxf", "ezdxf__3dface.dxf",
                                           "ezdxf__multi_insert_with_attribs.dxf", "ezdxf__dimension_in_block.dxf",
                                           "ezdxf__images.dxf", "ezdxf__ASCII_R12.dxf", "ezdxf__POLI-ALL210_12.DXF",
                                           "ezdxf__mtext_complex_inline_codes.dxf", "ezdxf__wipeout_door.dxf"));

}  // namespace
}  // namespace korva
