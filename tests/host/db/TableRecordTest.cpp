// Typed table records read from real DXF records and written back: layer
// states and colours, text styles, linetypes, UCSs, viewports and views, and
// renaming with its rules. Each change is checked in the stored groups and
// again after the drawing is saved and read back.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "TestDrawing.h"
#include "db/ApiText.h"
#include "db/Audit.h"
#include "db/RecordFields.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

constexpr const char* kLayers =
    "  0\nLAYER\n  5\nA10\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nWalls\n 70\n0\n"
    " 62\n1\n  6\nContinuous\n370\n-3\n"
    "  0\nLAYER\n  5\nA11\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nDoors\n 70\n5\n"
    " 62\n-3\n  6\nDashed\n370\n25\n290\n0\n"
    "  0\nLAYER\n  5\nA12\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nGlass\n 70\n2\n"
    " 62\n5\n420\n16711935\n  6\nContinuous\n";

constexpr const char* kLinetypes =
    "  0\nLTYPE\n  5\nA20\n330\n5\n100\nAcDbSymbolTableRecord\n100\nAcDbLinetypeTableRecord\n  2\nDashed\n 70\n0\n"
    "  3\nDashed __ __ __\n 72\n65\n 73\n2\n 40\n0.75\n 49\n0.5\n 74\n0\n 49\n-0.25\n 74\n0\n";

constexpr const char* kStyles =
    "  0\nSTYLE\n  5\nA30\n330\n3\n100\nAcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n  2\nSlanted\n 70\n4\n"
    " 40\n2.5\n 41\n0.8\n 50\n15.0\n 71\n2\n 42\n3.5\n  3\nromans.shx\n  4\nbigfont.shx\n";

constexpr const char* kUcs =
    "  0\nUCS\n  5\nA40\n330\n7\n100\nAcDbSymbolTableRecord\n100\nAcDbUCSTableRecord\n  2\nTilted\n 70\n0\n"
    " 10\n1.0\n 20\n2.0\n 30\n3.0\n 11\n0.0\n 21\n1.0\n 31\n0.0\n 12\n-1.0\n 22\n0.0\n 32\n0.0\n 79\n0\n";

constexpr const char* kViewports =
    "  0\nVPORT\n  5\nA50\n330\n8\n100\nAcDbSymbolTableRecord\n100\nAcDbViewportTableRecord\n  2\nSecond\n 70\n0\n"
    " 10\n0.0\n 20\n0.0\n 11\n1.0\n 21\n1.0\n 12\n5.0\n 22\n6.0\n 13\n0.0\n 23\n0.0\n 14\n1.0\n 24\n1.0\n"
    " 15\n1.0\n 25\n1.0\n 16\n0.0\n 26\n-1.0\n 36\n1.0\n 17\n1.0\n 27\n1.0\n 37\n0.0\n 40\n10.0\n 41\n1.5\n";

constexpr const char* kViews =
    "  0\nVIEW\n  5\nA60\n330\n6\n100\nAcDbSymbolTableRecord\n100\nAcDbViewTableRecord\n  2\nFront\n 70\n0\n"
    " 40\n8.0\n 10\n3.0\n 20\n4.0\n 41\n12.0\n 11\n0.0\n 21\n0.0\n 31\n1.0\n 12\n0.0\n 22\n0.0\n 32\n0.0\n";

// The empty drawing with the records above in their tables.
std::string recordDrawingText() {
    std::string text = test::drawingText({}, kLayers);
    auto addTo = [&text](const std::string& table, const char* records) {
        const size_t start = text.find("\n  2\n" + table + "\n");
        text.insert(text.find("  0\nENDTAB", start), records);
    };
    addTo("LTYPE", kLinetypes);
    addTo("STYLE", kStyles);
    addTo("UCS", kUcs);
    addTo("VPORT", kViewports);
    addTo("VIEW", kViews);
    return text;
}

