// Groups through the SDK: anonymous groups in the group dictionary, members
// with the group among their persistent reactors, erased members, removal,
// and groups read from a corpus drawing; the drawing is saved and read back.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/Audit.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

std::string lineText(const char* handle) {
    return std::string("  0\nLINE\n  5\n") + handle +
           "\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n0.0\n 31\n0.0\n";
}

WorkingDrawing groupDrawing() { return WorkingDrawing::withEntities(lineText("E1") + lineText("E2") + lineText("E3")); }

KcDbObjectId idOf(WorkingDrawing& d, db::Handle handle) {
    KcDbObjectId id;
    EXPECT_EQ(d.database().getKcDbObjectId(id, false, handle), Kcad::eOk);
    return id;
}

KcDbDictionary* groups(KcDbDatabase& database, KcDb::OpenMode mode) {
    KcDbDictionary* dictionary = nullptr;
    EXPECT_EQ(database.getGroupDictionary(dictionary, mode), Kcad::eOk);
    return dictionary;
}

// Adds a group the way the module's createGroup does: setAt, then anonymous for "*" names.
KcDbGroup* addGroup(KcDbDatabase& database, const wchar_t* name, const wchar_t* description) {
    KcDbDictionary* dictionary = groups(database, KcDb::kForWrite);
    auto* group = new KcDbGroup(description);
    KcDbObjectId id;
    EXPECT_EQ(dictionary->setAt(name, group, id), Kcad::eOk);
    dictionary->close();
    if (name[0] == L'*') {
        EXPECT_EQ(group->setAnonymous(), Kcad::eOk);
    }
    return group;
}

std::vector<db::Handle> reactorsOf(WorkingDrawing& d, db::Handle handle) {
    return db::applicationGroupHandles(*d.drawing().findByHandle(handle), "{ACAD_REACTORS");
}

std::vector<db::Handle> handlesOf(const KcDbObjectIdArray& ids) {
    std::vector<db::Handle> handles;
    for (const KcDbObjectId& id : ids) handles.push_back(id.handle());
    return handles;
}

void eraseEntity(WorkingDrawing& d, db::Handle handle) {
    KcDbObject* object = nullptr;
    ASSERT_EQ(kcdbOpenObject(object, idOf(d, handle), KcDb::kForWrite), Kcad::eOk);
    ASSERT_EQ(object->erase(), Kcad::eOk);
    object->close();
}

void expectCleanAudit(db::Drawing& drawing) {
    db::AuditReport report;
    db::auditDrawing(drawing, report);
    for (const auto& repair : report.repairs()) ADD_FAILURE() << repair.code << ": " << repair.message;
}

TEST(ObjectGroup, AnonymousGroupsEachGetTheirOwnKey) {
    WorkingDrawing d = groupDrawing();
    KcDbGroup* first = addGroup(d.database(), L"*U", L"mask 1");
    KcDbGroup* second = addGroup(d.database(), L"*U", L"mask 2");
    EXPECT_STREQ(first->name(), L"*A1");
    EXPECT_STREQ(second->name(), L"*A2");
    EXPECT_TRUE(first->isAnonymous());
    EXPECT_STREQ(second->description(), L"mask 2");
    EXPECT_TRUE(second->isSelectable());
    const KcDbObjectId secondId = second->objectId();
    ASSERT_EQ(second->erase(), Kcad::eOk);
    first->close();
    second->close();
    // Erased groups keep their key in use, so the next number is still fresh.
    KcDbGroup* third = addGroup(d.database(), L"*U", L"mask 3");
    EXPECT_STREQ(third->name(), L"*A3");
    third->close();
    KcDbGroup* named = addGroup(d.database(), L"Doors", L"");
    EXPECT_FALSE(named->isAnonymous());
    named->close();

    KcDbDictionary* dictionary = groups(d.database(), KcDb::kForRead);
    EXPECT_EQ(dictionary->numEntries(), 3);
    std::vector<std::wstring> keys;
    KcDbDictionaryIterator* it = dictionary->newIterator();
    for (; !it->done(); it->next()) keys.emplace_back(it->name());
    delete it;
    EXPECT_EQ(keys, (std::vector<std::wstring>{L"*A1", L"*A3", L"Doors"}));
    EXPECT_FALSE(dictionary->has(secondId));
    dictionary->close();
    expectCleanAudit(d.drawing());

    WorkingDrawing again(dxf::writeDxf(d.drawing()));
    EXPECT_TRUE(again.loadAudit().empty());
    KcDbDictionary* reread = groups(again.database(), KcDb::kForRead);
    EXPECT_EQ(reread->numEntries(), 3);
    EXPECT_TRUE(reread->has(L"*a1"));
    EXPECT_TRUE(reread->has(L"*A3"));
    reread->close();
}

