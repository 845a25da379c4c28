// Each check is one function; the order matters only in that handles come
// first, because every later repair may create records that need them.
#include "db/Audit.h"

#include <functional>
#include <string>
#include <unordered_set>

#include "db/DrawingIo.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"

namespace korva::db {

namespace {

std::string describe(const ObjectRecord& record) {
    std::string text(typeName(record.type));
    if (record.handle != 0) text += " (handle " + formatHandle(record.handle) + ")";
    return text;
}

// Calls visit for every record that belongs to the drawing's structure.
void forEachLiveRecord(Drawing& d, const std::function<void(ObjectRecord&)>& visit) {
    for (uint32_t i = 0; i < d.recordCount(); ++i) {
        ObjectRecord* r = d.record(i);
        if (!r->erased) visit(*r);
    }
}

class Auditor {
public:
    Auditor(Drawing& drawing, AuditReport& report) : d_(drawing), report_(report), modern_(drawing.versionNumber() >= 1012) {}

    void run(const AuditInput& input) {
        repairHandles(input);
        nameUnnamedBlocks();
        nameBlockEntities();
        ensureDefaultRecords();
        createMissingReferencedRecords();
        if (modern_) {
            repairOwnerTags();
            repairObjectOwners();
        }
        ensureObjectStructure();
        if (modern_) repairLayoutLinks();
    }

private:
    void repairHandles(const AuditInput& input) {
        for (ObjectRecord* record : input.withoutHandle) {
            if (record->erased) continue;
            const bool hadTag = hasHandleTag(*record);
            assignNewHandle(d_, *record);
            if (modern_ || hadTag) {
                report_.add("missing-handle", "A " + std::string(typeName(record->type)) + " had " +
                                                  (hadTag ? "an unreadable" : "no") + " handle; it was given handle " +
                                                  formatHandle(record->handle) + ".");
            }
        }
        for (ObjectRecord* record : input.duplicateHandles) {
            if (record->erased) continue;
            const std::string before = describe(*record);
            assignNewHandle(d_, *record);
            report_.add("duplicate-handle", before + " repeated a handle already in use; it was given handle " +
                                                formatHandle(record->handle) + ".");
        }
    }

    void nameUnnamedBlocks() {
        SymbolTable* blocks = d_.table("BLOCK_RECORD");
        if (!blocks) return;
        for (ObjectRecord* record : blocks->records) {
            if (record->erased || !recordName(*record).empty()) continue;
            const std::string name = uniqueAnonymousBlockName();
            renameBlock(*record, name);
            blocks->invalidateIndex();
            report_.add("unnamed-block", "A block without a name was named \"" + name + "\".");
        }
    }

    // A BLOCK entity carries its block's name (group 2); one without gets it back.
    void nameBlockEntities() {
        for (ObjectRecord* record : d_.blockOrder) {
            if (record->erased || !record->container || !record->container->begin) continue;
            ObjectRecord& begin = *record->container->begin;
            TagRef tag;
            if (begin.tags.find(2, tag) && !tag.text().empty()) continue;
            const std::string_view name = recordName(*record);
            std::vector<Tag> tags = begin.tags.decode();
            size_t at = tags.size();
            for (size_t i = 0; i < tags.size(); ++i) {
                if (tags[i].code == 2) {
                    at = i;
                    break;
                }
                if (tags[i].code == 100 && tags[i].text == "AcDbBlockBegin") at = i + 1;
            }
            if (at < tags.size() && tags[at].code == 2) tags[at] = Tag::string(2, name);
            else tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at), Tag::string(2, name));
            begin.tags = TagList::encode(tags);
            report_.add("block-name", "The BLOCK entity of block \"" + std::string(name) +
                                          "\" had no name; it now carries the block's name.");
        }
    }

    std::string uniqueAnonymousBlockName() {
        SymbolTable* blocks = d_.table("BLOCK_RECORD");
        for (int n = 1;; ++n) {
            std::string name = "*U" + std::to_string(n);
            if (!blocks || !blocks->find(name)) return name;
        }
    }

