// Group look-up by subclass run, and placement of new groups in DXF order.
#include "db/RecordFields.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "db/EntitySchema.h"
#include "db/RecordParts.h"

namespace korva::db {

size_t markerInsertionPoint(const ObjectRecord& record, const std::vector<Tag>& tags, std::string_view marker,
                            size_t xdata);

namespace {

// Walks the tags of a subclass (or of the whole record before its extended data
// when the record has no subclass markers), outside 102 groups.
template <class Visit>
void walkSubclass(const TagList& tags, std::string_view marker, Visit&& visit) {
    const bool markers = [&] {
        for (TagRef t : tags) {
            if (t.code() == 100) return true;
            if (t.code() == 1001) return false;
        }
        return false;
    }();
    bool inside = !markers || marker.empty();
    bool inGroup = false;
    uint32_t index = 0;
    for (TagRef t : tags) {
        const int code = t.code();
        if (code == 1001) return;
        if (code == 102) {
            inGroup = !t.text().empty() && t.text().front() == '{';
        } else if (code == 100 && markers) {
            inside = marker.empty() || isSameSubclass(marker, t.text());
        } else if (inside && !inGroup) {
            if (!visit(t, index)) return;
        }
        ++index;
    }
}

int fieldIndex(std::span<const FieldSpec> fields, int code) {
    for (size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].code == code) return static_cast<int>(i);
    }
    return -1;
}

// The position in a tag vector where a missing group belongs.
size_t insertionPoint(const ObjectRecord& record, const std::vector<Tag>& tags, std::string_view marker, int code,
                      bool& needsMarker) {
    needsMarker = false;
    size_t xdata = tags.size();
    bool markers = false;
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code == 1001) {
            xdata = i;
            break;
        }
        if (tags[i].code == 100) markers = true;
    }
    const bool common = marker == kEntityMarker;
    const auto fields = subclassFields(record.type, marker);
    const int wanted = common ? commonEntityOrder(code) : fieldIndex(fields, code);
    auto orderOf = [&](int otherCode) { return common ? commonEntityOrder(otherCode) : fieldIndex(fields, otherCode); };

    if (!markers) {
        // One run: common groups first, then the type's groups in their order.
        for (size_t i = 0; i < xdata; ++i) {
            const int c = tags[i].code;
            if (c == 5 || c == 105 || c == 330 || c == 102) continue;
            if (common) {
                if (!isCommonEntityCode(c) || (wanted >= 0 && commonEntityOrder(c) > wanted)) return i;
            } else if (!isCommonEntityCode(c)) {
                const int other = orderOf(c);
                if (wanted >= 0 && other > wanted) return i;
            }
        }
        return xdata;
    }

    if (marker.empty()) return xdata;  // no subclass named: the end of the record's data

    // Find the run of the marker; the new group goes before the first later group.
    const RunRange run = findRun(tags, marker);
    if (!run.found) {
        needsMarker = true;
        return markerInsertionPoint(record, tags, marker, xdata);
    }
    const size_t runStart = run.begin, runEnd = run.end;
    for (size_t i = runStart; i < runEnd; ++i) {
        const int other = orderOf(tags[i].code);
        if (wanted >= 0 && other > wanted) return i;
    }
    return runEnd;
}

}  // namespace

bool findField(const ObjectRecord& record, std::string_view marker, int code, TagRef& out) {
    bool found = false;
    walkSubclass(record.tags, marker, [&](TagRef t, uint32_t) {
        if (t.code() != code) return true;
        out = t;
        found = true;
        return false;
    });
    return found;
}

bool hasField(const ObjectRecord& record, std::string_view marker, int code) {
    TagRef unused;
    return findField(record, marker, code, unused);
}

double fieldReal(const ObjectRecord& record, std::string_view marker, int code, double fallback) {
    TagRef t;
    return findField(record, marker, code, t) && (t.isNumeric() || t.isPoint()) ? t.real() : fallback;
}

int64_t fieldInteger(const ObjectRecord& record, std::string_view marker, int code, int64_t fallback) {
    TagRef t;
    return findField(record, marker, code, t) && t.isNumeric() ? t.integer() : fallback;
}

std::string_view fieldText(const ObjectRecord& record, std::string_view marker, int code, std::string_view fallback) {
    TagRef t;
    return findField(record, marker, code, t) && t.kind() == TagKind::String ? t.text() : fallback;
}

KcGePoint3d fieldPoint(const ObjectRecord& record, std::string_view marker, int code, const KcGePoint3d& fallback) {
    TagRef t;
    return findField(record, marker, code, t) && t.isPoint() ? t.point() : fallback;
}

KcGeVector3d fieldVector(const ObjectRecord& record, std::string_view marker, int code, const KcGeVector3d& fallback) {
    TagRef t;
    if (!findField(record, marker, code, t) || !t.isPoint()) return fallback;
    return t.point().asVector();
}

Handle fieldHandle(const ObjectRecord& record, std::string_view marker, int code) {
    TagRef t;
    return findField(record, marker, code, t) ? t.handle() : 0;
}

std::vector<TagRef> fieldsOf(const ObjectRecord& record, std::string_view marker, int code) {
    std::vector<TagRef> out;
    walkSubclass(record.tags, marker, [&](TagRef t, uint32_t) {
        if (t.code() == code) out.push_back(t);
        return true;
    });
    return out;
}

