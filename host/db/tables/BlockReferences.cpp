// The references of a block: every non-erased INSERT, wherever it lies, whose
// group 2 names the block; and, for the nested form, the references of every
// block that contains such a reference, directly or through further nesting.
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/TextCase.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

namespace {

using ReferencesByBlock = std::unordered_map<std::string, std::vector<ObjectRecord*>>;

// Every live INSERT of the drawing's blocks and spaces, by the folded name of its block.
ReferencesByBlock collectReferences(const db::Drawing& drawing) {
    ReferencesByBlock references;
    const db::SymbolTable* blocks = drawing.table("BLOCK_RECORD");
    if (!blocks) return references;
    for (const ObjectRecord* block : blocks->records) {
        if (block->erased || !block->container) continue;
        for (ObjectRecord* entity : block->container->members) {
            if (entity->erased || entity->type != db::Type::Insert) continue;
            // Group 2 is the only name of an INSERT (the subclass of MINSERT differs).
            references[db::foldName(db::fieldText(*entity, {}, 2))].push_back(entity);
        }
    }
    return references;
}

const std::vector<ObjectRecord*>& referencesOf(const ReferencesByBlock& references, const ObjectRecord& block) {
    static const std::vector<ObjectRecord*> kNone;
    auto it = references.find(db::foldName(db::recordName(block)));
    return it == references.end() ? kNone : it->second;
}

}  // namespace

Kcad::ErrorStatus KcDbBlockTableRecord::getBlockReferenceIds(KcDbObjectIdArray& ids, bool directOnly,
                                                             bool /*forceValidity*/) const {
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    const ObjectRecord& self = record();
    const ReferencesByBlock references = collectReferences(*self.drawing);

    // Breadth first over the blocks that hold references; a block is visited once,
    // which also ends the walk when blocks refer to each other in a cycle.
    std::vector<const ObjectRecord*> pending{&self};
    std::unordered_set<const ObjectRecord*> visited{&self};
    std::unordered_set<const ObjectRecord*> listed;
    for (size_t next = 0; next < pending.size(); ++next) {
        for (ObjectRecord* reference : referencesOf(references, *pending[next])) {
            if (listed.insert(reference).second) ids.append(ObjectAccess::id(reference));
            const ObjectRecord* holder = reference->owner;
            if (directOnly || !holder || holder->drawing->isLayoutBlock(holder)) continue;
            if (visited.insert(holder).second) pending.push_back(holder);
        }
        if (directOnly) break;
    }
    return Kcad::eOk;
}
