#include "db/RecordTags.h"

#include <charconv>
#include <vector>

namespace korva::db {

namespace {

// Walks the prefix of a record: the tags before its first subclass marker.
template <class Visit>
void walkPrefix(const TagList& tags, Visit&& visit) {
    bool inGroup = false;
    uint32_t index = 0;
    for (TagRef tag : tags) {
        if (tag.code() == 100 || tag.code() == 1001) return;
        if (tag.code() == 102) {
            inGroup = !tag.text().empty() && tag.text().front() == '{';
        } else if (!visit(tag, index, inGroup)) {
            return;
        }
        ++index;
    }
}

}  // namespace

std::string formatHandle(Handle handle) {
    char buf[20];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, handle, 16);
    (void)ec;
    for (char* p = buf; p < end; ++p) {
        if (*p >= 'a' && *p <= 'f') *p = static_cast<char>(*p - 32);
    }
    return std::string(buf, end);
}

bool readOwnHandle(const ObjectRecord& record, Handle& handle) {
    const int code = handleCodeOf(record.type);
    bool found = false;
    // R12 records have no subclass markers: their handle still comes first.
    for (TagRef tag : record.tags) {
        if (tag.code() == code) {
            if (tag.kind() == TagKind::Handle) {
                handle = tag.handle();
                found = true;
            }
            break;
        }
        if (tag.code() == 100 || tag.code() == 1001) break;
    }
    return found;
}

bool hasHandleTag(const ObjectRecord& record) {
    const int code = handleCodeOf(record.type);
    for (TagRef tag : record.tags) {
        if (tag.code() == code) return true;
        if (tag.code() == 100 || tag.code() == 1001) break;
    }
    return false;
}

bool readOwnerHandle(const ObjectRecord& record, Handle& owner) {
    bool found = false;
    walkPrefix(record.tags, [&](TagRef tag, uint32_t, bool inGroup) {
        if (!inGroup && tag.code() == 330) {
            if (tag.kind() == TagKind::Handle) {
                owner = tag.handle();
                found = true;
            }
            return false;
        }
        return true;
    });
    return found;
}

void writeOwnHandle(ObjectRecord& record, Handle handle) {
    const int code = handleCodeOf(record.type);
    std::vector<Tag> tags = record.tags.decode();
    bool replaced = false;
    for (Tag& tag : tags) {
        if (tag.code == code) {
            tag = Tag::handle(code, handle);
            replaced = true;
            break;
        }
        if (tag.code == 100 || tag.code == 1001) break;
    }
    if (!replaced) tags.insert(tags.begin(), Tag::handle(code, handle));
    record.tags = TagList::encode(tags);
}

void writeOwnerHandle(ObjectRecord& record, Handle owner) {
    std::vector<Tag> tags = record.tags.decode();
    bool inGroup = false;
    size_t insertAt = 0;
    for (size_t i = 0; i < tags.size(); ++i) {
        const Tag& tag = tags[i];
        if (tag.code == 100 || tag.code == 1001) break;
        if (tag.code == 102) {
            inGroup = !tag.text.empty() && tag.text.front() == '{';
            insertAt = i + 1;
            continue;
        }
        if (inGroup) continue;
        if (tag.code == 330) {
            tags[i] = Tag::handle(330, owner);
            record.tags = TagList::encode(tags);
            return;
        }
        if (tag.code == 5 || tag.code == 105) insertAt = i + 1;
    }
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(insertAt), Tag::handle(330, owner));
    record.tags = TagList::encode(tags);
}

std::vector<Handle> applicationGroupHandles(const ObjectRecord& record, std::string_view groupName) {
    std::vector<Handle> handles;
    bool inside = false;
    for (TagRef tag : record.tags) {
        if (tag.code() == 102) {
            if (inside) break;
            inside = tag.text() == groupName;
            continue;
        }
        if (tag.code() == 100 || tag.code() == 1001) break;
        if (inside && tag.kind() == TagKind::Handle) handles.push_back(tag.handle());
    }
    return handles;
}

uint32_t extendedDataStart(const TagList& tags) {
    uint32_t index = 0;
    for (TagRef tag : tags) {
        if (tag.code() == 1001) return index;
        ++index;
    }
    return index;
}

bool hasSubclassMarkers(const TagList& tags) {
    for (TagRef tag : tags) {
        if (tag.code() == 100) return true;
        if (tag.code() == 1001) return false;
    }
    return false;
}

}  // namespace korva::db
