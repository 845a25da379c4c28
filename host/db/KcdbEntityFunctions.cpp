// The C-level entity functions: lists, updates, creation, erase and walks.
#include <map>

#include "db/ApiLists.h"
#include "db/ApiText.h"
#include "db/EntityList.h"
#include "db/EntityNames.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/TextCase.h"
#include "kcdbdatabase.h"
#include "kcdbfuncs.h"

using korva::db::Drawing;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
using korva::db::workingDrawing;
namespace db = korva::db;
namespace Type = korva::db::Type;

namespace {

bool isEntityRecord(const ObjectRecord& record) { return record.isEntity(); }

ObjectRecord* firstLive(const std::vector<ObjectRecord*>& records, size_t from) {
    for (size_t i = from; i < records.size(); ++i) {
        if (!records[i]->erased) return records[i];
    }
    return nullptr;
}

// The entity after a top-level or block entity, descending into attributes and vertices.
ObjectRecord* nextAfter(const ObjectRecord& entity) {
    if (entity.container && entity.type != Type::BlockRecord) {
        if (ObjectRecord* first = firstLive(entity.container->members, 0)) return first;
        if (entity.container->end) return entity.container->end;
    }
    const ObjectRecord* top = &entity;
    ObjectRecord* parent = entity.owner;
    if (parent && (parent->type == Type::Insert || parent->type == Type::Polyline)) {
        // Inside a complex entity: the next member, its SEQEND, then what follows the parent.
        if (&entity != parent->container->end) {
            if (ObjectRecord* next = firstLive(parent->container->members, entity.order + 1)) return next;
            if (parent->container->end) return parent->container->end;
        }
        top = parent;
        parent = parent->owner;
    }
    if (!parent) return nullptr;
    Drawing& drawing = *entity.drawing;
    if (drawing.isLayoutBlock(parent)) return firstLive(drawing.layoutEntities, top->order + 1);
    return parent->container ? firstLive(parent->container->members, top->order + 1) : nullptr;
}

bool isTableType(const std::string& type) {
    return type == "LAYER" || type == "LTYPE" || type == "STYLE" || type == "DIMSTYLE" || type == "APPID" ||
           type == "UCS" || type == "VIEW" || type == "VPORT";
}

int makeTableRecord(Drawing& drawing, const std::string& table, const std::vector<Tag>& list, ObjectRecord*& made) {
    const Tag* name = db::findItem(list, 2);
    if (!name || name->text.empty() || kcdbSNValid(db::toApiText(name->text).c_str(), 0) != RTNORM) return RTERROR;
    if (drawing.tableRecord(table, name->text)) return RTERROR;
    ObjectRecord& record = db::createTableRecord(drawing, table, name->text);
    if (!db::applyList(record, list).empty()) {
        record.erased = true;
        drawing.table(table)->invalidateIndex();
        return RTERROR;
    }
    made = &record;
    return RTNORM;
}

int makeEntity(Drawing& drawing, db::TypeId type, const std::vector<Tag>& list, ObjectRecord*& made) {
    ObjectRecord& record = drawing.createRecord(type, db::RecordKind::Entity);
    record.tags = db::newObjectTags(type);
    const Tag* layer = db::findItem(list, 8);
    const std::string current = drawing.header.getString("$CLAYER").value_or("0");
    db::setField(record, db::kEntityMarker, Tag::string(8, layer ? layer->text : current));
    if (!db::applyList(record, list).empty()) {
        record.erased = true;
        return RTERROR;
    }
    const Tag* space = db::findItem(list, 67);
    ObjectRecord* block = (space && space->integer == 1) ? drawing.paperSpace() : drawing.currentSpace();
    if (!block) {
        record.erased = true;
        return RTERROR;
    }
    db::assignNewHandle(drawing, record);
    db::writeOwnerHandle(record, block->handle);
    if (block != drawing.modelSpace() && drawing.isLayoutBlock(block)) {
        db::setField(record, db::kEntityMarker, Tag::integerValue(67, 1));
    }
    drawing.appendToBlock(*block, record);
    made = &record;
    return RTNORM;
}

int makeObject(Drawing& drawing, db::TypeId type, const std::vector<Tag>& list, ObjectRecord*& made) {
    ObjectRecord& record = db::createObject(drawing, type, nullptr);
    std::vector<Tag> tags = record.tags.decode();
    for (db::TagRef t : db::newObjectTags(type)) tags.push_back(t.toTag());
    record.tags = db::TagList::encode(tags);
    if (!db::applyList(record, list).empty()) {
        record.erased = true;
        return RTERROR;
    }
    made = &record;
    return RTNORM;
}

int entMake(const resbuf* list, kcad_name result) {
    Drawing* drawing = workingDrawing();
    if (!drawing || !list) return RTERROR;
    std::vector<Tag> tags;
    if (!db::fromChain(list, drawing, tags)) return RTERROR;
    const Tag* typeItem = db::findItem(tags, 0);
    if (!typeItem || typeItem->text.empty()) return RTERROR;
    const std::string type = db::asciiUpper(typeItem->text);
    ObjectRecord* made = nullptr;
    int status = RTERROR;
    const db::TypeId typeId = db::typeIdOf(type);
    if (isTableType(type)) {
        status = makeTableRecord(*drawing, type, tags, made);
    } else if (db::isEntityType(typeId) && typeId != Type::Attrib && typeId != Type::Vertex) {
        status = makeEntity(*drawing, typeId, tags, made);
    } else if (typeId >= Type::Dictionary && typeId < Type::FirstDynamic) {
        status = makeObject(*drawing, typeId, tags, made);
    }
    if (result) db::nameOf(status == RTNORM ? made : nullptr, result);
    return status;
}

}  // namespace

