// CIRCLE, ARC and ELLIPSE. Circle and arc centres are stored in the OCS of
// their extrusion and arc angles in degrees; the ellipse is all world
// coordinates with its parameters in radians.
#include <cmath>

#include "db/entities/EntityFields.h"

namespace db = korva::db;
using db::admit;
using korva::db::ObjectRecord;

namespace {

constexpr std::string_view kCircle = "AcDbCircle";
constexpr std::string_view kArc = "AcDbArc";
constexpr std::string_view kEllipse = "AcDbEllipse";

// Some writers put the extrusion of an ARC in its AcDbArc part.
std::string_view normalMarker(const ObjectRecord& record) { return db::markerHolding(record, {kCircle, kArc}, 210); }

KcGeVector3d circleNormal(const ObjectRecord& record) { return db::normalField(record, normalMarker(record)); }

// A new extrusion keeps the centre where it is in the world.
void setCircleNormal(ObjectRecord& record, const KcGeVector3d& normal) {
    const KcGePoint3d center = db::worldPointField(record, kCircle, 10, circleNormal(record));
    const KcGeVector3d unit = normal.normal();
    db::setPointField(record, normalMarker(record), 210, KcGePoint3d::kOrigin + unit);
    db::setWorldPointField(record, kCircle, 10, center, unit);
}

void initCircle(ObjectRecord& record, const KcGePoint3d& center, const KcGeVector3d& normal, double radius) {
    const KcGeVector3d unit = db::isUsableDirection(normal) ? normal.normal() : KcGeVector3d::kZAxis;
    db::setPointField(record, kCircle, 210, KcGePoint3d::kOrigin + unit);
    db::setWorldPointField(record, kCircle, 10, center, unit);
    db::setRealField(record, kCircle, 40, radius);
}

}  // namespace

// --- CIRCLE ------------------------------------------------------------------

KcDbCircle::KcDbCircle(const KcGePoint3d& center, const KcGeVector3d& normal, double radius) {
    initCircle(record(), center, normal, radius);
}

KcGePoint3d KcDbCircle::center() const { return db::worldPointField(record(), kCircle, 10, normal()); }

Kcad::ErrorStatus KcDbCircle::setCenter(const KcGePoint3d& center) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(center)); status != Kcad::eOk) return status;
    db::setWorldPointField(record(), kCircle, 10, center, normal());
    return Kcad::eOk;
}

double KcDbCircle::radius() const { return db::fieldReal(record(), kCircle, 40, 1.0); }

Kcad::ErrorStatus KcDbCircle::setRadius(double radius) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(radius) && radius > 0.0); status != Kcad::eOk) {
        return status;
    }
    db::setRealField(record(), kCircle, 40, radius);
    return Kcad::eOk;
}

KcGeVector3d KcDbCircle::normal() const { return circleNormal(record()); }

Kcad::ErrorStatus KcDbCircle::setNormal(const KcGeVector3d& normal) {
    if (auto status = admit(checkWritable(), db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    setCircleNormal(record(), normal);
    return Kcad::eOk;
}

double KcDbCircle::thickness() const { return db::fieldReal(record(), kCircle, 39, 0.0); }

// --- ARC ---------------------------------------------------------------------

KcDbArc::KcDbArc(const KcGePoint3d& center, double radius, double startAngle, double endAngle)
    : KcDbArc(center, KcGeVector3d::kZAxis, radius, startAngle, endAngle) {}

KcDbArc::KcDbArc(const KcGePoint3d& center, const KcGeVector3d& normal, double radius, double startAngle,
                 double endAngle) {
    initCircle(record(), center, normal, radius);
    db::setAngleField(record(), kArc, 50, db::normalizedAngle(startAngle));
    db::setAngleField(record(), kArc, 51, db::normalizedAngle(endAngle));
}

KcGePoint3d KcDbArc::center() const { return db::worldPointField(record(), kCircle, 10, normal()); }

Kcad::ErrorStatus KcDbArc::setCenter(const KcGePoint3d& center) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(center)); status != Kcad::eOk) return status;
    db::setWorldPointField(record(), kCircle, 10, center, normal());
    return Kcad::eOk;
}

double KcDbArc::radius() const { return db::fieldReal(record(), kCircle, 40, 1.0); }

Kcad::ErrorStatus KcDbArc::setRadius(double radius) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(radius) && radius > 0.0); status != Kcad::eOk) {
        return status;
    }
    db::setRealField(record(), kCircle, 40, radius);
    return Kcad::eOk;
}

