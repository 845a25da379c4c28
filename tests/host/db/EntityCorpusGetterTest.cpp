// Getters read real files as an independent DXF reader and the raw DXF text
// do: the expected values below were taken from the corpus files themselves,
// never from this code's output. Angles come back in radians.
#include <cmath>
#include <filesystem>

#include "EntityTestSupport.h"
#include "db/RecordFields.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegree = kPi / 180.0;

void expectPoint(const KcGePoint3d& actual, double x, double y, double z = 0.0) {
    EXPECT_NEAR(actual.x, x, 1e-9);
    EXPECT_NEAR(actual.y, y, 1e-9);
    EXPECT_NEAR(actual.z, z, 1e-9);
}

void expectVector(const KcGeVector3d& actual, double x, double y, double z) {
    expectPoint(KcGePoint3d::kOrigin + actual, x, y, z);
}

std::wstring owned(wchar_t* text) {
    std::wstring copy = text ? text : L"";
    kcutDelString(text);
    return copy;
}

class SampleDrawing : public ::testing::Test {
protected:
    static void SetUpTestSuite() { database_ = loadCorpus("acadsharp__sample_AC1032_ascii.dxf").release(); }
    static void TearDownTestSuite() {
        delete database_;
        database_ = nullptr;
    }
    template <class T>
    Opened<T> open(db::Handle handle) {
        return Opened<T>(*database_, handle, KcDb::kForRead);
    }
    static KcDbDatabase* database_;
};

KcDbDatabase* SampleDrawing::database_ = nullptr;

// Curves: centres, radii, angles in radians, ellipse axes and spline data.
TEST_F(SampleDrawing, CurvesReadTheirGroups) {
    ASSERT_NE(database_, nullptr);
    auto point = open<KcDbPoint>(0x28E);
    ASSERT_TRUE(point);
    expectPoint(point->position(), 1.494404150136851, 1.491325898678436);

    auto circle = open<KcDbCircle>(0x31F);
    ASSERT_TRUE(circle);
    expectPoint(circle->center(), 46.87247836145255, 6.672963963946202);
    EXPECT_DOUBLE_EQ(circle->radius(), 3.682480951587929);

    auto arc = open<KcDbArc>(0x320);
    ASSERT_TRUE(arc);
    EXPECT_NEAR(arc->startAngle(), 341.0435453511963 * kDegree, 1e-12);
    EXPECT_NEAR(arc->endAngle(), 161.0435453511958 * kDegree, 1e-12);

    auto ellipse = open<KcDbEllipse>(0x321);
    ASSERT_TRUE(ellipse);
    expectVector(ellipse->majorAxis(), -5.101255306291786, 0, 0);
    EXPECT_DOUBLE_EQ(ellipse->radiusRatio(), 0.6403727385155383);
    expectVector(ellipse->minorAxis(), 0, -5.101255306291786 * 0.6403727385155383, 0);
    EXPECT_DOUBLE_EQ(ellipse->endAngle(), 2 * kPi);

    auto spline = open<KcDbSpline>(0x433);
    ASSERT_TRUE(spline);
    EXPECT_EQ(spline->degree(), 3);
    EXPECT_FALSE(spline->isClosed());
    EXPECT_FALSE(spline->isRational());
    EXPECT_EQ(spline->numControlPoints(), 4);
    EXPECT_EQ(spline->numFitPoints(), 0);
    EXPECT_EQ(spline->numKnots(), 8);
    EXPECT_EQ(spline->knotAt(4), 1.0);
    EXPECT_EQ(spline->weightAt(0), 1.0);
    KcGePoint3d control;
    ASSERT_EQ(spline->getControlPointAt(1, control), Kcad::eOk);
    expectPoint(control, 254.7137711095261, 11.98610420237003);
    EXPECT_EQ(spline->getControlPointAt(4, control), Kcad::eInvalidInput);

    auto xline = open<KcDbXline>(0x389);
    ASSERT_TRUE(xline);
    expectPoint(xline->basePoint(), -6.805688358374368, -5.110573038768279);
    expectVector(xline->unitDir(), 0, 1, 0);
    auto ray = open<KcDbRay>(0x38A);
    ASSERT_TRUE(ray);
    expectPoint(ray->basePoint(), -15.4176098639582, -4.203542186472134);
}

