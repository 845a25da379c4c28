// Walks the entities of a block record in the block's own order (model and
// paper space: creation order), optionally stepping over erased entities.
#include "db/ObjectAccess.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

namespace {

const std::vector<ObjectRecord*>* membersOf(KcDbObjectId blockId) {
    const ObjectRecord* block = ObjectAccess::record(blockId);
    return block && block->container ? &block->container->members : nullptr;
}

int countOf(KcDbObjectId blockId) {
    const auto* members = membersOf(blockId);
    return members ? static_cast<int>(members->size()) : 0;
}

}  // namespace

KcDbBlockTableRecordIterator::KcDbBlockTableRecordIterator(KcDbObjectId block, bool atBeginning, bool skipDeleted)
    : m_block(block) {
    start(atBeginning, skipDeleted);
}

KcDbBlockTableRecordIterator::~KcDbBlockTableRecordIterator() = default;

void KcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    m_skipDeleted = skipDeleted;
    m_position = atBeginning ? 0 : countOf(m_block) - 1;
    skip(atBeginning);
}

bool KcDbBlockTableRecordIterator::done() const { return m_position < 0 || m_position >= countOf(m_block); }

void KcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_skipDeleted = skipDeleted;
    m_position += forward ? 1 : -1;
    skip(forward);
}

void KcDbBlockTableRecordIterator::skip(bool forward) {
    const auto* members = membersOf(m_block);
    if (!members || !m_skipDeleted) return;
    while (m_position >= 0 && m_position < static_cast<int>(members->size()) &&
           (*members)[static_cast<size_t>(m_position)]->erased) {
        m_position += forward ? 1 : -1;
    }
}

Kcad::ErrorStatus KcDbBlockTableRecordIterator::getEntityId(KcDbObjectId& id) const {
    id = KcDbObjectId();
    if (done()) return Kcad::eInvalidIndex;
    id = ObjectAccess::id((*membersOf(m_block))[static_cast<size_t>(m_position)]);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbBlockTableRecordIterator::getEntity(KcDbEntity*& entity, KcDb::OpenMode mode,
                                                          bool openErased) const {
    entity = nullptr;
    KcDbObjectId id;
    if (Kcad::ErrorStatus status = getEntityId(id); status != Kcad::eOk) return status;
    return kcdbOpenObject(entity, id, mode, openErased);
}