    static void setName(ObjectRecord& record, int code, const std::string& name) {
        std::vector<Tag> tags = record.tags.decode();
        bool found = false;
        for (Tag& tag : tags) {
            if (tag.code == code) {
                tag = Tag::string(code, name);
                found = true;
                break;
            }
        }
        if (!found) tags.push_back(Tag::string(code, name));
        record.tags = TagList::encode(tags);
    }

    void renameBlock(ObjectRecord& record, const std::string& name) {
        setName(record, 2, name);
        if (record.container && record.container->begin) {
            setName(*record.container->begin, 2, name);
            TagRef three;
            if (record.container->begin->tags.find(3, three)) setName(*record.container->begin, 3, name);
        }
        // Anonymous blocks carry flag 1 on their BLOCK entity.
        if (record.container && record.container->begin) {
            std::vector<Tag> tags = record.container->begin->tags.decode();
            for (Tag& tag : tags) {
                if (tag.code == 70 && tag.kind == TagKind::Integer) tag.integer |= 1;
            }
            record.container->begin->tags = TagList::encode(tags);
        }
    }

    void ensureDefaultRecords() {
        ensureRecord("LAYER", "0");
        if (modern_) {
            ensureRecord("LTYPE", "ByBlock");
            ensureRecord("LTYPE", "ByLayer");
            ensureRecord("LTYPE", "Continuous");
        }
    }

    ObjectRecord* ensureRecord(std::string_view table, std::string_view name, bool report = false) {
        if (ObjectRecord* existing = d_.tableRecord(table, name)) return existing;
        ObjectRecord& created = createTableRecord(d_, table, name);
        if (report) {
            report_.add("missing-table-record", "The " + std::string(table) + " record \"" + std::string(name) +
                                                    "\" that objects refer to was missing; it was created.");
        }
        return &created;
    }

    // Layers, linetypes, text styles and blocks named by entities must exist.
    void createMissingReferencedRecords() {
        std::vector<std::pair<std::string, std::string>> wanted;
        std::unordered_set<std::string> seen;
        auto want = [&](std::string_view table, std::string_view name) {
            if (name.empty()) return;
            std::string key = std::string(table) + '\n' + foldName(name);
            if (seen.insert(key).second) wanted.emplace_back(std::string(table), std::string(name));
        };
        forEachLiveRecord(d_, [&](ObjectRecord& r) {
            if (r.kind != RecordKind::Entity) return;
            for (TagRef tag : r.tags) {
                const int code = tag.code();
                if (code == 1001) break;
                if (code == 8) want("LAYER", tag.text());
                else if (code == 6 && !namesEqual(tag.text(), "ByLayer") && !namesEqual(tag.text(), "ByBlock"))
                    want("LTYPE", tag.text());
                else if (code == 7 && isTextType(r.type)) want("STYLE", tag.text());
                else if (code == 2 && r.type == Type::Insert) want("BLOCK_RECORD", tag.text());
            }
        });
        for (const auto& [table, name] : wanted) {
            if (d_.tableRecord(table, name)) continue;
            if (table == "BLOCK_RECORD") {
                if (!modern_ && d_.tableRecord("BLOCK_RECORD", name)) continue;
                ObjectRecord& block = createBlock(d_, name);
                (void)block;
                report_.add("missing-table-record",
                            "Block \"" + name + "\" that block references use was missing; an empty one was created.");
                continue;
            }
            ensureRecord(table, name, true);
        }
    }

    static bool isTextType(TypeId type) {
        return type == Type::Text || type == Type::MText || type == Type::AttDef || type == Type::Attrib ||
               type == Type::Shape;
    }

    // The 330 group of every structural record names its owner.
    void repairOwnerTags() {
        forEachLiveRecord(d_, [&](ObjectRecord& r) {
            if (r.kind == RecordKind::Object || r.kind == RecordKind::TableHead) return;
            if (!r.owner) return;
            Handle tagged = 0;
            const bool hasTag = readOwnerHandle(r, tagged);
            if (hasTag && tagged == r.owner->handle) return;
            if (!hasTag && !hasSubclassMarkers(r.tags)) return;  // a record written without owners
            // Some writers give attributes, vertices and SEQENDs the block of their
            // INSERT or POLYLINE as owner; the structure says who owns them, so keep the file's tag.
            if (hasTag && r.owner->owner && tagged == r.owner->owner->handle) return;
            writeOwnerHandle(r, r.owner->handle);
            if (hasTag) {
                report_.add("broken-owner-link", describe(r) + " named the wrong owner; it now names " + describe(*r.owner) + ".");
            }
        });
    }

