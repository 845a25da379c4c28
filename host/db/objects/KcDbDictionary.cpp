// Dictionaries: keyed look-up of owned objects, adding and removing entries,
// and iteration in key order. Erased objects are invisible to look-ups, counts
// and iteration. In the group dictionary a key starting with "*" is replaced by
// a fresh "*A<n>", so that every anonymous group keeps its own entry.
#include <algorithm>

#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/TextCase.h"
#include "db/objects/DictionaryEntries.h"
#include "db/objects/ObjectOwnership.h"
#include "db/tables/ResidentRecords.h"
#include "kcdbdatabase.h"

using korva::db::DictionaryEntry;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

namespace {

// The live entry of a key, or null.
ObjectRecord* findLive(const ObjectRecord& dictionary, std::string_view key, std::string* storedKey = nullptr) {
    for (const DictionaryEntry& entry : db::dictionaryEntries(dictionary)) {
        if (!db::namesEqual(entry.key, key)) continue;
        if (ObjectRecord* object = db::liveEntryObject(dictionary, entry)) {
            if (storedKey) *storedKey = entry.key;
            return object;
        }
    }
    return nullptr;
}

// Removes the selected entries; each removed object that this dictionary owned is left without owner.
size_t removeEntries(ObjectRecord& dictionary, const std::function<bool(const DictionaryEntry&)>& select,
                     KcDbObjectId* removedId = nullptr) {
    const auto removed = db::removeDictionaryEntries(dictionary, select);
    for (const DictionaryEntry& entry : removed) {
        ObjectRecord* object = dictionary.drawing->findByHandle(entry.handle);
        if (!object) continue;
        db::detachFromOwner(*object, dictionary);
        if (removedId) *removedId = ObjectAccess::id(object);
    }
    return removed.size();
}

}  // namespace

Kcad::ErrorStatus KcDbDictionary::getAt(const wchar_t* key, KcDbObjectId& id) const {
    id = KcDbObjectId();
    if (!key) return Kcad::eInvalidInput;
    if (ObjectAccess::isPending(*this)) return Kcad::eKeyNotFound;
    ObjectRecord* object = findLive(record(), db::toStoredText(key));
    if (!object) return Kcad::eKeyNotFound;
    id = ObjectAccess::id(object);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbDictionary::getAt(const wchar_t* key, KcDbObject*& object, KcDb::OpenMode mode) const {
    object = nullptr;
    KcDbObjectId id;
    if (Kcad::ErrorStatus status = getAt(key, id); status != Kcad::eOk) return status;
    return kcdbOpenObject(object, id, mode);
}

bool KcDbDictionary::has(const wchar_t* key) const {
    KcDbObjectId id;
    return getAt(key, id) == Kcad::eOk;
}

bool KcDbDictionary::has(KcDbObjectId id) const {
    const ObjectRecord* wanted = ObjectAccess::record(id);
    if (!wanted || ObjectAccess::isPending(*this)) return false;
    const ObjectRecord& self = record();
    for (const DictionaryEntry& entry : db::dictionaryEntries(self)) {
        if (db::liveEntryObject(self, entry) == wanted) return true;
    }
    return false;
}

Kcad::ErrorStatus KcDbDictionary::setAt(const wchar_t* key, KcDbObject* object, KcDbObjectId& newId) {
    newId = KcDbObjectId();
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    if (!key || !*key) return Kcad::eInvalidKey;
    if (!object) return Kcad::eNullPtr;
    if (!object->isNewObject()) return Kcad::eAlreadyInDb;
    if (ObjectAccess::record(*object).kind != db::RecordKind::Object) return Kcad::eInvalidInput;

    ObjectRecord& self = record();
    std::string stored = db::toStoredText(key);
    if (stored.front() == '*' && db::isGroupDictionary(self)) {
        stored = db::nextAnonymousGroupKey(self);
    } else {
        removeEntries(self, [&](const DictionaryEntry& entry) { return db::namesEqual(entry.key, stored); });
    }

    db::Drawing& drawing = *self.drawing;
    ObjectRecord& resident = ObjectAccess::adopt(*object, drawing, db::RecordKind::Object);
    db::attachToOwner(resident, self);
    drawing.objects.push_back(&resident);
    db::insertDictionaryEntry(self, stored, resident.handle, isHardOwner() ? 360 : 350);
    newId = ObjectAccess::id(&resident);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbDictionary::remove(const wchar_t* key) {
    KcDbObjectId unused;
    return remove(key, unused);
}

Kcad::ErrorStatus KcDbDictionary::remove(const wchar_t* key, KcDbObjectId& removedId) {
    removedId = KcDbObjectId();
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!key) return Kcad::eInvalidInput;
    if (ObjectAccess::isPending(*this)) return Kcad::eKeyNotFound;
    const std::string stored = db::toStoredText(key);
    ObjectRecord& self = record();
    const size_t count =
        removeEntries(self, [&](const DictionaryEntry& entry) { return db::namesEqual(entry.key, stored); }, &removedId);
    return count > 0 ? Kcad::eOk : Kcad::eKeyNotFound;
}

Kcad::ErrorStatus KcDbDictionary::remove(KcDbObjectId id) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    const ObjectRecord* wanted = ObjectAccess::record(id);
    if (!wanted) return Kcad::eNullObjectId;
    if (ObjectAccess::isPending(*this)) return Kcad::eKeyNotFound;
    ObjectRecord& self = record();
    if (wanted->drawing != self.drawing) return Kcad::eKeyNotFound;
    const size_t count = removeEntries(self, [&](const DictionaryEntry& entry) { return entry.handle == wanted->handle; });
    return count > 0 ? Kcad::eOk : Kcad::eKeyNotFound;
}

