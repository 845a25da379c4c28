// Splitting records into prefix, common part, subclass runs and extended data.
#include "db/RecordParts.h"

namespace korva::db {

std::span<const FieldSpec> subclassFields(TypeId type, std::string_view marker, int occurrence) {
    if (type == Type::Dimension) {
        auto part = dimensionPartFields(marker);
        if (!part.empty()) return part;
    }
    const TypeSpec* typeSchema = entitySpec(type);
    if (!typeSchema) return {};
    for (const SubclassSpec& sub : typeSchema->subclasses) {
        if (isSameSubclass(sub.marker, marker) && occurrence-- == 0) return sub.fields;
    }
    if ((type == Type::Polyline || type == Type::Vertex) && marker != "AcDbVertex") {
        return typeSchema->subclasses.back().fields;
    }
    return {};
}

std::span<const FieldSpec> runFields(TypeId type, const std::vector<SubclassRun>& runs, size_t index) {
    int occurrence = 0;
    for (size_t i = 0; i < index; ++i) occurrence += runs[i].marker == runs[index].marker ? 1 : 0;
    return subclassFields(type, runs[index].marker, occurrence);
}

namespace {

int64_t integerIn(const std::vector<Tag>& tags, int code, int64_t fallback) {
    for (const Tag& t : tags) {
        if (t.code == code && t.kind == TagKind::Integer) return t.integer;
    }
    return fallback;
}

std::vector<std::string_view> markersFor(TypeId type, const std::vector<Tag>& tags) {
    std::vector<std::string_view> markers;
    if (type == Type::Polyline) return {polylineMarker(integerIn(tags, 70, 0))};
    if (type == Type::Insert) {
        for (const Tag& t : tags) {
            if (t.code == 100 && t.text == "AcDbMInsertBlock") return {"AcDbMInsertBlock"};
        }
    }
    if (type == Type::Vertex) return {"AcDbVertex", vertexMarker(integerIn(tags, 70, 0))};
    if (type == Type::Dimension) {
        const int64_t kind = integerIn(tags, 70, 0) & 7;
        markers.push_back("AcDbDimension");
        if (kind == 0 || kind == 1) markers.push_back("AcDbAlignedDimension");
        if (kind == 0) markers.push_back("AcDbRotatedDimension");
        if (kind >= 2) markers.push_back(dimensionPartMarker(kind));
        return markers;
    }
    if (const TypeSpec* typeSchema = entitySpec(type)) {
        for (const SubclassSpec& sub : typeSchema->subclasses) markers.push_back(sub.marker);
    }
    return markers;
}

bool listsCode(std::span<const FieldSpec> fields, int code) {
    for (const FieldSpec& f : fields) {
        if (f.code == code) return true;
    }
    return false;
}

// The run of the subclass that lists a code, created (as an inferred run) when missing.
SubclassRun& implicitRunFor(TypeId type, const std::vector<Tag>& tags, std::vector<SubclassRun>& runs, int code) {
    const std::vector<std::string_view> markers = markersFor(type, tags);
    std::string_view chosen = markers.empty() ? std::string_view{} : markers.back();
    for (std::string_view marker : markers) {
        if (listsCode(subclassFields(type, marker), code)) {
            chosen = marker;
            break;
        }
    }
    for (SubclassRun& run : runs) {
        if (run.implicit && run.marker == chosen) return run;
    }
    runs.push_back({std::string(chosen), {}, true});
    return runs.back();
}

}  // namespace

std::vector<std::string_view> expectedMarkers(const ObjectRecord& record) {
    return markersFor(record.type, record.tags.decode());
}

RecordParts splitRecord(const ObjectRecord& record) {
    RecordParts parts;
    std::vector<Tag> tags = record.tags.decode();
    size_t i = 0;
    // Extended data.
    size_t xdata = tags.size();
    for (size_t k = 0; k < tags.size(); ++k) {
        if (tags[k].code == 1001) {
            xdata = k;
            break;
        }
        if (tags[k].code == 100) parts.markers = true;
    }
    parts.xdata.assign(tags.begin() + static_cast<std::ptrdiff_t>(xdata), tags.end());
    // Prefix: handle, 102 groups and owner.
    bool inGroup = false;
    for (; i < xdata; ++i) {
        const Tag& t = tags[i];
        if (t.code == 102) {
            inGroup = !t.text.empty() && t.text.front() == '{';
        } else if (!inGroup && t.code != 5 && t.code != 105 && t.code != 330) {
            break;
        }
        parts.prefix.push_back(t);
    }
    const bool entity = record.isEntity() || record.kind == RecordKind::BlockBegin || record.kind == RecordKind::BlockEnd;
    if (parts.markers) {
        SubclassRun* run = nullptr;
        for (; i < xdata; ++i) {
            const Tag& t = tags[i];
            if (t.code == 100) {
                if (entity && t.text == "AcDbEntity" && parts.runs.empty()) {
                    run = nullptr;
                    continue;
                }
                parts.runs.push_back({t.text, {}});
                run = &parts.runs.back();
                continue;
            }
            if (run) {
                run->tags.push_back(t);
            } else if (entity && (isCommonEntityCode(t.code) || !entitySpec(record.type))) {
                parts.common.push_back(t);
            } else if (entity) {
                // Subclass groups without their marker: a run of the subclass that lists them.
                implicitRunFor(record.type, tags, parts.runs, t.code).tags.push_back(t);
            } else {
                parts.runs.push_back({{}, {t}});
                run = &parts.runs.back();
            }
        }
        return parts;
    }
    // Without markers: common groups, then each group in the first subclass that lists it.
    const std::vector<std::string_view> markers = entity ? markersFor(record.type, tags) : std::vector<std::string_view>{};
    for (std::string_view marker : markers) parts.runs.push_back({std::string(marker), {}});
    if (parts.runs.empty()) parts.runs.push_back({{}, {}});
    for (; i < xdata; ++i) {
        const Tag& t = tags[i];
        if (entity && isCommonEntityCode(t.code)) {
            parts.common.push_back(t);
            continue;
        }
        SubclassRun* target = &parts.runs.back();
        for (size_t r = 0; r < parts.runs.size(); ++r) {
            if (listsCode(runFields(record.type, parts.runs, r), t.code)) {
                target = &parts.runs[r];
                break;
            }
        }
        target->tags.push_back(t);
    }
    return parts;
}

TagList joinParts(const RecordParts& parts, bool isEntity) {
    TagListBuilder builder;
    for (const Tag& t : parts.prefix) builder.add(t);
    if (parts.markers && isEntity) builder.addString(100, "AcDbEntity");
    for (const Tag& t : parts.common) builder.add(t);
    for (const SubclassRun& run : parts.runs) {
        if (parts.markers && !run.marker.empty() && !run.implicit) builder.addString(100, run.marker);
        for (const Tag& t : run.tags) builder.add(t);
    }
    for (const Tag& t : parts.xdata) builder.add(t);
    return builder.finish();
}

}  // namespace korva::db
