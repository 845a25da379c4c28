// Dictionaries through the SDK: keyed look-ups without regard to case, adding
// objects (ownership, key order, replacement), removing entries, erased
// objects, hard ownership, and the drawing's own dictionaries (layouts,
// variables), with the drawing saved and read back.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestDrawing.h"
#include "db/Audit.h"
#include "db/RecordTags.h"
#include "db/objects/DictionaryEntries.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

struct Listed {
    std::wstring key;
    KcDbObjectId id;
};

std::vector<Listed> listed(const KcDbDictionary* dictionary) {
    std::vector<Listed> entries;
    KcDbDictionaryIterator* it = dictionary->newIterator();
    for (; !it->done(); it->next()) entries.push_back({it->name(), it->objectId()});
    delete it;
    return entries;
}

std::vector<std::wstring> keysOf(const KcDbDictionary* dictionary) {
    std::vector<std::wstring> keys;
    for (const Listed& entry : listed(dictionary)) keys.push_back(entry.key);
    return keys;
}

// The keys as the record stores them, in stored order.
std::vector<std::string> storedKeys(const KcDbDictionary* dictionary, db::Drawing& drawing) {
    std::vector<std::string> keys;
    for (const db::DictionaryEntry& entry : db::dictionaryEntries(*drawing.findByHandle(dictionary->handle()))) {
        keys.push_back(entry.key);
    }
    return keys;
}

KcDbDictionary* rootDictionary(KcDbDatabase& database, KcDb::OpenMode mode) {
    KcDbDictionary* root = nullptr;
    EXPECT_EQ(database.getNamedObjectsDictionary(root, mode), Kcad::eOk);
    return root;
}

