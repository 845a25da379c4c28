// Symbol tables through the SDK classes: look-ups without regard to case,
// erased records, iteration in table order, and adding records (name rules,
// duplicates, the table's open mode), with the drawing saved and read again.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestDrawing.h"
#include "db/Audit.h"
#include "db/DrawingIo.h"
#include "db/RecordTags.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

// Three layers after "0"; "Doors" is off, frozen and locked, the last has a non-ASCII name.
constexpr const char* kLayers =
    "  0\nLAYER\n  5\nA10\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nWalls\n 70\n0\n"
    " 62\n1\n  6\nContinuous\n370\n-3\n"
    "  0\nLAYER\n  5\nA11\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nDoors\n 70\n5\n"
    " 62\n-3\n  6\nContinuous\n370\n25\n290\n0\n"
    "  0\nLAYER\n  5\nA12\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\n\xC3\x84u\xC3\x9F" "eres\n"
    " 70\n2\n 62\n5\n420\n16711935\n  6\nContinuous\n370\n-3\n";

const std::vector<std::wstring> kLayerOrder{L"0", L"Walls", L"Doors", L"\u00C4u\u00DFeres"};

WorkingDrawing layerDrawing() { return WorkingDrawing(test::drawingText({}, kLayers)); }

template <class Table>
Table* openTable(KcDbDatabase& database, Kcad::ErrorStatus (KcDbDatabase::*get)(Table*&, KcDb::OpenMode),
                 KcDb::OpenMode mode) {
    Table* table = nullptr;
    EXPECT_EQ((database.*get)(table, mode), Kcad::eOk);
    return table;
}

KcDbLayerTable* layers(KcDbDatabase& database, KcDb::OpenMode mode = KcDb::kForRead) {
    return openTable(database, &KcDbDatabase::getLayerTable, mode);
}

std::wstring nameOf(const KcDbSymbolTableRecord* record) {
    const wchar_t* name = nullptr;
    EXPECT_EQ(record->getName(name), Kcad::eOk);
    return name ? name : L"";
}

std::vector<std::wstring> walk(KcDbSymbolTable* table, bool forward, bool skipDeleted) {
    KcDbSymbolTableIterator* it = nullptr;
    EXPECT_EQ(table->newIterator(it, forward, skipDeleted), Kcad::eOk);
    std::vector<std::wstring> names;
    for (; !it->done(); it->step(forward, skipDeleted)) {
        KcDbSymbolTableRecord* record = nullptr;
        EXPECT_EQ(it->getRecord(record, KcDb::kForRead, true), Kcad::eOk);
        names.push_back(nameOf(record));
        record->close();
    }
    delete it;
    return names;
}

void expectCleanAudit(db::Drawing& drawing) {
    db::AuditReport report;
    db::auditDrawing(drawing, report);
    for (const auto& repair : report.repairs()) ADD_FAILURE() << repair.code << ": " << repair.message;
}

// The drawing written as DXF and read again, as a working database.
WorkingDrawing reloaded(WorkingDrawing& drawing) {
    WorkingDrawing copy(dxf::writeDxf(drawing.drawing()));
    EXPECT_TRUE(copy.loadAudit().empty());
    return copy;
}

TEST(TableLookup, NamesAreFoundWithoutRegardToCase) {
    WorkingDrawing d = layerDrawing();
    KcDbLayerTable* table = layers(d.database());
    struct Case {
        const wchar_t* asked;
        const wchar_t* stored;
    };
    for (const Case& c : {Case{L"walls", L"Walls"}, Case{L"DOORS", L"Doors"}, Case{L"\u00E4U\u00DFERES", L"\u00C4u\u00DFeres"},
                          Case{L"0", L"0"}}) {
        SCOPED_TRACE(testing::Message() << "asked for " << testing::PrintToString(std::wstring(c.asked)));
        KcDbLayerTableRecord* record = nullptr;
        ASSERT_EQ(table->getAt(c.asked, record, KcDb::kForRead), Kcad::eOk);
        EXPECT_EQ(nameOf(record), c.stored);
        EXPECT_TRUE(table->has(c.asked));
        EXPECT_TRUE(table->has(record->objectId()));
        record->close();
    }
    KcDbObjectId missing;
    EXPECT_EQ(table->getAt(L"Roof", missing), Kcad::eKeyNotFound);
    EXPECT_TRUE(missing.isNull());
    EXPECT_FALSE(table->has(L"Roof"));
    EXPECT_EQ(table->getAt(nullptr, missing), Kcad::eInvalidInput);
    table->close();
}

