// Binding happens after the whole file is parsed, because handles may point
// forward (an entity's owner, a block record's layout).
#include "dxf/DrawingBinder.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "db/RecordFactory.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"

namespace korva::dxf {

using db::Handle;
using db::ObjectRecord;
using db::RecordKind;
namespace Type = db::Type;

namespace {

// R12 names the layout blocks "$MODEL_SPACE" and "$PAPER_SPACE".
std::string blockRecordNameFor(std::string_view blockName) {
    if (db::namesEqual(blockName, "$MODEL_SPACE")) return "*Model_Space";
    if (db::namesEqual(blockName, "$PAPER_SPACE")) return "*Paper_Space";
    return std::string(blockName);
}

class Binder {
public:
    Binder(db::Drawing& drawing, ParsedSections& parsed, db::AuditReport& audit)
        : d_(drawing), parsed_(parsed), audit_(audit), modern_(drawing.versionNumber() >= 1012) {}

    void run() {
        if (auto seed = d_.header.getHandle("$HANDSEED")) d_.raiseHandseed(*seed);
        bindTables();
        bindBlocks();
        bindSpaces();
        bindEntitiesSection();
        bindObjects();
    }

private:
    void bindTables() {
        for (ParsedTable& parsed : parsed_.tables) {
            std::string name;
            if (parsed.head) {
                name = db::asciiUpper(db::recordName(*parsed.head));
            } else if (!parsed.records.empty()) {
                name = db::asciiUpper(db::typeName(parsed.records.front()->type));
            }
            db::SymbolTable* table = d_.table(name);
            if (!table) {
                if (parsed.head) {
                    db::SymbolTable fresh;
                    fresh.name = name;
                    fresh.head = parsed.head;
                    d_.tables.push_back(std::move(fresh));
                    table = &d_.tables.back();
                } else {
                    table = &db::ensureTable(d_, name);
                }
            } else if (parsed.head) {
                audit_.add("duplicate-table", "A second " + name + " table was merged into the first.");
            }
            for (ObjectRecord* record : parsed.records) {
                record->owner = table->head;
                table->records.push_back(record);
            }
            table->invalidateIndex();
        }
    }

    ObjectRecord* blockRecordFor(ObjectRecord& begin) {
        db::SymbolTable* records = d_.table("BLOCK_RECORD");
        Handle owner = 0;
        if (records && db::readOwnerHandle(begin, owner)) {
            ObjectRecord* byHandle = d_.findByHandle(owner);
            if (byHandle && byHandle->type == Type::BlockRecord) return byHandle;
        }
        const std::string name = blockRecordNameFor(db::recordName(begin));
        if (records && !name.empty()) {
            if (ObjectRecord* byName = records->find(name)) return byName;
        }
        if (modern_) {
            audit_.add("missing-block-record", "Block \"" + name + "\" had no block record; one was created.");
        }
        return &db::createTableRecord(d_, "BLOCK_RECORD", name.empty() ? "*U" : name);
    }

    void bindBlocks() {
        for (ParsedBlock& block : parsed_.blocks) {
            ObjectRecord* record = blockRecordFor(*block.begin);
            db::Container& c = record->ensureContainer();
            if (c.begin) {
                audit_.add("duplicate-block", "A second definition of block \"" +
                                                  std::string(db::recordName(*record)) + "\" was renamed.");
                record = &db::createTableRecord(d_, "BLOCK_RECORD", "*U");
            }
            db::Container& container = record->ensureContainer();
            container.begin = block.begin;
            container.end = block.end;
            block.begin->owner = record;
            if (block.end) block.end->owner = record;
            d_.blockOrder.push_back(record);
            placeEntities(block.entities, [&](ObjectRecord&) { return record; });
        }
    }

    void bindSpaces() {
        db::SymbolTable& records = db::ensureTable(d_, "BLOCK_RECORD");
        ObjectRecord* model = records.find("*Model_Space");
        ObjectRecord* paper = records.find("*Paper_Space");
        if (!model) {
            if (modern_) audit_.add("missing-model-space", "The drawing had no model space block; one was created.");
            model = &db::createTableRecord(d_, "BLOCK_RECORD", "*Model_Space");
        }
        if (!paper) {
            if (modern_) audit_.add("missing-paper-space", "The drawing had no paper space block; one was created.");
            paper = &db::createTableRecord(d_, "BLOCK_RECORD", "*Paper_Space");
        }
        d_.setModelSpace(model);
        d_.setPaperSpace(paper);
        // Every drawing in memory has both layout blocks with their BLOCK and ENDBLK.
        for (ObjectRecord* layout : {model, paper}) {
            const bool listed = std::find(d_.blockOrder.begin(), d_.blockOrder.end(), layout) != d_.blockOrder.end();
            if (!listed) d_.blockOrder.insert(layout == model ? d_.blockOrder.begin() : d_.blockOrder.begin() + 1, layout);
            db::ensureBlockEnds(d_, *layout);
        }
        // Layout blocks list entities in creation order: re-place what the BLOCKS section gave them.
        for (ObjectRecord* block : d_.blockOrder) {
            if (!d_.isLayoutBlock(block) || !block->container) continue;
            std::vector<ObjectRecord*> members = std::move(block->container->members);
            block->container->members.clear();
            for (ObjectRecord* entity : members) d_.appendToBlock(*block, *entity);
        }
    }

