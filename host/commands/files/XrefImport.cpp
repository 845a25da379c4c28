#include "commands/files/XrefImport.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <vector>

#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "db/tables/BlockBegin.h"
#include "db/tables/ResidentRecords.h"
#include "db/tables/SymbolNames.h"
#include "dxf/DxfReader.h"
#include "dxf/VersionConversion.h"

namespace korva::commands {

namespace {

using db::ObjectRecord;
using db::Tag;
namespace Type = db::Type;

constexpr int64_t kDependentFlags =
    db::BlockFlag::Dependent | db::BlockFlag::Resolved;  // 16 + 32, also for table records

std::string prefixOf(std::string_view xrefName) { return std::string(xrefName) + "|"; }

bool isDependentOf(std::string_view name, std::string_view prefix) {
    return name.size() > prefix.size() && db::namesEqual(name.substr(0, prefix.size()), prefix);
}

// Erases a record with everything it holds (block contents, attributes, vertices).
void eraseTree(ObjectRecord& record) {
    record.erased = true;
    if (!record.container) return;
    for (ObjectRecord* member : record.container->members) eraseTree(*member);
    if (record.container->begin) record.container->begin->erased = true;
    if (record.container->end) record.container->end->erased = true;
}

void eraseContents(ObjectRecord& block) {
    if (!block.container) return;
    for (ObjectRecord* member : block.container->members) eraseTree(*member);
}

bool isTextType(db::TypeId type) {
    return type == Type::Text || type == Type::MText || type == Type::Attrib || type == Type::AttDef;
}

bool usesDimensionStyle(db::TypeId type) {
    return type == Type::Dimension || type == Type::ArcDimension || type == Type::LargeRadialDimension ||
           type == Type::Leader || type == Type::Tolerance;
}

bool referencesBlock(db::TypeId type) {
    return type == Type::Insert || type == Type::Dimension || type == Type::ArcDimension ||
           type == Type::LargeRadialDimension;
}

// Entities whose meaning lives in objects an xref does not bring along.
bool isCopyable(db::TypeId type) {
    return db::isEntityType(type) && type != Type::Image && type != Type::AcadTable && type != Type::Unknown;
}

// One import of a file's records into the host drawing.
class XrefImport {
public:
    XrefImport(db::Drawing& host, const db::Drawing& source, std::string_view xrefName)
        : host_(host),
          source_(source),
          prefix_(prefixOf(xrefName)),
          upgrade_(source.versionNumber() < 1012 && host.versionNumber() >= 1012),
          downgrade_(source.versionNumber() >= 1012 && host.versionNumber() < 1012) {}

    void run(ObjectRecord& xrefBlock) {
        importTable("LTYPE", linetypes_, {"ByBlock", "ByLayer", "Continuous"});
        importTable("LAYER", layers_, {"0"});
        importTable("STYLE", styles_, {});
        importTable("DIMSTYLE", dimensionStyles_, {});
        std::vector<std::pair<const ObjectRecord*, ObjectRecord*>> blocks = importBlocks();
        for (const auto& [sourceBlock, hostBlock] : blocks) copyEntities(*sourceBlock, *hostBlock);
        if (source_.modelSpace()) copyEntities(*source_.modelSpace(), xrefBlock);
    }

private:
    using NameMap = std::unordered_map<std::string, std::string>;  // folded source name -> host name

    // A source record's tags in the host's generation; nothing for a type the host's generation lacks.
    std::optional<db::TagList> sourceTags(const ObjectRecord& record) const {
        if (upgrade_) return db::TagList::encode(dxf::upgradedTags(record));
        if (!downgrade_) return record.tags;
        std::vector<Tag> tags;
        if (!dxf::downgradedTags(record, tags)) return std::nullopt;
        return db::TagList::encode(tags);
    }

    static std::string mapped(const NameMap& names, std::string_view name) {
        const auto it = names.find(db::foldName(name));
        return it == names.end() ? std::string(name) : it->second;
    }