// Planar entities and polylines: corners, vertices, mesh sizes.
TEST_F(SampleDrawing, PlanarEntitiesAndPolylinesReadTheirGroups) {
    ASSERT_NE(database_, nullptr);
    auto face = open<KcDbFace>(0x322);
    ASSERT_TRUE(face);
    KcGePoint3d corner;
    ASSERT_EQ(face->getVertexAt(2, corner), Kcad::eOk);
    expectPoint(corner, 82.19042709020433, 1.492335632750851);
    bool visible = false;
    ASSERT_EQ(face->isEdgeVisibleAt(3, visible), Kcad::eOk);
    EXPECT_TRUE(visible);

    auto solid = open<KcDbSolid>(0x432);
    ASSERT_TRUE(solid);
    ASSERT_EQ(solid->getPointAt(3, corner), Kcad::eOk);
    expectPoint(corner, 246.0957267655701, 11.93745374404307);

    auto polyline = open<KcDbPolyline>(0x2E2);
    ASSERT_TRUE(polyline);
    EXPECT_EQ(polyline->numVerts(), 5u);
    KcGePoint2d first;
    ASSERT_EQ(polyline->getPointAt(0, first), Kcad::eOk);
    EXPECT_EQ(first, KcGePoint2d(12.14051619543163, 1.379831194356633));
    EXPECT_FALSE(polyline->isClosed());
    double width = -1;
    ASSERT_EQ(polyline->getConstantWidth(width), Kcad::eOk);
    EXPECT_EQ(width, 0.0);

    // A polyface mesh: 5 vertices and 2 face records follow it.
    auto mesh = open<KcDbPolyFaceMesh>(0x422);
    ASSERT_TRUE(mesh);
    EXPECT_EQ(mesh->numVertices(), 5);
    EXPECT_EQ(mesh->numFaces(), 2);
    std::unique_ptr<KcDbObjectIterator> it(mesh->vertexIterator());
    int vertices = 0, faces = 0;
    for (; !it->done(); it->step()) {
        KcDbEntity* member = it->entity();
        ASSERT_NE(member, nullptr);
        if (member->isA() == KcDbPolyFaceMeshVertex::desc()) ++vertices;
        if (member->isA() == KcDbFaceRecord::desc()) ++faces;
    }
    EXPECT_EQ(vertices, 5);
    EXPECT_EQ(faces, 2);

    auto mline = open<KcDbMline>(0x38B);
    ASSERT_TRUE(mline);
    EXPECT_EQ(mline->scale(), 1.5);
    EXPECT_EQ(mline->justification(), 1);
    EXPECT_EQ(mline->numVertices(), 8);
    expectPoint(mline->vertexAt(2), 142.1491281320298, 8.931727104928427);

    auto shape = open<KcDbShape>(0x889);
    ASSERT_TRUE(shape);
    EXPECT_EQ(owned(shape->name()), L"MY-SHAPE");
    expectPoint(shape->position(), 15.27702016657258, -20.35947110184861);
}

// Dimensions of every kind: the definition points DXF gives each of them.
TEST_F(SampleDrawing, DimensionsReadTheirDefinitionPoints) {
    ASSERT_NE(database_, nullptr);
    auto rotated = open<KcDbRotatedDimension>(0x514);
    ASSERT_TRUE(rotated);
    EXPECT_NEAR(rotated->rotation(), 30.00000000000059 * kDegree, 1e-12);
    expectPoint(rotated->xLine1Point(), 330.2890594765795, 2.941179455067986);
    expectPoint(rotated->xLine2Point(), 364.4872644138525, 37.13938439234094);
    expectPoint(rotated->dimLinePoint(), 360.3581002235253, 44.29130656278148);
    expectPoint(rotated->textPosition(), 339.0659510877516, 34.45477396013389);
    KcDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(kcdbOpenObject(block, rotated->dimBlockId(), KcDb::kForRead), Kcad::eOk);
    const wchar_t* blockName = nullptr;
    block->getName(blockName);
    EXPECT_STREQ(blockName, L"*D3");
    block->close();
    KcDbDimStyleTableRecord* style = nullptr;
    ASSERT_EQ(kcdbOpenObject(style, rotated->dimensionStyle(), KcDb::kForRead), Kcad::eOk);
    const wchar_t* styleName = nullptr;
    style->getName(styleName);
    EXPECT_STREQ(styleName, L"ISO-25");
    style->close();

    auto threePoint = open<KcDb3PointAngularDimension>(0x515);
    ASSERT_TRUE(threePoint);
    expectPoint(threePoint->centerPoint(), 438.5833751112772, 14.34058110082563);
    expectPoint(threePoint->xLine1Point(), 455.6824775799136, 8.640880277946811);
    expectPoint(threePoint->arcPoint(), 472.3604500468276, 22.15806274137023);

    auto twoLine = open<KcDb2LineAngularDimension>(0x516);
    ASSERT_TRUE(twoLine);
    expectPoint(twoLine->xLine1End(), 501.2800841629442, 37.13938439234094);
    expectPoint(twoLine->xLine2End(), 512.6794858087018, 8.640880277946811);
    expectPoint(twoLine->arcPoint(), 528.6474703372946, 21.99374070687125);

    auto radial = open<KcDbRadialDimension>(0x51F);
    ASSERT_TRUE(radial);
    expectPoint(radial->center(), 569.6764940374901, 25.73998274658328);
    expectPoint(radial->chordPoint(), 577.7370882426746, 33.80057695176783);

    auto diametric = open<KcDbDiametricDimension>(0x522);
    ASSERT_TRUE(diametric);
    expectPoint(diametric->farChordPoint(), 603.8746989747631, 25.73998274658328);
    expectPoint(diametric->chordPoint(), 649.4723055577938, 25.73998274658328);

    auto ordinateY = open<KcDbOrdinateDimension>(0x525);
    ASSERT_TRUE(ordinateY);
    EXPECT_FALSE(ordinateY->isUsingXAxis());
    expectPoint(ordinateY->definingPoint(), 660.8717072035513, 8.640880277946811);
    expectPoint(ordinateY->leaderEndPoint(), 700.7696129637031, 14.34058110082563);
    auto ordinateX = open<KcDbOrdinateDimension>(0x526);
    ASSERT_TRUE(ordinateX);
    EXPECT_TRUE(ordinateX->isUsingXAxis());

    EXPECT_TRUE(open<KcDbAlignedDimension>(0x527));
}

