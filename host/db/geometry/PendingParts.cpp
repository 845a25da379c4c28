// Creation of explode parts and adoption of their sub-records.
#include "db/geometry/PendingParts.h"

#include "db/Drawing.h"
#include "db/EntitySchema.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"

namespace korva::db::geometry {

namespace {

// A sub-record of a part: owned by the part's container until the part is added.
ObjectRecord& pendingSubRecord(Container& into, const ObjectRecord& source) {
    into.pending.push_back(std::make_unique<ObjectRecord>());
    ObjectRecord& sub = *into.pending.back();
    sub.type = source.type;
    sub.kind = source.kind;
    sub.tags = copyWithoutIdentity(source.tags);
    return sub;
}

void copySubRecords(const ObjectRecord& source, ObjectRecord& part) {
    if (!source.container) return;
    Container& into = part.ensureContainer();
    for (const ObjectRecord* member : source.container->members) {
        if (member->erased) continue;
        ObjectRecord& copy = pendingSubRecord(into, *member);
        copy.order = static_cast<uint32_t>(into.members.size());
        into.members.push_back(&copy);
    }
    if (source.container->end) into.end = &pendingSubRecord(into, *source.container->end);
}

std::unique_ptr<KcDbEntity> viewFor(const ObjectRecord& prototype, TagList tags) {
    std::unique_ptr<KcDbEntity> part(static_cast<KcDbEntity*>(ObjectAccess::newView(prototype)));
    ObjectRecord& pending = ObjectAccess::record(*part);
    pending.type = prototype.type;  // classes shared by several DXF types map back to the source's
    pending.kind = RecordKind::Entity;
    pending.tags = std::move(tags);
    return part;
}

// The AcDbEntity part of a record: the common groups, in the order they stand.
std::vector<Tag> commonGroups(const ObjectRecord& from) {
    std::vector<Tag> out;
    const bool markers = hasSubclassMarkers(from.tags);
    bool inCommon = false;
    for (TagRef t : from.tags) {
        if (t.code() == 1001) break;
        if (t.code() == 100) {
            inCommon = t.text() == "AcDbEntity";
            continue;
        }
        if ((markers && inCommon) || (!markers && isCommonEntityCode(t.code()))) out.push_back(t.toTag());
    }
    return out;
}

}  // namespace

ObjectRecord& partRecord(KcDbEntity& part) { return ObjectAccess::record(part); }

std::unique_ptr<KcDbEntity> copyAsPart(const ObjectRecord& source) {
    std::unique_ptr<KcDbEntity> part = viewFor(source, copyWithoutIdentity(source.tags));
    copySubRecords(source, partRecord(*part));
    return part;
}

std::unique_ptr<KcDbEntity> newPart(TypeId type, const ObjectRecord& from, const std::vector<Tag>& fields) {
    const bool markers = hasSubclassMarkers(from.tags);
    std::vector<Tag> tags;
    if (markers) tags.push_back(Tag::string(100, "AcDbEntity"));
    for (Tag& common : commonGroups(from)) tags.push_back(std::move(common));
    std::vector<bool> used(fields.size(), false);
    if (const TypeSpec* schema = entitySpec(type)) {
        for (const SubclassSpec& sub : schema->subclasses) {
            if (markers) tags.push_back(Tag::string(100, sub.marker));
            for (const FieldSpec& field : sub.fields) {
                bool given = false;
                for (size_t i = 0; i < fields.size(); ++i) {
                    if (used[i] || fields[i].code != field.code) continue;
                    tags.push_back(fields[i]);
                    used[i] = given = true;
                    if (!(field.flags & kFieldRepeat)) break;
                }
                if (!given && !field.optional()) tags.push_back(field.defaultTag());
            }
        }
    }
    for (size_t i = 0; i < fields.size(); ++i) {
        if (!used[i]) tags.push_back(fields[i]);
    }
    ObjectRecord prototype;
    prototype.type = type;
    prototype.kind = RecordKind::Entity;
    prototype.tags = TagList::encode(tags);
    return viewFor(prototype, prototype.tags);
}

void markSpace(ObjectRecord& entity, const ObjectRecord& blockRecord) {
    const Drawing* drawing = blockRecord.drawing;
    const bool paper = drawing && drawing->isLayoutBlock(&blockRecord) && &blockRecord != drawing->modelSpace();
    auto mark = [&](ObjectRecord& r) {
        if (paper) setField(r, kEntityMarker, Tag::integerValue(67, 1));
        else removeField(r, kEntityMarker, 67);
    };
    mark(entity);
    if (!entity.container) return;
    for (ObjectRecord* member : entity.container->members) mark(*member);
    if (entity.container->end) mark(*entity.container->end);
}

}  // namespace korva::db::geometry
