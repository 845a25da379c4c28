// Block records through the SDK: anonymous names, BLOCK-entity properties of
// new blocks, appending entities to model space, paper spaces and blocks,
// iteration, attribute definitions and the references of a block, direct and
// nested. Drawings are real DXF text (the empty drawing with blocks added) and
// corpus files; every change is audited and saved and read back.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/Audit.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

// --- the test drawing -------------------------------------------------------

std::string tags(std::initializer_list<std::pair<int, std::string>> list) {
    std::string out;
    for (const auto& [code, value] : list) out += std::to_string(code) + "\n" + value + "\n";
    return out;
}

std::string blockRecord(const std::string& handle, const std::string& name) {
    return tags({{0, "BLOCK_RECORD"}, {5, handle}, {330, "1"}, {100, "AcDbSymbolTableRecord"},
                 {100, "AcDbBlockTableRecord"}, {2, name}, {340, "0"}, {70, "0"}, {280, "1"}, {281, "0"}});
}

std::string blockDefinition(const std::string& record, const std::string& name, int flags, const std::string& body) {
    return tags({{0, "BLOCK"}, {5, record + "1"}, {330, record}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockBegin"},
                 {2, name}, {70, std::to_string(flags)}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {3, name}, {1, ""}}) +
           body +
           tags({{0, "ENDBLK"}, {5, record + "2"}, {330, record}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockEnd"}});
}

std::string insert(const std::string& handle, const std::string& owner, const std::string& block, bool paper = false) {
    std::string text = tags({{0, "INSERT"}, {5, handle}, {330, owner}, {100, "AcDbEntity"}});
    if (paper) text += tags({{67, "1"}});
    return text + tags({{8, "0"}, {100, "AcDbBlockReference"}, {2, block}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}});
}

std::string line(const std::string& handle, const std::string& owner) {
    return tags({{0, "LINE"}, {5, handle}, {330, owner}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbLine"}, {10, "0.0"},
                 {20, "0.0"}, {30, "0.0"}, {11, "1.0"}, {21, "1.0"}, {31, "0.0"}});
}

std::string attdef(const std::string& handle, const std::string& owner) {
    return tags({{0, "ATTDEF"}, {5, handle}, {330, owner}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbText"}, {10, "0.0"},
                 {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {1, "?"}, {100, "AcDbAttributeDefinition"}, {3, "Size"},
                 {2, "SIZE"}, {70, "0"}});
}

constexpr const char* kModel = "1F";
constexpr const char* kPaper = "1B";

// Leaf (a line and an attribute definition) is used twice in Branch and once in
// model space; Branch in model space and in Tree; Tree in paper space. Loop1
// and Loop2 refer to each other. "*U7" is an anonymous block already there.
std::string blockDrawingText() {
    std::string text = test::drawingText(insert("E01", kModel, "Leaf") + insert("E02", kModel, "branch") +
                                             insert("E03", kPaper, "Tree", true) + insert("E04", kModel, "Loop1"),
                                         tags({{0, "LAYER"}, {5, "A10"}, {330, "2"}, {100, "AcDbSymbolTableRecord"},
                                               {100, "AcDbLayerTableRecord"}, {2, "Walls"}, {70, "0"}, {62, "1"},
                                               {6, "Continuous"}, {370, "-3"}}));
    const std::string records = blockRecord("B1", "Leaf") + blockRecord("B2", "Branch") + blockRecord("B3", "Tree") +
                                blockRecord("B4", "Loop1") + blockRecord("B5", "Loop2") + blockRecord("B6", "*U7");
    const size_t blockTable = text.find("\n  2\nBLOCK_RECORD\n");
    text.insert(text.find("  0\nENDTAB", blockTable), records);
    const std::string blocks =
        blockDefinition("B1", "Leaf", 0, line("D01", "B1") + attdef("D02", "B1")) +
        blockDefinition("B2", "Branch", 0, insert("D03", "B2", "Leaf") + insert("D04", "B2", "LEAF")) +
        blockDefinition("B3", "Tree", 0, insert("D05", "B3", "Branch")) +
        blockDefinition("B4", "Loop1", 0, insert("D06", "B4", "Loop2")) +
        blockDefinition("B5", "Loop2", 0, insert("D07", "B5", "Loop1")) + blockDefinition("B6", "*U7", 1, line("D08", "B6"));
    const size_t blocksSection = text.find("\nBLOCKS\n");
    text.insert(text.find("  0\nENDSEC", blocksSection), blocks);
    return text;
}

// --- helpers ----------------------------------------------------------------

KcDbBlockTableRecord* openBlock(KcDbDatabase& database, const wchar_t* name, KcDb::OpenMode mode) {
    KcDbBlockTable* table = nullptr;
    EXPECT_EQ(database.getBlockTable(table, KcDb::kForRead), Kcad::eOk);
    KcDbBlockTableRecord* block = nullptr;
    EXPECT_EQ(table->getAt(name, block, mode), Kcad::eOk);
    table->close();
    return block;
}

std::set<std::string> handlesOf(const KcDbObjectIdArray& ids) {
    std::set<std::string> handles;
    for (const KcDbObjectId& id : ids) handles.insert(db::formatHandle(id.handle()));
    return handles;
}

std::set<std::string> referencesOf(KcDbDatabase& database, const wchar_t* block, bool directOnly) {
    KcDbBlockTableRecord* record = openBlock(database, block, KcDb::kForRead);
    if (!record) return {};
    KcDbObjectIdArray ids;
    EXPECT_EQ(record->getBlockReferenceIds(ids, directOnly), Kcad::eOk);
    record->close();
    const std::set<std::string> handles = handlesOf(ids);
    EXPECT_EQ(handles.size(), static_cast<size_t>(ids.length())) << "an id is listed twice";
    return handles;
}

std::vector<std::string> entityHandles(KcDbBlockTableRecord* block, bool forward, bool skipDeleted) {
    KcDbBlockTableRecordIterator* it = nullptr;
    EXPECT_EQ(block->newIterator(it, forward, skipDeleted), Kcad::eOk);
    std::vector<std::string> handles;
    for (; !it->done(); it->step(forward, skipDeleted)) {
        KcDbObjectId id;
        EXPECT_EQ(it->getEntityId(id), Kcad::eOk);
        handles.push_back(db::formatHandle(id.handle()));
    }
    delete it;
    return handles;
}

void eraseObject(KcDbDatabase& database, const char* handle) {
    KcDbObjectId id;
    ASSERT_EQ(database.getKcDbObjectId(id, false, std::stoull(handle, nullptr, 16)), Kcad::eOk);
    KcDbObject* object = nullptr;
    ASSERT_EQ(kcdbOpenObject(object, id, KcDb::kForWrite), Kcad::eOk);
    ASSERT_EQ(object->erase(), Kcad::eOk);
    object->close();
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

const db::ObjectRecord& blockEntityOf(db::Drawing& drawing, const char* name) {
    const db::ObjectRecord* record = drawing.tableRecord("BLOCK_RECORD", name);
    EXPECT_TRUE(record && record->container && record->container->begin);
    return *record->container->begin;
}

// --- references ---------------------------------------------------------------

TEST(TableBlock, ReferencesDirectAndThroughNesting) {
    WorkingDrawing d(blockDrawingText());
    ASSERT_TRUE(d.loadAudit().empty());
    struct Case {
        const wchar_t* block;
        std::set<std::string> direct;
        std::set<std::string> nested;
    };
    const Case cases[] = {
        {L"leaf", {"D03", "D04", "E01"}, {"D03", "D04", "E01", "E02", "D05", "E03"}},
        {L"Branch", {"E02", "D05"}, {"E02", "D05", "E03"}},
        {L"Tree", {"E03"}, {"E03"}},
        {L"Loop1", {"E04", "D07"}, {"E04", "D07", "D06"}},  // the cycle ends the walk
        {L"*U7", {}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.block)));
        EXPECT_EQ(referencesOf(d.database(), c.block, true), c.direct);
        EXPECT_EQ(referencesOf(d.database(), c.block, false), c.nested);
    }
}

TEST(TableBlock, ErasedReferencesAreNotListed) {
    WorkingDrawing d(blockDrawingText());
    eraseObject(d.database(), "D04");
    eraseObject(d.database(), "E02");
    EXPECT_EQ(referencesOf(d.database(), L"Leaf", true), (std::set<std::string>{"D03", "E01"}));
    EXPECT_EQ(referencesOf(d.database(), L"Leaf", false), (std::set<std::string>{"D03", "E01", "D05", "E03"}));
}

TEST(TableBlock, ReferencesInCorpusDrawingsMatchAnIndependentCount) {
    // Counts taken with an independent DXF reader.
    struct Case {
        const char* file;
        const wchar_t* block;
        int direct;
        int nested;
    };
    for (const Case& c : {Case{"qcad__examples_entities.dxf", L"block01", 1, 2},
                          Case{"qcad__examples_entities.dxf", L"BLOCK02", 1, 2},
                          Case{"qcad__examples_flange.dxf", L"Title", 1, 2},
                          Case{"qcad__examples_flange.dxf", L"Border", 1, 1}}) {
        SCOPED_TRACE(c.file);
        WorkingDrawing d(test::readFileBytes(test::corpusFile(c.file)));
        EXPECT_EQ(referencesOf(d.database(), c.block, true).size(), static_cast<size_t>(c.direct));
        EXPECT_EQ(referencesOf(d.database(), c.block, false).size(), static_cast<size_t>(c.nested));
    }
}

// --- properties and iteration -------------------------------------------------------

TEST(TableBlock, KindsOfBlocks) {
    WorkingDrawing d(blockDrawingText());
    struct Case {
        const wchar_t* name;
        bool layout, anonymous, attributes;
    };
    for (const Case& c : {Case{L"*Model_Space", true, false, false}, Case{L"*Paper_Space", true, false, false},
                          Case{L"Leaf", false, false, true}, Case{L"Branch", false, false, false},
                          Case{L"*U7", false, true, false}}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.name)));
        KcDbBlockTableRecord* block = openBlock(d.database(), c.name, KcDb::kForRead);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(block->isLayout(), c.layout);
        EXPECT_EQ(block->isAnonymous(), c.anonymous);
        EXPECT_EQ(block->hasAttributeDefinitions(), c.attributes);
        EXPECT_TRUE(block->explodable());
        EXPECT_FALSE(block->isFromExternalReference());
        block->close();
    }
    KcDbBlockTableRecord* model = openBlock(d.database(), L"*Model_Space", KcDb::kForRead);
    EXPECT_EQ(db::formatHandle(model->getLayoutId().handle()), "22");  // the "Model" LAYOUT
    model->close();
}

