// Handle, owner, 102-group and extended-data tags of records.
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

void writeApplicationGroup(ObjectRecord& record, std::string_view groupName, int code, const std::vector<Handle>& handles) {
    std::vector<Tag> tags = record.tags.decode();
    // Remove the group where it stands, remembering its place.
    size_t place = tags.size();
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code == 100 || tags[i].code == 1001) break;
        if (tags[i].code == 102 && tags[i].text == groupName) {
            size_t end = i + 1;
            while (end < tags.size() && !(tags[end].code == 102 && tags[end].text == "}")) ++end;
            tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(i),
                       tags.begin() + static_cast<std::ptrdiff_t>(std::min(end + 1, tags.size())));
            place = i;
            break;
        }
    }
    if (!handles.empty()) {
        if (place == tags.size()) {
            // Reactors come first after the handle, the extension dictionary after them.
            place = 0;
            for (size_t i = 0; i < tags.size(); ++i) {
                const Tag& t = tags[i];
                if (t.code == 5 || t.code == 105) {
                    place = i + 1;
                } else if (t.code == 102 && t.text == "{ACAD_REACTORS" && groupName != "{ACAD_REACTORS") {
                    size_t end = i + 1;
                    while (end < tags.size() && !(tags[end].code == 102 && tags[end].text == "}")) ++end;
                    place = end + 1;
                    i = end;
                } else {
                    break;
                }
            }
        }
        std::vector<Tag> group{Tag::string(102, groupName)};
        for (Handle h : handles) group.push_back(Tag::handle(code, h));
        group.push_back(Tag::string(102, "}"));
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(std::min(place, tags.size())), group.begin(), group.end());
    }
    record.tags = TagList::encode(tags);
}

std::vector<Tag> extendedData(const TagList& tags) {
    std::vector<Tag> out;
    bool inside = false;
    for (TagRef t : tags) {
        if (t.code() == 1001) inside = true;
        if (inside) out.push_back(t.toTag());
    }
    return out;
}

void writeExtendedData(ObjectRecord& record, std::string_view application, const std::vector<Tag>& items) {
    std::vector<Tag> tags = record.tags.decode();
    size_t start = tags.size();
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code == 1001 && tags[i].text == application) {
            start = i;
            break;
        }
    }
    size_t end = start;
    if (start < tags.size()) {
        end = start + 1;
        while (end < tags.size() && tags[end].code != 1001) ++end;
        tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(start), tags.begin() + static_cast<std::ptrdiff_t>(end));
    }
    if (!items.empty()) {
        std::vector<Tag> block{Tag::string(1001, application)};
        block.insert(block.end(), items.begin(), items.end());
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(std::min(start, tags.size())), block.begin(), block.end());
    }
    record.tags = TagList::encode(tags);
}

TagList copyWithoutIdentity(const TagList& tags) {
    TagListBuilder builder;
    bool prefix = true;
    bool inGroup = false;
    for (TagRef t : tags) {
        const int code = t.code();
        if (code == 100 || code == 1001) prefix = false;
        if (prefix) {
            if (code == 102) {
                inGroup = !t.text().empty() && t.text().front() == '{';
                continue;
            }
            if (inGroup || code == 5 || code == 105 || code == 330) continue;
        }
        builder.add(t);
    }
    return builder.finish();
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