    void bindEntitiesSection() {
        ObjectRecord* model = d_.modelSpace();
        ObjectRecord* paper = d_.paperSpace();
        placeEntities(parsed_.entities, [&](ObjectRecord& entity) {
            Handle owner = 0;
            if (db::readOwnerHandle(entity, owner)) {
                ObjectRecord* block = d_.findByHandle(owner);
                if (block && block->type == Type::BlockRecord && d_.isLayoutBlock(block)) return block;
            }
            db::TagRef space;
            if (entity.tags.find(67, space) && space.integer() == 1) return paper;
            return model;
        });
    }

    // Groups complex entities (INSERT + ATTRIB... + SEQEND, POLYLINE + VERTEX... +
    // SEQEND) and appends the top-level ones to the block chosen for each.
    template <class ChooseBlock>
    void placeEntities(const std::vector<ObjectRecord*>& flat, ChooseBlock&& chooseBlock) {
        ObjectRecord* parent = nullptr;
        for (ObjectRecord* entity : flat) {
            const db::TypeId type = entity->type;
            const bool sub = type == Type::Attrib || type == Type::Vertex || type == Type::SeqEnd;
            if (sub) {
                const bool fits = parent && ((type == Type::Attrib && parent->type == Type::Insert) ||
                                             (type == Type::Vertex && parent->type == Type::Polyline) ||
                                             type == Type::SeqEnd);
                if (!fits) {
                    audit_.add("orphan-subentity", "A " + std::string(db::typeName(type)) +
                                                       " without its INSERT or POLYLINE was dropped.");
                    entity->erased = true;
                    continue;
                }
                db::Container& c = parent->ensureContainer();
                entity->owner = parent;
                if (type == Type::SeqEnd) {
                    c.end = entity;
                    parent = nullptr;
                } else {
                    entity->order = static_cast<uint32_t>(c.members.size());
                    c.members.push_back(entity);
                }
                continue;
            }
            closeComplex(parent);
            ObjectRecord* block = chooseBlock(*entity);
            d_.appendToBlock(*block, *entity);
            if (type == Type::Insert || type == Type::Polyline) parent = entity;
        }
        closeComplex(parent);
    }

    // A POLYLINE, or an INSERT with attributes, must end with a SEQEND.
    void closeComplex(ObjectRecord*& parent) {
        if (!parent) return;
        const bool needsEnd = parent->type == Type::Polyline || (parent->container && !parent->container->members.empty());
        if (needsEnd && (!parent->container || !parent->container->end)) {
            ObjectRecord& seqend = d_.createRecord(Type::SeqEnd, RecordKind::Entity);
            std::vector<db::Tag> tags;
            if (modern_) {
                tags.push_back(db::Tag::handle(330, parent->handle));
                tags.push_back(db::Tag::string(100, "AcDbEntity"));
            }
            db::TagRef layer;
            tags.push_back(db::Tag::string(8, parent->tags.find(8, layer) ? std::string(layer.text()) : "0"));
            seqend.tags = db::TagList::encode(tags);
            seqend.owner = parent;
            db::assignNewHandle(d_, seqend);
            parent->ensureContainer().end = &seqend;
            audit_.add("missing-seqend", "A " + std::string(db::typeName(parent->type)) + " without SEQEND was closed.");
        }
        parent = nullptr;
    }

    void bindObjects() {
        d_.objects = parsed_.objects;
        for (ObjectRecord* object : d_.objects) {
            Handle owner = 0;
            if (db::readOwnerHandle(*object, owner)) object->owner = d_.findByHandle(owner);
        }
    }

    db::Drawing& d_;
    ParsedSections& parsed_;
    db::AuditReport& audit_;
    bool modern_;
};

}  // namespace

void bindDrawing(db::Drawing& drawing, ParsedSections& parsed, db::AuditReport& audit) {
    Binder(drawing, parsed, audit).run();
}

}  // namespace korva::dxf