    // A host record copied from a source record under a new name: the host's
    // identity and markers, the source's groups without references to objects.
    ObjectRecord& copyTableRecord(std::string_view table, const ObjectRecord& source, const std::string& name,
                                  bool dependent) {
        ObjectRecord& record = db::createTableRecord(host_, table, name);
        std::vector<Tag> tags;
        for (db::TagRef tag : record.tags) {
            if (tag.code() == 2) break;  // handle, owner and markers of the new record
            tags.push_back(tag.toTag());
        }
        for (db::TagRef ref : db::copyWithoutIdentity(sourceTags(source).value_or(source.tags))) {
            Tag tag = ref.toTag();
            if (tag.code == 100 || db::isReferenceCode(tag.code)) continue;
            if (tag.code == 1001) registerApplication(tag.text);
            if (tag.code == 2) tag.text = name;
            if (tag.code == 70 && dependent) tag.integer |= kDependentFlags;
            if (tag.code == 6 && record.type == Type::Layer) tag.text = mapped(linetypes_, tag.text);
            tags.push_back(std::move(tag));
        }
        record.tags = db::TagList::encode(tags);
        db::fitTagsToFormat(record);
        return record;
    }

    void importTable(std::string_view table, NameMap& names, std::initializer_list<std::string_view> shared) {
        const db::SymbolTable* records = source_.table(table);
        if (!records) return;
        for (const ObjectRecord* record : records->records) {
            const std::string_view name = db::recordName(*record);
            if (record->erased || name.empty()) continue;
            bool isShared = false;
            for (std::string_view s : shared) isShared = isShared || db::namesEqual(s, name);
            const std::string hostName = isShared ? std::string(name) : prefix_ + std::string(name);
            names[db::foldName(name)] = hostName;
            // A dependent record that exists already keeps its state (a reload does not reset it).
            if (!host_.tableRecord(table, hostName)) copyTableRecord(table, *record, hostName, !isShared);
        }
    }

    // A layer an entity names that the file's table lacks becomes a dependent layer with defaults.
    std::string layerFor(std::string_view name) {
        if (name.empty() || db::namesEqual(name, "0")) return "0";
        const auto it = layers_.find(db::foldName(name));
        if (it != layers_.end()) return it->second;
        const std::string hostName = prefix_ + std::string(name);
        if (!host_.tableRecord("LAYER", hostName)) {
            ObjectRecord& layer = db::createTableRecord(host_, "LAYER", hostName);
            db::setField(layer, {}, Tag::integerValue(70, kDependentFlags));
        }
        layers_[db::foldName(name)] = hostName;
        return hostName;
    }

    void registerApplication(std::string_view name) {
        if (!name.empty() && !host_.tableRecord("APPID", name)) db::createTableRecord(host_, "APPID", name);
    }

    // Every block of the file except its layouts and its own xrefs, as dependent blocks.
    std::vector<std::pair<const ObjectRecord*, ObjectRecord*>> importBlocks() {
        std::vector<std::pair<const ObjectRecord*, ObjectRecord*>> pairs;
        const db::SymbolTable* hostBlocks = host_.table("BLOCK_RECORD");
        for (const ObjectRecord* block : source_.blockOrder) {
            const std::string_view name = db::recordName(*block);
            const int64_t flags = db::blockFlags(*block);
            if (block->erased || name.empty() || source_.isLayoutBlock(block) || db::isModelSpaceName(name)) continue;
            if (flags & (db::BlockFlag::External | db::BlockFlag::Overlay)) continue;
            std::string hostName = prefix_ + std::string(name);
            if (name.front() == '*' && hostBlocks)
                hostName = db::nextAnonymousName(*hostBlocks, name.size() > 1 ? name[1] : 'U');
            if (ObjectRecord* old = host_.tableRecord("BLOCK_RECORD", hostName)) eraseTree(*old);
            ObjectRecord& copy = db::createBlock(host_, hostName);
            db::setBlockFlags(copy, flags | kDependentFlags);
            if (const ObjectRecord* begin = db::blockBeginOf(*block)) {
                db::setField(db::blockBeginForWrite(copy), db::kBlockBeginMarker,
                             Tag::point(10, db::fieldPoint(*begin, db::kBlockBeginMarker, 10)));
            }
            blocks_[db::foldName(name)] = hostName;
            pairs.emplace_back(block, &copy);
        }
        return pairs;
    }

