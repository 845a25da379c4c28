// Walks a symbol table's records in table order, forwards or backwards,
// optionally stepping over erased records.
#include "db/ObjectAccess.h"
#include "db/tables/TableAccess.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

namespace {

const std::vector<ObjectRecord*>* recordsOf(KcDbObjectId tableId) {
    const ObjectRecord* head = ObjectAccess::record(tableId);
    const db::SymbolTable* table = head ? db::tableOfHead(*head) : nullptr;
    return table ? &table->records : nullptr;
}

int countOf(KcDbObjectId tableId) {
    const auto* records = recordsOf(tableId);
    return records ? static_cast<int>(records->size()) : 0;
}

}  // namespace

KcDbSymbolTableIterator::KcDbSymbolTableIterator(KcDbObjectId table, bool atBeginning, bool skipDeleted)
    : m_table(table) {
    start(atBeginning, skipDeleted);
}

KcDbSymbolTableIterator::~KcDbSymbolTableIterator() = default;

void KcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
    m_skipDeleted = skipDeleted;
    m_position = atBeginning ? 0 : countOf(m_table) - 1;
    skip(atBeginning);
}

bool KcDbSymbolTableIterator::done() const { return m_position < 0 || m_position >= countOf(m_table); }

void KcDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_skipDeleted = skipDeleted;
    m_position += forward ? 1 : -1;
    skip(forward);
}

void KcDbSymbolTableIterator::skip(bool forward) {
    const auto* records = recordsOf(m_table);
    if (!records || !m_skipDeleted) return;
    while (m_position >= 0 && m_position < static_cast<int>(records->size()) &&
           (*records)[static_cast<size_t>(m_position)]->erased) {
        m_position += forward ? 1 : -1;
    }
}

Kcad::ErrorStatus KcDbSymbolTableIterator::getRecordId(KcDbObjectId& id) const {
    id = KcDbObjectId();
    if (done()) return Kcad::eInvalidIndex;
    id = ObjectAccess::id((*recordsOf(m_table))[static_cast<size_t>(m_position)]);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbSymbolTableIterator::getRecord(KcDbSymbolTableRecord*& record, KcDb::OpenMode mode,
                                                     bool openErased) const {
    record = nullptr;
    KcDbObjectId id;
    if (Kcad::ErrorStatus status = getRecordId(id); status != Kcad::eOk) return status;
    return kcdbOpenObject(record, id, mode, openErased);
}
