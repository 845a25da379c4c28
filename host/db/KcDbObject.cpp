// The base database object: identity, the open protocol, erase, extended data,
// extension dictionaries and persistent reactors.
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/RxMacros.h"
#include "db/TextCase.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

KCRX_DEFINE_MEMBERS(KcDbObject, KcRxObject)

const KcDbObjectId KcDbObjectId::kNull;

bool KcDbObjectId::isErased() const { return m_record && m_record->erased; }
KcDbHandle KcDbObjectId::handle() const { return m_record ? KcDbHandle(m_record->handle) : KcDbHandle(); }
KcDbDatabase* KcDbObjectId::database() const {
    return m_record && m_record->drawing ? m_record->drawing->database : nullptr;
}

void KcDbHandle::getIntoAsciiBuffer(wchar_t* buffer, size_t bufferLength) const {
    if (!buffer || bufferLength == 0) return;
    const std::string hex = db::formatHandle(m_value);
    size_t i = 0;
    for (; i < hex.size() && i + 1 < bufferLength; ++i) buffer[i] = static_cast<wchar_t>(hex[i]);
    buffer[i] = L'\0';
}

KcDbObject::KcDbObject() = default;

ObjectRecord& KcDbObject::record() const { return ObjectAccess::record(*this); }

KcDbObject::~KcDbObject() {
    // An open object deleted without close() still ends its open.
    ObjectAccess::release(*this);
}

KcDbObjectId KcDbObject::objectId() const {
    return ObjectAccess::isPending(*this) ? KcDbObjectId() : ObjectAccess::id(m_record);
}

KcDbObjectId KcDbObject::ownerId() const {
    return m_record ? ObjectAccess::id(m_record->owner) : KcDbObjectId();
}

Kcad::ErrorStatus KcDbObject::setOwnerId(KcDbObjectId owner) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord* ownerRecord = ObjectAccess::record(owner);
    ObjectRecord& self = record();
    self.owner = ownerRecord;
    if (self.drawing) db::writeOwnerHandle(self, ownerRecord ? ownerRecord->handle : 0);
    return Kcad::eOk;
}

KcDbDatabase* KcDbObject::database() const {
    return m_record && m_record->drawing ? m_record->drawing->database : nullptr;
}

KcDbHandle KcDbObject::handle() const { return m_record ? KcDbHandle(m_record->handle) : KcDbHandle(); }
bool KcDbObject::isErased() const { return m_record && m_record->erased; }
bool KcDbObject::isNewObject() const { return ObjectAccess::isPending(*this); }
bool KcDbObject::isReadEnabled() const { return true; }
bool KcDbObject::isWriteEnabled() const { return ObjectAccess::isPending(*this) || m_mode == KcDb::kForWrite; }
bool KcDbObject::isNotifyEnabled() const { return m_mode == KcDb::kForNotify; }

Kcad::ErrorStatus KcDbObject::checkWritable() const {
    return isWriteEnabled() ? Kcad::eOk : Kcad::eNotOpenForWrite;
}

const wchar_t* KcDbObject::keepString(std::wstring text) const {
    if (!m_kept) m_kept = std::make_unique<std::deque<std::wstring>>();
    m_kept->push_back(std::move(text));
    return m_kept->back().c_str();
}

namespace {

bool isProtectedLayer(const ObjectRecord& layer) {
    const std::string_view name = db::recordName(layer);
    if (name == "0" || db::namesEqual(name, "Defpoints")) return true;
    if ((db::fieldInteger(layer, {}, 70, 0) & 16) != 0 || name.find('|') != std::string_view::npos) return true;
    const auto current = layer.drawing ? layer.drawing->header.getString("$CLAYER") : std::nullopt;
    return current && db::namesEqual(*current, name);
}

void forgetGroupMembers(ObjectRecord& group) {
    for (db::TagRef tag : group.tags) {
        if (tag.code() != 340) continue;
        ObjectRecord* member = group.drawing->findByHandle(tag.handle());
        if (!member) continue;
        auto reactors = db::applicationGroupHandles(*member, "{ACAD_REACTORS");
        std::erase(reactors, group.handle);
        db::writeApplicationGroup(*member, "{ACAD_REACTORS", 330, reactors);
    }
}

}  // namespace