// A new dictionary "KORVA_TEST" in the named-object dictionary, holding xrecords under these keys.
KcDbDictionary* testDictionary(KcDbDatabase& database, std::initializer_list<const wchar_t*> keys) {
    KcDbDictionary* root = rootDictionary(database, KcDb::kForWrite);
    auto* dictionary = new KcDbDictionary();
    KcDbObjectId id;
    EXPECT_EQ(root->setAt(L"KORVA_TEST", dictionary, id), Kcad::eOk);
    root->close();
    for (const wchar_t* key : keys) {
        auto* xrecord = new KcDbXrecord();
        EXPECT_EQ(dictionary->setAt(key, xrecord, id), Kcad::eOk);
        xrecord->close();
    }
    return dictionary;
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

TEST(Dictionary, NamedObjectDictionaryFindsKeysWithoutRegardToCase) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* root = rootDictionary(d.database(), KcDb::kForRead);
    EXPECT_EQ(root->numEntries(), 12);
    KcDbObjectId layouts;
    ASSERT_EQ(root->getAt(L"acad_layout", layouts), Kcad::eOk);
    KcDbDictionary* layoutDictionary = nullptr;
    ASSERT_EQ(d.database().getLayoutDictionary(layoutDictionary, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(layoutDictionary->objectId(), layouts);
    EXPECT_TRUE(root->has(layouts));
    wchar_t* key = nullptr;
    ASSERT_EQ(root->nameAt(layouts, key), Kcad::eOk);
    EXPECT_STREQ(key, L"ACAD_LAYOUT");
    kcutDelString(key);
    EXPECT_EQ(root->nameAt(root->objectId(), key), Kcad::eKeyNotFound);
    KcDbObjectId none;
    EXPECT_EQ(root->getAt(L"ACAD_NOTHING", none), Kcad::eKeyNotFound);
    EXPECT_FALSE(root->has(L"ACAD_NOTHING"));
    // The iterator sorts without regard to case: "AcDbVariableDictionary" after "ACAD_VISUALSTYLE".
    const std::vector<std::wstring> keys = keysOf(root);
    ASSERT_EQ(keys.size(), 12u);
    EXPECT_EQ(keys.front(), L"ACAD_COLOR");
    EXPECT_EQ(keys.back(), L"AcDbVariableDictionary");
    layoutDictionary->close();
    root->close();
}

TEST(Dictionary, LayoutsAndVariablesReadTheirSubclasses) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* layouts = nullptr;
    ASSERT_EQ(d.database().getLayoutDictionary(layouts, KcDb::kForRead), Kcad::eOk);
    struct Expected {
        const wchar_t* key;
        const wchar_t* name;
        int tab;
        KcDbObjectId block;
    };
    for (const Expected& e : {Expected{L"Model", L"Model", 0, d.database().modelSpaceId()},
                              Expected{L"layout1", L"Layout1", 1, d.database().paperSpaceId()}}) {
        KcDbObject* object = nullptr;
        ASSERT_EQ(layouts->getAt(e.key, object, KcDb::kForRead), Kcad::eOk);
        auto* layout = KcDbLayout::cast(object);
        ASSERT_NE(layout, nullptr);
        const wchar_t* name = nullptr;
        ASSERT_EQ(layout->getLayoutName(name), Kcad::eOk);
        EXPECT_STREQ(name, e.name);
        EXPECT_EQ(layout->getTabOrder(), e.tab);
        EXPECT_EQ(layout->getBlockTableRecordId(), e.block);
        layout->close();
    }
    layouts->close();

    KcDbDictionary* root = rootDictionary(d.database(), KcDb::kForRead);
    KcDbDictionary* variables = nullptr;
    KcDbObject* object = nullptr;
    ASSERT_EQ(root->getAt(L"AcDbVariableDictionary", object, KcDb::kForRead), Kcad::eOk);
    variables = KcDbDictionary::cast(object);
    ASSERT_NE(variables, nullptr);
    ASSERT_EQ(variables->getAt(L"dimassoc", object, KcDb::kForWrite), Kcad::eOk);
    auto* dimassoc = KcDbDictionaryVar::cast(object);
    ASSERT_NE(dimassoc, nullptr);
    EXPECT_STREQ(dimassoc->value(), L"2");
    ASSERT_EQ(dimassoc->setValue(L"1"), Kcad::eOk);
    EXPECT_STREQ(dimassoc->value(), L"1");
    dimassoc->close();
    variables->close();
    root->close();
}

TEST(Dictionary, EntriesAreKeptInKeyOrderAndOwnedByTheDictionary) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* dictionary = testDictionary(d.database(), {L"beta", L"Gamma", L"alpha", L"ALPHA2"});
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::wstring>{L"alpha", L"ALPHA2", L"beta", L"Gamma"}));
    EXPECT_EQ(storedKeys(dictionary, d.drawing()), (std::vector<std::string>{"alpha", "ALPHA2", "beta", "Gamma"}));
    EXPECT_EQ(dictionary->numEntries(), 4);
    for (const Listed& entry : listed(dictionary)) {
        KcDbObject* object = nullptr;
        ASSERT_EQ(kcdbOpenObject(object, entry.id, KcDb::kForRead), Kcad::eOk);
        EXPECT_EQ(object->ownerId(), dictionary->objectId());
        // Entries name the dictionary as owner and among their reactors, as DXF writers do.
        const db::ObjectRecord* stored = d.drawing().findByHandle(entry.id.handle());
        db::Handle owner = 0;
        ASSERT_TRUE(db::readOwnerHandle(*stored, owner));
        EXPECT_EQ(owner, static_cast<db::Handle>(dictionary->handle()));
        EXPECT_EQ(db::applicationGroupHandles(*stored, "{ACAD_REACTORS"),
                  std::vector<db::Handle>{static_cast<db::Handle>(dictionary->handle())});
        object->close();
    }
    dictionary->close();
    expectCleanAudit(d.drawing());

    WorkingDrawing again = reloaded(d);
    KcDbDictionary* root = rootDictionary(again.database(), KcDb::kForRead);
    KcDbObject* object = nullptr;
    ASSERT_EQ(root->getAt(L"korva_test", object, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(keysOf(KcDbDictionary::cast(object)), (std::vector<std::wstring>{L"alpha", L"ALPHA2", L"beta", L"Gamma"}));
    object->close();
    root->close();
}

TEST(Dictionary, ReplacingAKeyLeavesTheOldObjectWithoutOwner) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* dictionary = testDictionary(d.database(), {L"one", L"two"});
    KcDbObjectId oldId;
    ASSERT_EQ(dictionary->getAt(L"TWO", oldId), Kcad::eOk);
    auto* replacement = new KcDbXrecord();
    KcDbObjectId newId;
    ASSERT_EQ(dictionary->setAt(L"Two", replacement, newId), Kcad::eOk);
    replacement->close();
    KcDbObjectId found;
    ASSERT_EQ(dictionary->getAt(L"two", found), Kcad::eOk);
    EXPECT_EQ(found, newId);
    EXPECT_EQ(dictionary->numEntries(), 2);
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::wstring>{L"one", L"Two"}));
    dictionary->close();

    KcDbObject* old = nullptr;
    ASSERT_EQ(kcdbOpenObject(old, oldId, KcDb::kForRead), Kcad::eOk);  // still in the drawing, not erased
    EXPECT_TRUE(old->ownerId().isNull());
    EXPECT_TRUE(old->getPersistentReactors().isEmpty());
    old->close();
    expectCleanAudit(d.drawing());
}