    // Objects name their owner by handle; one that names nothing gets the
    // dictionary that lists it, where there is one.
    void repairObjectOwners() {
        std::unordered_map<const ObjectRecord*, ObjectRecord*> listedBy;
        for (ObjectRecord* object : d_.objects) {
            if (object->erased || (object->type != Type::Dictionary && object->type != Type::DictionaryWithDefault)) continue;
            for (TagRef tag : object->tags) {
                if ((tag.code() == 350 || tag.code() == 360) && tag.kind() == TagKind::Handle) {
                    if (ObjectRecord* entry = d_.findByHandle(tag.handle())) listedBy.emplace(entry, object);
                }
            }
        }
        for (ObjectRecord* object : d_.objects) {
            if (object->erased || object == d_.rootDictionary()) continue;
            Handle owner = 0;
            const bool hasOwnerTag = readOwnerHandle(*object, owner);
            if (owner != 0 && d_.findByHandle(owner)) continue;
            auto it = listedBy.find(object);
            if (it != listedBy.end()) {
                object->owner = it->second;
                writeOwnerHandle(*object, it->second->handle);
                report_.add("broken-owner-link", describe(*object) + (hasOwnerTag ? " named a missing owner" : " named no owner") +
                                                     "; it now names " + describe(*it->second) + ", which lists it.");
            }
        }
    }

    void ensureObjectStructure() {
        // Every drawing in memory has a named-object dictionary with the group and
        // layout dictionaries; files before AC1012 do not hold them and never will.
        if (d_.objects.empty() || d_.objects.front()->type != Type::Dictionary) {
            ObjectRecord& root = createObject(d_, Type::Dictionary, nullptr);
            appendTags(root, {Tag::string(100, "AcDbDictionary"), Tag::integerValue(281, 1)});
            d_.objects.pop_back();
            d_.objects.insert(d_.objects.begin(), &root);
            if (modern_) report_.add("missing-structure", "The drawing had no named-object dictionary; one was created.");
        }
        ensureRootEntry("ACAD_GROUP");
        ensureRootEntry("ACAD_LAYOUT");
        ensureLayouts();
    }

    ObjectRecord* rootEntry(std::string_view key) {
        bool match = false;
        for (TagRef tag : d_.rootDictionary()->tags) {
            if (tag.code() == 3) match = tag.text() == key;
            else if (match && (tag.code() == 350 || tag.code() == 360)) return d_.findByHandle(tag.handle());
        }
        return nullptr;
    }

    // Model space and the paper space each have a LAYOUT object that their block
    // record names (340). Missing ones are made from the built-in template's layouts.
    void ensureLayouts() {
        ObjectRecord* dictionary = rootEntry("ACAD_LAYOUT");
        if (!dictionary) return;
        const struct {
            ObjectRecord* block;
            const char* name;
        } layouts[] = {{d_.modelSpace(), "Model"}, {d_.paperSpace(), "Layout1"}};
        for (const auto& wanted : layouts) {
            if (!wanted.block) continue;
            const ObjectRecord* existing = d_.findByHandle(fieldHandle(*wanted.block, {}, 340));
            if (existing && existing->type == Type::Layout) continue;
            if (!layoutFromTemplate(*dictionary, *wanted.block, wanted.name)) continue;
            if (modern_) {
                report_.add("missing-structure", "The " + std::string(recordName(*wanted.block)) +
                                                     " block had no layout; layout \"" + wanted.name + "\" was created.");
            }
        }
    }

