// Owner links and format-dependent tags of records that join a drawing.
#include "db/tables/ResidentRecords.h"

#include <vector>

#include "db/Drawing.h"
#include "db/RecordTags.h"

namespace korva::db {

namespace {

bool isModernFormat(const ObjectRecord& record) { return !record.drawing || record.drawing->versionNumber() >= 1012; }

}  // namespace

void linkToOwner(ObjectRecord& record, ObjectRecord* owner) {
    record.owner = owner;
    if (isModernFormat(record)) writeOwnerHandle(record, owner ? owner->handle : 0);
}

void fitTagsToFormat(ObjectRecord& record) {
    if (isModernFormat(record)) return;
    std::vector<Tag> kept;
    bool inGroup = false;
    for (TagRef tag : record.tags) {
        const int code = tag.code();
        if (code == 102) {
            inGroup = !tag.text().empty() && tag.text().front() == '{';
            continue;
        }
        if (inGroup || code == 100 || code == 330 || code == 360 || code == 370) continue;
        kept.push_back(tag.toTag());
    }
    record.tags = TagList::encode(kept);
}

}  // namespace korva::db