Kcad::ErrorStatus KcDbObject::erase(bool erasing) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    ObjectRecord& self = record();
    if (self.erased == erasing) return erasing ? Kcad::eWasErased : Kcad::eWasNotErased;
    if (erasing && self.type == db::Type::Layer && isProtectedLayer(self)) return Kcad::eCannotEraseLayer;
    if (erasing && self.type == db::Type::Group) forgetGroupMembers(self);
    self.setErased(erasing);
    if (self.kind == db::RecordKind::TableRecord && self.drawing) {
        for (db::SymbolTable& table : self.drawing->tables) {
            if (table.head == self.owner) table.invalidateIndex();
        }
    }
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbObject::close() {
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    ObjectAccess::release(*this);
    delete this;
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbObject::upgradeOpen() {
    if (ObjectAccess::isPending(*this) || m_mode == KcDb::kForWrite) return Kcad::eOk;
    ObjectRecord& self = record();
    if (self.readers > 1) return Kcad::eWasOpenForRead;
    if (db::isOnLockedLayer(self)) return Kcad::eOnLockedLayer;
    self.readers = 0;
    self.openForWrite = true;
    m_mode = KcDb::kForWrite;
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbObject::downgradeOpen() {
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    if (m_mode != KcDb::kForWrite) return Kcad::eOk;
    ObjectRecord& self = record();
    self.openForWrite = false;
    ++self.readers;
    m_mode = KcDb::kForRead;
    return Kcad::eOk;
}

KcDbObjectId KcDbObject::extensionDictionary() const {
    if (!m_record || !m_record->drawing) return KcDbObjectId();
    const auto handles = db::applicationGroupHandles(*m_record, "{ACAD_XDICTIONARY");
    if (handles.empty()) return KcDbObjectId();
    return ObjectAccess::id(m_record->drawing->findByHandle(handles.front()));
}

Kcad::ErrorStatus KcDbObject::createExtensionDictionary() {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    if (!extensionDictionary().isNull()) return Kcad::eAlreadyInDb;
    ObjectRecord& self = record();
    ObjectRecord& dictionary = db::createObject(*self.drawing, db::Type::Dictionary, &self);
    db::setField(dictionary, {}, db::Tag::string(100, "AcDbDictionary"));
    db::setField(dictionary, "AcDbDictionary", db::Tag::integerValue(280, 1));
    db::setField(dictionary, "AcDbDictionary", db::Tag::integerValue(281, 1));
    db::writeApplicationGroup(dictionary, "{ACAD_REACTORS", 330, {self.handle});
    db::writeApplicationGroup(self, "{ACAD_XDICTIONARY", 360, {dictionary.handle});
    return Kcad::eOk;
}

bool KcDbObject::hasFields() const {
    const KcDbObjectId dictionaryId = extensionDictionary();
    ObjectRecord* dictionary = ObjectAccess::record(dictionaryId);
    if (!dictionary || dictionary->erased) return false;
    bool keyIsField = false;
    for (db::TagRef tag : dictionary->tags) {
        if (tag.code() == 3) keyIsField = tag.text() == "ACAD_FIELD";
        else if ((tag.code() == 350 || tag.code() == 360) && keyIsField) {
            ObjectRecord* entry = dictionary->drawing->findByHandle(tag.handle());
            if (entry && !entry->erased) return true;
        }
    }
    return false;
}

resbuf* KcDbObject::xData(const wchar_t* appName) const {
    if (!m_record) return nullptr;
    const std::string wanted = appName ? db::toStoredText(appName) : std::string();
    db::ResbufChain chain;
    bool taking = false;
    for (const db::Tag& tag : db::extendedData(m_record->tags)) {
        if (tag.code == 1001) taking = !appName || db::namesEqual(tag.text, wanted);
        if (taking) chain.appendTag(tag, m_record->drawing);
    }
    return chain.release();
}

Kcad::ErrorStatus KcDbObject::setXData(const resbuf* xdata) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    // Validate the whole chain before changing anything.
    struct Block {
        std::string application;
        std::vector<db::Tag> items;
    };
    std::vector<Block> blocks;
    for (const resbuf* rb = xdata; rb; rb = rb->rbnext) {
        if (rb->restype == -3) continue;
        if (rb->restype == 1001) {
            if (!rb->resval.rstring) return Kcad::eInvalidInput;
            blocks.push_back({db::toStoredText(rb->resval.rstring), {}});
            if (self.drawing && !self.drawing->tableRecord("APPID", blocks.back().application)) {
                return Kcad::eRegappIdNotFound;
            }
            continue;
        }
        if (blocks.empty() || rb->restype < 1000 || rb->restype > 1071) return Kcad::eInvalidInput;
        db::Tag tag;
        if (!db::tagFromResbuf(*rb, self.drawing, tag)) return Kcad::eInvalidInput;
        blocks.back().items.push_back(std::move(tag));
    }
    for (const Block& block : blocks) db::writeExtendedData(self, block.application, block.items);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbObject::addPersistentReactor(KcDbObjectId reactor) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord* other = ObjectAccess::record(reactor);
    if (!other) return Kcad::eNullObjectId;
    ObjectRecord& self = record();
    auto reactors = db::applicationGroupHandles(self, "{ACAD_REACTORS");
    if (std::find(reactors.begin(), reactors.end(), other->handle) == reactors.end()) {
        reactors.push_back(other->handle);
        db::writeApplicationGroup(self, "{ACAD_REACTORS", 330, reactors);
    }
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbObject::removePersistentReactor(KcDbObjectId reactor) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord* other = ObjectAccess::record(reactor);
    if (!other) return Kcad::eNullObjectId;
    ObjectRecord& self = record();
    auto reactors = db::applicationGroupHandles(self, "{ACAD_REACTORS");
    if (std::erase(reactors, other->handle) == 0) return Kcad::eKeyNotFound;
    db::writeApplicationGroup(self, "{ACAD_REACTORS", 330, reactors);
    return Kcad::eOk;
}

KcDbObjectIdArray KcDbObject::getPersistentReactors() const {
    KcDbObjectIdArray ids;
    if (!m_record || !m_record->drawing) return ids;
    for (db::Handle h : db::applicationGroupHandles(*m_record, "{ACAD_REACTORS")) {
        if (ObjectRecord* r = m_record->drawing->findByHandle(h)) ids.append(ObjectAccess::id(r));
    }
    return ids;
}

Kcad::ErrorStatus kcdbOpenObject(KcDbObject*& obj, KcDbObjectId id, KcDb::OpenMode mode, bool openErased) {
    obj = nullptr;
    ObjectRecord* record = ObjectAccess::record(id);
    if (!record) return Kcad::eNullObjectId;
    if (!record->drawing) return Kcad::eUnknownHandle;
    return ObjectAccess::open(obj, *record, mode, openErased);
}

Kcad::ErrorStatus kcutNewString(const wchar_t* source, wchar_t*& copy) {
    copy = nullptr;
    if (!source) return Kcad::eInvalidInput;
    copy = db::duplicateWide(source);
    return copy ? Kcad::eOk : Kcad::eOutOfMemory;
}

void kcutDelString(wchar_t*& text) {
    std::free(text);
    text = nullptr;
}