template <class Record>
Record* openRecord(KcDbDatabase& database, const wchar_t* table, const wchar_t* name, KcDb::OpenMode mode) {
    const db::ObjectRecord* record =
        database.drawing().tableRecord(db::toStoredText(table), db::toStoredText(name));
    if (!record) {
        ADD_FAILURE() << "no record";
        return nullptr;
    }
    KcDbObjectId id;
    EXPECT_EQ(database.getKcDbObjectId(id, false, record->handle), Kcad::eOk);
    Record* opened = nullptr;
    EXPECT_EQ(kcdbOpenObject(opened, id, mode), Kcad::eOk);
    return opened;
}

KcDbLayerTableRecord* layer(KcDbDatabase& database, const wchar_t* name, KcDb::OpenMode mode = KcDb::kForRead) {
    KcDbLayerTable* table = nullptr;
    EXPECT_EQ(database.getLayerTable(table, KcDb::kForRead), Kcad::eOk);
    KcDbLayerTableRecord* record = nullptr;
    EXPECT_EQ(table->getAt(name, record, mode), Kcad::eOk);
    table->close();
    return record;
}

int64_t storedInteger(KcDbDatabase& database, const char* table, const char* name, int code) {
    const db::ObjectRecord* record = database.drawing().tableRecord(table, name);
    return record ? db::fieldInteger(*record, {}, code, -9999) : -9999;
}

void expectCleanAudit(db::Drawing& drawing) {
    db::AuditReport report;
    db::auditDrawing(drawing, report);
    for (const auto& repair : report.repairs()) ADD_FAILURE() << repair.code << ": " << repair.message;
}

WorkingDrawing reloaded(WorkingDrawing& drawing) {
    WorkingDrawing copy(dxf::writeDxf(drawing.drawing()));
    EXPECT_TRUE(copy.loadAudit().empty());
    return copy;
}

TEST(TableRecord, LayerStatesComeFromFlagsAndColourSign) {
    WorkingDrawing d(recordDrawingText());
    struct Expected {
        const wchar_t* name;
        bool off, frozen, locked, frozenInNewViewports, plottable;
        int colorIndex;
        KcDb::LineWeight weight;
        const char* linetype;
    };
    for (const Expected& e : {Expected{L"Walls", false, false, false, false, true, 1, KcDb::kLnWtByLwDefault, "Continuous"},
                              Expected{L"Doors", true, true, true, false, false, 3, KcDb::kLnWt025, "Dashed"},
                              Expected{L"Glass", false, false, false, true, true, 5, KcDb::kLnWtByLwDefault, "Continuous"}}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(e.name)));
        KcDbLayerTableRecord* record = layer(d.database(), e.name);
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->isOff(), e.off);
        EXPECT_EQ(record->isFrozen(), e.frozen);
        EXPECT_EQ(record->isLocked(), e.locked);
        EXPECT_EQ(record->VPDFLT(), e.frozenInNewViewports);
        EXPECT_EQ(record->isPlottable(), e.plottable);
        EXPECT_EQ(record->color().colorIndex(), e.colorIndex);
        EXPECT_EQ(record->lineWeight(), e.weight);
        EXPECT_EQ(record->linetypeObjectId().handle(),
                  KcDbHandle(d.drawing().tableRecord("LTYPE", e.linetype)->handle));
        EXPECT_EQ(record->setIsLocked(!e.locked), Kcad::eNotOpenForWrite);  // opened for read
        EXPECT_EQ(record->isLocked(), e.locked);
        record->close();
    }
    KcDbLayerTableRecord* glass = layer(d.database(), L"Glass");
    const KcCmColor trueColor = glass->color();
    EXPECT_TRUE(trueColor.isByColor());
    EXPECT_EQ(trueColor.rgb(), 0xFF00FFu);
    glass->close();
}

