// Scratch copies, batches, degrees and extended data of entity transformation.
#include "db/geometry/TransformSupport.h"

#include <cmath>

#include "db/geometry/PlaneMap.h"
#include "geom/Angles.h"

namespace korva::db::geometry {

ObjectRecord scratchCopy(const ObjectRecord& record) {
    ObjectRecord copy;
    copy.drawing = record.drawing;
    copy.handle = record.handle;
    copy.owner = record.owner;
    copy.tags = record.tags;
    copy.type = record.type;
    copy.kind = record.kind;
    return copy;
}

ObjectRecord& TransformBatch::add(const ObjectRecord& original) {
    for (auto& entry : records_) {
        if (entry.first == &original) return entry.second;
    }
    records_.emplace_back(const_cast<ObjectRecord*>(&original), scratchCopy(original));
    return records_.back().second;
}

bool TransformBatch::contains(const ObjectRecord& original) const {
    for (const auto& entry : records_) {
        if (entry.first == &original) return true;
    }
    return false;
}

void TransformBatch::commit() {
    for (auto& [original, scratch] : records_) original->tags = std::move(scratch.tags);
    records_.clear();
}

double storedDegrees(double radians) {
    double degrees = geom::radiansToDegrees(geom::normalizeAngle(radians));
    const double whole = std::round(degrees);
    if (std::abs(degrees - whole) < 1e-9) degrees = whole;
    return degrees >= 360.0 ? degrees - 360.0 : degrees;
}

namespace {

bool listed(std::initializer_list<int> codes, int code) {
    for (int c : codes) {
        if (c == code) return true;
    }
    return false;
}

}  // namespace

void mapWorldGroups(EntityTags& tags, const KcGeMatrix3d& m, const WorldGroups& groups) {
    for (size_t i = 0; i < tags.extendedDataStart(); ++i) {
        Tag& t = tags.tags[i];
        if (!tags.isData(i) || !t.isPoint()) continue;
        if (listed(groups.points, t.code)) {
            assignPoint(t, m * t.pointValue());
        } else if (listed(groups.vectors, t.code)) {
            assignPoint(t, KcGePoint3d::kOrigin + m * t.pointValue().asVector());
        } else if (listed(groups.directions, t.code)) {
            assignPoint(t, KcGePoint3d::kOrigin + cleanUnit(m * t.pointValue().asVector()));
        }
    }
}

void writeGroup(EntityTags& tags, ObjectRecord& scratch, const Tag& value, bool insertWhenAbsent) {
    if (Tag* present = tags.first(value.code)) {
        if (value.isPoint()) {
            assignPoint(*present, value.pointValue());
        } else if (present->kind == TagKind::Integer && value.kind == TagKind::Real) {
            present->integer = static_cast<int64_t>(value.realValue());  // a writer stored an integer
        } else {
            *present = value;
        }
        return;
    }
    if (!insertWhenAbsent) return;
    tags.commit(scratch);
    writeField(scratch, value);
    tags = EntityTags(scratch);
}

void writeNormal(EntityTags& tags, ObjectRecord& scratch, const KcGeVector3d& normal) {
    writeGroup(tags, scratch, Tag::point(210, KcGePoint3d::kOrigin + normal), normal != KcGeVector3d::kZAxis);
}

void scaleGroups(EntityTags& tags, std::initializer_list<int> codes, double factor) {
    for (size_t i = 0; i < tags.extendedDataStart(); ++i) {
        Tag& t = tags.tags[i];
        if (tags.isData(i) && t.kind == TagKind::Real && listed(codes, t.code)) t.xyz[0] *= factor;
    }
}

double lengthFactor(const KcGeMatrix3d& m) {
    const KcGeVector3d x(m.entry[0][0], m.entry[1][0], m.entry[2][0]);
    const KcGeVector3d y(m.entry[0][1], m.entry[1][1], m.entry[2][1]);
    const KcGeVector3d z(m.entry[0][2], m.entry[1][2], m.entry[2][2]);
    return std::cbrt(std::abs(x.dotProduct(y.crossProduct(z))));
}

void transformExtendedData(EntityTags& tags, const KcGeMatrix3d& m) {
    const double factor = lengthFactor(m);
    for (size_t i = tags.extendedDataStart(); i < tags.size(); ++i) {
        Tag& t = tags.tags[i];
        if ((t.code >= 1011 && t.code <= 1013) && !t.isPoint()) continue;
        switch (t.code) {
            case 1011: assignPoint(t, m * t.pointValue()); break;
            case 1012: assignPoint(t, KcGePoint3d::kOrigin + m * t.pointValue().asVector()); break;
            case 1013: assignPoint(t, KcGePoint3d::kOrigin + cleanUnit(m * t.pointValue().asVector())); break;
            case 1041:
            case 1042:
                if (t.kind == TagKind::Real) t.xyz[0] *= factor;
                break;
            default: break;
        }
    }
}

}  // namespace korva::db::geometry