TEST(Dictionary, RemovedAndErasedEntriesDisappearFromLookUps) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* dictionary = testDictionary(d.database(), {L"a", L"b", L"c", L"d"});
    KcDbObjectId removed;
    ASSERT_EQ(dictionary->remove(L"B", removed), Kcad::eOk);
    EXPECT_EQ(dictionary->remove(L"b"), Kcad::eKeyNotFound);
    KcDbObject* object = nullptr;
    ASSERT_EQ(kcdbOpenObject(object, removed, KcDb::kForRead), Kcad::eOk);
    EXPECT_TRUE(object->ownerId().isNull());
    object->close();

    KcDbObjectId cId;
    ASSERT_EQ(dictionary->getAt(L"c", cId), Kcad::eOk);
    ASSERT_EQ(dictionary->remove(cId), Kcad::eOk);
    EXPECT_EQ(dictionary->remove(cId), Kcad::eKeyNotFound);

    ASSERT_EQ(dictionary->getAt(L"d", object, KcDb::kForWrite), Kcad::eOk);
    const KcDbObjectId dId = object->objectId();
    ASSERT_EQ(object->erase(), Kcad::eOk);
    object->close();
    KcDbObjectId none;
    EXPECT_EQ(dictionary->getAt(L"d", none), Kcad::eKeyNotFound);
    EXPECT_FALSE(dictionary->has(dId));
    EXPECT_EQ(dictionary->numEntries(), 1);
    EXPECT_EQ(keysOf(dictionary), std::vector<std::wstring>{L"a"});
    dictionary->close();
    expectCleanAudit(d.drawing());
}

TEST(Dictionary, SetAtRefusesBadCalls) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* dictionary = testDictionary(d.database(), {L"kept"});
    KcDbObjectId id;
    auto* xrecord = new KcDbXrecord();
    EXPECT_EQ(dictionary->setAt(nullptr, xrecord, id), Kcad::eInvalidKey);
    EXPECT_EQ(dictionary->setAt(L"", xrecord, id), Kcad::eInvalidKey);
    EXPECT_EQ(dictionary->setAt(L"x", nullptr, id), Kcad::eNullPtr);
    auto* line = new KcDbLine();
    EXPECT_EQ(dictionary->setAt(L"x", line, id), Kcad::eInvalidInput);  // entities live in blocks
    delete line;
    KcDbObject* kept = nullptr;
    ASSERT_EQ(dictionary->getAt(L"kept", kept, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(dictionary->setAt(L"again", kept, id), Kcad::eAlreadyInDb);
    kept->close();
    ASSERT_EQ(dictionary->downgradeOpen(), Kcad::eOk);
    EXPECT_EQ(dictionary->setAt(L"x", xrecord, id), Kcad::eNotOpenForWrite);
    EXPECT_EQ(dictionary->remove(L"kept"), Kcad::eNotOpenForWrite);
    EXPECT_TRUE(xrecord->isNewObject());
    delete xrecord;
    EXPECT_EQ(keysOf(dictionary), std::vector<std::wstring>{L"kept"});
    dictionary->close();
}

TEST(Dictionary, HardOwnersListTheirEntriesWithHardOwnerHandles) {
    WorkingDrawing d(test::drawingText({}));
    KcDbDictionary* dictionary = testDictionary(d.database(), {L"soft"});
    EXPECT_FALSE(dictionary->isHardOwner());
    ASSERT_EQ(dictionary->setHardOwner(true), Kcad::eOk);
    EXPECT_TRUE(dictionary->isHardOwner());
    auto* xrecord = new KcDbXrecord();
    KcDbObjectId id;
    ASSERT_EQ(dictionary->setAt(L"hard", xrecord, id), Kcad::eOk);
    xrecord->close();
    const db::ObjectRecord* stored = d.drawing().findByHandle(dictionary->handle());
    std::vector<int> codes;
    bool inSubclass = false;
    for (db::TagRef tag : stored->tags) {
        if (tag.code() == 100) inSubclass = tag.text() == "AcDbDictionary";
        else if (inSubclass) codes.push_back(tag.code());
    }
    EXPECT_EQ(codes, (std::vector<int>{280, 281, 3, 360, 3, 350}));  // the flag opens the subclass
    dictionary->close();
    WorkingDrawing again = reloaded(d);
    KcDbDictionary* root = rootDictionary(again.database(), KcDb::kForRead);
    KcDbObject* object = nullptr;
    ASSERT_EQ(root->getAt(L"KORVA_TEST", object, KcDb::kForRead), Kcad::eOk);
    auto* reread = KcDbDictionary::cast(object);
    EXPECT_TRUE(reread->isHardOwner());
    KcDbObjectId hard;
    ASSERT_EQ(reread->getAt(L"HARD", hard), Kcad::eOk);
    EXPECT_EQ(hard.handle(), id.handle());
    reread->close();
    root->close();
}

}  // namespace
}  // namespace korva
