// The records that describe views: user coordinate systems (UCS: origin 10,
// X axis 11, Y axis 12), viewport configurations (VPORT: centre 12, height 40,
// aspect ratio 41, view direction 16, target 17) and named views (VIEW:
// centre 10, height 40, width 41).
#include <cmath>

#include "db/RecordFields.h"
#include "kcdbdatabase.h"

using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kUcsMarker = "AcDbUCSTableRecord";
constexpr std::string_view kViewportMarker = "AcDbViewportTableRecord";
constexpr std::string_view kViewMarker = "AcDbViewTableRecord";

bool isFinite(const KcGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

KcGePoint2d point2dOf(const korva::db::ObjectRecord& record, std::string_view marker, int code) {
    const KcGePoint3d p = db::fieldPoint(record, marker, code);
    return KcGePoint2d(p.x, p.y);
}

}  // namespace

KcGePoint3d KcDbUCSTableRecord::origin() const { return db::fieldPoint(record(), kUcsMarker, 10); }

Kcad::ErrorStatus KcDbUCSTableRecord::setOrigin(const KcGePoint3d& point) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!isFinite(point)) return Kcad::eInvalidInput;
    db::setField(record(), kUcsMarker, Tag::point(10, point));
    return Kcad::eOk;
}

KcGeVector3d KcDbUCSTableRecord::xAxis() const { return db::fieldVector(record(), kUcsMarker, 11, KcGeVector3d(1, 0, 0)); }

Kcad::ErrorStatus KcDbUCSTableRecord::setXAxis(const KcGeVector3d& axis) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!(axis.length() > 0.0)) return Kcad::eInvalidInput;
    db::setField(record(), kUcsMarker, Tag::point(11, KcGePoint3d(axis.x, axis.y, axis.z)));
    return Kcad::eOk;
}

KcGeVector3d KcDbUCSTableRecord::yAxis() const { return db::fieldVector(record(), kUcsMarker, 12, KcGeVector3d(0, 1, 0)); }

Kcad::ErrorStatus KcDbUCSTableRecord::setYAxis(const KcGeVector3d& axis) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!(axis.length() > 0.0)) return Kcad::eInvalidInput;
    db::setField(record(), kUcsMarker, Tag::point(12, KcGePoint3d(axis.x, axis.y, axis.z)));
    return Kcad::eOk;
}

KcGePoint2d KcDbViewportTableRecord::centerPoint() const { return point2dOf(record(), kViewportMarker, 12); }

double KcDbViewportTableRecord::height() const { return db::fieldReal(record(), kViewportMarker, 40, 1.0); }

double KcDbViewportTableRecord::width() const { return height() * db::fieldReal(record(), kViewportMarker, 41, 1.0); }

KcGeVector3d KcDbViewportTableRecord::viewDirection() const {
    return db::fieldVector(record(), kViewportMarker, 16, KcGeVector3d(0, 0, 1));
}

KcGePoint3d KcDbViewportTableRecord::target() const { return db::fieldPoint(record(), kViewportMarker, 17); }

KcGePoint2d KcDbViewTableRecord::centerPoint() const { return point2dOf(record(), kViewMarker, 10); }

double KcDbViewTableRecord::height() const { return db::fieldReal(record(), kViewMarker, 40, 1.0); }

double KcDbViewTableRecord::width() const { return db::fieldReal(record(), kViewMarker, 41, 1.0); }
