// The draw-order table (SORTENTSTABLE) and annotation scales through the SDK:
// the full draw order from sort handles, each move operation, refused moves,
// and scales read from and added to the drawing's scale list; each change is
// saved and read back.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestDrawing.h"
#include "db/Audit.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

std::string lineText(const char* handle) {
    return std::string("  0\nLINE\n  5\n") + handle +
           "\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n0.0\n 31\n0.0\n";
}

// Four lines in model space; the table swaps F1 and F4.
constexpr const char* kSortents =
    "  0\nDICTIONARY\n  5\nF0\n330\n1F\n100\nAcDbDictionary\n280\n1\n281\n1\n  3\nACAD_SORTENTS\n360\nF5\n"
    "  0\nSORTENTSTABLE\n  5\nF5\n102\n{ACAD_REACTORS\n330\nF0\n102\n}\n330\nF0\n100\nAcDbSortentsTable\n330\n1F\n"
    "331\nF1\n  5\nF4\n331\nF4\n  5\nF1\n";

std::string drawOrderText() {
    std::string text = test::drawingText(lineText("F1") + lineText("F2") + lineText("F3") + lineText("F4"));
    const size_t objects = text.find("\nOBJECTS\n");
    text.insert(text.rfind("  0\nENDSEC", text.find("  0\nEOF", objects)), kSortents);
    return text;
}

KcDbObjectId idOf(WorkingDrawing& d, db::Handle handle) {
    KcDbObjectId id;
    EXPECT_EQ(d.database().getKcDbObjectId(id, false, handle), Kcad::eOk);
    return id;
}

KcDbSortentsTable* openTable(WorkingDrawing& d, KcDb::OpenMode mode) {
    KcDbSortentsTable* table = nullptr;
    EXPECT_EQ(kcdbOpenObject(table, idOf(d, 0xF5), mode), Kcad::eOk);
    return table;
}

std::vector<db::Handle> drawOrder(WorkingDrawing& d) {
    KcDbSortentsTable* table = openTable(d, KcDb::kForRead);
    KcDbObjectIdArray ids;
    EXPECT_EQ(table->getFullDrawOrder(ids), Kcad::eOk);
    table->close();
    std::vector<db::Handle> handles;
    for (const KcDbObjectId& id : ids) handles.push_back(id.handle());
    return handles;
}

KcDbObjectIdArray ids(WorkingDrawing& d, std::initializer_list<db::Handle> handles) {
    KcDbObjectIdArray out;
    for (db::Handle handle : handles) out.append(idOf(d, handle));
    return out;
}

void expectCleanAudit(db::Drawing& drawing) {
    db::AuditReport report;
    db::auditDrawing(drawing, report);
    for (const auto& repair : report.repairs()) ADD_FAILURE() << repair.code << ": " << repair.message;
}

TEST(ObjectDrawOrder, SortHandlesDecideTheOrder) {
    WorkingDrawing d(drawOrderText());
    ASSERT_TRUE(d.loadAudit().empty());
    EXPECT_EQ(drawOrder(d), (std::vector<db::Handle>{0xF4, 0xF2, 0xF3, 0xF1}));
    KcDbSortentsTable* table = openTable(d, KcDb::kForRead);
    EXPECT_EQ(table->blockId(), d.database().modelSpaceId());
    table->close();
}

TEST(ObjectDrawOrder, MovesReorderAndSurviveSaving) {
    WorkingDrawing d(drawOrderText());
    KcDbSortentsTable* table = openTable(d, KcDb::kForWrite);
    ASSERT_EQ(table->moveToTop(ids(d, {0xF4})), Kcad::eOk);
    table->close();
    EXPECT_EQ(drawOrder(d), (std::vector<db::Handle>{0xF2, 0xF3, 0xF1, 0xF4}));

    auto apply = [&](auto&& move, std::vector<db::Handle> expected) {
        KcDbSortentsTable* t = openTable(d, KcDb::kForWrite);
        ASSERT_EQ(move(t), Kcad::eOk);
        t->close();
        EXPECT_EQ(drawOrder(d), expected);
    };
    // Moved entities keep their relative draw order (F3 is drawn before F1).
    apply([&](KcDbSortentsTable* t) { return t->moveToBottom(ids(d, {0xF1, 0xF3})); },
          {0xF3, 0xF1, 0xF2, 0xF4});
    apply([&](KcDbSortentsTable* t) { return t->moveAbove(ids(d, {0xF3}), idOf(d, 0xF2)); },
          {0xF1, 0xF2, 0xF3, 0xF4});
    apply([&](KcDbSortentsTable* t) { return t->moveBelow(ids(d, {0xF4}), idOf(d, 0xF1)); },
          {0xF4, 0xF1, 0xF2, 0xF3});
    expectCleanAudit(d.drawing());

    WorkingDrawing again(dxf::writeDxf(d.drawing()));
    EXPECT_TRUE(again.loadAudit().empty());
    EXPECT_EQ(drawOrder(again), (std::vector<db::Handle>{0xF4, 0xF1, 0xF2, 0xF3}));
}