TEST(TableBlock, IteratorSkipsErasedEntitiesWhenAsked) {
    WorkingDrawing d(blockDrawingText());
    eraseObject(d.database(), "D01");
    KcDbBlockTableRecord* leaf = openBlock(d.database(), L"Leaf", KcDb::kForRead);
    EXPECT_EQ(entityHandles(leaf, true, true), (std::vector<std::string>{"D02"}));
    EXPECT_EQ(entityHandles(leaf, true, false), (std::vector<std::string>{"D01", "D02"}));
    EXPECT_EQ(entityHandles(leaf, false, false), (std::vector<std::string>{"D02", "D01"}));
    EXPECT_TRUE(leaf->hasAttributeDefinitions());
    leaf->close();
    eraseObject(d.database(), "D02");
    leaf = openBlock(d.database(), L"Leaf", KcDb::kForRead);
    EXPECT_FALSE(leaf->hasAttributeDefinitions());  // its only attribute definition is erased
    EXPECT_TRUE(entityHandles(leaf, true, true).empty());
    leaf->close();
}

TEST(TableBlock, RenamingABlockRenamesItsBlockEntity) {
    WorkingDrawing d(blockDrawingText());
    KcDbBlockTableRecord* tree = openBlock(d.database(), L"Tree", KcDb::kForWrite);
    EXPECT_EQ(tree->setName(L"Leaf"), Kcad::eDuplicateRecordName);
    ASSERT_EQ(tree->setName(L"Oak"), Kcad::eOk);
    ASSERT_EQ(tree->setExplodable(false), Kcad::eOk);
    tree->close();
    const db::ObjectRecord& begin = blockEntityOf(d.drawing(), "Oak");
    EXPECT_EQ(db::fieldText(begin, "AcDbBlockBegin", 2), "Oak");
    EXPECT_EQ(db::fieldText(begin, "AcDbBlockBegin", 3), "Oak");
    EXPECT_EQ(db::fieldInteger(*d.drawing().tableRecord("BLOCK_RECORD", "Oak"), {}, 280), 0);

    KcDbBlockTableRecord* model = openBlock(d.database(), L"*Model_Space", KcDb::kForWrite);
    EXPECT_EQ(model->setName(L"Model"), Kcad::eIllegalReplacement);
    model->close();
}