void setField(ObjectRecord& record, std::string_view marker, const Tag& value) {
    int64_t at = -1;
    walkSubclass(record.tags, marker, [&](TagRef t, uint32_t index) {
        if (t.code() != value.code) return true;
        at = index;
        return false;
    });
    std::vector<Tag> tags = record.tags.decode();
    if (at >= 0) {
        Tag& existing = tags[static_cast<size_t>(at)];
        Tag replacement = value;
        // A 2D point stays a 10/20 pair when written back with z = 0.
        if (existing.kind == TagKind::Point2 && value.kind == TagKind::Point3 && value.xyz[2] == 0.0) {
            replacement.kind = TagKind::Point2;
        }
        existing = replacement;
    } else {
        bool needsMarker = false;
        const size_t pos = insertionPoint(record, tags, marker, value.code, needsMarker);
        std::vector<Tag> inserted;
        if (needsMarker) inserted.push_back(Tag::string(100, marker));
        inserted.push_back(value);
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(pos), inserted.begin(), inserted.end());
    }
    record.tags = TagList::encode(tags);
}

bool removeField(ObjectRecord& record, std::string_view marker, int code) {
    int64_t at = -1;
    walkSubclass(record.tags, marker, [&](TagRef t, uint32_t index) {
        if (t.code() != code) return true;
        at = index;
        return false;
    });
    if (at < 0) return false;
    std::vector<Tag> tags = record.tags.decode();
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(at));
    record.tags = TagList::encode(tags);
    return true;
}

RunRange findRun(const std::vector<Tag>& tags, std::string_view marker) {
    RunRange range;
    size_t xdata = tags.size();
    bool markers = false;
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code == 1001) {
            xdata = i;
            break;
        }
        if (tags[i].code == 100) markers = true;
    }
    range.begin = range.end = xdata;
    if (!markers) {
        range.begin = 0;
        range.found = true;
        return range;
    }
    for (size_t i = 0; i < xdata; ++i) {
        if (tags[i].code != 100) continue;
        if (range.found) {
            range.end = i;
            return range;
        }
        if (isSameSubclass(marker, tags[i].text)) {
            range.found = true;
            range.begin = i + 1;
        }
    }
    return range;
}

void replaceRun(ObjectRecord& record, std::string_view marker, int from, int until, const std::vector<Tag>& replacement) {
    std::vector<Tag> tags = record.tags.decode();
    const RunRange run = findRun(tags, marker);
    size_t first = run.end;
    for (size_t i = run.begin; i < run.end; ++i) {
        if (tags[i].code == from) {
            first = i;
            break;
        }
    }
    size_t last = first;
    while (last < run.end && tags[last].code != until) ++last;
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(first), tags.begin() + static_cast<std::ptrdiff_t>(last));
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(first), replacement.begin(), replacement.end());
    record.tags = TagList::encode(tags);
}

void replaceGroups(ObjectRecord& record, std::string_view marker, std::initializer_list<int> codes,
                   const std::vector<Tag>& replacement) {
    std::vector<Tag> tags = record.tags.decode();
    const RunRange run = findRun(tags, marker);
    std::vector<Tag> kept(tags.begin(), tags.begin() + static_cast<std::ptrdiff_t>(run.begin));
    if (!run.found) kept.push_back(Tag::string(100, marker));  // a missing subclass goes before the extended data
    std::optional<size_t> insertAt;
    bool inGroup = false;
    for (size_t i = run.begin; i < run.end; ++i) {
        const Tag& tag = tags[i];
        if (tag.code == 102) inGroup = !tag.text.empty() && tag.text.front() == '{';
        const bool matches = !inGroup && tag.code != 102 && std::find(codes.begin(), codes.end(), tag.code) != codes.end();
        if (matches) {
            if (!insertAt) insertAt = kept.size();
            continue;
        }
        kept.push_back(tag);
    }
    const size_t at = insertAt.value_or(kept.size());
    kept.insert(kept.begin() + static_cast<std::ptrdiff_t>(at), replacement.begin(), replacement.end());
    kept.insert(kept.end(), tags.begin() + static_cast<std::ptrdiff_t>(run.end), tags.end());
    record.tags = TagList::encode(kept);
}

// Where a missing subclass run goes: after the runs that precede it in the type's order.
size_t markerInsertionPoint(const ObjectRecord& record, const std::vector<Tag>& tags, std::string_view marker,
                            size_t xdata) {
    const TypeSpec* typeSchema = entitySpec(record.type);
    // The markers that come before this one in the type's order.
    std::vector<std::string_view> before{kEntityMarker};
    if (typeSchema) {
        for (const SubclassSpec& sub : typeSchema->subclasses) {
            if (sub.marker == marker) break;
            before.push_back(sub.marker);
        }
    }
    size_t position = xdata;
    bool afterKnown = false;
    for (size_t i = 0; i < xdata; ++i) {
        if (tags[i].code != 100) continue;
        bool known = false;
        for (std::string_view m : before) known = known || tags[i].text == m;
        if (known) {
            afterKnown = true;
            continue;
        }
        if (afterKnown) {
            position = i;
            break;
        }
    }
    return position;
}

}  // namespace korva::db