TEST(TableRecord, TurningALayerOffKeepsItsColour) {
    WorkingDrawing d(recordDrawingText());
    KcDbLayerTableRecord* walls = layer(d.database(), L"Walls", KcDb::kForWrite);
    ASSERT_EQ(walls->setIsOff(true), Kcad::eOk);
    EXPECT_EQ(storedInteger(d.database(), "LAYER", "Walls", 62), -1);
    KcCmColor cyan;
    cyan.setColorIndex(4);
    ASSERT_EQ(walls->setColor(cyan), Kcad::eOk);  // an off layer stays off when recoloured
    EXPECT_EQ(storedInteger(d.database(), "LAYER", "Walls", 62), -4);
    KcCmColor orange;
    orange.setRGB(255, 128, 0);
    ASSERT_EQ(walls->setColor(orange), Kcad::eOk);
    EXPECT_EQ(storedInteger(d.database(), "LAYER", "Walls", 62), -4);
    EXPECT_EQ(storedInteger(d.database(), "LAYER", "Walls", 420), 0xFF8000);
    KcCmColor byLayer;
    EXPECT_EQ(walls->setColor(byLayer), Kcad::eInvalidInput);  // a layer has no BYLAYER colour
    ASSERT_EQ(walls->setIsOff(false), Kcad::eOk);
    ASSERT_EQ(walls->setIsFrozen(true), Kcad::eOk);
    ASSERT_EQ(walls->setVPDFLT(true), Kcad::eOk);
    ASSERT_EQ(walls->setIsPlottable(false), Kcad::eOk);
    ASSERT_EQ(walls->setLineWeight(KcDb::kLnWt050), Kcad::eOk);
    EXPECT_EQ(walls->setLineWeight(KcDb::kLnWtByLayer), Kcad::eInvalidInput);
    EXPECT_EQ(walls->setLineWeight(static_cast<KcDb::LineWeight>(17)), Kcad::eInvalidInput);
    walls->close();

    KcDbLayerTableRecord* doors = layer(d.database(), L"Doors", KcDb::kForWrite);
    ASSERT_EQ(doors->setIsLocked(false), Kcad::eOk);
    ASSERT_EQ(doors->setIsOff(false), Kcad::eOk);
    doors->close();
    EXPECT_EQ(storedInteger(d.database(), "LAYER", "Doors", 70), 1);  // only "frozen" is left
    EXPECT_EQ(storedInteger(d.database(), "LAYER", "Doors", 62), 3);
    expectCleanAudit(d.drawing());

    WorkingDrawing again = reloaded(d);
    KcDbLayerTableRecord* reread = layer(again.database(), L"Walls");
    EXPECT_FALSE(reread->isOff());
    EXPECT_TRUE(reread->isFrozen());
    EXPECT_TRUE(reread->VPDFLT());
    EXPECT_FALSE(reread->isPlottable());
    EXPECT_EQ(reread->lineWeight(), KcDb::kLnWt050);
    EXPECT_EQ(reread->color().rgb(), 0xFF8000u);
    reread->close();
}

TEST(TableRecord, LayerLinetypeIsSetByRecord) {
    WorkingDrawing d(recordDrawingText());
    KcDbLayerTableRecord* dashedLayer = layer(d.database(), L"Doors");
    const KcDbObjectId dashed = dashedLayer->linetypeObjectId();
    dashedLayer->close();
    KcDbLayerTableRecord* walls = layer(d.database(), L"Walls", KcDb::kForWrite);
    ASSERT_EQ(walls->setLinetypeObjectId(dashed), Kcad::eOk);
    EXPECT_EQ(walls->linetypeObjectId(), dashed);
    EXPECT_EQ(walls->setLinetypeObjectId(walls->objectId()), Kcad::eInvalidInput);  // not a linetype
    walls->close();
    const db::ObjectRecord* stored = d.drawing().tableRecord("LAYER", "Walls");
    EXPECT_EQ(db::fieldText(*stored, {}, 6), "Dashed");
}

