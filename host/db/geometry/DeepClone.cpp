// KcDbDatabase::deepCloneObjects: copies objects into a block record (entities)
// or under an owner (other objects), with everything they own: the attributes,
// vertices and SEQEND of a complex entity, extension dictionaries and the objects
// those dictionaries own, and the "*D" block of a dimension (so that the copy's
// graphics can move on their own). Clones get fresh handles; the id map records
// every source and its clone; finally references among the clones are translated:
// a pointer or owner handle (330-369, 1005) to a cloned object points to its clone,
// and reactors to objects that were not cloned are dropped.
#include <algorithm>
#include <string>
#include <unordered_map>

#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "db/geometry/PendingParts.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

namespace {

class DeepCloner {
public:
    DeepCloner(db::Drawing& drawing, KcDbIdMapping& map) : d_(drawing), map_(map) {}

    void cloneEntity(ObjectRecord& source, ObjectRecord& block, bool primary) {
        ObjectRecord& clone = copyRecord(source, primary);
        setOwner(clone, block);
        d_.appendToBlock(block, clone);
        if (source.container) {
            db::Container& into = clone.ensureContainer();
            for (ObjectRecord* member : source.container->members) {
                if (member->erased) continue;
                ObjectRecord& sub = copyRecord(*member, false);
                setOwner(sub, clone);
                sub.order = static_cast<uint32_t>(into.members.size());
                into.members.push_back(&sub);
                cloneExtensionDictionary(*member, sub);
            }
            if (source.container->end) {
                ObjectRecord& end = copyRecord(*source.container->end, false);
                setOwner(end, clone);
                into.end = &end;
            }
        }
        cloneExtensionDictionary(source, clone);
        if (source.type == db::Type::Dimension) cloneDimensionBlock(clone);
        db::geometry::markSpace(clone, block);
    }

    // A non-graphical object under owner, with the objects it owns.
    void cloneObject(ObjectRecord& source, ObjectRecord& owner, bool primary) {
        ObjectRecord& clone = copyRecord(source, primary);
        setOwner(clone, owner);
        d_.objects.push_back(&clone);
        if (owner.type == db::Type::Dictionary && primary) addDictionaryEntry(owner, source, clone);
        cloneOwnedEntries(source, clone);
        cloneExtensionDictionary(source, clone);
    }

    // Points references among the clones at the clones.
    void translate() {
        for (ObjectRecord* clone : clones_) {
            std::vector<db::Tag> tags = clone->tags.decode();
            std::vector<db::Tag> out;
            out.reserve(tags.size());
            bool inReactors = false;
            bool prefix = true;
            for (db::Tag& tag : tags) {
                if (tag.code == 100 || tag.code == 1001) prefix = false;
                if (tag.code == 102) inReactors = prefix && tag.text == "{ACAD_REACTORS";
                const bool reference = (tag.code >= 330 && tag.code <= 369) || tag.code == 1005;
                if (reference && tag.kind == db::TagKind::Handle) {
                    const auto it = cloneOf_.find(tag.handleValue());
                    if (it != cloneOf_.end()) {
                        tag.integer = static_cast<int64_t>(it->second);
                    } else if (inReactors) {
                        continue;  // a reactor the clone does not share with its source
                    }
                }
                out.push_back(std::move(tag));
            }
            dropEmptyGroups(out);
            clone->tags = db::TagList::encode(out);
        }
    }

private:
    ObjectRecord& copyRecord(ObjectRecord& source, bool primary) {
        ObjectRecord& clone = d_.createRecord(source.type, source.kind);
        clone.tags = source.tags;
        db::assignNewHandle(d_, clone);
        cloneOf_[source.handle] = clone.handle;
        clones_.push_back(&clone);
        map_.assign(KcDbIdPair(ObjectAccess::id(&source), ObjectAccess::id(&clone), true, primary));
        return clone;
    }

    void setOwner(ObjectRecord& clone, ObjectRecord& owner) {
        clone.owner = &owner;
        db::Handle present = 0;
        if (db::readOwnerHandle(clone, present) || db::hasSubclassMarkers(clone.tags)) {
            db::writeOwnerHandle(clone, owner.handle);
        }
    }

    void cloneExtensionDictionary(const ObjectRecord& source, ObjectRecord& clone) {
        for (db::Handle handle : db::applicationGroupHandles(source, "{ACAD_XDICTIONARY")) {
            ObjectRecord* dictionary = d_.findByHandle(handle);
            if (dictionary && !dictionary->erased && !cloneOf_.count(handle)) cloneObject(*dictionary, clone, false);
        }
    }

    // The entries of a dictionary that it owns (hard-owned, or soft-owned and
    // naming the dictionary as their owner).
    void cloneOwnedEntries(const ObjectRecord& source, ObjectRecord& clone) {
        if (source.type != db::Type::Dictionary && source.type != db::Type::DictionaryWithDefault) return;
        for (db::TagRef tag : source.tags) {
            if ((tag.code() != 350 && tag.code() != 360) || tag.kind() != db::TagKind::Handle) continue;
            ObjectRecord* entry = d_.findByHandle(tag.handle());
            if (!entry || entry->erased || cloneOf_.count(entry->handle)) continue;
            if (tag.code() == 360 || entry->owner == &source) cloneObject(*entry, clone, false);
        }
    }