resbuf* kcdbEntGet(const kcad_name ent) {
    const ObjectRecord* record = db::recordOf(ent);
    if (!record || record->erased) return nullptr;
    return db::toChain(db::entityList(*record), record->drawing);
}

resbuf* kcdbEntGetX(const kcad_name ent, const resbuf* appNames) {
    const ObjectRecord* record = db::recordOf(ent);
    if (!record || record->erased) return nullptr;
    db::ListOptions options;
    options.extendedData = true;
    for (const resbuf* rb = appNames; rb; rb = rb->rbnext) {
        if (rb->restype == RTSTR && rb->resval.rstring) options.applications.push_back(db::toStoredText(rb->resval.rstring));
    }
    return db::toChain(db::entityList(*record, options), record->drawing);
}

int kcdbEntMod(const resbuf* list) {
    if (!list) return RTERROR;
    const resbuf* nameItem = nullptr;
    for (const resbuf* rb = list; rb; rb = rb->rbnext) {
        if (rb->restype == -1) {
            nameItem = rb;
            break;
        }
    }
    if (!nameItem) return RTERROR;
    ObjectRecord* record = db::recordOf(nameItem->resval.rlname);
    if (!record || record->erased || !record->drawing) return RTERROR;
    if (record->openForWrite || db::isOnLockedLayer(*record)) return RTERROR;
    std::vector<Tag> tags;
    if (!db::fromChain(list, record->drawing, tags)) return RTERROR;
    const db::TagList before = record->tags;
    if (!db::applyList(*record, tags).empty()) {
        record->tags = before;
        return RTERROR;
    }
    return RTNORM;
}

int kcdbEntMake(const resbuf* list) { return entMake(list, nullptr); }

int kcdbEntMakeX(const resbuf* list, kcad_name result) { return entMake(list, result); }

int kcdbEntDel(const kcad_name ent) {
    ObjectRecord* record = db::recordOf(ent);
    if (!record || !record->drawing || record->isOpen()) return RTERROR;
    if (record->kind == db::RecordKind::TableHead || record->type == Type::BlockRecord) return RTERROR;
    if (record->isEntity() && db::isOnLockedLayer(*record)) return RTERROR;
    if (record->owner && (record->owner->type == Type::Insert || record->owner->type == Type::Polyline)) return RTERROR;
    record->setErased(!record->erased);
    return RTNORM;
}

int kcdbEntNext(const kcad_name ent, kcad_name result) {
    db::nameOf(nullptr, result);
    ObjectRecord* next = nullptr;
    if (!ent || db::isNullName(ent)) {
        Drawing* drawing = workingDrawing();
        if (!drawing) return RTERROR;
        next = firstLive(drawing->layoutEntities, 0);
    } else {
        const ObjectRecord* record = db::recordOf(ent);
        if (!record || !isEntityRecord(*record)) return RTERROR;
        next = nextAfter(*record);
        while (next && next->erased) next = nextAfter(*next);
    }
    if (!next) return RTERROR;
    db::nameOf(next, result);
    return RTNORM;
}

int kcdbEntLast(kcad_name result) {
    db::nameOf(nullptr, result);
    Drawing* drawing = workingDrawing();
    if (!drawing) return RTERROR;
    for (auto it = drawing->layoutEntities.rbegin(); it != drawing->layoutEntities.rend(); ++it) {
        if (!(*it)->erased) {
            db::nameOf(*it, result);
            return RTNORM;
        }
    }
    return RTERROR;
}

int kcdbEntUpd(const kcad_name ent) {
    const ObjectRecord* record = db::recordOf(ent);
    return record && !record->erased ? RTNORM : RTERROR;
}

