// The symbol table classes: look-up by name (without regard to case), adding
// new records, and iterators in table order. A table object views the TABLE
// head record; its entries are the drawing's SymbolTable records.
#include <cwchar>

#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/TextCase.h"
#include "db/tables/BlockBegin.h"
#include "db/tables/ResidentRecords.h"
#include "db/tables/SymbolNames.h"
#include "db/tables/TableAccess.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

namespace {

db::SymbolTable* tableOf(const KcDbObject& table) {
    if (ObjectAccess::isPending(table)) return nullptr;
    return db::tableOfHead(ObjectAccess::record(table));
}

// A record of that name; erased ones only when asked (the last erased one wins
// when several were erased, since it is the most recent).
ObjectRecord* findRecord(const db::SymbolTable& table, std::string_view name, bool includeErased) {
    if (ObjectRecord* live = table.find(name)) return live;
    if (!includeErased) return nullptr;
    ObjectRecord* found = nullptr;
    for (ObjectRecord* record : table.records) {
        if (record->erased && db::namesEqual(db::recordName(*record), name)) found = record;
    }
    return found;
}

template <class Record>
Kcad::ErrorStatus openByName(const KcDbSymbolTable& table, const wchar_t* name, Record*& record, KcDb::OpenMode mode,
                             bool openErased) {
    record = nullptr;
    KcDbObjectId id;
    if (Kcad::ErrorStatus status = table.getAt(name, id, openErased); status != Kcad::eOk) return status;
    return kcdbOpenObject(record, id, mode, openErased);
}

// The table a record type belongs in: a LAYER record in the LAYER table and so on.
bool belongsIn(const db::SymbolTable& table, db::TypeId type) {
    return db::isSymbolTableRecordType(type) && db::namesEqual(db::typeName(type), table.name);
}

// Anonymous and layout names, the BLOCK and ENDBLK, and the block order.
void completeBlockRecord(db::Drawing& drawing, ObjectRecord& record) {
    const std::string name(db::recordName(record));
    db::ensureBlockEnds(drawing, record);
    db::moveStagedBlockGroups(record);
    if (!name.empty() && name.front() == '*' && !db::isModelSpaceName(name) && !db::isPaperSpaceName(name)) {
        db::setBlockFlags(record, db::blockFlags(record) | db::BlockFlag::Anonymous);
    }
    drawing.blockOrder.push_back(&record);
}

}  // namespace

Kcad::ErrorStatus KcDbSymbolTable::getAt(const wchar_t* name, KcDbObjectId& id, bool getErased) const {
    id = KcDbObjectId();
    if (!name) return Kcad::eInvalidInput;
    const db::SymbolTable* table = tableOf(*this);
    if (!table) return Kcad::eKeyNotFound;
    ObjectRecord* found = findRecord(*table, db::toStoredText(name), getErased);
    if (!found) return Kcad::eKeyNotFound;
    id = ObjectAccess::id(found);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbSymbolTable::getAt(const wchar_t* name, KcDbSymbolTableRecord*& record, KcDb::OpenMode mode,
                                         bool openErased) const {
    return openByName(*this, name, record, mode, openErased);
}

bool KcDbSymbolTable::has(const wchar_t* name) const {
    KcDbObjectId id;
    return getAt(name, id) == Kcad::eOk;
}

bool KcDbSymbolTable::has(KcDbObjectId id) const {
    const ObjectRecord* wanted = ObjectAccess::record(id);
    const db::SymbolTable* table = tableOf(*this);
    if (!wanted || wanted->erased || !table) return false;
    for (const ObjectRecord* record : table->records) {
        if (record == wanted) return true;
    }
    return false;
}

Kcad::ErrorStatus KcDbSymbolTable::add(KcDbSymbolTableRecord* record) {
    KcDbObjectId unused;
    return add(unused, record);
}

Kcad::ErrorStatus KcDbSymbolTable::add(KcDbObjectId& id, KcDbSymbolTableRecord* record) {
    id = KcDbObjectId();
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::SymbolTable* table = tableOf(*this);
    if (!table) return Kcad::eNotInDatabase;
    if (!record) return Kcad::eNullPtr;
    if (!record->isNewObject()) return Kcad::eAlreadyInDb;
    ObjectRecord& pending = ObjectAccess::record(*record);
    if (!belongsIn(*table, pending.type)) return Kcad::eNotThatKindOfClass;

    const bool isBlock = pending.type == db::Type::BlockRecord;
    std::string name(db::recordName(pending));
    if (!db::isValidSymbolName(db::toApiText(name), isBlock)) return Kcad::eInvalidInput;
    if (isBlock && db::isAnonymousNameRequest(name)) name = db::nextAnonymousName(*table, name[1]);
    if (table->find(name)) return Kcad::eDuplicateRecordName;
    if (name != db::recordName(pending)) {
        db::setField(pending, db::tableRecordMarker(pending.type), db::Tag::string(2, name));
    }

    db::Drawing& drawing = *ObjectAccess::record(*this).drawing;
    ObjectRecord& resident = ObjectAccess::adopt(*record, drawing, db::RecordKind::TableRecord);
    db::fitTagsToFormat(resident);
    db::linkToOwner(resident, table->head);
    table->records.push_back(&resident);
    table->invalidateIndex();
    if (isBlock) completeBlockRecord(drawing, resident);
    id = ObjectAccess::id(&resident);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbSymbolTable::newIterator(KcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipDeleted) const {
    iterator = nullptr;
    if (!tableOf(*this)) return Kcad::eNotInDatabase;
    iterator = new KcDbSymbolTableIterator(objectId(), atBeginning, skipDeleted);
    return Kcad::eOk;
}

#define KORVA_DEFINE_TABLE_GETAT(TABLE, RECORD)                                                                \
    Kcad::ErrorStatus TABLE::getAt(const wchar_t* name, RECORD*& record, KcDb::OpenMode mode, bool openErased) \
        const {                                                                                                \
        return openByName(*this, name, record, mode, openErased);                                              \
    }

KORVA_DEFINE_TABLE_GETAT(KcDbLayerTable, KcDbLayerTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbLinetypeTable, KcDbLinetypeTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbTextStyleTable, KcDbTextStyleTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbDimStyleTable, KcDbDimStyleTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbBlockTable, KcDbBlockTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbRegAppTable, KcDbRegAppTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbUCSTable, KcDbUCSTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbViewportTable, KcDbViewportTableRecord)
KORVA_DEFINE_TABLE_GETAT(KcDbViewTable, KcDbViewTableRecord)

#undef KORVA_DEFINE_TABLE_GETAT
