// Default tag layouts follow what current DXF writers produce for each record.
#include "db/RecordFactory.h"

#include <vector>

#include "db/EntitySchema.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"

namespace korva::db {

namespace {

std::string_view recordMarkerOf(std::string_view table) {
    const std::string upper = asciiUpper(table);
    return tableRecordMarker(typeIdOf(upper));
}

// Tags of a new record of each table after its name: the values a new record gets.
void appendRecordDefaults(std::string_view table, std::vector<Tag>& tags) {
    const std::string upper = asciiUpper(table);
    tags.push_back(Tag::integerValue(70, 0));
    if (upper == "LAYER") {
        tags.push_back(Tag::integerValue(62, 7));
        tags.push_back(Tag::string(6, "Continuous"));
        tags.push_back(Tag::integerValue(370, -3));
    } else if (upper == "LTYPE") {
        tags.push_back(Tag::string(3, ""));
        tags.push_back(Tag::integerValue(72, 65));
        tags.push_back(Tag::integerValue(73, 0));
        tags.push_back(Tag::real(40, 0.0));
    } else if (upper == "STYLE") {
        tags.push_back(Tag::real(40, 0.0));
        tags.push_back(Tag::real(41, 1.0));
        tags.push_back(Tag::real(50, 0.0));
        tags.push_back(Tag::integerValue(71, 0));
        tags.push_back(Tag::real(42, 2.5));
        tags.push_back(Tag::string(3, "txt"));
        tags.push_back(Tag::string(4, ""));
    } else if (upper == "BLOCK_RECORD") {
        tags.pop_back();  // block records carry their flags on the BLOCK entity
        tags.push_back(Tag::handle(340, 0));
        tags.push_back(Tag::integerValue(70, 0));
        tags.push_back(Tag::integerValue(280, 1));
        tags.push_back(Tag::integerValue(281, 0));
    }
}

// Files before AC1012 have no subclass markers, owners, application groups or
// lineweights: records made for such a drawing get the tags its files hold.
TagList finishTags(const Drawing& drawing, const std::vector<Tag>& tags) {
    if (drawing.versionNumber() >= 1012) return TagList::encode(tags);
    std::vector<Tag> legacy;
    for (const Tag& tag : tags) {
        if (tag.code == 100 || tag.code == 330 || tag.code == 360 || tag.code == 370 || tag.code == 102) continue;
        legacy.push_back(tag);
    }
    return TagList::encode(legacy);
}

}  // namespace

void assignNewHandle(Drawing& drawing, ObjectRecord& record) {
    const Handle handle = drawing.allocateHandle();
    writeOwnHandle(record, handle);
    drawing.indexHandle(record, handle);
}

SymbolTable& ensureTable(Drawing& drawing, std::string_view tableName) {
    if (SymbolTable* existing = drawing.table(tableName)) return *existing;
    ObjectRecord& head = drawing.createRecord(Type::Table, RecordKind::TableHead);
    const Handle handle = drawing.allocateHandle();
    std::vector<Tag> tags{Tag::string(2, asciiUpper(tableName)), Tag::handle(5, handle), Tag::handle(330, 0),
                          Tag::string(100, "AcDbSymbolTable"), Tag::integerValue(70, 0)};
    head.tags = finishTags(drawing, tags);
    drawing.indexHandle(head, handle);
    SymbolTable table;
    table.name = asciiUpper(tableName);
    table.head = &head;
    drawing.tables.push_back(std::move(table));
    return drawing.tables.back();
}

ObjectRecord& createTableRecord(Drawing& drawing, std::string_view tableName, std::string_view name) {
    SymbolTable& table = ensureTable(drawing, tableName);
    const TypeId type = typeIdOf(asciiUpper(tableName) == "BLOCK_RECORD" ? "BLOCK_RECORD" : asciiUpper(tableName));
    ObjectRecord& record = drawing.createRecord(type, RecordKind::TableRecord);
    const Handle handle = drawing.allocateHandle();
    std::vector<Tag> tags{Tag::handle(handleCodeOf(type), handle), Tag::handle(330, table.head ? table.head->handle : 0),
                          Tag::string(100, "AcDbSymbolTableRecord")};
    if (std::string_view marker = recordMarkerOf(tableName); !marker.empty()) tags.push_back(Tag::string(100, marker));
    tags.push_back(Tag::string(2, name));
    appendRecordDefaults(tableName, tags);
    record.tags = finishTags(drawing, tags);
    record.owner = table.head;
    drawing.indexHandle(record, handle);
    table.records.push_back(&record);
    table.invalidateIndex();
    return record;
}

void ensureBlockEnds(Drawing& drawing, ObjectRecord& blockRecord) {
    Container& c = blockRecord.ensureContainer();
    std::string name(recordName(blockRecord));
    const bool paper = name.size() >= 12 && namesEqual(std::string_view(name).substr(0, 12), "*Paper_Space");
    // Files before AC1012 name the layout blocks "$MODEL_SPACE" and "$PAPER_SPACE".
    if (drawing.versionNumber() < 1012 && (&blockRecord == drawing.modelSpace() || namesEqual(name, "*Model_Space"))) {
        name = "$MODEL_SPACE";
    } else if (drawing.versionNumber() < 1012 && paper) {
        name = "$PAPER_SPACE";
    }
    if (!c.begin) {
        ObjectRecord& begin = drawing.createRecord(Type::BlockBegin, RecordKind::BlockBegin);
        const Handle handle = drawing.allocateHandle();
        std::vector<Tag> tags{Tag::handle(5, handle), Tag::handle(330, blockRecord.handle),
                              Tag::string(100, "AcDbEntity")};
        if (paper) tags.push_back(Tag::integerValue(67, 1));
        tags.push_back(Tag::string(8, "0"));
        tags.push_back(Tag::string(100, "AcDbBlockBegin"));
        tags.push_back(Tag::string(2, name));
        tags.push_back(Tag::integerValue(70, 0));
        tags.push_back(Tag::point(10, KcGePoint3d::kOrigin));
        tags.push_back(Tag::string(3, name));
        tags.push_back(Tag::string(1, ""));
        begin.tags = finishTags(drawing, tags);
        begin.owner = &blockRecord;
        drawing.indexHandle(begin, handle);
        c.begin = &begin;
    }
    if (!c.end) {
        ObjectRecord& end = drawing.createRecord(Type::BlockEnd, RecordKind::BlockEnd);
        const Handle handle = drawing.allocateHandle();
        std::vector<Tag> tags{Tag::handle(5, handle), Tag::handle(330, blockRecord.handle),
                              Tag::string(100, "AcDbEntity")};
        if (paper) tags.push_back(Tag::integerValue(67, 1));
        tags.push_back(Tag::string(8, "0"));
        tags.push_back(Tag::string(100, "AcDbBlockEnd"));
        end.tags = finishTags(drawing, tags);
        end.owner = &blockRecord;
        drawing.indexHandle(end, handle);
        c.end = &end;
    }
}

ObjectRecord& createBlock(Drawing& drawing, std::string_view name) {
    ObjectRecord& record = createTableRecord(drawing, "BLOCK_RECORD", name);
    ensureBlockEnds(drawing, record);
    drawing.blockOrder.push_back(&record);
    return record;
}

ObjectRecord& createObject(Drawing& drawing, TypeId type, ObjectRecord* owner) {
    ObjectRecord& record = drawing.createRecord(type, RecordKind::Object);
    const Handle handle = drawing.allocateHandle();
    std::vector<Tag> tags{Tag::handle(5, handle), Tag::handle(330, owner ? owner->handle : 0)};
    record.tags = TagList::encode(tags);
    record.owner = owner;
    drawing.indexHandle(record, handle);
    drawing.objects.push_back(&record);
    return record;
}

}  // namespace korva::db