TEST(ObjectGroup, StarKeysOutsideTheGroupDictionaryAreKeptAsGiven) {
    WorkingDrawing d = groupDrawing();
    KcDbDictionary* root = nullptr;
    ASSERT_EQ(d.database().getNamedObjectsDictionary(root, KcDb::kForWrite), Kcad::eOk);
    auto* xrecord = new KcDbXrecord();
    KcDbObjectId id;
    ASSERT_EQ(root->setAt(L"*U", xrecord, id), Kcad::eOk);
    xrecord->close();
    KcDbObjectId found;
    EXPECT_EQ(root->getAt(L"*u", found), Kcad::eOk);
    EXPECT_EQ(found, id);
    root->close();
}

TEST(ObjectGroup, MembersCarryTheGroupAsReactor) {
    WorkingDrawing d = groupDrawing();
    KcDbGroup* group = addGroup(d.database(), L"*U", L"texts");
    KcDbObjectIdArray ids;
    ids.append(idOf(d, 0xE2)).append(idOf(d, 0xE1)).append(idOf(d, 0xE3)).append(idOf(d, 0xE1));
    ASSERT_EQ(group->append(ids), Kcad::eOk);
    const db::Handle groupHandle = group->handle();
    EXPECT_EQ(group->numEntities(), 3u);  // the repeated member is listed once
    KcDbObjectIdArray members;
    EXPECT_EQ(group->allEntityIds(members), 3u);
    EXPECT_EQ(handlesOf(members), (std::vector<db::Handle>{0xE2, 0xE1, 0xE3}));
    for (db::Handle member : {0xE1, 0xE2, 0xE3}) {
        EXPECT_EQ(reactorsOf(d, member), std::vector<db::Handle>{groupHandle});
    }
    KcDbEntity* e2 = nullptr;
    ASSERT_EQ(kcdbOpenObject(e2, idOf(d, 0xE2), KcDb::kForRead), Kcad::eOk);
    EXPECT_TRUE(group->has(e2));
    EXPECT_EQ(e2->getPersistentReactors().length(), 1);
    e2->close();
    group->close();
    expectCleanAudit(d.drawing());

    WorkingDrawing again(dxf::writeDxf(d.drawing()));
    EXPECT_TRUE(again.loadAudit().empty());
    EXPECT_EQ(reactorsOf(again, 0xE3), std::vector<db::Handle>{groupHandle});
    KcDbGroup* reread = nullptr;
    ASSERT_EQ(kcdbOpenObject(reread, idOf(again, groupHandle), KcDb::kForRead), Kcad::eOk);
    KcDbObjectIdArray rereadMembers;
    reread->allEntityIds(rereadMembers);
    EXPECT_EQ(handlesOf(rereadMembers), (std::vector<db::Handle>{0xE2, 0xE1, 0xE3}));
    EXPECT_STREQ(reread->name(), L"*A1");
    EXPECT_TRUE(reread->isAnonymous());
    reread->close();
}

TEST(ObjectGroup, ErasedMembersAreNotCounted) {
    WorkingDrawing d = groupDrawing();
    KcDbGroup* group = addGroup(d.database(), L"*U", L"");
    ASSERT_EQ(group->append(KcDbObjectIdArray().append(idOf(d, 0xE1)).append(idOf(d, 0xE2))), Kcad::eOk);
    eraseEntity(d, 0xE1);
    EXPECT_EQ(group->numEntities(), 1u);
    KcDbObjectIdArray members;
    EXPECT_EQ(group->allEntityIds(members), 1u);
    EXPECT_EQ(handlesOf(members), std::vector<db::Handle>{0xE2});
    EXPECT_EQ(group->append(idOf(d, 0xE1)), Kcad::eWasErased);
    ASSERT_EQ(group->append(idOf(d, 0xE3)), Kcad::eOk);
    EXPECT_EQ(group->numEntities(), 2u);
    group->close();
}