TEST(TableRecord, TextStyleFieldsUseDegreesInTheRecord) {
    WorkingDrawing d(recordDrawingText());
    auto* style = openRecord<KcDbTextStyleTableRecord>(d.database(), L"STYLE", L"slanted", KcDb::kForWrite);
    ASSERT_NE(style, nullptr);
    EXPECT_DOUBLE_EQ(style->textSize(), 2.5);
    EXPECT_DOUBLE_EQ(style->xScale(), 0.8);
    EXPECT_NEAR(style->obliquingAngle(), std::numbers::pi / 12, 1e-12);
    EXPECT_DOUBLE_EQ(style->priorSize(), 3.5);
    EXPECT_EQ(style->flagBits(), 2);
    EXPECT_TRUE(style->isVertical());
    EXPECT_FALSE(style->isShapeFile());
    wchar_t* font = nullptr;
    ASSERT_EQ(style->fileName(font), Kcad::eOk);
    EXPECT_STREQ(font, L"romans.shx");
    kcutDelString(font);
    ASSERT_EQ(style->bigFontFileName(font), Kcad::eOk);
    EXPECT_STREQ(font, L"bigfont.shx");
    kcutDelString(font);

    ASSERT_EQ(style->setObliquingAngle(-std::numbers::pi / 6), Kcad::eOk);
    ASSERT_EQ(style->setXScale(1.25), Kcad::eOk);
    EXPECT_EQ(style->setXScale(0.0), Kcad::eInvalidInput);
    EXPECT_EQ(style->setFlagBits(8), Kcad::eInvalidInput);
    ASSERT_EQ(style->setFlagBits(4), Kcad::eOk);
    ASSERT_EQ(style->setFileName(L"isocp.shx"), Kcad::eOk);
    style->close();
    const db::ObjectRecord* stored = d.drawing().tableRecord("STYLE", "Slanted");
    EXPECT_NEAR(db::fieldReal(*stored, {}, 50), -30.0, 1e-9);
    EXPECT_DOUBLE_EQ(db::fieldReal(*stored, {}, 41), 1.25);
    EXPECT_EQ(db::fieldInteger(*stored, {}, 71), 4);
    EXPECT_EQ(db::fieldText(*stored, {}, 3), "isocp.shx");
}

TEST(TableRecord, LinetypeDashesAreReadInOrder) {
    WorkingDrawing d(recordDrawingText());
    auto* dashed = openRecord<KcDbLinetypeTableRecord>(d.database(), L"LTYPE", L"DASHED", KcDb::kForWrite);
    ASSERT_NE(dashed, nullptr);
    EXPECT_EQ(dashed->numDashes(), 2);
    EXPECT_DOUBLE_EQ(dashed->patternLength(), 0.75);
    EXPECT_DOUBLE_EQ(dashed->dashLengthAt(0), 0.5);
    EXPECT_DOUBLE_EQ(dashed->dashLengthAt(1), -0.25);
    EXPECT_DOUBLE_EQ(dashed->dashLengthAt(2), 0.0);
    EXPECT_DOUBLE_EQ(dashed->dashLengthAt(-1), 0.0);
    wchar_t* comments = dashed->comments();
    EXPECT_STREQ(comments, L"Dashed __ __ __");
    kcutDelString(comments);
    ASSERT_EQ(dashed->setComments(L"Long dashes"), Kcad::eOk);
    comments = dashed->comments();
    EXPECT_STREQ(comments, L"Long dashes");
    kcutDelString(comments);
    dashed->close();
}