namespace korva::db {

TagList newObjectTags(TypeId type) {
    std::vector<Tag> tags;
    if (isEntityType(type) || type == Type::SeqEnd) {
        tags.push_back(Tag::string(100, "AcDbEntity"));
        tags.push_back(Tag::string(8, ""));  // the current layer, filled in when the entity is added
        if (const TypeSpec* typeSchema = entitySpec(type)) {
            for (const SubclassSpec& sub : typeSchema->subclasses) {
                tags.push_back(Tag::string(100, sub.marker));
                for (const FieldSpec& field : sub.fields) {
                    if (!field.optional()) tags.push_back(field.defaultTag());
                }
            }
        }
        return TagList::encode(tags);
    }
    if (isSymbolTableRecordType(type)) {
        const std::string table(typeName(type));
        tags.push_back(Tag::string(100, "AcDbSymbolTableRecord"));
        if (std::string_view marker = recordMarkerOf(table); !marker.empty()) tags.push_back(Tag::string(100, marker));
        tags.push_back(Tag::string(2, ""));
        appendRecordDefaults(table, tags);
        return TagList::encode(tags);
    }
    switch (type) {
        case Type::Dictionary:
            tags = {Tag::string(100, "AcDbDictionary"), Tag::integerValue(281, 1)};
            break;
        case Type::Xrecord:
            tags = {Tag::string(100, "AcDbXrecord"), Tag::integerValue(280, 1)};
            break;
        case Type::Group:
            tags = {Tag::string(100, "AcDbGroup"), Tag::string(300, ""), Tag::integerValue(70, 0),
                    Tag::integerValue(71, 1)};
            break;
        case Type::Scale:
            tags = {Tag::string(100, "AcDbScale"), Tag::integerValue(70, 0), Tag::string(300, ""),
                    Tag::real(140, 1.0), Tag::real(141, 1.0), Tag::integerValue(290, 0)};
            break;
        case Type::DictionaryVar:
            tags = {Tag::string(100, "DictionaryVariables"), Tag::integerValue(280, 0), Tag::string(1, "")};
            break;
        case Type::SortEntsTable:
            tags = {Tag::string(100, "AcDbSortentsTable"), Tag::handle(330, 0)};
            break;
        default: break;
    }
    return TagList::encode(tags);
}

}  // namespace korva::db
