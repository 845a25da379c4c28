// Adding and emptying block records through the database classes.
#include "commands/BlockRecords.h"

#include "kcdbfuncs.h"

namespace korva::commands {

KcDbObjectId addBlockRecord(KcDbDatabase& database, const std::wstring& name, const KcGePoint3d& origin) {
    KcDbBlockTable* table = nullptr;
    if (database.getBlockTable(table, KcDb::kForWrite) != Kcad::eOk) return KcDbObjectId::kNull;
    auto* block = new KcDbBlockTableRecord();
    block->setName(name.c_str());
    block->setOrigin(origin);
    KcDbObjectId id;
    if (table->add(id, block) != Kcad::eOk) {
        delete block;
        table->close();
        return KcDbObjectId::kNull;
    }
    block->close();
    table->close();
    return id;
}

bool emptyBlockRecord(KcDbObjectId block, const KcGePoint3d& origin) {
    KcDbBlockTableRecord* record = nullptr;
    if (kcdbOpenObject(record, block, KcDb::kForWrite) != Kcad::eOk) return false;
    KcDbBlockTableRecordIterator* iterator = nullptr;
    record->newIterator(iterator);
    for (; iterator && !iterator->done(); iterator->step()) {
        KcDbEntity* entity = nullptr;
        if (iterator->getEntity(entity, KcDb::kForWrite) != Kcad::eOk) continue;
        entity->erase();
        entity->close();
    }
    delete iterator;
    record->setOrigin(origin);
    record->close();
    return true;
}

}  // namespace korva::commands
