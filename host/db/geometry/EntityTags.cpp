// The data tags of an entity and the placement of groups it lacks.
#include "db/geometry/EntityTags.h"

#include "db/EntitySchema.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"

namespace korva::db::geometry {

EntityTags::EntityTags(const ObjectRecord& record) : tags(record.tags.decode()) {
    const bool markers = hasSubclassMarkers(record.tags);
    data_.assign(tags.size(), false);
    run_.assign(tags.size(), 0);
    markers_.emplace_back();
    xdata_ = tags.size();
    bool prefix = markers;  // with markers, everything before the first 100 is identity
    bool inGroup = false;
    bool commonRun = false;
    for (size_t i = 0; i < tags.size(); ++i) {
        const Tag& t = tags[i];
        if (t.code == 1001) {
            xdata_ = i;
            break;
        }
        if (t.code == 102) {
            inGroup = !t.text.empty() && t.text.front() == '{';
            continue;
        }
        if (inGroup) continue;
        if (t.code == 100) {
            prefix = false;
            commonRun = t.text == kEntityMarker;
            markers_.push_back(t.text);
            continue;
        }
        run_[i] = static_cast<uint16_t>(markers_.size() - 1);
        if (prefix || commonRun) continue;
        if (!markers && (t.code == 5 || t.code == 105 || t.code == 330 || isCommonEntityCode(t.code))) continue;
        data_[i] = true;
    }
}

std::string_view EntityTags::markerAt(size_t index) const {
    return index < run_.size() ? std::string_view(markers_[run_[index]]) : std::string_view();
}

Tag* EntityTags::first(int code) {
    for (size_t i = 0; i < xdata_; ++i) {
        if (data_[i] && tags[i].code == code) return &tags[i];
    }
    return nullptr;
}

const Tag* EntityTags::first(int code) const { return const_cast<EntityTags*>(this)->first(code); }

double EntityTags::real(int code, double fallback) const {
    const Tag* t = first(code);
    if (!t) return fallback;
    if (t->kind == TagKind::Real || t->isPoint()) return t->xyz[0];
    if (t->kind == TagKind::Integer) return static_cast<double>(t->integer);
    return fallback;
}

int64_t EntityTags::integer(int code, int64_t fallback) const {
    const Tag* t = first(code);
    if (!t) return fallback;
    if (t->kind == TagKind::Integer) return t->integer;
    if (t->kind == TagKind::Real) return static_cast<int64_t>(t->xyz[0]);
    return fallback;
}

KcGePoint3d EntityTags::point(int code, const KcGePoint3d& fallback) const {
    const Tag* t = first(code);
    return t && t->isPoint() ? t->pointValue() : fallback;
}

KcGeVector3d EntityTags::normal() const {
    const KcGeVector3d n = point(210, {0, 0, 1}).asVector();
    return n.isZeroLength() ? KcGeVector3d::kZAxis : n;
}

bool EntityTags::setReal(int code, double value) {
    Tag* t = first(code);
    if (!t) return false;
    if (t->kind == TagKind::Integer) *t = Tag::integerValue(code, static_cast<int64_t>(value));
    else *t = Tag::real(code, value);
    return true;
}

bool EntityTags::setPoint(int code, const KcGePoint3d& value) {
    Tag* t = first(code);
    if (!t) return false;
    assignPoint(*t, value);
    return true;
}

void assignPoint(Tag& tag, const KcGePoint3d& value, bool alwaysTwoDimensional) {
    const bool pair = alwaysTwoDimensional || (tag.kind == TagKind::Point2 && value.z == 0.0);
    tag.kind = pair ? TagKind::Point2 : TagKind::Point3;
    tag.xyz = {value.x, value.y, pair ? 0.0 : value.z};
}

namespace {

bool tableHasCode(std::span<const FieldSpec> fields, int code) {
    for (const FieldSpec& f : fields) {
        if (f.code == code) return true;
    }
    return false;
}

// The field table of one subclass of a type, for any marker the type can carry.
std::span<const FieldSpec> tableOf(TypeId type, std::string_view marker) {
    if (type == Type::Dimension) {
        auto part = dimensionPartFields(marker);
        if (!part.empty()) return part;
    }
    const TypeSpec* schema = entitySpec(type);
    if (!schema) return {};
    for (const SubclassSpec& sub : schema->subclasses) {
        if (sub.marker == marker) return sub.fields;
    }
    if ((type == Type::Polyline || type == Type::Vertex) && !schema->subclasses.empty()) {
        return schema->subclasses.back().fields;
    }
    return {};
}

}  // namespace

std::string_view fieldMarker(const ObjectRecord& record, int code) {
    std::string_view lastMarker;
    std::string_view holding;
    for (TagRef t : record.tags) {
        if (t.code() == 1001) break;
        if (t.code() == 100) {
            lastMarker = t.text();
            if (lastMarker != kEntityMarker && tableHasCode(tableOf(record.type, lastMarker), code)) return lastMarker;
        } else if (t.code() == code && holding.empty() && lastMarker != kEntityMarker) {
            holding = lastMarker;
        }
    }
    if (!holding.empty()) return holding;
    // Records without markers: the marker of the type's table only orders the insertion.
    if (record.type == Type::Polyline) return polylineMarker(fieldInteger(record, {}, 70, 0));
    if (record.type == Type::Vertex) return vertexMarker(fieldInteger(record, {}, 70, 0));
    if (const TypeSpec* schema = entitySpec(record.type)) {
        for (const SubclassSpec& sub : schema->subclasses) {
            if (tableHasCode(sub.fields, code)) return sub.marker;
        }
    }
    return lastMarker;
}

void writeField(ObjectRecord& record, const Tag& value) { setField(record, fieldMarker(record, value.code), value); }

}  // namespace korva::db::geometry
