// Appending a new entity to a block record: the entity becomes resident, is
// owned by the block, takes the current layer when it names none, carries the
// paper-space flag (67) in a paper space, and brings its attributes or
// vertices (and their SEQEND) along.
#include <algorithm>

#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/tables/BlockAppend.h"
#include "db/tables/ResidentRecords.h"
#include "kcdbdatabase.h"

using korva::db::kEntityMarker;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;

namespace {

std::string currentLayer(const db::Drawing& drawing) {
    std::string name = drawing.header.getString("$CLAYER").value_or("0");
    if (name.empty() || !drawing.tableRecord("LAYER", name)) name = "0";
    return name;
}

// Layer and space of an entity or sub-entity that joins a block.
void placeInSpace(ObjectRecord& entity, std::string_view fallbackLayer, bool paperSpace) {
    if (db::fieldText(entity, kEntityMarker, 8).empty()) {
        db::setField(entity, kEntityMarker, Tag::string(8, fallbackLayer));
    }
    if (paperSpace) db::setField(entity, kEntityMarker, Tag::integerValue(67, 1));
    else if (db::fieldInteger(entity, kEntityMarker, 67, 0) != 0) db::removeField(entity, kEntityMarker, 67);
}

// A sub-entity made with the entity: a record outside the drawing gets a
// resident copy (its tags move), one already resident is re-linked.
ObjectRecord* adoptSubEntity(db::Drawing& drawing, ObjectRecord& parent, ObjectRecord* sub) {
    ObjectRecord* resident = sub;
    if (!sub->drawing) {
        resident = &drawing.createRecord(sub->type, db::RecordKind::Entity);
        resident->tags = std::move(sub->tags);
        db::assignNewHandle(drawing, *resident);
        db::fitTagsToFormat(*resident);
    }
    db::linkToOwner(*resident, &parent);
    return resident;
}

// POLYLINE always ends with a SEQEND, an INSERT when it has attributes.
void ensureSequenceEnd(db::Drawing& drawing, ObjectRecord& entity) {
    const bool needsEnd = entity.type == db::Type::Polyline ||
                          (entity.type == db::Type::Insert && entity.container && !entity.container->members.empty());
    if (!needsEnd || (entity.container && entity.container->end)) return;
    ObjectRecord& end = drawing.createRecord(db::Type::SeqEnd, db::RecordKind::Entity);
    end.tags = db::TagList::encode(std::vector<Tag>{Tag::string(100, "AcDbEntity"), Tag::string(8, "")});
    db::assignNewHandle(drawing, end);
    db::fitTagsToFormat(end);
    db::linkToOwner(end, &entity);
    entity.ensureContainer().end = &end;
}

void adoptSubEntities(db::Drawing& drawing, ObjectRecord& entity, std::string_view layer, bool paperSpace) {
    if (entity.container) {
        db::Container& c = *entity.container;
        for (size_t i = 0; i < c.members.size(); ++i) {
            c.members[i] = adoptSubEntity(drawing, entity, c.members[i]);
            c.members[i]->order = static_cast<uint32_t>(i);
        }
        if (c.end) c.end = adoptSubEntity(drawing, entity, c.end);
    }
    ensureSequenceEnd(drawing, entity);
    if (!entity.container) return;
    entity.container->pending.clear();  // their tags now live in resident records
    for (ObjectRecord* sub : entity.container->members) placeInSpace(*sub, layer, paperSpace);
    if (entity.container->end) placeInSpace(*entity.container->end, layer, paperSpace);
}

bool isTopLevelEntityType(db::TypeId type) {
    return db::isEntityType(type) && type != db::Type::Attrib && type != db::Type::Vertex;
}

// Sub-entities must be new or already in the target drawing; another drawing's records stay there.
bool subEntitiesFit(const ObjectRecord& entity, const db::Drawing& drawing) {
    if (!entity.container) return true;
    auto fits = [&](const ObjectRecord* sub) { return !sub->drawing || sub->drawing == &drawing; };
    const db::Container& c = *entity.container;
    return std::all_of(c.members.begin(), c.members.end(), fits) && (!c.end || fits(c.end));
}

}  // namespace

Kcad::ErrorStatus KcDbBlockTableRecord::appendKcDbEntity(KcDbEntity* entity) {
    KcDbObjectId unused;
    return appendKcDbEntity(unused, entity);
}

Kcad::ErrorStatus KcDbBlockTableRecord::appendKcDbEntity(KcDbObjectId& id, KcDbEntity* entity) {
    id = KcDbObjectId();
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    if (!entity) return Kcad::eNullEntityPointer;
    if (!entity->isNewObject()) return Kcad::eAlreadyInDb;
    ObjectRecord& block = record();
    db::Drawing& drawing = *block.drawing;
    const ObjectRecord& pending = ObjectAccess::record(*entity);
    if (!isTopLevelEntityType(pending.type) || !subEntitiesFit(pending, drawing)) return Kcad::eInvalidInput;

    id = ObjectAccess::id(&db::appendNewEntity(block, *entity));
    return Kcad::eOk;
}

namespace korva::db {

ObjectRecord& appendNewEntity(ObjectRecord& block, KcDbEntity& entity) {
    Drawing& drawing = *block.drawing;
    const bool paperSpace = drawing.isLayoutBlock(&block) && &block != drawing.modelSpace();
    ObjectRecord& resident = ObjectAccess::adopt(entity, drawing, RecordKind::Entity);
    fitTagsToFormat(resident);
    linkToOwner(resident, &block);
    placeInSpace(resident, currentLayer(drawing), paperSpace);
    const std::string layer(fieldText(resident, kEntityMarker, 8, "0"));
    adoptSubEntities(drawing, resident, layer, paperSpace);
    drawing.appendToBlock(block, resident);
    return resident;
}

}  // namespace korva::db
