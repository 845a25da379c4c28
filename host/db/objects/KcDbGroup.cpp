// Groups: description (300), unnamed flag (70), selectable flag (71) and the
// members in order (340). Every member carries the group among its persistent
// reactors; erased members stay listed but are neither counted nor returned.
#include <algorithm>
#include <vector>

#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/objects/DictionaryEntries.h"
#include "kcdbdatabase.h"

using korva::db::Handle;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kMarker = "AcDbGroup";
constexpr std::string_view kReactors = "{ACAD_REACTORS";
constexpr int kNoCode = -32000;  // a group code no tag has: member runs end at the subclass end

std::vector<Handle> memberHandles(const ObjectRecord& group) {
    std::vector<Handle> handles;
    for (const db::TagRef& tag : db::fieldsOf(group, kMarker, 340)) handles.push_back(tag.handle());
    return handles;
}

void writeMembers(ObjectRecord& group, const std::vector<Handle>& handles) {
    std::vector<Tag> tags;
    for (Handle handle : handles) tags.push_back(Tag::handle(340, handle));
    db::replaceRun(group, kMarker, 340, kNoCode, tags);
}

void addReactor(ObjectRecord& member, Handle group) {
    std::vector<Handle> reactors = db::applicationGroupHandles(member, kReactors);
    if (std::find(reactors.begin(), reactors.end(), group) != reactors.end()) return;
    reactors.push_back(group);
    db::writeApplicationGroup(member, kReactors, 330, reactors);
}

void removeReactor(ObjectRecord& member, Handle group) {
    std::vector<Handle> reactors = db::applicationGroupHandles(member, kReactors);
    if (std::erase(reactors, group) > 0) db::writeApplicationGroup(member, kReactors, 330, reactors);
}

// The members that exist and are not erased, in order.
std::vector<ObjectRecord*> liveMembers(const ObjectRecord& group) {
    std::vector<ObjectRecord*> members;
    if (!group.drawing) return members;
    for (Handle handle : memberHandles(group)) {
        ObjectRecord* member = group.drawing->findByHandle(handle);
        if (member && !member->erased) members.push_back(member);
    }
    return members;
}

}  // namespace

KcDbGroup::KcDbGroup(const wchar_t* description, bool selectable) {
    ObjectRecord& self = record();
    db::setField(self, kMarker, Tag::string(300, db::toStoredText(description)));
    db::setField(self, kMarker, Tag::integerValue(71, selectable ? 1 : 0));
}

const wchar_t* KcDbGroup::description() const { return keepString(db::toApiText(db::fieldText(record(), kMarker, 300))); }

Kcad::ErrorStatus KcDbGroup::setDescription(const wchar_t* description) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!description) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::string(300, db::toStoredText(description)));
    return Kcad::eOk;
}

bool KcDbGroup::isSelectable() const { return db::fieldInteger(record(), kMarker, 71, 1) != 0; }

Kcad::ErrorStatus KcDbGroup::setSelectable(bool selectable) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setField(record(), kMarker, Tag::integerValue(71, selectable ? 1 : 0));
    return Kcad::eOk;
}

bool KcDbGroup::isAnonymous() const { return (db::fieldInteger(record(), kMarker, 70, 0) & 1) != 0; }

Kcad::ErrorStatus KcDbGroup::setAnonymous() {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setField(record(), kMarker, Tag::integerValue(70, 1));
    return Kcad::eOk;
}

const wchar_t* KcDbGroup::name() const {
    const ObjectRecord& self = record();
    if (self.owner) {
        for (const db::DictionaryEntry& entry : db::dictionaryEntries(*self.owner)) {
            if (entry.handle == self.handle) return keepString(db::toApiText(entry.key));
        }
    }
    return keepString(std::wstring());
}

Kcad::ErrorStatus KcDbGroup::append(KcDbObjectId id) { return append(KcDbObjectIdArray().append(id)); }

Kcad::ErrorStatus KcDbGroup::append(const KcDbObjectIdArray& ids) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    ObjectRecord& self = record();
    // Check every id before changing anything.
    for (const KcDbObjectId& id : ids) {
        const ObjectRecord* member = ObjectAccess::record(id);
        if (!member) return Kcad::eNullObjectId;
        if (member->drawing != self.drawing || !member->isEntity()) return Kcad::eInvalidInput;
        if (member->erased) return Kcad::eWasErased;
    }
    std::vector<Handle> handles = memberHandles(self);
    for (const KcDbObjectId& id : ids) {
        ObjectRecord& member = *ObjectAccess::record(id);
        if (std::find(handles.begin(), handles.end(), member.handle) != handles.end()) continue;
        handles.push_back(member.handle);
        addReactor(member, self.handle);
    }
    writeMembers(self, handles);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbGroup::remove(KcDbObjectId id) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord* member = ObjectAccess::record(id);
    if (!member) return Kcad::eNullObjectId;
    ObjectRecord& self = record();
    std::vector<Handle> handles = memberHandles(self);
    if (member->drawing != self.drawing || std::erase(handles, member->handle) == 0) return Kcad::eKeyNotFound;
    writeMembers(self, handles);
    removeReactor(*member, self.handle);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbGroup::clear() {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    if (self.drawing) {
        for (Handle handle : memberHandles(self)) {
            if (ObjectRecord* member = self.drawing->findByHandle(handle)) removeReactor(*member, self.handle);
        }
    }
    writeMembers(self, {});
    return Kcad::eOk;
}

bool KcDbGroup::has(const KcDbEntity* entity) const {
    if (!entity || entity->isNewObject()) return false;
    const ObjectRecord& self = record();
    const ObjectRecord& member = ObjectAccess::record(*entity);
    if (member.drawing != self.drawing) return false;
    const std::vector<Handle> handles = memberHandles(self);
    return std::find(handles.begin(), handles.end(), member.handle) != handles.end();
}

Kcad::UInt32 KcDbGroup::numEntities() const { return static_cast<Kcad::UInt32>(liveMembers(record()).size()); }

Kcad::UInt32 KcDbGroup::allEntityIds(KcDbObjectIdArray& ids) const {
    const std::vector<ObjectRecord*> members = liveMembers(record());
    for (const ObjectRecord* member : members) ids.append(ObjectAccess::id(member));
    return static_cast<Kcad::UInt32>(members.size());
}
