// A drawing file's model space as a block of the working drawing.
#include "commands/draw/DrawingImport.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "commands/BlockRecords.h"
#include "commands/draw/DrawingPlacement.h"
#include "db/ApiText.h"
#include "db/DrawingIo.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "db/Utf8.h"
#include "db/geometry/PendingParts.h"
#include "db/tables/ResidentRecords.h"

namespace korva::commands {

namespace {

using db::ObjectRecord;
using db::Tag;

// Group codes that hold handles: 320-369, 390-399 and 480-481 (extended data keeps its own).
bool isLinkCode(int code) {
    return (code >= 320 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481;
}

// The tags without links to objects of the file. A hatch that loses its
// boundary links stops being associative and counts no source objects.
std::vector<Tag> withoutLinks(const ObjectRecord& record) {
    std::vector<Tag> kept;
    bool extendedData = false;
    for (Tag& tag : record.tags.decode()) {
        extendedData = extendedData || tag.code == 1001;
        if (!extendedData && isLinkCode(tag.code)) continue;
        if (!extendedData && record.type == db::Type::Hatch && (tag.code == 97 || tag.code == 71)) tag.integer = 0;
        kept.push_back(std::move(tag));
    }
    return kept;
}

bool isByName(std::string_view linetype) {
    return linetype.empty() || db::namesEqual(linetype, "ByLayer") || db::namesEqual(linetype, "ByBlock");
}

class DrawingImporter {
public:
    DrawingImporter(const db::Drawing& source, KcDbDatabase& target)
        : source_(source), target_(target), drawing_(target.drawing()) {}

    // Into a new block of that name, or into the existing one, whose entities go.
    KcDbObjectId importModelSpace(const std::string& name, const KcGePoint3d& origin) {
        const ObjectRecord* space = source_.modelSpace();
        if (!space) return KcDbObjectId::kNull;
        if (const ObjectRecord* existing = drawing_.tableRecord("BLOCK_RECORD", name)) {
            return redefineBlock(*space, db::ObjectAccess::id(existing), origin);
        }
        return copyBlock(*space, name, origin);
    }

private:
    KcDbObjectId copyBlock(const ObjectRecord& sourceBlock, const std::string& name, const KcGePoint3d& origin);
    KcDbObjectId redefineBlock(const ObjectRecord& sourceBlock, KcDbObjectId block, const KcGePoint3d& origin);
    void copyMembers(const ObjectRecord& sourceBlock, KcDbObjectId block);
    std::string blockNameFor(std::string_view sourceName);
    void ensureRecord(std::string_view table, std::string_view name);
    void adaptEntity(ObjectRecord& entity);

    const db::Drawing& source_;
    KcDbDatabase& target_;
    db::Drawing& drawing_;
    std::map<const ObjectRecord*, std::string> blocks_;  // source block record -> its name here
};

KcDbObjectId DrawingImporter::copyBlock(const ObjectRecord& sourceBlock, const std::string& name,
                                        const KcGePoint3d& origin) {
    const KcDbObjectId id = addBlockRecord(target_, db::toApiText(name), origin);
    if (id.isNull()) return id;
    copyMembers(sourceBlock, id);
    return id;
}

KcDbObjectId DrawingImporter::redefineBlock(const ObjectRecord& sourceBlock, KcDbObjectId block,
                                           const KcGePoint3d& origin) {
    if (!emptyBlockRecord(block, origin)) return KcDbObjectId::kNull;
    copyMembers(sourceBlock, block);
    return block;
}

void DrawingImporter::copyMembers(const ObjectRecord& sourceBlock, KcDbObjectId block) {
    // Known before the members are copied, so that a block that contains itself ends.
    blocks_[&sourceBlock] = std::string(db::recordName(*db::ObjectAccess::record(block)));
    if (!sourceBlock.container) return;
    for (const ObjectRecord* member : sourceBlock.container->members) {
        if (member->erased) continue;
        std::unique_ptr<KcDbEntity> copy = db::geometry::copyAsPart(*member);
        ObjectRecord& record = db::geometry::partRecord(*copy);
        adaptEntity(record);
        if (record.container) {
            for (ObjectRecord* sub : record.container->members) adaptEntity(*sub);
            if (record.container->end) adaptEntity(*record.container->end);
        }
        appendToBlock(block, copy.release());
    }
}

// A block of the file that an entity names: one of that name here stays as it
// is; otherwise (and for every anonymous block) the file's definition is copied.
std::string DrawingImporter::blockNameFor(std::string_view sourceName) {
    const ObjectRecord* sourceBlock = source_.tableRecord("BLOCK_RECORD", sourceName);
    if (!sourceBlock) return std::string(sourceName);
    if (auto known = blocks_.find(sourceBlock); known != blocks_.end()) return known->second;
    const bool anonymous = !sourceName.empty() && sourceName.front() == '*';
    if (!anonymous && drawing_.tableRecord("BLOCK_RECORD", sourceName)) return std::string(sourceName);
    const std::string request = anonymous ? std::string(sourceName.substr(0, 2)) : std::string(sourceName);
    const KcGePoint3d origin = sourceBlock->container && sourceBlock->container->begin
                                   ? db::fieldPoint(*sourceBlock->container->begin, {}, 10)
                                   : KcGePoint3d::kOrigin;
    const KcDbObjectId id = copyBlock(*sourceBlock, request, origin);
    return id.isNull() ? std::string(sourceName) : blocks_[sourceBlock];
}

void DrawingImporter::ensureRecord(std::string_view table, std::string_view name) {
    if (name.empty() || drawing_.tableRecord(table, name)) return;
    const ObjectRecord* source = source_.tableRecord(table, name);
    if (!source) return;
    if (db::namesEqual(table, "LAYER")) {
        const std::string_view linetype = db::fieldText(*source, {}, 6);
        if (!isByName(linetype)) ensureRecord("LTYPE", linetype);
    }
    ObjectRecord& record = db::createTableRecord(drawing_, table, name);
    std::vector<Tag> tags{Tag::handle(db::handleCodeOf(record.type), record.handle),
                          Tag::handle(330, record.owner ? record.owner->handle : 0)};
    ObjectRecord stripped;
    stripped.type = source->type;
    stripped.tags = db::copyWithoutIdentity(source->tags);
    for (Tag& tag : withoutLinks(stripped)) tags.push_back(std::move(tag));
    record.tags = db::TagList::encode(tags);
    db::fitTagsToFormat(record);
}

// The names an entity gives (layer, linetype, text and dimension style, block) exist here.
void DrawingImporter::adaptEntity(ObjectRecord& entity) {
    entity.tags = db::TagList::encode(withoutLinks(entity));
    ensureRecord("LAYER", db::fieldText(entity, db::kEntityMarker, 8));
    if (const std::string_view linetype = db::fieldText(entity, db::kEntityMarker, 6); !isByName(linetype)) {
        ensureRecord("LTYPE", linetype);
    }
    switch (entity.type) {
        case db::Type::Text: case db::Type::AttDef: case db::Type::Attrib:
            ensureRecord("STYLE", db::fieldText(entity, "AcDbText", 7));
            break;
        case db::Type::MText: ensureRecord("STYLE", db::fieldText(entity, "AcDbMText", 7)); break;
        case db::Type::Leader: ensureRecord("DIMSTYLE", db::fieldText(entity, "AcDbLeader", 3)); break;
        case db::Type::Tolerance: ensureRecord("DIMSTYLE", db::fieldText(entity, "AcDbFcf", 3)); break;
        case db::Type::Insert: {
            const std::string name = blockNameFor(db::fieldText(entity, "AcDbBlockReference", 2));
            db::setField(entity, "AcDbBlockReference", Tag::string(2, name));
            break;
        }
        case db::Type::Dimension: {
            ensureRecord("DIMSTYLE", db::fieldText(entity, "AcDbDimension", 3));
            const std::string name = blockNameFor(db::fieldText(entity, "AcDbDimension", 2));
            db::setField(entity, "AcDbDimension", Tag::string(2, name));
            break;
        }
        default: break;
    }
}

}  // namespace

ImportResult importDrawingAsBlock(KcDbDatabase& target, const std::wstring& path, const std::wstring& blockName) {
    ImportResult result;
    const db::DrawingIo& io = db::drawingIo();
    if (!io.readFile) {
        result.error = L"Drawing files cannot be read.";
        return result;
    }
    db::DrawingReadResult read = io.readFile(db::wideToUtf8(path));
    if (!read.drawing) {
        result.error = L"\"" + path + L"\": " + db::utf8ToWide(read.error);
        return result;
    }
    // Records of files before AC1012 carry no subclass markers, which this drawing's records need.
    if (read.drawing->versionNumber() < 1012 && target.drawing().versionNumber() >= 1012) {
        result.error = L"\"" + path + L"\" is in a format too old to insert as a block.";
        return result;
    }
    const KcGePoint3d base = read.drawing->header.getPoint("$INSBASE").value_or(KcGePoint3d::kOrigin);
    DrawingImporter importer(*read.drawing, target);
    result.block = importer.importModelSpace(db::wideToUtf8(blockName), base);
    if (result.block.isNull()) result.error = L"Invalid block name \"" + blockName + L"\".";
    return result;
}

}  // namespace korva::commands