TEST(ObjectDrawOrder, RefusedMovesChangeNothing) {
    WorkingDrawing d(drawOrderText());
    const std::vector<db::Handle> before{0xF4, 0xF2, 0xF3, 0xF1};
    KcDbSortentsTable* table = openTable(d, KcDb::kForWrite);
    EXPECT_EQ(table->moveAbove(ids(d, {0xF2}), idOf(d, 0xF2)), Kcad::eInvalidInput);  // the target moves itself
    EXPECT_EQ(table->moveBelow(ids(d, {0xF2}), KcDbObjectId()), Kcad::eInvalidInput);
    EXPECT_EQ(table->moveToTop(ids(d, {0xF2, 0xF5})), Kcad::eInvalidInput);  // the table is not in the block
    table->close();
    EXPECT_EQ(drawOrder(d), before);
    KcDbSortentsTable* readOnly = openTable(d, KcDb::kForRead);
    EXPECT_EQ(readOnly->moveToTop(ids(d, {0xF2})), Kcad::eNotOpenForWrite);
    readOnly->close();
    EXPECT_EQ(drawOrder(d), before);
}

TEST(ObjectDrawOrder, ErasedEntitiesLeaveTheOrder) {
    WorkingDrawing d(drawOrderText());
    KcDbObject* line = nullptr;
    ASSERT_EQ(kcdbOpenObject(line, idOf(d, 0xF2), KcDb::kForWrite), Kcad::eOk);
    ASSERT_EQ(line->erase(), Kcad::eOk);
    line->close();
    EXPECT_EQ(drawOrder(d), (std::vector<db::Handle>{0xF4, 0xF3, 0xF1}));
}

// --- annotation scales ----------------------------------------------------------------

KcDbDictionary* scaleList(KcDbDatabase& database, KcDb::OpenMode mode) {
    KcDbDictionary* root = nullptr;
    EXPECT_EQ(database.getNamedObjectsDictionary(root, KcDb::kForRead), Kcad::eOk);
    KcDbObject* object = nullptr;
    EXPECT_EQ(root->getAt(L"ACAD_SCALELIST", object, mode), Kcad::eOk);
    root->close();
    return KcDbDictionary::cast(object);
}

TEST(ObjectDrawOrder, ScalesReadAndAddedToTheScaleList) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* scales = scaleList(d.database(), KcDb::kForWrite);
    ASSERT_NE(scales, nullptr);
    EXPECT_EQ(scales->numEntries(), 17);
    struct Expected {
        const wchar_t* key;
        const wchar_t* name;
        double paper, drawing;
        bool unit;
    };
    for (const Expected& e : {Expected{L"A0", L"1:1", 1, 1, true}, Expected{L"a11", L"1:100", 1, 100, false},
                              Expected{L"A16", L"100:1", 100, 1, false}}) {
        KcDbObject* object = nullptr;
        ASSERT_EQ(scales->getAt(e.key, object, KcDb::kForRead), Kcad::eOk);
        auto* scale = KcDbScale::cast(object);
        ASSERT_NE(scale, nullptr);
        wchar_t* name = nullptr;
        ASSERT_EQ(scale->getScaleName(name), Kcad::eOk);
        EXPECT_STREQ(name, e.name);
        kcutDelString(name);
        double units = 0;
        ASSERT_EQ(scale->getPaperUnits(units), Kcad::eOk);
        EXPECT_EQ(units, e.paper);
        ASSERT_EQ(scale->getDrawingUnits(units), Kcad::eOk);
        EXPECT_EQ(units, e.drawing);
        bool unit = false;
        ASSERT_EQ(scale->getIsUnitScale(unit), Kcad::eOk);
        EXPECT_EQ(unit, e.unit);
        scale->close();
    }

    auto* added = new KcDbScale();
    ASSERT_EQ(added->setScaleName(L"1:200"), Kcad::eOk);
    ASSERT_EQ(added->setPaperUnits(1.0), Kcad::eOk);
    ASSERT_EQ(added->setDrawingUnits(200.0), Kcad::eOk);
    EXPECT_EQ(added->setDrawingUnits(0.0), Kcad::eInvalidInput);
    KcDbObjectId id;
    ASSERT_EQ(scales->setAt(L"B1", added, id), Kcad::eOk);
    added->close();
    scales->close();
    expectCleanAudit(d.drawing());

    WorkingDrawing again(dxf::writeDxf(d.drawing()));
    KcDbDictionary* reread = scaleList(again.database(), KcDb::kForRead);
    ASSERT_NE(reread, nullptr);
    KcDbDictionaryIterator* it = reread->newIterator();
    std::wstring lastKey;
    for (; !it->done(); it->next()) lastKey = it->name();
    delete it;
    EXPECT_EQ(lastKey, L"B1");  // in key order "B1" comes after every "A.." key
    KcDbObject* object = nullptr;
    ASSERT_EQ(reread->getAt(L"b1", object, KcDb::kForRead), Kcad::eOk);
    double units = 0;
    ASSERT_EQ(KcDbScale::cast(object)->getDrawingUnits(units), Kcad::eOk);
    EXPECT_EQ(units, 200.0);
    object->close();
    reread->close();
}

}  // namespace
}  // namespace korva