    // An entity's groups with names translated to the host's and references to objects left out.
    std::vector<Tag> remapped(const db::TagList& source, db::TypeId type) {
        std::vector<Tag> tags;
        std::optional<size_t> sourceCount;  // a hatch boundary's count of source objects (97), followed by their 330s
        for (db::TagRef ref : db::copyWithoutIdentity(source)) {
            Tag tag = ref.toTag();
            const int code = tag.code;
            if (db::isReferenceCode(code)) {
                if (sourceCount && code == 330 && tags[*sourceCount].integer > 0) --tags[*sourceCount].integer;
                continue;
            }
            if (code == 67) continue;  // the file's model space becomes block contents
            if (code == 1001) registerApplication(tag.text);
            if (code == 8)
                tag.text = layerFor(tag.text);
            else if (code == 6)
                tag.text = mapped(linetypes_, tag.text);
            else if (code == 7 && isTextType(type))
                tag.text = mapped(styles_, tag.text);
            else if (code == 3 && usesDimensionStyle(type))
                tag.text = mapped(dimensionStyles_, tag.text);
            else if (code == 2 && referencesBlock(type))
                tag.text = mapped(blocks_, tag.text);
            sourceCount = (code == 97 && type == Type::Hatch) ? std::optional<size_t>(tags.size()) : std::nullopt;
            tags.push_back(std::move(tag));
        }
        return tags;
    }

    ObjectRecord& newEntity(db::TypeId type, std::vector<Tag> tags, ObjectRecord& owner, bool subEntity) {
        ObjectRecord& copy = host_.createRecord(type, db::RecordKind::Entity);
        copy.tags = db::TagList::encode(tags);
        db::assignNewHandle(host_, copy);
        db::fitTagsToFormat(copy);
        db::linkToOwner(copy, &owner);
        if (!subEntity) host_.appendToBlock(owner, copy);
        return copy;
    }

    // A copy of the entity and its attributes or vertices; none for a type the host's generation lacks.
    ObjectRecord* copyEntity(const ObjectRecord& entity, ObjectRecord& owner, bool subEntity) {
        if (downgrade_ && entity.type == Type::LwPolyline) return copyAsLegacyPolyline(entity, owner);
        const std::optional<db::TagList> tags = sourceTags(entity);
        if (!tags) return nullptr;
        ObjectRecord& copy = newEntity(entity.type, remapped(*tags, entity.type), owner, subEntity);
        if (!entity.container) return &copy;
        db::Container& contents = copy.ensureContainer();
        for (const ObjectRecord* member : entity.container->members) {
            ObjectRecord* sub = member->erased ? nullptr : copyEntity(*member, copy, true);
            if (!sub) continue;
            sub->order = static_cast<uint32_t>(contents.members.size());
            contents.members.push_back(sub);
        }
        if (entity.container->end) contents.end = copyEntity(*entity.container->end, copy, true);
        return &copy;
    }

    // Files before R13 have no light polylines: a POLYLINE with its VERTEX records and SEQEND.
    ObjectRecord* copyAsLegacyPolyline(const ObjectRecord& polyline, ObjectRecord& owner) {
        const std::vector<dxf::LegacyRecord> parts = dxf::lightweightPolylineAsLegacy(polyline);
        if (parts.empty()) return nullptr;
        auto remappedPart = [&](const dxf::LegacyRecord& part) {
            return remapped(db::TagList::encode(part.tags), db::typeIdOf(part.type));
        };
        ObjectRecord& head = newEntity(Type::Polyline, remappedPart(parts.front()), owner, false);
        db::Container& contents = head.ensureContainer();
        for (size_t i = 1; i < parts.size(); ++i) {
            const db::TypeId type = db::typeIdOf(parts[i].type);
            ObjectRecord& part = newEntity(type, remappedPart(parts[i]), head, true);
            if (type == Type::SeqEnd) {
                contents.end = &part;
            } else {
                part.order = static_cast<uint32_t>(contents.members.size());
                contents.members.push_back(&part);
            }
        }
        return &head;
    }

    void copyEntities(const ObjectRecord& sourceBlock, ObjectRecord& target) {
        if (!sourceBlock.container) return;
        for (const ObjectRecord* entity : sourceBlock.container->members) {
            if (!entity->erased && isCopyable(entity->type)) copyEntity(*entity, target, false);
        }
    }

