// The draw order of one block (SORTENTSTABLE): the block (330 of the subclass)
// and pairs of entity (331) and sort handle (5). Entities are drawn in the
// order of their sort handles; an entity without a pair sorts by its own
// handle. A move reorders the block and hands the same set of sort handles out
// again in the new order, so that only the pairs that differ are written.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "db/objects/SortentsPairs.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "kcdbdatabase.h"

using korva::db::Handle;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kMarker = "AcDbSortentsTable";
constexpr int kNoCode = -32000;  // pairs run to the end of the subclass

struct Placed {
    ObjectRecord* entity;
    Handle sortHandle;
};

ObjectRecord* blockOf(const ObjectRecord& table) {
    const Handle block = db::fieldHandle(table, kMarker, 330);
    if (block == 0 || !table.drawing) return nullptr;
    ObjectRecord* record = table.drawing->findByHandle(block);
    return record && record->type == db::Type::BlockRecord ? record : nullptr;
}

// The live entities of the table's block in draw order, with their sort handles.
std::vector<Placed> drawOrder(const ObjectRecord& table) {
    std::vector<Placed> order;
    const ObjectRecord* block = blockOf(table);
    if (!block || !block->container) return order;
    const auto pairs = sortentsPairs(table);
    for (ObjectRecord* entity : block->container->members) {
        if (entity->erased) continue;
        auto it = pairs.find(entity->handle);
        order.push_back({entity, it == pairs.end() ? entity->handle : it->second});
    }
    std::stable_sort(order.begin(), order.end(), [](const Placed& a, const Placed& b) {
        return a.sortHandle != b.sortHandle ? a.sortHandle < b.sortHandle : a.entity->handle < b.entity->handle;
    });
    return order;
}

// Gives the entities, in their new order, the sorted sort handles of the old order.
void writeOrder(ObjectRecord& table, const std::vector<Placed>& oldOrder, const std::vector<ObjectRecord*>& newOrder) {
    std::vector<Handle> keys;
    for (const Placed& placed : oldOrder) keys.push_back(placed.sortHandle);
    std::sort(keys.begin(), keys.end());
    std::vector<Tag> pairs;
    for (size_t i = 0; i < newOrder.size(); ++i) {
        if (keys[i] == newOrder[i]->handle) continue;
        pairs.push_back(Tag::handle(331, newOrder[i]->handle));
        pairs.push_back(Tag::handle(5, keys[i]));
    }
    db::replaceRun(table, kMarker, 331, kNoCode, pairs);
}

enum class Place { Bottom, Top, Below, Above };

Kcad::ErrorStatus move(ObjectRecord& table, const KcDbObjectIdArray& ids, Place place, KcDbObjectId target = {}) {
    const std::vector<Placed> order = drawOrder(table);
    if (!blockOf(table)) return Kcad::eInvalidInput;
    std::unordered_set<const ObjectRecord*> inBlock;
    for (const Placed& placed : order) inBlock.insert(placed.entity);
    std::unordered_set<const ObjectRecord*> moving;
    for (const KcDbObjectId& id : ids) {
        const ObjectRecord* entity = ObjectAccess::record(id);
        if (!entity || !inBlock.count(entity)) return Kcad::eInvalidInput;
        moving.insert(entity);
    }
    const ObjectRecord* anchor = ObjectAccess::record(target);
    const bool relative = place == Place::Below || place == Place::Above;
    if (relative && (!anchor || !inBlock.count(anchor) || moving.count(anchor))) return Kcad::eInvalidInput;

    // The moved entities keep their relative order.
    std::vector<ObjectRecord*> moved, rest;
    for (const Placed& placed : order) (moving.count(placed.entity) ? moved : rest).push_back(placed.entity);
    std::vector<ObjectRecord*> result;
    if (place == Place::Bottom) result = moved;
    for (ObjectRecord* entity : rest) {
        if (entity == anchor && place == Place::Below) result.insert(result.end(), moved.begin(), moved.end());
        result.push_back(entity);
        if (entity == anchor && place == Place::Above) result.insert(result.end(), moved.begin(), moved.end());
    }
    if (place == Place::Top) result.insert(result.end(), moved.begin(), moved.end());
    writeOrder(table, order, result);
    return Kcad::eOk;
}

}  // namespace

KcDbObjectId KcDbSortentsTable::blockId() const { return ObjectAccess::id(blockOf(record())); }

Kcad::ErrorStatus KcDbSortentsTable::getFullDrawOrder(KcDbObjectIdArray& ids) const {
    const ObjectRecord& self = record();
    if (!blockOf(self)) return Kcad::eInvalidInput;
    for (const Placed& placed : drawOrder(self)) ids.append(ObjectAccess::id(placed.entity));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbSortentsTable::moveToBottom(const KcDbObjectIdArray& ids) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    return move(record(), ids, Place::Bottom);
}

Kcad::ErrorStatus KcDbSortentsTable::moveToTop(const KcDbObjectIdArray& ids) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    return move(record(), ids, Place::Top);
}

Kcad::ErrorStatus KcDbSortentsTable::moveBelow(const KcDbObjectIdArray& ids, KcDbObjectId target) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    return move(record(), ids, Place::Below, target);
}

Kcad::ErrorStatus KcDbSortentsTable::moveAbove(const KcDbObjectIdArray& ids, KcDbObjectId target) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    return move(record(), ids, Place::Above, target);
}
