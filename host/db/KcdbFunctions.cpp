// The C-level entity and table functions over the working database.
#include <charconv>
#include <cstdarg>
#include <cmath>
#include <cwctype>
#include <map>

#include "db/ApiText.h"
#include "db/EntityList.h"
#include "db/EntityNames.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/TextCase.h"
#include "db/tables/SymbolNames.h"
#include "kcdbdatabase.h"
#include "kcdbfuncs.h"

using korva::db::Drawing;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;
namespace Type = korva::db::Type;

namespace {

Drawing* workingDrawing() {
    KcDbDatabase* database = kcdbHostApplicationServices()->workingDatabase();
    return database ? &database->drawing() : nullptr;
}

resbuf* toChain(const std::vector<Tag>& list, const Drawing* drawing) {
    db::ResbufChain chain;
    for (const Tag& tag : list) chain.appendTag(tag, drawing);
    return chain.release();
}

// A chain as tags; false when an item cannot be stored (an unknown name, a missing text).
bool fromChain(const resbuf* list, const Drawing* drawing, std::vector<Tag>& out) {
    for (const resbuf* rb = list; rb; rb = rb->rbnext) {
        Tag tag;
        if (rb->restype == -3) {
            out.push_back(Tag::make(-3, db::TagKind::String));
            continue;
        }
        if (!db::tagFromResbuf(*rb, drawing, tag)) return false;
        out.push_back(std::move(tag));
    }
    return true;
}

const Tag* find(const std::vector<Tag>& list, int code) {
    for (const Tag& tag : list) {
        if (tag.code == code) return &tag;
    }
    return nullptr;
}

// "BLOCK" in the C-level API names the BLOCK_RECORD table.
std::string tableOf(const wchar_t* name) {
    if (!name) return {};
    std::string upper = db::asciiUpper(db::toStoredText(name));
    if (upper == "BLOCK") return "BLOCK_RECORD";
    static const char* const kTables[] = {"LAYER", "LTYPE", "VIEW", "STYLE", "UCS", "APPID", "DIMSTYLE", "VPORT"};
    for (const char* table : kTables) {
        if (upper == table) return upper;
    }
    return {};
}

bool isLayoutTableRecord(const ObjectRecord& record) {
    if (record.type != Type::BlockRecord) return false;
    return record.drawing->isLayoutBlock(&record) || record.drawing->modelSpace() == &record;
}

// The table walk of kcdbTblNext: one position per drawing and table.
std::map<std::pair<uint32_t, std::string>, size_t>& tableCursors() {
    static std::map<std::pair<uint32_t, std::string>, size_t> cursors;
    return cursors;
}

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

ObjectRecord* currentSpace(Drawing& drawing) {
    const int64_t tilemode = drawing.header.getInteger("$TILEMODE").value_or(1);
    const int64_t cvport = drawing.header.getInteger("$CVPORT").value_or(1);
    return (tilemode == 1 || cvport >= 2) ? drawing.modelSpace() : drawing.paperSpace();
}

bool isTableType(const std::string& type) {
    return type == "LAYER" || type == "LTYPE" || type == "STYLE" || type == "DIMSTYLE" || type == "APPID" ||
           type == "UCS" || type == "VIEW" || type == "VPORT";
}

int makeTableRecord(Drawing& drawing, const std::string& table, const std::vector<Tag>& list, ObjectRecord*& made) {
    const Tag* name = find(list, 2);
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
    const Tag* layer = find(list, 8);
    const std::string current = drawing.header.getString("$CLAYER").value_or("0");
    db::setField(record, db::kEntityMarker, Tag::string(8, layer ? layer->text : current));
    if (!db::applyList(record, list).empty()) {
        record.erased = true;
        return RTERROR;
    }
    const Tag* space = find(list, 67);
    ObjectRecord* block = (space && space->integer == 1) ? drawing.paperSpace() : currentSpace(drawing);
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
    if (!fromChain(list, drawing, tags)) return RTERROR;
    const Tag* typeItem = find(tags, 0);
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
    return toChain(db::entityList(*record), record->drawing);
}

resbuf* kcdbEntGetX(const kcad_name ent, const resbuf* appNames) {
    const ObjectRecord* record = db::recordOf(ent);
    if (!record || record->erased) return nullptr;
    db::ListOptions options;
    options.extendedData = true;
    for (const resbuf* rb = appNames; rb; rb = rb->rbnext) {
        if (rb->restype == RTSTR && rb->resval.rstring) options.applications.push_back(db::toStoredText(rb->resval.rstring));
    }
    return toChain(db::entityList(*record, options), record->drawing);
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
    if (!fromChain(list, record->drawing, tags)) return RTERROR;
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
    record->erased = !record->erased;
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

resbuf* kcdbTblSearch(const wchar_t* tableName, const wchar_t* symbolName, int setNext) {
    Drawing* drawing = workingDrawing();
    const std::string table = tableOf(tableName);
    if (!drawing || table.empty() || !symbolName) return nullptr;
    ObjectRecord* record = drawing->tableRecord(table, db::toStoredText(symbolName));
    if (!record || (table == "BLOCK_RECORD" && isLayoutTableRecord(*record))) return nullptr;
    if (setNext) {
        const auto& records = drawing->table(table)->records;
        for (size_t i = 0; i < records.size(); ++i) {
            if (records[i] == record) tableCursors()[{drawing->serial(), table}] = i + 1;
        }
    }
    return toChain(db::tableRecordList(*record), drawing);
}

resbuf* kcdbTblNext(const wchar_t* tableName, int rewind) {
    Drawing* drawing = workingDrawing();
    const std::string table = tableOf(tableName);
    if (!drawing || table.empty() || !drawing->table(table)) return nullptr;
    size_t& cursor = tableCursors()[{drawing->serial(), table}];
    if (rewind) cursor = 0;
    const auto& records = drawing->table(table)->records;
    while (cursor < records.size()) {
        ObjectRecord* record = records[cursor++];
        if (record->erased || (table == "BLOCK_RECORD" && isLayoutTableRecord(*record))) continue;
        return toChain(db::tableRecordList(*record), drawing);
    }
    return nullptr;
}

int kcdbTblObjName(const wchar_t* tableName, const wchar_t* symbolName, kcad_name result) {
    db::nameOf(nullptr, result);
    Drawing* drawing = workingDrawing();
    const std::string table = tableOf(tableName);
    if (!drawing || table.empty() || !symbolName) return RTERROR;
    ObjectRecord* record = drawing->tableRecord(table, db::toStoredText(symbolName));
    if (!record) return RTERROR;
    db::nameOf(record, result);
    return RTNORM;
}

int kcdbHandEnt(const wchar_t* handle, kcad_name result) {
    db::nameOf(nullptr, result);
    Drawing* drawing = workingDrawing();
    if (!drawing || !handle) return RTERROR;
    const std::string text = db::toStoredText(handle);
    db::Handle value = 0;
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (ec != std::errc() || ptr != text.data() + text.size() || text.empty()) return RTERROR;
    ObjectRecord* record = drawing->findByHandle(value);
    if (!record) return RTERROR;
    db::nameOf(record, result);
    return RTNORM;
}

Kcad::ErrorStatus kcdbGetObjectId(KcDbObjectId& id, const kcad_name ent) {
    ObjectRecord* record = db::recordOf(ent);
    id = ObjectAccess::id(record);
    return record ? Kcad::eOk : Kcad::eInvalidInput;
}

Kcad::ErrorStatus kcdbGetKdsName(kcad_name& ent, KcDbObjectId id) {
    ObjectRecord* record = ObjectAccess::record(id);
    db::nameOf(record, ent);
    return record ? Kcad::eOk : Kcad::eNullObjectId;
}

int kcdbRegApp(const wchar_t* appName) {
    Drawing* drawing = workingDrawing();
    if (!drawing || !appName || kcdbSNValid(appName, 1) != RTNORM) return RTERROR;
    const std::string name = db::toStoredText(appName);
    if (drawing->tableRecord("APPID", name)) return RTERROR;
    db::createTableRecord(*drawing, "APPID", name);
    return RTNORM;
}

int kcdbSNValid(const wchar_t* name, int pipeTest) {
    if (!name) return RTERROR;
    const std::wstring_view text(name);
    if (!db::isValidSymbolName(text, false)) return RTERROR;
    if (pipeTest && text.find(L'|') != std::wstring_view::npos) return RTERROR;
    return RTNORM;
}

resbuf* kcutNewRb(int type) { return db::newResbuf(static_cast<short>(type)); }

int kcutRelRb(resbuf* chain) {
    db::releaseResbufs(chain);
    return RTNORM;
}

resbuf* kcutBuildList(int code, ...) {
    va_list args;
    va_start(args, code);
    db::ResbufChain chain;
    bool ok = true;
    while (code != 0 && code != RTNONE) {
        const short restype = static_cast<short>(code == RTDXF0 ? 0 : code);
        switch (db::itemTypeOf(code)) {
            case db::ItemType::Real: chain.appendReal(restype, va_arg(args, double)); break;
            case db::ItemType::Point: {
                const double* p = va_arg(args, const double*);
                chain.appendPoint(restype, p ? KcGePoint3d(p[0], p[1], code == RTPOINT ? 0.0 : p[2]) : KcGePoint3d());
                break;
            }
            case db::ItemType::Short: chain.appendShort(restype, va_arg(args, int)); break;
            case db::ItemType::Long:
                if (resbuf* rb = chain.append(restype)) rb->resval.rlong = va_arg(args, int32_t);
                break;
            case db::ItemType::Int64:
                if (resbuf* rb = chain.append(restype)) rb->resval.mnInt64 = va_arg(args, int64_t);
                break;
            case db::ItemType::Name: {
                const int64_t* name = va_arg(args, const int64_t*);
                if (resbuf* rb = chain.append(restype)) {
                    rb->resval.rlname[0] = name ? name[0] : 0;
                    rb->resval.rlname[1] = name ? name[1] : 0;
                }
                break;
            }
            case db::ItemType::Text:
            case db::ItemType::HandleText: {
                const wchar_t* text = va_arg(args, const wchar_t*);
                chain.appendText(restype, text ? text : L"");
                break;
            }
            case db::ItemType::Binary: ok = false; break;
            case db::ItemType::None: chain.append(restype); break;
        }
        if (!ok) break;
        code = va_arg(args, int);
    }
    va_end(args);
    return ok ? chain.release() : nullptr;
}

bool kcutRealEqual(double a, double b, double e) {
    if (std::fabs(b) <= e) return std::fabs(a) <= e;
    return std::fabs(a - b) <= std::fabs(b * e);
}