// --- adding blocks --------------------------------------------------------------

TEST(TableBlock, AnonymousBlocksGetTheNextFreeNumberOfTheirLetter) {
    WorkingDrawing d(blockDrawingText());
    KcDbBlockTable* table = nullptr;
    ASSERT_EQ(d.database().getBlockTable(table, KcDb::kForWrite), Kcad::eOk);
    std::vector<std::wstring> names;
    for (const wchar_t* asked : {L"*U", L"*u", L"*D"}) {
        auto* block = new KcDbBlockTableRecord();
        ASSERT_EQ(block->setName(asked), Kcad::eOk);
        ASSERT_EQ(block->setPathName(L""), Kcad::eOk);
        KcDbObjectId id;
        ASSERT_EQ(table->add(id, block), Kcad::eOk);
        const wchar_t* name = nullptr;
        ASSERT_EQ(block->getName(name), Kcad::eOk);
        names.push_back(name);
        EXPECT_TRUE(block->isAnonymous());
        EXPECT_FALSE(block->isLayout());
        block->close();
    }
    table->close();
    EXPECT_EQ(names, (std::vector<std::wstring>{L"*U8", L"*U9", L"*D1"}));
    for (const char* name : {"*U8", "*U9", "*D1"}) {
        const db::ObjectRecord& begin = blockEntityOf(d.drawing(), name);
        EXPECT_EQ(db::fieldText(begin, "AcDbBlockBegin", 2), name);
        EXPECT_EQ(db::fieldInteger(begin, "AcDbBlockBegin", 70) & 1, 1) << name;
    }
    expectCleanAudit(d.drawing());

    WorkingDrawing again = reloaded(d);
    KcDbBlockTableRecord* reread = openBlock(again.database(), L"*U9", KcDb::kForRead);
    ASSERT_NE(reread, nullptr);
    EXPECT_TRUE(reread->isAnonymous());
    reread->close();
}

