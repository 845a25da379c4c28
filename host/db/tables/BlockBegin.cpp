// Reading and writing the BLOCK entity's groups on behalf of its block record.
#include "db/tables/BlockBegin.h"

#include <vector>

#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/tables/TableAccess.h"

namespace korva::db {

namespace {

bool isPending(const ObjectRecord& record) { return record.drawing == nullptr; }

}  // namespace

const ObjectRecord* blockBeginOf(const ObjectRecord& blockRecord) {
    if (blockRecord.container && blockRecord.container->begin) return blockRecord.container->begin;
    return isPending(blockRecord) ? &blockRecord : nullptr;
}

ObjectRecord& blockBeginForWrite(ObjectRecord& blockRecord) {
    if (isPending(blockRecord)) return blockRecord;
    if (!blockRecord.container || !blockRecord.container->begin) ensureBlockEnds(*blockRecord.drawing, blockRecord);
    return *blockRecord.container->begin;
}

int64_t blockFlags(const ObjectRecord& blockRecord) {
    const ObjectRecord* begin = blockBeginOf(blockRecord);
    return begin ? fieldInteger(*begin, kBlockBeginMarker, 70, 0) : 0;
}

void setBlockFlags(ObjectRecord& blockRecord, int64_t flags) {
    setField(blockBeginForWrite(blockRecord), kBlockBeginMarker, Tag::integerValue(70, flags));
}

void moveStagedBlockGroups(ObjectRecord& blockRecord) {
    if (!blockRecord.container || !blockRecord.container->begin) return;
    std::vector<Tag> tags = blockRecord.tags.decode();
    std::vector<Tag> staged;
    std::vector<Tag> kept;
    bool inStaged = false;
    for (Tag& tag : tags) {
        if (tag.code == 100 || tag.code == 1001) inStaged = tag.code == 100 && tag.text == kBlockBeginMarker;
        if (inStaged) {
            if (tag.code != 100) staged.push_back(std::move(tag));
        } else {
            kept.push_back(std::move(tag));
        }
    }
    if (kept.size() == tags.size()) return;
    blockRecord.tags = TagList::encode(kept);
    ObjectRecord& begin = *blockRecord.container->begin;
    for (const Tag& tag : staged) setField(begin, kBlockBeginMarker, tag);
}

void renameBlock(ObjectRecord& blockRecord, std::string_view name) {
    setField(blockRecord, tableRecordMarker(Type::BlockRecord), Tag::string(2, name));
    if (!blockRecord.container || !blockRecord.container->begin) return;
    ObjectRecord& begin = *blockRecord.container->begin;
    setField(begin, kBlockBeginMarker, Tag::string(2, name));
    if (hasField(begin, kBlockBeginMarker, 3)) setField(begin, kBlockBeginMarker, Tag::string(3, name));
}

}  // namespace korva::db