TEST(TableLookup, IteratorsWalkTableOrderBothWays) {
    WorkingDrawing d = layerDrawing();
    KcDbLayerTable* table = layers(d.database());
    EXPECT_EQ(walk(table, true, true), kLayerOrder);
    std::vector<std::wstring> backwards(kLayerOrder.rbegin(), kLayerOrder.rend());
    EXPECT_EQ(walk(table, false, true), backwards);
    table->close();
}

TEST(TableLookup, BlockTableIteratorListsModelAndPaperSpace) {
    WorkingDrawing d = layerDrawing();
    KcDbBlockTable* table = openTable(d.database(), &KcDbDatabase::getBlockTable, KcDb::kForRead);
    EXPECT_EQ(walk(table, true, true), (std::vector<std::wstring>{L"*Model_Space", L"*Paper_Space"}));
    KcDbBlockTableRecord* paper = nullptr;
    ASSERT_EQ(table->getAt(L"*PAPER_SPACE", paper, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(paper->objectId(), d.database().paperSpaceId());
    EXPECT_FALSE(table->has(d.database().clayer()));  // a layer record is not a member of the block table
    EXPECT_TRUE(paper->isLayout());
    EXPECT_FALSE(paper->isAnonymous());
    paper->close();
    table->close();
}

TEST(TableLookup, ErasedRecordsAreSeenOnlyWhenAsked) {
    WorkingDrawing d = layerDrawing();
    KcDbLayerTable* table = layers(d.database());
    KcDbLayerTableRecord* doors = nullptr;
    ASSERT_EQ(table->getAt(L"Doors", doors, KcDb::kForWrite), Kcad::eOk);
    const KcDbObjectId doorsId = doors->objectId();
    ASSERT_EQ(doors->erase(), Kcad::eOk);
    doors->close();

    KcDbObjectId id;
    EXPECT_EQ(table->getAt(L"doors", id), Kcad::eKeyNotFound);
    EXPECT_FALSE(table->has(L"Doors"));
    EXPECT_FALSE(table->has(doorsId));
    ASSERT_EQ(table->getAt(L"doors", id, true), Kcad::eOk);
    EXPECT_EQ(id, doorsId);
    EXPECT_EQ(walk(table, true, true), (std::vector<std::wstring>{L"0", L"Walls", L"\u00C4u\u00DFeres"}));
    EXPECT_EQ(walk(table, true, false), kLayerOrder);
    table->close();
}

TEST(TableLookup, AddRejectsInvalidNamesAndChangesNothing) {
    WorkingDrawing d = layerDrawing();
    KcDbLayerTable* table = layers(d.database(), KcDb::kForWrite);
    const std::wstring tooLong(256, L'x');
    for (const std::wstring& name : {std::wstring(), std::wstring(L" Lead"), std::wstring(L"Trail "), std::wstring(L"a<b"),
                                     std::wstring(L"a>b"), std::wstring(L"a/b"), std::wstring(L"a\\b"), std::wstring(L"a\"b"),
                                     std::wstring(L"a:b"), std::wstring(L"a;b"), std::wstring(L"a?b"), std::wstring(L"a*b"),
                                     std::wstring(L"*Layer"), std::wstring(L"a=b"), std::wstring(L"a,b"), std::wstring(L"a`b"),
                                     std::wstring(L"tab\there"), tooLong}) {
        SCOPED_TRACE(testing::PrintToString(name));
        auto* layer = new KcDbLayerTableRecord();
        ASSERT_EQ(layer->setName(name.c_str()), Kcad::eInvalidInput);
        // A name that never passed setName still fails when the record is added.
        KcDbObjectId id;
        EXPECT_EQ(table->add(id, layer), Kcad::eInvalidInput);
        EXPECT_TRUE(layer->isNewObject());
        delete layer;
    }
    EXPECT_EQ(walk(table, true, false), kLayerOrder);
    table->close();
}

TEST(TableLookup, AddAcceptsNamesWithinTheRules) {
    WorkingDrawing d = layerDrawing();
    KcDbLayerTable* table = layers(d.database(), KcDb::kForWrite);
    const std::wstring longest(255, L'y');
    for (const std::wstring& name : {std::wstring(L"Xref|Walls"), std::wstring(L"inner space"), std::wstring(L"\u0411\u0435\u0442\u043E\u043D"),
                                     std::wstring(L"a-b_c.d$e#f"), longest}) {
        SCOPED_TRACE(testing::PrintToString(name));
        auto* layer = new KcDbLayerTableRecord();
        ASSERT_EQ(layer->setName(name.c_str()), Kcad::eOk);
        KcDbObjectId id;
        ASSERT_EQ(table->add(id, layer), Kcad::eOk);
        EXPECT_EQ(layer->objectId(), id);
        layer->close();
        EXPECT_TRUE(table->has(name.c_str()));
    }
    table->close();
    expectCleanAudit(d.drawing());
}

TEST(TableLookup, AddRefusesDuplicatesReadOnlyTablesAndForeignRecords) {
    WorkingDrawing d = layerDrawing();
    auto* duplicate = new KcDbLayerTableRecord();
    ASSERT_EQ(duplicate->setName(L"WALLS"), Kcad::eOk);

    KcDbLayerTable* readOnly = layers(d.database());
    EXPECT_EQ(readOnly->add(duplicate), Kcad::eNotOpenForWrite);
    readOnly->close();

    KcDbLayerTable* table = layers(d.database(), KcDb::kForWrite);
    EXPECT_EQ(table->add(duplicate), Kcad::eDuplicateRecordName);
    EXPECT_TRUE(duplicate->isNewObject());
    delete duplicate;

    auto* linetype = new KcDbLinetypeTableRecord();
    ASSERT_EQ(linetype->setName(L"Dots"), Kcad::eOk);
    EXPECT_EQ(table->add(linetype), Kcad::eNotThatKindOfClass);
    delete linetype;

    KcDbLayerTableRecord* walls = nullptr;
    ASSERT_EQ(table->getAt(L"Walls", walls, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(table->add(walls), Kcad::eAlreadyInDb);
    walls->close();
    EXPECT_EQ(walk(table, true, false), kLayerOrder);
    table->close();
}

TEST(TableLookup, NameOfAnErasedRecordCanBeUsedAgain) {
    WorkingDrawing d = layerDrawing();
    KcDbLayerTable* table = layers(d.database(), KcDb::kForWrite);
    KcDbLayerTableRecord* walls = nullptr;
    ASSERT_EQ(table->getAt(L"Walls", walls, KcDb::kForWrite), Kcad::eOk);
    ASSERT_EQ(walls->erase(), Kcad::eOk);
    walls->close();
    auto* fresh = new KcDbLayerTableRecord();
    ASSERT_EQ(fresh->setName(L"walls"), Kcad::eOk);
    KcDbObjectId freshId;
    ASSERT_EQ(table->add(freshId, fresh), Kcad::eOk);
    fresh->close();
    KcDbObjectId found;
    ASSERT_EQ(table->getAt(L"WALLS", found), Kcad::eOk);
    EXPECT_EQ(found, freshId);
    table->close();
}

TEST(TableLookup, AddedRecordIsOwnedByTheTableAndSurvivesSaving) {
    WorkingDrawing d = layerDrawing();
    KcDbLayerTable* table = layers(d.database(), KcDb::kForWrite);
    auto* roof = new KcDbLayerTableRecord();
    ASSERT_EQ(roof->setName(L"Roof"), Kcad::eOk);
    KcDbObjectId roofId;
    ASSERT_EQ(table->add(roofId, roof), Kcad::eOk);
    // The new record stays open for write until the caller closes it.
    EXPECT_TRUE(roof->isWriteEnabled());
    EXPECT_FALSE(roof->isNewObject());
    EXPECT_EQ(roof->ownerId(), table->objectId());
    db::Handle ownerTag = 0;
    ASSERT_TRUE(db::readOwnerHandle(*d.drawing().tableRecord("LAYER", "Roof"), ownerTag));
    EXPECT_EQ(ownerTag, static_cast<db::Handle>(table->handle()));
    // A new layer is on, thawed, plottable, colour 7, "Continuous" and the default lineweight.
    EXPECT_FALSE(roof->isOff());
    EXPECT_FALSE(roof->isFrozen());
    EXPECT_TRUE(roof->isPlottable());
    EXPECT_EQ(roof->color().colorIndex(), 7);
    EXPECT_EQ(roof->lineWeight(), KcDb::kLnWtByLwDefault);
    KcDbLinetypeTable* linetypes = openTable(d.database(), &KcDbDatabase::getLinetypeTable, KcDb::kForRead);
    KcDbObjectId continuous;
    ASSERT_EQ(linetypes->getAt(L"CONTINUOUS", continuous), Kcad::eOk);
    linetypes->close();
    EXPECT_EQ(roof->linetypeObjectId(), continuous);
    ASSERT_EQ(roof->setIsLocked(true), Kcad::eOk);
    roof->close();
    table->close();
    expectCleanAudit(d.drawing());

    WorkingDrawing again = reloaded(d);
    KcDbLayerTable* reread = layers(again.database());
    EXPECT_EQ(walk(reread, true, true),
              (std::vector<std::wstring>{L"0", L"Walls", L"Doors", L"\u00C4u\u00DFeres", L"Roof"}));
    KcDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(reread->getAt(L"roof", layer, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(layer->handle(), roofId.handle());
    EXPECT_TRUE(layer->isLocked());
    layer->close();
    reread->close();
}

TEST(TableLookup, AddedRecordOfAnR12DrawingCarriesNoModernGroups) {
    // A drawing in R12 format: records there have no subclass markers or owners.
    const auto original = dxf::readDxf(dxf::writeDxf(*db::newDrawingFromTemplate(), {"AC1009"}));
    ASSERT_TRUE(original.ok()) << original.error;
    WorkingDrawing d(dxf::writeDxf(*original.drawing));
    ASSERT_LT(d.drawing().versionNumber(), 1012);
    KcDbLayerTable* table = layers(d.database(), KcDb::kForWrite);
    auto* layer = new KcDbLayerTableRecord();
    ASSERT_EQ(layer->setName(L"Old"), Kcad::eOk);
    ASSERT_EQ(table->add(layer), Kcad::eOk);
    layer->close();
    table->close();
    const db::ObjectRecord* record = d.drawing().tableRecord("LAYER", "Old");
    ASSERT_NE(record, nullptr);
    for (db::TagRef tag : record->tags) {
        EXPECT_NE(tag.code(), 100);
        EXPECT_NE(tag.code(), 330);
        EXPECT_NE(tag.code(), 370);
    }
    WorkingDrawing again = reloaded(d);
    EXPECT_NE(again.drawing().tableRecord("LAYER", "OLD"), nullptr);
}

}  // namespace
}  // namespace korva
