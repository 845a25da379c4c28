// kcedDrawOrderInherit: puts entities in the draw order relative to a parent
// entity of the same block. The order lives where DXF keeps it: in the block's
// SORTENTSTABLE, the entry "ACAD_SORTENTS" of the block record's extension
// dictionary; both are created when the block has none yet.
#include <vector>

#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "kcdbobjects.h"
#include "kced.h"

namespace {

namespace db = korva::db;
using db::ObjectAccess;
using db::ObjectRecord;

constexpr const wchar_t* kSortentsKey = L"ACAD_SORTENTS";

// Closes an open object when the scope ends.
template <class T>
struct Opened {
    T* object = nullptr;
    ~Opened() {
        if (object) object->close();
    }
};

// The block record's extension dictionary, created when missing. Finding it needs
// no open, so a caller may keep the block record open meanwhile.
Kcad::ErrorStatus extensionDictionaryOf(const ObjectRecord& block, KcDbObjectId& dictionary) {
    const std::vector<db::Handle> handles = db::applicationGroupHandles(block, "{ACAD_XDICTIONARY");
    if (!handles.empty() && block.drawing) {
        if (const ObjectRecord* found = block.drawing->findByHandle(handles.front())) {
            dictionary = ObjectAccess::id(found);
            return Kcad::eOk;
        }
    }
    Opened<KcDbObject> record;
    if (Kcad::ErrorStatus status = kcdbOpenObject(record.object, ObjectAccess::id(&block), KcDb::kForWrite);
        status != Kcad::eOk)
        return status;
    if (Kcad::ErrorStatus status = record.object->createExtensionDictionary(); status != Kcad::eOk) return status;
    dictionary = record.object->extensionDictionary();
    return Kcad::eOk;
}

// The block's SORTENTSTABLE, open for write; a new one names its block (330 of its subclass).
Kcad::ErrorStatus openSortentsTable(const ObjectRecord& block, Opened<KcDbSortentsTable>& table) {
    KcDbObjectId dictionaryId;
    if (Kcad::ErrorStatus status = extensionDictionaryOf(block, dictionaryId); status != Kcad::eOk) return status;
    Opened<KcDbDictionary> dictionary;
    if (Kcad::ErrorStatus status = kcdbOpenObject(dictionary.object, dictionaryId, KcDb::kForRead); status != Kcad::eOk)
        return status;
    KcDbObjectId tableId;
    if (dictionary.object->getAt(kSortentsKey, tableId) == Kcad::eOk) {
        return kcdbOpenObject(table.object, tableId, KcDb::kForWrite);
    }
    if (Kcad::ErrorStatus status = dictionary.object->upgradeOpen(); status != Kcad::eOk) return status;
    auto* created = new KcDbSortentsTable();
    if (Kcad::ErrorStatus status = dictionary.object->setAt(kSortentsKey, created, tableId); status != Kcad::eOk) {
        delete created;
        return status;
    }
    db::setField(ObjectAccess::record(*created), "AcDbSortentsTable", db::Tag::handle(330, block.handle));
    table.object = created;  // setAt leaves the new object open for write
    return Kcad::eOk;
}

}  // namespace

Kcad::ErrorStatus kcedDrawOrderInherit(KcDbObjectId parent, const KcDbObjectIdArray& children, KcGiDrawOrderCmdType command) {
    const ObjectRecord* parentRecord = ObjectAccess::record(parent);
    if (!parentRecord) return Kcad::eNullObjectId;
    const ObjectRecord* block = parentRecord->owner;
    if (!parentRecord->isEntity() || !block || block->type != db::Type::BlockRecord) return Kcad::eInvalidInput;
    for (const KcDbObjectId& child : children) {
        const ObjectRecord* childRecord = ObjectAccess::record(child);
        if (!childRecord || childRecord->owner != block || childRecord == parentRecord) return Kcad::eInvalidInput;
    }
    if (command < kDrawOrderNone || command > kDrawOrderAbove) return Kcad::eInvalidInput;
    if (command == kDrawOrderNone || children.isEmpty()) return Kcad::eOk;

    Opened<KcDbSortentsTable> table;
    if (Kcad::ErrorStatus status = openSortentsTable(*block, table); status != Kcad::eOk) return status;
    switch (command) {
        case kDrawOrderBottom: return table.object->moveToBottom(children);
        case kDrawOrderTop: return table.object->moveToTop(children);
        case kDrawOrderBelow: return table.object->moveBelow(children, parent);
        case kDrawOrderAbove: return table.object->moveAbove(children, parent);
        default: return Kcad::eOk;
    }
}