TEST(TableBlock, BlockPropertiesSetBeforeAddingReachTheBlockEntity) {
    WorkingDrawing d(blockDrawingText());
    auto* door = new KcDbBlockTableRecord();
    ASSERT_EQ(door->setName(L"Door"), Kcad::eOk);
    ASSERT_EQ(door->setOrigin(KcGePoint3d(1, 2, 0)), Kcad::eOk);
    ASSERT_EQ(door->setComments(L"A single door"), Kcad::eOk);
    EXPECT_TRUE(door->origin().isEqualTo(KcGePoint3d(1, 2, 0)));
    KcDbBlockTable* table = nullptr;
    ASSERT_EQ(d.database().getBlockTable(table, KcDb::kForWrite), Kcad::eOk);
    ASSERT_EQ(table->add(door), Kcad::eOk);
    table->close();
    EXPECT_FALSE(door->isAnonymous());
    auto* line = new KcDbLine();
    ASSERT_EQ(door->appendKcDbEntity(line), Kcad::eOk);
    door->close();

    const db::ObjectRecord& begin = blockEntityOf(d.drawing(), "Door");
    EXPECT_TRUE(db::fieldPoint(begin, "AcDbBlockBegin", 10).isEqualTo(KcGePoint3d(1, 2, 0)));
    EXPECT_EQ(db::fieldText(begin, "AcDbBlockBegin", 4), "A single door");
    for (db::TagRef tag : d.drawing().tableRecord("BLOCK_RECORD", "Door")->tags) {
        EXPECT_FALSE(tag.code() == 100 && tag.text() == "AcDbBlockBegin") << "BLOCK groups left in the block record";
    }
    const db::ObjectRecord* doorRecord = d.drawing().tableRecord("BLOCK_RECORD", "Door");
    ASSERT_EQ(doorRecord->container->members.size(), 1u);
    EXPECT_EQ(doorRecord->container->members[0]->handle, static_cast<db::Handle>(line->handle()));
    // The appended entity stays open for write until its caller closes it.
    KcDbObject* second = nullptr;
    EXPECT_EQ(kcdbOpenObject(second, line->objectId(), KcDb::kForRead), Kcad::eWasOpenForWrite);
    line->close();
    expectCleanAudit(d.drawing());

    WorkingDrawing again = reloaded(d);
    KcDbBlockTableRecord* reread = openBlock(again.database(), L"door", KcDb::kForRead);
    ASSERT_NE(reread, nullptr);
    EXPECT_TRUE(reread->origin().isEqualTo(KcGePoint3d(1, 2, 0)));
    wchar_t* comments = nullptr;
    ASSERT_EQ(reread->comments(comments), Kcad::eOk);
    EXPECT_STREQ(comments, L"A single door");
    kcutDelString(comments);
    EXPECT_EQ(entityHandles(reread, true, true).size(), 1u);
    reread->close();
}