    bool layoutFromTemplate(ObjectRecord& dictionary, ObjectRecord& block, std::string_view name) {
        if (!templateDrawing_) {
            const DrawingIo& io = drawingIo();
            if (!io.readBytes) return false;
            templateDrawing_ = io.readBytes(emptyDrawingTemplate()).drawing;
            if (!templateDrawing_) return false;
        }
        const ObjectRecord* source = nullptr;
        for (const ObjectRecord* object : templateDrawing_->objects) {
            if (object->type == Type::Layout && fieldText(*object, "AcDbLayout", 1) == name) source = object;
        }
        if (!source) return false;
        ObjectRecord& layout = createObject(d_, Type::Layout, &dictionary);
        std::vector<Tag> tags = layout.tags.decode();
        for (TagRef t : copyWithoutIdentity(source->tags)) tags.push_back(t.toTag());
        layout.tags = TagList::encode(tags);
        setField(layout, "AcDbLayout", Tag::handle(330, block.handle));
        appendTags(dictionary, {Tag::string(3, name), Tag::handle(350, layout.handle)});
        setField(block, {}, Tag::handle(340, layout.handle));
        return true;
    }

    void ensureRootEntry(std::string_view key) {
        ObjectRecord* root = d_.rootDictionary();
        bool nextIsKey = false;
        for (TagRef tag : root->tags) {
            if (tag.code() == 3 && tag.text() == key) nextIsKey = true;
            else if (nextIsKey) return;
        }
        ObjectRecord& dict = createObject(d_, Type::Dictionary, root);
        appendTags(dict, {Tag::string(100, "AcDbDictionary"), Tag::integerValue(281, 1)});
        appendTags(*root, {Tag::string(3, key), Tag::handle(350, dict.handle)});
        if (modern_) report_.add("missing-structure", "The drawing had no " + std::string(key) + " dictionary; one was created.");
    }

    static void appendTags(ObjectRecord& record, std::initializer_list<Tag> extra) {
        std::vector<Tag> tags = record.tags.decode();
        const uint32_t xdata = extendedDataStart(record.tags);
        tags.insert(tags.begin() + xdata, extra.begin(), extra.end());
        record.tags = TagList::encode(tags);
    }

    // Each layout block names its LAYOUT (340) and each LAYOUT names its block
    // (the 330 of its AcDbLayout part); a side that names nothing is re-linked.
    void repairLayoutLinks() {
        for (ObjectRecord* layout : d_.objects) {
            if (layout->erased || layout->type != Type::Layout) continue;
            Handle blockHandle = 0;
            const int at = layoutBlockTagIndex(*layout, blockHandle);
            if (at < 0) continue;
            ObjectRecord* block = d_.findByHandle(blockHandle);
            if (block && block->type == Type::BlockRecord) continue;
            ObjectRecord* candidate = blockNamingLayout(layout->handle);
            if (!candidate) continue;
            std::vector<Tag> tags = layout->tags.decode();
            tags[static_cast<size_t>(at)] = Tag::handle(330, candidate->handle);
            layout->tags = TagList::encode(tags);
            report_.add("broken-layout-link", describe(*layout) + " named a missing block; it now names " +
                                                  describe(*candidate) + ".");
        }
    }

    // Index of the 330 in the AcDbLayout subclass of a LAYOUT, or -1.
    static int layoutBlockTagIndex(const ObjectRecord& layout, Handle& handle) {
        int index = 0;
        bool inLayout = false;
        for (TagRef tag : layout.tags) {
            if (tag.code() == 100) inLayout = tag.text() == "AcDbLayout";
            else if (inLayout && tag.code() == 330) {
                handle = tag.handle();
                return index;
            }
            ++index;
        }
        return -1;
    }

    ObjectRecord* blockNamingLayout(Handle layoutHandle) {
        SymbolTable* blocks = d_.table("BLOCK_RECORD");
        if (!blocks) return nullptr;
        for (ObjectRecord* block : blocks->records) {
            TagRef tag;
            if (!block->erased && block->tags.find(340, tag) && tag.handle() == layoutHandle) return block;
        }
        return nullptr;
    }

    Drawing& d_;
    AuditReport& report_;
    bool modern_;
    std::unique_ptr<Drawing> templateDrawing_;
};

}  // namespace

void auditDrawing(Drawing& drawing, const AuditInput& input, AuditReport& report) {
    Auditor(drawing, report).run(input);
}

}  // namespace korva::db