TEST(TableRecord, ViewRecordsGiveTheirGeometry) {
    WorkingDrawing d(recordDrawingText());
    auto* ucs = openRecord<KcDbUCSTableRecord>(d.database(), L"UCS", L"tilted", KcDb::kForWrite);
    ASSERT_NE(ucs, nullptr);
    EXPECT_TRUE(ucs->origin().isEqualTo(KcGePoint3d(1, 2, 3)));
    EXPECT_TRUE(ucs->xAxis().isEqualTo(KcGeVector3d(0, 1, 0)));
    EXPECT_TRUE(ucs->yAxis().isEqualTo(KcGeVector3d(-1, 0, 0)));
    EXPECT_EQ(ucs->setXAxis(KcGeVector3d(0, 0, 0)), Kcad::eInvalidInput);
    ASSERT_EQ(ucs->setOrigin(KcGePoint3d(7, 8, 9)), Kcad::eOk);
    ucs->close();
    EXPECT_TRUE(db::fieldPoint(*d.drawing().tableRecord("UCS", "Tilted"), {}, 10).isEqualTo(KcGePoint3d(7, 8, 9)));

    auto* vport = openRecord<KcDbViewportTableRecord>(d.database(), L"VPORT", L"Second", KcDb::kForRead);
    ASSERT_NE(vport, nullptr);
    EXPECT_TRUE(vport->centerPoint().isEqualTo(KcGePoint2d(5, 6)));
    EXPECT_DOUBLE_EQ(vport->height(), 10.0);
    EXPECT_DOUBLE_EQ(vport->width(), 15.0);  // height times the aspect ratio
    EXPECT_TRUE(vport->viewDirection().isEqualTo(KcGeVector3d(0, -1, 1)));
    EXPECT_TRUE(vport->target().isEqualTo(KcGePoint3d(1, 1, 0)));
    vport->close();

    auto* view = openRecord<KcDbViewTableRecord>(d.database(), L"VIEW", L"front", KcDb::kForRead);
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(view->centerPoint().isEqualTo(KcGePoint2d(3, 4)));
    EXPECT_DOUBLE_EQ(view->height(), 8.0);
    EXPECT_DOUBLE_EQ(view->width(), 12.0);
    view->close();
}

TEST(TableRecord, RenamingFollowsTheNameRules) {
    WorkingDrawing d(recordDrawingText());
    struct Case {
        const wchar_t* layerName;
        const wchar_t* newName;
        Kcad::ErrorStatus expected;
    };
    for (const Case& c : {Case{L"Walls", L"doors", Kcad::eDuplicateRecordName}, Case{L"Walls", L"a*b", Kcad::eInvalidInput},
                          Case{L"Walls", L"", Kcad::eInvalidInput}, Case{L"0", L"Zero", Kcad::eIllegalReplacement},
                          Case{L"Walls", L"WALLS", Kcad::eOk}, Case{L"Glass", L"Windows", Kcad::eOk}}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.newName)));
        KcDbLayerTableRecord* record = layer(d.database(), c.layerName, KcDb::kForWrite);
        EXPECT_EQ(record->setName(c.newName), c.expected);
        record->close();
    }
    KcDbLayerTable* table = nullptr;
    ASSERT_EQ(d.database().getLayerTable(table, KcDb::kForRead), Kcad::eOk);
    EXPECT_TRUE(table->has(L"Windows"));
    EXPECT_FALSE(table->has(L"Glass"));
    EXPECT_TRUE(table->has(L"0"));
    table->close();
    EXPECT_NE(d.drawing().tableRecord("LAYER", "WALLS"), nullptr);
    EXPECT_EQ(db::recordName(*d.drawing().tableRecord("LAYER", "walls")), "WALLS");
}

TEST(TableRecord, RenamingTheCurrentLayerKeepsItCurrent) {
    WorkingDrawing d(recordDrawingText());
    KcDbLayerTableRecord* walls = layer(d.database(), L"Walls", KcDb::kForWrite);
    ASSERT_EQ(d.database().setClayer(walls->objectId()), Kcad::eOk);
    ASSERT_EQ(walls->setName(L"Outer walls"), Kcad::eOk);
    EXPECT_EQ(d.database().clayer(), walls->objectId());
    EXPECT_EQ(walls->erase(), Kcad::eCannotEraseLayer);  // still the current layer
    walls->close();
    expectCleanAudit(d.drawing());
}

}  // namespace
}  // namespace korva