// --- appending entities -----------------------------------------------------------

TEST(TableBlock, AppendedEntityTakesTheCurrentLayerAndItsOwner) {
    WorkingDrawing d(blockDrawingText());
    KcDbLayerTable* layers = nullptr;
    ASSERT_EQ(d.database().getLayerTable(layers, KcDb::kForRead), Kcad::eOk);
    KcDbObjectId walls;
    ASSERT_EQ(layers->getAt(L"Walls", walls), Kcad::eOk);
    layers->close();
    ASSERT_EQ(d.database().setClayer(walls), Kcad::eOk);

    KcDbBlockTableRecord* model = openBlock(d.database(), L"*Model_Space", KcDb::kForWrite);
    auto* onCurrent = new KcDbLine();
    auto* onZero = new KcDbLine();
    ASSERT_EQ(onZero->setLayer(L"0"), Kcad::eOk);
    KcDbObjectId currentId, zeroId;
    ASSERT_EQ(model->appendKcDbEntity(currentId, onCurrent), Kcad::eOk);
    ASSERT_EQ(model->appendKcDbEntity(zeroId, onZero), Kcad::eOk);
    EXPECT_EQ(onCurrent->ownerId(), model->objectId());
    EXPECT_EQ(onCurrent->blockId(), model->objectId());
    EXPECT_EQ(onCurrent->layerId(), walls);
    EXPECT_TRUE(onCurrent->isWriteEnabled());
    onCurrent->close();
    onZero->close();
    const std::vector<std::string> handles = entityHandles(model, true, true);
    ASSERT_GE(handles.size(), 2u);
    EXPECT_EQ(handles[handles.size() - 2], db::formatHandle(currentId.handle()));
    EXPECT_EQ(handles.back(), db::formatHandle(zeroId.handle()));
    model->close();

    db::ObjectRecord* stored = d.drawing().findByHandle(currentId.handle());
    db::Handle owner = 0;
    ASSERT_TRUE(db::readOwnerHandle(*stored, owner));
    EXPECT_EQ(owner, d.drawing().modelSpace()->handle);
    EXPECT_FALSE(db::hasField(*stored, "AcDbEntity", 67));
    expectCleanAudit(d.drawing());

    WorkingDrawing again = reloaded(d);
    KcDbObjectId rereadId;
    ASSERT_EQ(again.database().getKcDbObjectId(rereadId, false, currentId.handle()), Kcad::eOk);
    KcDbEntity* reread = nullptr;
    ASSERT_EQ(kcdbOpenObject(reread, rereadId, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(reread->blockId(), again.database().modelSpaceId());
    wchar_t* layer = reread->layer();
    EXPECT_STREQ(layer, L"Walls");
    kcutDelString(layer);
    reread->close();
}

TEST(TableBlock, EntitiesInPaperSpacesCarryThePaperSpaceFlag) {
    WorkingDrawing d(test::readFileBytes(test::corpusFile("qcad__examples_flange.dxf")));
    struct Case {
        const wchar_t* block;
        bool paper;
    };
    std::vector<std::pair<db::Handle, bool>> appended;
    for (const Case& c : {Case{L"*Paper_Space", true}, Case{L"*Paper_Space1", true}, Case{L"Border", false},
                          Case{L"*Model_Space", false}}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.block)));
        KcDbBlockTableRecord* block = openBlock(d.database(), c.block, KcDb::kForWrite);
        ASSERT_NE(block, nullptr);
        auto* entity = new KcDbLine();
        KcDbObjectId id;
        ASSERT_EQ(block->appendKcDbEntity(id, entity), Kcad::eOk);
        entity->close();
        block->close();
        const db::ObjectRecord* stored = d.drawing().findByHandle(id.handle());
        EXPECT_EQ(db::fieldInteger(*stored, "AcDbEntity", 67, 0), c.paper ? 1 : 0);
        appended.emplace_back(id.handle(), c.paper);
    }
    expectCleanAudit(d.drawing());

    WorkingDrawing again(dxf::writeDxf(d.drawing()));
    for (const auto& [handle, paper] : appended) {
        const db::ObjectRecord* reread = again.drawing().findByHandle(handle);
        ASSERT_NE(reread, nullptr);
        ASSERT_NE(reread->owner, nullptr);
        EXPECT_EQ(reread->owner->handle, d.drawing().findByHandle(handle)->owner->handle);
        EXPECT_EQ(again.drawing().isLayoutBlock(reread->owner) && reread->owner != again.drawing().modelSpace(), paper);
    }
}