// Hatch loops, pattern lines (angles in radians) and gradients.
TEST_F(SampleDrawing, HatchesReadLoopsAndPatterns) {
    ASSERT_NE(database_, nullptr);
    auto hatch = open<KcDbHatch>(0x35A);
    ASSERT_TRUE(hatch);
    EXPECT_STREQ(hatch->patternName(), L"ANSI31");
    EXPECT_FALSE(hatch->isSolidFill());
    EXPECT_TRUE(hatch->associative());
    EXPECT_EQ(hatch->hatchStyle(), KcDbHatch::kOuter);
    ASSERT_EQ(hatch->numLoops(), 1);
    Kcad::Int32 type = 0;
    KcGePoint2dArray vertices;
    KcGeDoubleArray bulges;
    ASSERT_EQ(hatch->getLoopAt(0, type, vertices, bulges), Kcad::eOk);
    EXPECT_EQ(type, KcDbHatch::kExternal);
    ASSERT_EQ(vertices.length(), 4);
    EXPECT_EQ(vertices[1], KcGePoint2d(123.1990874847903, 0.0853177934775715));
    ASSERT_EQ(hatch->numPatternDefinitions(), 1);
    double angle = 0, baseX = 0, baseY = 0, offsetX = 0, offsetY = 0;
    KcGeDoubleArray dashes;
    ASSERT_EQ(hatch->getPatternDefinitionAt(0, angle, baseX, baseY, offsetX, offsetY, dashes), Kcad::eOk);
    EXPECT_NEAR(angle, kPi / 4, 1e-12);
    EXPECT_EQ(baseX, 2.750381723718078);
    EXPECT_EQ(offsetY, 0.0883883476483185);
    EXPECT_TRUE(dashes.isEmpty());

    auto parquet = open<KcDbHatch>(0x36E);
    ASSERT_TRUE(parquet);
    ASSERT_EQ(parquet->numPatternDefinitions(), 14);
    ASSERT_EQ(parquet->getPatternDefinitionAt(1, angle, baseX, baseY, offsetX, offsetY, dashes), Kcad::eOk);
    EXPECT_NEAR(angle, kPi / 2, 1e-12);
    EXPECT_EQ(baseX, 2.0);
    ASSERT_EQ(dashes.length(), 2);
    EXPECT_EQ(dashes[1], -12.0);

    auto gradient = open<KcDbHatch>(0x376);
    ASSERT_TRUE(gradient);
    EXPECT_TRUE(gradient->isGradient());
    EXPECT_STREQ(gradient->gradientName(), L"SPHERICAL");
    EXPECT_EQ(gradient->gradientType(), 0);
}