    db::Drawing& host_;
    const db::Drawing& source_;
    std::string prefix_;
    bool upgrade_;    // an old file into a current drawing
    bool downgrade_;  // a current file into an old drawing
    NameMap linetypes_, layers_, styles_, dimensionStyles_, blocks_;
};

}  // namespace

bool isXrefBlock(const db::ObjectRecord& blockRecord) {
    return blockRecord.type == Type::BlockRecord && (db::blockFlags(blockRecord) & db::BlockFlag::External) != 0;
}

db::ObjectRecord* findXrefBlock(const db::Drawing& drawing, std::string_view name) {
    db::ObjectRecord* block = drawing.tableRecord("BLOCK_RECORD", name);
    return block && isXrefBlock(*block) ? block : nullptr;
}

std::string loadXrefFile(db::Drawing& host, db::ObjectRecord& xrefBlock, const std::string& path) {
    dxf::ReadResult read = dxf::readDxfFile(path);
    if (!read.ok()) return read.error.empty() ? "the file could not be read" : read.error;
    const std::string name(db::recordName(xrefBlock));
    XrefImport(host, *read.drawing, name).run(xrefBlock);
    db::ObjectRecord& begin = db::blockBeginForWrite(xrefBlock);
    db::setField(begin, db::kBlockBeginMarker,
                 Tag::point(10, read.drawing->header.getPoint("$INSBASE").value_or(KcGePoint3d())));
    db::setField(begin, db::kBlockBeginMarker, Tag::string(1, path));
    db::setBlockFlags(xrefBlock, db::BlockFlag::External | db::BlockFlag::Resolved);
    return {};
}

void clearXrefContents(db::Drawing& host, db::ObjectRecord& xrefBlock) {
    // The xref's blocks: "NAME|..." ones, and the anonymous dependent ones its entities reference.
    const std::string prefix = prefixOf(db::recordName(xrefBlock));
    std::vector<ObjectRecord*> blocks{&xrefBlock};
    if (const db::SymbolTable* table = host.table("BLOCK_RECORD")) {
        for (ObjectRecord* block : table->records) {
            if (!block->erased && isDependentOf(db::recordName(*block), prefix)) blocks.push_back(block);
        }
    }
    for (size_t i = 0; i < blocks.size(); ++i) {
        if (!blocks[i]->container) continue;
        for (const ObjectRecord* entity : blocks[i]->container->members) {
            if (entity->erased || !referencesBlock(entity->type)) continue;
            const std::string_view name = db::fieldText(*entity, {}, 2);
            ObjectRecord* referenced = host.tableRecord("BLOCK_RECORD", name);
            const bool anonymousDependent = referenced && !name.empty() && name.front() == '*' &&
                                            (db::blockFlags(*referenced) & db::BlockFlag::Dependent);
            if (anonymousDependent && std::find(blocks.begin(), blocks.end(), referenced) == blocks.end()) {
                blocks.push_back(referenced);
            }
        }
    }
    eraseContents(xrefBlock);
    for (ObjectRecord* block : blocks) {
        if (block != &xrefBlock) eraseTree(*block);
    }
    if (db::SymbolTable* table = host.table("BLOCK_RECORD")) table->invalidateIndex();
}

void detachXref(db::Drawing& host, db::ObjectRecord& xrefBlock) {
    const std::string name(db::recordName(xrefBlock));
    auto eraseReferences = [&](const std::vector<ObjectRecord*>& entities) {
        for (ObjectRecord* entity : entities) {
            if (!entity->erased && entity->type == Type::Insert &&
                db::namesEqual(db::fieldText(*entity, {}, 2), name)) {
                eraseTree(*entity);
            }
        }
    };
    eraseReferences(host.layoutEntities);
    for (ObjectRecord* block : host.blockOrder) {
        if (!block->erased && block->container && !host.isLayoutBlock(block))
            eraseReferences(block->container->members);
    }
    clearXrefContents(host, xrefBlock);
    eraseTree(xrefBlock);
    const std::string prefix = prefixOf(name);
    for (db::SymbolTable& table : host.tables) {
        for (ObjectRecord* record : table.records) {
            if (!record->erased && isDependentOf(db::recordName(*record), prefix)) eraseTree(*record);
        }
        table.invalidateIndex();
    }
}

}  // namespace korva::commands
