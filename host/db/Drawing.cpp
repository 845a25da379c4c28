// The drawing database: record store in chunks (stable addresses), handle map, sections.
#include "db/Drawing.h"

#include <charconv>

#include "db/TextCase.h"

namespace korva::db {

namespace {

// Serial numbers index this list; a destroyed drawing leaves a null slot so that
// stale entity names resolve to nothing instead of to another drawing. It is
// never destroyed: drawings held by other statics go after it at exit.
std::vector<Drawing*>& liveDrawings() {
    static auto* const drawings = new std::vector<Drawing*>{nullptr};  // serial 0 is never used
    return *drawings;
}

}  // namespace

Drawing::Drawing() {
    auto& live = liveDrawings();
    serial_ = static_cast<uint32_t>(live.size());
    live.push_back(this);
}

Drawing::~Drawing() { liveDrawings()[serial_] = nullptr; }

Drawing* Drawing::bySerial(uint32_t serial) {
    const auto& live = liveDrawings();
    return serial < live.size() ? live[serial] : nullptr;
}

ObjectRecord& Drawing::createRecord(TypeId type, RecordKind kind) {
    const uint32_t index = count_++;
    const uint32_t chunk = index >> kChunkBits;
    if (chunk >= chunks_.size()) chunks_.push_back(std::make_unique<ObjectRecord[]>(kChunkSize));
    ObjectRecord& record = chunks_[chunk][index & (kChunkSize - 1)];
    record.drawing = this;
    record.index = index;
    record.type = type;
    record.kind = kind;
    return record;
}

ObjectRecord* Drawing::record(uint32_t index) const {
    if (index >= count_) return nullptr;
    return &chunks_[index >> kChunkBits][index & (kChunkSize - 1)];
}

ObjectRecord* Drawing::findByHandle(Handle handle) const {
    auto it = handles_.find(handle);
    return it == handles_.end() ? nullptr : it->second;
}

void Drawing::indexHandle(ObjectRecord& record, Handle handle) {
    record.handle = handle;
    if (handle != 0) {
        handles_[handle] = &record;
        raiseHandseed(handle + 1);
    }
}

void Drawing::unindexHandle(ObjectRecord& record) {
    auto it = handles_.find(record.handle);
    if (it != handles_.end() && it->second == &record) handles_.erase(it);
}

SymbolTable* Drawing::table(std::string_view name) {
    for (SymbolTable& t : tables) {
        if (namesEqual(t.name, name)) return &t;
    }
    return nullptr;
}

const SymbolTable* Drawing::table(std::string_view name) const {
    return const_cast<Drawing*>(this)->table(name);
}

ObjectRecord* Drawing::tableRecord(std::string_view tableName, std::string_view recordNameToFind) const {
    const SymbolTable* t = table(tableName);
    return t ? t->find(recordNameToFind) : nullptr;
}

bool Drawing::isLayoutBlock(const ObjectRecord* blockRecord) const {
    if (!blockRecord) return false;
    if (blockRecord == modelSpace_ || blockRecord == paperSpace_) return true;
    const std::string_view name = recordName(*blockRecord);
    return name.size() >= 12 && namesEqual(name.substr(0, 12), "*Paper_Space");
}

ObjectRecord* Drawing::currentSpace() const {
    const int64_t tilemode = header.getInteger("$TILEMODE").value_or(1);
    const int64_t cvport = header.getInteger("$CVPORT").value_or(1);
    return (tilemode == 1 || cvport >= 2) ? modelSpace_ : paperSpace_;
}

void Drawing::appendToBlock(ObjectRecord& blockRecord, ObjectRecord& entity) {
    Container& c = blockRecord.ensureContainer();
    entity.owner = &blockRecord;
    if (isLayoutBlock(&blockRecord)) {
        entity.order = static_cast<uint32_t>(layoutEntities.size());
        layoutEntities.push_back(&entity);
    } else {
        entity.order = static_cast<uint32_t>(c.members.size());
    }
    c.members.push_back(&entity);
}

int Drawing::versionNumber() const { return versionNumberOf(format.version); }

int versionNumberOf(std::string_view acadver) {
    if (acadver.size() < 6 || acadver.substr(0, 2) != "AC") return 1009;
    int number = 0;
    auto [ptr, ec] = std::from_chars(acadver.data() + 2, acadver.data() + acadver.size(), number);
    (void)ptr;
    return ec == std::errc() ? number : 1009;
}

}  // namespace korva::db