Kcad::ErrorStatus KcDbDictionary::nameAt(KcDbObjectId id, wchar_t*& key) const {
    key = nullptr;
    const ObjectRecord* wanted = ObjectAccess::record(id);
    if (!wanted) return Kcad::eNullObjectId;
    if (ObjectAccess::isPending(*this)) return Kcad::eKeyNotFound;
    const ObjectRecord& self = record();
    for (const DictionaryEntry& entry : db::dictionaryEntries(self)) {
        if (db::liveEntryObject(self, entry) != wanted) continue;
        key = db::duplicateWide(db::toApiText(entry.key));
        return key ? Kcad::eOk : Kcad::eOutOfMemory;
    }
    return Kcad::eKeyNotFound;
}

Kcad::Int32 KcDbDictionary::numEntries() const {
    if (ObjectAccess::isPending(*this)) return 0;
    const ObjectRecord& self = record();
    const auto entries = db::dictionaryEntries(self);
    return static_cast<Kcad::Int32>(std::count_if(entries.begin(), entries.end(), [&](const DictionaryEntry& entry) {
        return db::liveEntryObject(self, entry) != nullptr;
    }));
}

KcDbDictionaryIterator* KcDbDictionary::newIterator() const {
    KcArray<KcDbDictionaryIterator::Entry> listed;
    if (!ObjectAccess::isPending(*this)) {
        const ObjectRecord& self = record();
        std::vector<std::pair<std::string, KcDbDictionaryIterator::Entry>> sorted;
        for (const DictionaryEntry& entry : db::dictionaryEntries(self)) {
            if (ObjectRecord* object = db::liveEntryObject(self, entry)) {
                sorted.push_back({db::foldName(entry.key), {db::toApiText(entry.key), ObjectAccess::id(object)}});
            }
        }
        std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        for (auto& [folded, entry] : sorted) listed.append(std::move(entry));
    }
    return new KcDbDictionaryIterator(std::move(listed));
}

bool KcDbDictionary::isHardOwner() const {
    return db::fieldInteger(record(), db::kDictionaryMarker, 280, 0) == 1;
}

Kcad::ErrorStatus KcDbDictionary::setHardOwner(bool hard) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const db::Tag flag = db::Tag::integerValue(280, hard ? 1 : 0);
    if (db::hasField(self, db::kDictionaryMarker, 280)) {
        db::setField(self, db::kDictionaryMarker, flag);
        return Kcad::eOk;
    }
    // The flag opens the subclass, before the cloning flag (281) and the entries.
    std::vector<db::Tag> tags = self.tags.decode();
    auto marker = std::find_if(tags.begin(), tags.end(), [](const db::Tag& tag) {
        return tag.code == 100 && tag.text == db::kDictionaryMarker;
    });
    tags.insert(marker == tags.end() ? tags.begin() + db::extendedDataStart(self.tags) : marker + 1, flag);
    self.tags = db::TagList::encode(tags);
    return Kcad::eOk;
}

// --- iterator ---------------------------------------------------------------

KcDbDictionaryIterator::~KcDbDictionaryIterator() = default;

bool KcDbDictionaryIterator::done() const { return m_position >= m_entries.length(); }

bool KcDbDictionaryIterator::next() {
    if (!done()) ++m_position;
    return !done();
}

const wchar_t* KcDbDictionaryIterator::name() const {
    return done() ? nullptr : m_entries[m_position].key.c_str();
}

KcDbObjectId KcDbDictionaryIterator::objectId() const {
    return done() ? KcDbObjectId() : m_entries[m_position].id;
}

Kcad::ErrorStatus KcDbDictionaryIterator::getObject(KcDbObject*& object, KcDb::OpenMode mode) const {
    object = nullptr;
    if (done()) return Kcad::eInvalidIndex;
    return kcdbOpenObject(object, m_entries[m_position].id, mode);
}
