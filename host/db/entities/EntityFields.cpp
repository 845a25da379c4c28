// Helpers of the typed entity classes: API values over the groups of a record.
#include "db/entities/EntityFields.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "db/ApiText.h"
#include "db/Drawing.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "geom/Ocs.h"
#include "kcdbdatabase.h"

namespace korva::db {

double normalizedAngle(double radians) {
    if (!std::isfinite(radians)) return radians;
    double angle = std::fmod(radians, 2.0 * kPi);
    if (angle < 0.0) angle += 2.0 * kPi;
    // fmod of a value just below a multiple of 2 pi can round up to 2 pi itself.
    return angle >= 2.0 * kPi ? 0.0 : angle;
}

bool isFiniteValue(double value) { return std::isfinite(value); }

bool isFinitePoint(const KcGePoint3d& point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

bool isFinitePoint(const KcGePoint2d& point) { return std::isfinite(point.x) && std::isfinite(point.y); }

bool isUsableDirection(const KcGeVector3d& vector) {
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z) && !vector.isZeroLength();
}

std::string_view markerHolding(const ObjectRecord& record, std::initializer_list<std::string_view> markers, int code) {
    for (std::string_view marker : markers) {
        if (hasField(record, marker, code)) return marker;
    }
    return *markers.begin();
}

KcGeVector3d normalField(const ObjectRecord& record, std::string_view marker, int code) {
    const KcGeVector3d normal = fieldVector(record, marker, code, KcGeVector3d::kZAxis);
    return normal.isZeroLength() ? KcGeVector3d::kZAxis : normal;
}

double angleField(const ObjectRecord& record, std::string_view marker, int code, double fallbackDegrees) {
    return radiansFromDegrees(fieldReal(record, marker, code, fallbackDegrees));
}

void setAngleField(ObjectRecord& record, std::string_view marker, int code, double radians) {
    setField(record, marker, Tag::real(code, degreesFromRadians(radians)));
}

namespace {

bool isWorldZ(const KcGeVector3d& normal) { return normal.x == 0.0 && normal.y == 0.0 && normal.z > 0.0; }

}  // namespace

KcGePoint3d toWorld(const KcGePoint3d& ocs, const KcGeVector3d& normal) {
    return isWorldZ(normal) ? ocs : geom::ocsToWcs(ocs, normal);
}

KcGePoint3d toOcs(const KcGePoint3d& world, const KcGeVector3d& normal) {
    return isWorldZ(normal) ? world : geom::wcsToOcs(world, normal);
}

KcGePoint3d worldPointField(const ObjectRecord& record, std::string_view marker, int code,
                            const KcGeVector3d& normal, const KcGePoint3d& fallback) {
    return toWorld(fieldPoint(record, marker, code, fallback), normal);
}

void setWorldPointField(ObjectRecord& record, std::string_view marker, int code, const KcGePoint3d& world,
                        const KcGeVector3d& normal) {
    setField(record, marker, Tag::point(code, toOcs(world, normal)));
}

void setPointField(ObjectRecord& record, std::string_view marker, int code, const KcGePoint3d& point) {
    setField(record, marker, Tag::point(code, point));
}

void setRealField(ObjectRecord& record, std::string_view marker, int code, double value) {
    setField(record, marker, Tag::real(code, value));
}

void setIntegerField(ObjectRecord& record, std::string_view marker, int code, int64_t value) {
    setField(record, marker, Tag::integerValue(code, value));
}

void setTextField(ObjectRecord& record, std::string_view marker, int code, std::string_view value) {
    setField(record, marker, Tag::string(code, value));
}

bool flagField(const ObjectRecord& record, std::string_view marker, int code, int64_t bit) {
    return (fieldInteger(record, marker, code, 0) & bit) != 0;
}

void setFlagField(ObjectRecord& record, std::string_view marker, int code, int64_t bit, bool on) {
    const int64_t flags = fieldInteger(record, marker, code, 0);
    const int64_t changed = on ? (flags | bit) : (flags & ~bit);
    // An absent flag group that stays 0 stays absent.
    if (changed == flags && (hasField(record, marker, code) || changed == 0)) return;
    setField(record, marker, Tag::integerValue(code, changed));
}

bool nthField(const ObjectRecord& record, std::string_view marker, int code, size_t index, TagRef& out) {
    const std::vector<TagRef> all = fieldsOf(record, marker, code);
    if (index >= all.size()) return false;
    out = all[index];
    return true;
}

std::vector<TagRef> subclassTags(const ObjectRecord& record, std::string_view marker) {
    const bool markers = hasSubclassMarkers(record.tags);
    std::vector<TagRef> out;
    bool inside = !markers;
    bool inGroup = false;
    for (TagRef tag : record.tags) {
        const int code = tag.code();
        if (code == 1001) break;
        if (code == 102) {
            inGroup = !tag.text().empty() && tag.text().front() == '{';
        } else if (code == 100 && markers) {
            inside = tag.text() == marker;
        } else if (inside && !inGroup) {
            out.push_back(tag);
        }
    }
    return out;
}

wchar_t* allocatedText(std::string_view stored) { return duplicateWide(toApiText(stored)); }

const Drawing* lookupDrawing(const ObjectRecord& record) {
    if (record.drawing) return record.drawing;
    const KcDbDatabase* working = kcdbHostApplicationServices()->workingDatabase();
    return working ? &working->drawing() : nullptr;
}

}  // namespace korva::db
