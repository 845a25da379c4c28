// LINE, RAY, XLINE and POINT: world points and directions (AcDbLine,
// AcDbRay, AcDbXline and AcDbPoint subclasses).
#include "db/entities/EntityFields.h"

namespace db = korva::db;
using db::admit;

namespace {

constexpr std::string_view kLine = "AcDbLine";
constexpr std::string_view kPoint = "AcDbPoint";
constexpr std::string_view kRay = "AcDbRay";
constexpr std::string_view kXline = "AcDbXline";

}  // namespace

// --- LINE --------------------------------------------------------------------

KcDbLine::KcDbLine(const KcGePoint3d& start, const KcGePoint3d& end) {
    db::setPointField(record(), kLine, 10, start);
    db::setPointField(record(), kLine, 11, end);
}

KcGePoint3d KcDbLine::startPoint() const { return db::fieldPoint(record(), kLine, 10); }
KcGePoint3d KcDbLine::endPoint() const { return db::fieldPoint(record(), kLine, 11); }

Kcad::ErrorStatus KcDbLine::setStartPoint(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setPointField(record(), kLine, 10, point);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbLine::setEndPoint(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setPointField(record(), kLine, 11, point);
    return Kcad::eOk;
}

double KcDbLine::thickness() const { return db::fieldReal(record(), kLine, 39, 0.0); }

Kcad::ErrorStatus KcDbLine::setThickness(double thickness) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(thickness)); status != Kcad::eOk) return status;
    db::setRealField(record(), kLine, 39, thickness);
    return Kcad::eOk;
}

KcGeVector3d KcDbLine::normal() const { return db::normalField(record(), kLine); }

Kcad::ErrorStatus KcDbLine::setNormal(const KcGeVector3d& normal) {
    if (auto status = admit(checkWritable(), db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    db::setPointField(record(), kLine, 210, KcGePoint3d::kOrigin + normal.normal());
    return Kcad::eOk;
}

// --- POINT -------------------------------------------------------------------

KcDbPoint::KcDbPoint(const KcGePoint3d& position) { db::setPointField(record(), kPoint, 10, position); }

KcGePoint3d KcDbPoint::position() const { return db::fieldPoint(record(), kPoint, 10); }

Kcad::ErrorStatus KcDbPoint::setPosition(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setPointField(record(), kPoint, 10, point);
    return Kcad::eOk;
}

KcGeVector3d KcDbPoint::normal() const { return db::normalField(record(), kPoint); }

// --- RAY and XLINE -------------------------------------------------------------

namespace {

Kcad::ErrorStatus setUnitDirection(korva::db::ObjectRecord& record, std::string_view marker,
                                   Kcad::ErrorStatus writable, const KcGeVector3d& direction) {
    if (auto status = admit(writable, db::isUsableDirection(direction)); status != Kcad::eOk) return status;
    db::setPointField(record, marker, 11, KcGePoint3d::kOrigin + direction.normal());
    return Kcad::eOk;
}

}  // namespace

KcGePoint3d KcDbRay::basePoint() const { return db::fieldPoint(record(), kRay, 10); }
KcGeVector3d KcDbRay::unitDir() const { return db::fieldVector(record(), kRay, 11, KcGeVector3d::kXAxis); }

Kcad::ErrorStatus KcDbRay::setBasePoint(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setPointField(record(), kRay, 10, point);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbRay::setUnitDir(const KcGeVector3d& direction) {
    return setUnitDirection(record(), kRay, checkWritable(), direction);
}

KcGePoint3d KcDbXline::basePoint() const { return db::fieldPoint(record(), kXline, 10); }
KcGeVector3d KcDbXline::unitDir() const { return db::fieldVector(record(), kXline, 11, KcGeVector3d::kXAxis); }

Kcad::ErrorStatus KcDbXline::setBasePoint(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setPointField(record(), kXline, 10, point);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbXline::setUnitDir(const KcGeVector3d& direction) {
    return setUnitDirection(record(), kXline, checkWritable(), direction);
}