TEST(ObjectGroup, RemoveAndClearUndoMembership) {
    WorkingDrawing d = groupDrawing();
    KcDbGroup* group = addGroup(d.database(), L"Three", L"");
    ASSERT_EQ(group->append(KcDbObjectIdArray().append(idOf(d, 0xE1)).append(idOf(d, 0xE2)).append(idOf(d, 0xE3))),
              Kcad::eOk);
    ASSERT_EQ(group->remove(idOf(d, 0xE2)), Kcad::eOk);
    EXPECT_EQ(group->remove(idOf(d, 0xE2)), Kcad::eKeyNotFound);
    EXPECT_TRUE(reactorsOf(d, 0xE2).empty());
    EXPECT_EQ(group->numEntities(), 2u);
    ASSERT_EQ(group->clear(), Kcad::eOk);
    EXPECT_EQ(group->numEntities(), 0u);
    EXPECT_TRUE(reactorsOf(d, 0xE1).empty());
    EXPECT_TRUE(reactorsOf(d, 0xE3).empty());
    EXPECT_TRUE(db::fieldsOf(*d.drawing().findByHandle(group->handle()), "AcDbGroup", 340).empty());
    group->close();
}

TEST(ObjectGroup, ErasingAGroupReleasesItsMembers) {
    WorkingDrawing d = groupDrawing();
    KcDbGroup* group = addGroup(d.database(), L"*U", L"");
    ASSERT_EQ(group->append(idOf(d, 0xE1)), Kcad::eOk);
    ASSERT_EQ(group->erase(), Kcad::eOk);
    group->close();
    EXPECT_TRUE(reactorsOf(d, 0xE1).empty());
    expectCleanAudit(d.drawing());
}

TEST(ObjectGroup, AppendRefusesWhatCannotBeAMember) {
    WorkingDrawing d = groupDrawing();
    WorkingDrawing other = groupDrawing();
    const KcDbObjectId foreign = idOf(other, 0xE1);
    const KcDbObjectId ownLine = idOf(d, 0xE1);
    KcDbGroup* group = addGroup(d.database(), L"Parts", L"");
    EXPECT_EQ(group->append(KcDbObjectId()), Kcad::eNullObjectId);
    EXPECT_EQ(group->append(foreign), Kcad::eInvalidInput);
    EXPECT_EQ(group->append(d.database().layerTableId()), Kcad::eInvalidInput);  // not an entity
    // A failing id anywhere in the array leaves the group as it was.
    EXPECT_EQ(group->append(KcDbObjectIdArray().append(ownLine).append(foreign)), Kcad::eInvalidInput);
    EXPECT_EQ(group->numEntities(), 0u);
    EXPECT_TRUE(reactorsOf(d, 0xE1).empty());
    ASSERT_EQ(group->downgradeOpen(), Kcad::eOk);
    EXPECT_EQ(group->append(ownLine), Kcad::eNotOpenForWrite);
    group->close();

    auto* unadded = new KcDbGroup(L"loose");
    EXPECT_EQ(unadded->append(ownLine), Kcad::eNotInDatabase);
    delete unadded;
}

TEST(ObjectGroup, CorpusGroupsListTheirMembersInOrder) {
    // Members in the order of the file's 340 groups.
    WorkingDrawing d(test::readFileBytes(test::corpusFile("ezdxf__groups.dxf")));
    KcDbDictionary* dictionary = groups(d.database(), KcDb::kForRead);
    struct Expected {
        const wchar_t* name;
        std::vector<db::Handle> members;
    };
    for (const Expected& e : {Expected{L"G1", {0xA0, 0x9F, 0x9E, 0x9D, 0x9C}},
                              Expected{L"g2", {0xA8, 0xA7, 0xA6, 0xA5, 0xA4, 0xA3, 0xA2, 0xA1}}}) {
        KcDbObject* object = nullptr;
        ASSERT_EQ(dictionary->getAt(e.name, object, KcDb::kForRead), Kcad::eOk);
        auto* group = KcDbGroup::cast(object);
        ASSERT_NE(group, nullptr);
        KcDbObjectIdArray members;
        EXPECT_EQ(group->allEntityIds(members), e.members.size());
        EXPECT_EQ(handlesOf(members), e.members);
        EXPECT_FALSE(group->isAnonymous());
        group->close();
    }
    dictionary->close();
}

}  // namespace
}  // namespace korva
