// A drawing edited through the table and object classes (a new layer, an
// anonymous block with an entity and its reference count, entities in model
// and paper space, an anonymous group, an xrecord with a reference) passes the
// audit, and the saved file opens in an independent DXF reader, from the
// empty drawing and from corpus drawings of several versions.
#include <gtest/gtest.h>

#include <string>

#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/Audit.h"
#include "db/ResultBuffers.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

template <class Table>
Table* open(KcDbDatabase& database, Kcad::ErrorStatus (KcDbDatabase::*get)(Table*&, KcDb::OpenMode)) {
    Table* table = nullptr;
    EXPECT_EQ((database.*get)(table, KcDb::kForWrite), Kcad::eOk);
    return table;
}

// Appends a new line to a block and returns its id.
KcDbObjectId appendLine(KcDbBlockTableRecord* block) {
    auto* line = new KcDbLine();
    KcDbObjectId id;
    EXPECT_EQ(block->appendKcDbEntity(id, line), Kcad::eOk);
    line->close();
    return id;
}

void editEverything(KcDbDatabase& database) {
    KcDbLayerTable* layers = open(database, &KcDbDatabase::getLayerTable);
    ASSERT_NE(layers, nullptr);
    auto* layer = new KcDbLayerTableRecord();
    ASSERT_EQ(layer->setName(L"Korva edits"), Kcad::eOk);
    ASSERT_EQ(layers->add(layer), Kcad::eOk);
    ASSERT_EQ(layer->setIsOff(true), Kcad::eOk);
    ASSERT_EQ(database.setClayer(layer->objectId()), Kcad::eOk);
    layer->close();
    layers->close();

    KcDbBlockTable* blocks = open(database, &KcDbDatabase::getBlockTable);
    ASSERT_NE(blocks, nullptr);
    auto* anonymous = new KcDbBlockTableRecord();
    ASSERT_EQ(anonymous->setName(L"*U"), Kcad::eOk);
    ASSERT_EQ(anonymous->setPathName(L""), Kcad::eOk);
    ASSERT_EQ(blocks->add(anonymous), Kcad::eOk);
    appendLine(anonymous);
    KcDbObjectIdArray references;
    ASSERT_EQ(anonymous->getBlockReferenceIds(references), Kcad::eOk);
    EXPECT_TRUE(references.isEmpty());
    anonymous->close();
    KcDbBlockTableRecord* model = nullptr;
    ASSERT_EQ(blocks->getAt(L"*Model_Space", model, KcDb::kForWrite), Kcad::eOk);
    const KcDbObjectId modelLine = appendLine(model);
    model->close();
    KcDbBlockTableRecord* paper = nullptr;
    ASSERT_EQ(blocks->getAt(L"*Paper_Space", paper, KcDb::kForWrite), Kcad::eOk);
    appendLine(paper);
    paper->close();
    blocks->close();

    KcDbDictionary* groups = nullptr;
    ASSERT_EQ(database.getGroupDictionary(groups, KcDb::kForWrite), Kcad::eOk);
    auto* group = new KcDbGroup(L"edited");
    KcDbObjectId groupId;
    ASSERT_EQ(groups->setAt(L"*U", group, groupId), Kcad::eOk);
    groups->close();
    ASSERT_EQ(group->setAnonymous(), Kcad::eOk);
    ASSERT_EQ(group->append(modelLine), Kcad::eOk);
    group->close();

    KcDbDictionary* root = nullptr;
    ASSERT_EQ(database.getNamedObjectsDictionary(root, KcDb::kForWrite), Kcad::eOk);
    auto* xrecord = new KcDbXrecord();
    db::ResbufChain chain;
    chain.appendText(1, L"edited");
    chain.appendName(340, database.drawing().findByHandle(modelLine.handle()));
    resbuf* items = chain.release();
    KcDbObjectId xrecordId;
    ASSERT_EQ(root->setAt(L"KORVA_EDITS", xrecord, xrecordId), Kcad::eOk);
    EXPECT_EQ(xrecord->setFromRbChain(*items), Kcad::eOk);
    db::releaseResbufs(items);
    xrecord->close();
    root->close();
}

TEST(TableEditsOpenElsewhere, EditedDrawingsPassTheAuditAndOpenInAnotherReader) {
    test::TempDir dir;
    std::vector<std::pair<std::filesystem::path, std::filesystem::path>> saved;
    const std::vector<std::string> sources{"", "ezdxf__groups.dxf", "qcad__examples_flange.dxf", "libredwg__r14_Leader.dxf"};
    for (const std::string& source : sources) {
        SCOPED_TRACE(source.empty() ? "the empty drawing" : source);
        const std::filesystem::path original = source.empty() ? dir.file("empty.dxf") : test::corpusFile(source);
        WorkingDrawing d(source.empty() ? test::drawingText({}) : test::readFileBytes(original));
        if (source.empty()) test::writeFileBytes(original, dxf::writeDxf(d.drawing()));
        editEverything(d.database());
        db::AuditReport report;
        db::auditDrawing(d.drawing(), report);
        for (const auto& repair : report.repairs()) ADD_FAILURE() << repair.code << ": " << repair.message;
        const std::filesystem::path target = dir.file("edited-" + std::to_string(saved.size()) + ".dxf");
        ASSERT_EQ(dxf::saveDxfFile(d.drawing(), target.string()), "");
        saved.emplace_back(target, original);
    }
    for (const std::string& complaint : test::openWithIndependentReader(saved)) ADD_FAILURE() << complaint;
}

}  // namespace
}  // namespace korva