TEST(TableBlock, AppendedPolylineGetsItsSequenceEnd) {
    WorkingDrawing d(blockDrawingText());
    KcDbBlockTableRecord* branch = openBlock(d.database(), L"Branch", KcDb::kForWrite);
    auto* polyline = new KcDb2dPolyline();
    KcDbObjectId id;
    ASSERT_EQ(branch->appendKcDbEntity(id, polyline), Kcad::eOk);
    polyline->close();
    branch->close();
    const db::ObjectRecord* stored = d.drawing().findByHandle(id.handle());
    ASSERT_TRUE(stored->container && stored->container->end);
    const db::ObjectRecord& end = *stored->container->end;
    EXPECT_EQ(end.owner, stored);
    EXPECT_NE(end.handle, 0u);
    EXPECT_EQ(db::fieldText(end, "AcDbEntity", 8), "0");
    expectCleanAudit(d.drawing());
    WorkingDrawing again = reloaded(d);
    const db::ObjectRecord* reread = again.drawing().findByHandle(id.handle());
    ASSERT_TRUE(reread && reread->container && reread->container->end);
    EXPECT_EQ(reread->container->end->handle, end.handle);
}

TEST(TableBlock, AppendRefusesWhatItCannotTake) {
    WorkingDrawing d(blockDrawingText());
    KcDbBlockTableRecord* readOnly = openBlock(d.database(), L"Leaf", KcDb::kForRead);
    auto* line = new KcDbLine();
    EXPECT_EQ(readOnly->appendKcDbEntity(line), Kcad::eNotOpenForWrite);
    EXPECT_TRUE(line->isNewObject());
    readOnly->close();

    KcDbBlockTableRecord* leaf = openBlock(d.database(), L"Leaf", KcDb::kForWrite);
    EXPECT_EQ(leaf->appendKcDbEntity(nullptr), Kcad::eNullEntityPointer);
    auto* attribute = new KcDbAttribute();
    EXPECT_EQ(leaf->appendKcDbEntity(attribute), Kcad::eInvalidInput);  // attributes belong to references
    delete attribute;
    KcDbObjectId lineId;
    ASSERT_EQ(leaf->appendKcDbEntity(lineId, line), Kcad::eOk);
    EXPECT_EQ(leaf->appendKcDbEntity(line), Kcad::eAlreadyInDb);
    line->close();
    leaf->close();

    auto* unadded = new KcDbBlockTableRecord();
    auto* other = new KcDbLine();
    EXPECT_EQ(unadded->appendKcDbEntity(other), Kcad::eNotInDatabase);
    delete other;
    delete unadded;
}

}  // namespace
}  // namespace korva