double KcDbArc::startAngle() const { return db::angleField(record(), kArc, 50); }
double KcDbArc::endAngle() const { return db::angleField(record(), kArc, 51); }

Kcad::ErrorStatus KcDbArc::setStartAngle(double angle) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(angle)); status != Kcad::eOk) return status;
    db::setAngleField(record(), kArc, 50, db::normalizedAngle(angle));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbArc::setEndAngle(double angle) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(angle)); status != Kcad::eOk) return status;
    db::setAngleField(record(), kArc, 51, db::normalizedAngle(angle));
    return Kcad::eOk;
}

KcGeVector3d KcDbArc::normal() const { return circleNormal(record()); }

Kcad::ErrorStatus KcDbArc::setNormal(const KcGeVector3d& normal) {
    if (auto status = admit(checkWritable(), db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    setCircleNormal(record(), normal);
    return Kcad::eOk;
}

double KcDbArc::thickness() const { return db::fieldReal(record(), kCircle, 39, 0.0); }

// --- ELLIPSE -----------------------------------------------------------------

namespace {

bool isValidEllipse(const KcGePoint3d& center, const KcGeVector3d& normal, const KcGeVector3d& majorAxis,
                    double ratio, double startAngle, double endAngle) {
    return db::isFinitePoint(center) && db::isUsableDirection(normal) && db::isUsableDirection(majorAxis) &&
           std::abs(normal.normal().dotProduct(majorAxis.normal())) < 1e-9 && db::isFiniteValue(ratio) && ratio > 0.0 &&
           ratio <= 1.0 + 1e-12 && db::isFiniteValue(startAngle) && db::isFiniteValue(endAngle);
}

void writeEllipse(ObjectRecord& record, const KcGePoint3d& center, const KcGeVector3d& normal,
                  const KcGeVector3d& majorAxis, double ratio, double startAngle, double endAngle) {
    db::setPointField(record, kEllipse, 10, center);
    db::setPointField(record, kEllipse, 11, KcGePoint3d::kOrigin + majorAxis);
    db::setPointField(record, kEllipse, 210, KcGePoint3d::kOrigin + normal.normal());
    db::setRealField(record, kEllipse, 40, ratio);
    db::setRealField(record, kEllipse, 41, startAngle);
    db::setRealField(record, kEllipse, 42, endAngle);
}

}  // namespace

KcDbEllipse::KcDbEllipse(const KcGePoint3d& center, const KcGeVector3d& normal, const KcGeVector3d& majorAxis,
                         double radiusRatio, double startAngle, double endAngle) {
    writeEllipse(record(), center, db::isUsableDirection(normal) ? normal : KcGeVector3d::kZAxis, majorAxis,
                 radiusRatio, startAngle, endAngle);
}

KcGePoint3d KcDbEllipse::center() const { return db::fieldPoint(record(), kEllipse, 10); }
KcGeVector3d KcDbEllipse::normal() const { return db::normalField(record(), kEllipse); }
KcGeVector3d KcDbEllipse::majorAxis() const { return db::fieldVector(record(), kEllipse, 11, KcGeVector3d::kXAxis); }

KcGeVector3d KcDbEllipse::minorAxis() const {
    return normal().normal().crossProduct(majorAxis()) * radiusRatio();
}

double KcDbEllipse::radiusRatio() const { return db::fieldReal(record(), kEllipse, 40, 1.0); }
double KcDbEllipse::startAngle() const { return db::fieldReal(record(), kEllipse, 41, 0.0); }
double KcDbEllipse::endAngle() const { return db::fieldReal(record(), kEllipse, 42, 2.0 * db::kPi); }

Kcad::ErrorStatus KcDbEllipse::setCenter(const KcGePoint3d& center) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(center)); status != Kcad::eOk) return status;
    db::setPointField(record(), kEllipse, 10, center);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbEllipse::set(const KcGePoint3d& center, const KcGeVector3d& normal,
                                   const KcGeVector3d& majorAxis, double radiusRatio, double startAngle,
                                   double endAngle) {
    const bool valid = isValidEllipse(center, normal, majorAxis, radiusRatio, startAngle, endAngle);
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    writeEllipse(record(), center, normal, majorAxis, radiusRatio, startAngle, endAngle);
    return Kcad::eOk;
}