    void addDictionaryEntry(ObjectRecord& dictionary, const ObjectRecord& source, const ObjectRecord& clone) {
        std::string key = "*" + db::formatHandle(clone.handle);
        if (source.owner) {
            std::string_view last;
            for (db::TagRef tag : source.owner->tags) {
                if (tag.code() == 3) last = tag.text();
                else if ((tag.code() == 350 || tag.code() == 360) && tag.handle() == source.handle) key = last;
            }
        }
        std::string unique = key;
        for (int n = 1; hasKey(dictionary, unique); ++n) unique = key + "_" + std::to_string(n);
        std::vector<db::Tag> tags = dictionary.tags.decode();
        size_t at = db::extendedDataStart(dictionary.tags);
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at),
                    {db::Tag::string(3, unique), db::Tag::handle(350, clone.handle)});
        dictionary.tags = db::TagList::encode(tags);
    }

    static bool hasKey(const ObjectRecord& dictionary, std::string_view key) {
        for (db::TagRef tag : dictionary.tags) {
            if (tag.code() == 3 && db::namesEqual(tag.text(), key)) return true;
        }
        return false;
    }

    // A dimension's graphics block is its own: the clone gets a copy named "*D<n>".
    void cloneDimensionBlock(ObjectRecord& clone) {
        const std::string name(db::fieldText(clone, "AcDbDimension", 2));
        ObjectRecord* block = d_.tableRecord("BLOCK_RECORD", name);
        if (!block || !block->container || name.size() < 2 || name[0] != '*') return;
        const std::string newName = freeDimensionBlockName();
        ObjectRecord& copy = db::createBlock(d_, newName);
        ObjectRecord& begin = *copy.container->begin;
        if (block->container->begin) {
            const ObjectRecord& source = *block->container->begin;
            db::setField(begin, "AcDbBlockBegin", db::Tag::integerValue(70, db::fieldInteger(source, {}, 70, 1)));
            db::setField(begin, "AcDbBlockBegin", db::Tag::point(10, db::fieldPoint(source, {}, 10)));
        }
        for (ObjectRecord* member : block->container->members) {
            if (!member->erased) cloneEntity(*member, copy, false);
        }
        db::setField(clone, "AcDbDimension", db::Tag::string(2, newName));
    }

    std::string freeDimensionBlockName() const {
        long highest = 0;
        for (const ObjectRecord* block : d_.blockOrder) {
            const std::string_view name = db::recordName(*block);
            if (name.size() < 3 || name[0] != '*' || (name[1] != 'D' && name[1] != 'd')) continue;
            try {
                highest = std::max(highest, std::stol(std::string(name.substr(2))));
            } catch (...) {
                continue;  // not a number after "*D"
            }
        }
        return "*D" + std::to_string(highest + 1);
    }

    static void dropEmptyGroups(std::vector<db::Tag>& tags) {
        auto opens = [](const db::Tag& t) { return t.code == 102 && !t.text.empty() && t.text.front() == '{'; };
        auto closes = [](const db::Tag& t) { return t.code == 102 && t.text == "}"; };
        for (size_t i = 0; i + 1 < tags.size();) {
            if (opens(tags[i]) && closes(tags[i + 1])) {
                const auto at = tags.begin() + static_cast<std::ptrdiff_t>(i);
                tags.erase(at, at + 2);
            } else {
                ++i;
            }
        }
    }

    db::Drawing& d_;
    KcDbIdMapping& map_;
    std::unordered_map<db::Handle, db::Handle> cloneOf_;
    std::vector<ObjectRecord*> clones_;
};

bool isSubEntity(const ObjectRecord& record) {
    return record.type == db::Type::Attrib || record.type == db::Type::Vertex || record.type == db::Type::SeqEnd;
}

}  // namespace

Kcad::ErrorStatus KcDbDatabase::deepCloneObjects(KcDbObjectIdArray& ids, KcDbObjectId owner, KcDbIdMapping& idMap,
                                                 bool deferTranslation) {
    ObjectRecord* ownerRecord = ObjectAccess::record(owner);
    if (!ownerRecord || ownerRecord->drawing != m_drawing.get() || ownerRecord->erased) return Kcad::eInvalidInput;
    std::vector<ObjectRecord*> sources;
    for (int i = 0; i < ids.length(); ++i) {
        ObjectRecord* source = ObjectAccess::record(ids[i]);
        if (!source || source->drawing != m_drawing.get()) return Kcad::eInvalidInput;
        if (source->erased) return Kcad::eWasErased;
        if (isSubEntity(*source) || (source->isEntity() && ownerRecord->type != db::Type::BlockRecord)) {
            return Kcad::eInvalidInput;
        }
        const bool clonable = source->kind == db::RecordKind::Entity || source->kind == db::RecordKind::Object;
        if (!clonable) return Kcad::eInvalidInput;
        sources.push_back(source);
    }
    DeepCloner cloner(*m_drawing, idMap);
    for (ObjectRecord* source : sources) {
        if (source->isEntity()) cloner.cloneEntity(*source, *ownerRecord, true);
        else cloner.cloneObject(*source, *ownerRecord, true);
    }
    if (!deferTranslation) cloner.translate();
    return Kcad::eOk;
}