// Block references and their attributes, images, leaders and tolerances.
TEST_F(SampleDrawing, ReferencesImagesAndAnnotationsReadTheirGroups) {
    ASSERT_NE(database_, nullptr);
    auto reference = open<KcDbBlockReference>(0x704);
    ASSERT_TRUE(reference);
    expectPoint(reference->position(), 920.6796266627232, 16.35285377389053);
    EXPECT_EQ(reference->scaleFactors(), KcGeScale3d(0.3633736948472006));
    std::unique_ptr<KcDbObjectIterator> attributes(reference->attributeIterator());
    ASSERT_FALSE(attributes->done());
    auto* attribute = KcDbAttribute::cast(attributes->entity());
    ASSERT_NE(attribute, nullptr);
    EXPECT_STREQ(attribute->tagConst(), L"ATTINFO");
    EXPECT_STREQ(attribute->textStringConst(), L"17");
    EXPECT_EQ(attribute->ownerId(), reference->objectId());
    attributes->step();
    EXPECT_TRUE(attributes->done());

    auto wipeout = open<KcDbWipeout>(0x44D);
    ASSERT_TRUE(wipeout);
    KcGePoint3d origin;
    KcGeVector3d u, v;
    wipeout->getOrientation(origin, u, v);
    expectPoint(origin, 271.9211288808192, 3.988123351850958);
    expectVector(v, 0, 31.70774292607268, 0);
    EXPECT_TRUE(wipeout->isClipped());
    EXPECT_TRUE(wipeout->isSetDisplayOpt(KcDbRasterImage::kShow));
    EXPECT_FALSE(wipeout->isSetDisplayOpt(KcDbRasterImage::kTransparent));
    const KcGePoint2dArray boundary = wipeout->clipBoundary();
    ASSERT_EQ(boundary.length(), 5);
    EXPECT_EQ(boundary[1], KcGePoint2d(0.3260511008800897, 0.492063502336059));

    auto image = open<KcDbRasterImage>(0x8C6);
    ASSERT_TRUE(image);
    image->getOrientation(origin, u, v);
    expectPoint(origin, 0, 15);
    expectVector(u, 0.0104166666666667, 0, 0);
    EXPECT_FALSE(image->isClipped());

    auto leader = open<KcDbLeader>(0x512);
    ASSERT_TRUE(leader);
    ASSERT_EQ(leader->numVertices(), 4);
    expectPoint(leader->vertexAt(1), 729.2681170780972, 48.53878603809858);
    EXPECT_EQ(leader->annoHeight(), 1.844821309997272);
    EXPECT_EQ(leader->annoWidth(), 16.37400410337938);
    EXPECT_EQ(leader->dimasz(), 2.5);     // ISO-25's DIMASZ
    EXPECT_EQ(leader->dimscale(), 1.0);   // ISO-25 has no DIMSCALE group

    auto tolerance = open<KcDbFcf>(0x823);
    ASSERT_TRUE(tolerance);
    EXPECT_EQ(owned(tolerance->text()), L"99\na");  // the stored "^J" is a line break
    expectPoint(tolerance->location(), 215.9040473487617, -4.269691710787355);
    expectVector(tolerance->direction(), 1, 0, 0);
}

// Text getters on the justification samples of a text test drawing.
TEST(EntityCorpusText, JustifiedTextsReadBothPointsAndTheirModes) {
    auto database = loadCorpus("ezdxf__text.dxf");
    ASSERT_TRUE(database);
    Opened<KcDbText> right(*database, 0x4BE, KcDb::kForRead);
    ASSERT_TRUE(right);
    expectPoint(right->position(), 3300.34694341822, 1589.998261399696);
    expectPoint(right->alignmentPoint(), 3487.251705322982, 1589.998261399696);
    EXPECT_EQ(right->horizontalMode(), KcDb::kTextRight);
    EXPECT_EQ(right->verticalMode(), KcDb::kTextBase);
    EXPECT_FALSE(right->isDefaultAlignment());
    EXPECT_EQ(right->height(), 25.0);
    EXPECT_EQ(owned(right->textString()), L"right align");
    KcDbTextStyleTableRecord* style = nullptr;
    ASSERT_EQ(kcdbOpenObject(style, right->textStyle(), KcDb::kForRead), Kcad::eOk);
    const wchar_t* styleName = nullptr;
    style->getName(styleName);
    EXPECT_STREQ(styleName, L"Simplex_100");
    style->close();

    Opened<KcDbText> centreBottom(*database, 0x4E9, KcDb::kForRead);
    ASSERT_TRUE(centreBottom);
    EXPECT_EQ(centreBottom->horizontalMode(), KcDb::kTextCenter);
    EXPECT_EQ(centreBottom->verticalMode(), KcDb::kTextBottom);

    Opened<KcDbText> fit(*database, 0x4C1, KcDb::kForRead);
    ASSERT_TRUE(fit);
    EXPECT_EQ(fit->horizontalMode(), KcDb::kTextFit);
    EXPECT_EQ(fit->widthFactor(), 0.2599248389285532);

    Opened<KcDbText> upsideDown(*database, 0x51A, KcDb::kForRead);
    Opened<KcDbText> backwards(*database, 0x51B, KcDb::kForRead);
    ASSERT_TRUE(upsideDown && backwards);
    EXPECT_TRUE(upsideDown->isMirroredInY());
    EXPECT_FALSE(upsideDown->isMirroredInX());
    EXPECT_TRUE(backwards->isMirroredInX());

    Opened<KcDbAttributeDefinition> definition(*database, 0x748, KcDb::kForRead);
    ASSERT_TRUE(definition);
    EXPECT_STREQ(definition->tagConst(), L"TAG-BACKWARDS");
    EXPECT_STREQ(definition->promptConst(), L"PROMT-backwards");
    EXPECT_TRUE(definition->lockPositionInBlock());
    EXPECT_FALSE(definition->isConstant());

    // MTEXT: a direction other than x, and a caret line break in the contents.
    Opened<KcDbMText> turned(*database, 0x3DA, KcDb::kForRead);
    ASSERT_TRUE(turned);
    EXPECT_NEAR(turned->rotation(), 2 * kPi + std::atan2(-0.4011188076417417, 0.9160260379247235), 1e-9);
    EXPECT_EQ(owned(turned->contents()), L"Xxp\nabc");
    EXPECT_EQ(turned->textHeight(), 100.0);
    EXPECT_EQ(turned->flowDirection(), KcDbMText::kByStyle);
}

// A table's size: 4 row heights and 5 column widths of 2.5 from the DXF text.
TEST(EntityCorpusTable, WidthAndHeightAreTheSumsOfColumnsAndRows) {
    auto database = loadCorpus("acadsharp__table_AC1032.dxf");
    ASSERT_TRUE(database);
    Opened<KcDbTable> table(*database, 0x23A, KcDb::kForRead);
    ASSERT_TRUE(table) << table.status();
    EXPECT_EQ(table->numRows(), 4u);
    EXPECT_EQ(table->numColumns(), 5u);
    EXPECT_DOUBLE_EQ(table->width(), 12.5);
    EXPECT_DOUBLE_EQ(table->height(), 0.4533333333333334 + 0.6060163710777627 + 2 * 0.6045429740791269);
    expectVector(table->direction(), 1, 0, 0);
}

}  // namespace
}  // namespace korva::test

namespace korva::test {
namespace {

// Every hatch of every corpus file: all boundary paths (91) and pattern lines
// (78) parse, and every polyline vertex a loop reports is a finite point.
TEST(EntityCorpusHatches, EveryBoundaryPathAndPatternLineParses) {
    int hatches = 0;
    for (const std::filesystem::path& file : corpusFiles()) {
        dxf::ReadResult result = dxf::readDxfFile(file.string());
        if (!result.ok()) continue;  // files the reader rejects are the reader's tests
        KcDbDatabase database(std::move(result.drawing));
        db::Drawing& drawing = database.drawing();
        for (uint32_t i = 0; i < drawing.recordCount(); ++i) {
            db::ObjectRecord* record = drawing.record(i);
            if (record->type != db::Type::Hatch || record->erased) continue;
            KcDbHatch* hatch = nullptr;
            ASSERT_EQ(kcdbOpenObject(hatch, db::ObjectAccess::id(record), KcDb::kForRead), Kcad::eOk);
            ++hatches;
            const std::string where = file.filename().string() + " #" + db::formatHandle(record->handle);
            for (int loop = 0; loop < hatch->numLoops(); ++loop) {
                Kcad::Int32 type = 0;
                KcGePoint2dArray vertices;
                KcGeDoubleArray bulges;
                ASSERT_EQ(hatch->getLoopAt(loop, type, vertices, bulges), Kcad::eOk) << where << " loop " << loop;
                EXPECT_EQ(vertices.length(), bulges.length()) << where;
                for (const KcGePoint2d& p : vertices) EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << where;
            }
            EXPECT_EQ(hatch->numPatternDefinitions(), db::fieldInteger(*record, "AcDbHatch", 78, 0)) << where;
            hatch->close();
        }
    }
    EXPECT_GT(hatches, 20);
}

}  // namespace
}  // namespace korva::test
