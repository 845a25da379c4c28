// DIMENSION and its kinds (group 70 bits 0-2), ARC_DIMENSION and
// LARGE_RADIAL_DIMENSION. AcDbDimension: 2 block of the graphics, 10
// definition point (world), 11 text midpoint (OCS), 1 text override, 3 style,
// 210 extrusion. The kinds' definition points are world points (the angular
// arc point 16 is OCS):
//   rotated/aligned   13, 14 extension line origins, 10 on the dimension line,
//                     50 rotation and 52 oblique (degrees; AcDbAlignedDimension
//                     or AcDbRotatedDimension, as writers differ)
//   2-line angular    13-14 first line, 15-10 second line, 16 arc point
//   3-point angular   15 vertex, 13 and 14 extension lines, 10 arc point
//   diametric         15 chord point, 10 far chord point, 40 leader length
//   radial            10 centre, 15 chord point, 40 leader length
//   ordinate          10 origin, 13 defining point, 14 leader end; 70 bit 64: x
//   ARC_DIMENSION     15 centre, 13 and 14 extension lines, 10 arc point
//   LARGE_RADIAL      10 centre, 13 chord point, 14 override centre, 15 jog
//                     point, 40 jog angle (radians)
// Extension arc angles are not stored in DXF; they read as 0.
#include "db/Drawing.h"
#include "db/ObjectAccess.h"
#include "db/entities/EntityFields.h"

namespace db = korva::db;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;

namespace {

constexpr std::string_view kDimension = "AcDbDimension";
constexpr std::string_view kAligned = "AcDbAlignedDimension";
constexpr std::string_view kRotated = "AcDbRotatedDimension";
constexpr std::string_view k2Line = "AcDb2LineAngularDimension";
constexpr std::string_view k3Point = "AcDb3PointAngularDimension";
constexpr std::string_view kDiametric = "AcDbDiametricDimension";
constexpr std::string_view kRadial = "AcDbRadialDimension";
constexpr std::string_view kOrdinate = "AcDbOrdinateDimension";
constexpr std::string_view kArc = "AcDbArcDimension";
constexpr std::string_view kLargeRadial = "AcDbRadialDimensionLarge";

KcGePoint3d point(const ObjectRecord& record, std::string_view marker, int code) {
    return db::fieldPoint(record, marker, code);
}

KcGeVector3d dimensionNormal(const ObjectRecord& record) { return db::normalField(record, kDimension); }

double linearAngle(const ObjectRecord& record, int code) {
    return db::angleField(record, db::markerHolding(record, {kAligned, kRotated}, code), code);
}

const ObjectRecord* namedRecord(const ObjectRecord& record, std::string_view table, std::string_view name) {
    const db::Drawing* drawing = db::lookupDrawing(record);
    return drawing && !name.empty() ? drawing->tableRecord(table, name) : nullptr;
}

}  // namespace

// --- common part ---------------------------------------------------------------

KcDbObjectId KcDbDimension::dimBlockId() const {
    return ObjectAccess::id(namedRecord(record(), "BLOCK_RECORD", db::fieldText(record(), kDimension, 2)));
}

KcGePoint3d KcDbDimension::textPosition() const {
    return db::worldPointField(record(), kDimension, 11, dimensionNormal(record()));
}

wchar_t* KcDbDimension::dimensionText() const { return db::allocatedText(db::fieldText(record(), kDimension, 1)); }

KcDbObjectId KcDbDimension::dimensionStyle() const {
    return ObjectAccess::id(namedRecord(record(), "DIMSTYLE", db::fieldText(record(), kDimension, 3, "Standard")));
}

KcGeVector3d KcDbDimension::normal() const { return dimensionNormal(record()); }

// --- linear ------------------------------------------------------------------

double KcDbRotatedDimension::rotation() const { return linearAngle(record(), 50); }
double KcDbRotatedDimension::oblique() const { return linearAngle(record(), 52); }
KcGePoint3d KcDbRotatedDimension::xLine1Point() const { return point(record(), kAligned, 13); }
KcGePoint3d KcDbRotatedDimension::xLine2Point() const { return point(record(), kAligned, 14); }
KcGePoint3d KcDbRotatedDimension::dimLinePoint() const { return point(record(), kDimension, 10); }

double KcDbAlignedDimension::oblique() const { return linearAngle(record(), 52); }
KcGePoint3d KcDbAlignedDimension::xLine1Point() const { return point(record(), kAligned, 13); }
KcGePoint3d KcDbAlignedDimension::xLine2Point() const { return point(record(), kAligned, 14); }
KcGePoint3d KcDbAlignedDimension::dimLinePoint() const { return point(record(), kDimension, 10); }

// --- angular -----------------------------------------------------------------

KcGePoint3d KcDb2LineAngularDimension::arcPoint() const {
    return db::worldPointField(record(), k2Line, 16, dimensionNormal(record()));
}
KcGePoint3d KcDb2LineAngularDimension::xLine1Start() const { return point(record(), k2Line, 13); }
KcGePoint3d KcDb2LineAngularDimension::xLine1End() const { return point(record(), k2Line, 14); }
KcGePoint3d KcDb2LineAngularDimension::xLine2Start() const { return point(record(), k2Line, 15); }
KcGePoint3d KcDb2LineAngularDimension::xLine2End() const { return point(record(), kDimension, 10); }

KcGePoint3d KcDb3PointAngularDimension::centerPoint() const { return point(record(), k3Point, 15); }
KcGePoint3d KcDb3PointAngularDimension::xLine1Point() const { return point(record(), k3Point, 13); }
KcGePoint3d KcDb3PointAngularDimension::xLine2Point() const { return point(record(), k3Point, 14); }
KcGePoint3d KcDb3PointAngularDimension::arcPoint() const { return point(record(), kDimension, 10); }

// --- radial ------------------------------------------------------------------

double KcDbDiametricDimension::leaderLength() const { return db::fieldReal(record(), kDiametric, 40, 0.0); }
KcGePoint3d KcDbDiametricDimension::chordPoint() const { return point(record(), kDiametric, 15); }
KcGePoint3d KcDbDiametricDimension::farChordPoint() const { return point(record(), kDimension, 10); }
double KcDbDiametricDimension::extArcStartAngle() const { return 0.0; }
double KcDbDiametricDimension::extArcEndAngle() const { return 0.0; }

double KcDbRadialDimension::leaderLength() const { return db::fieldReal(record(), kRadial, 40, 0.0); }
KcGePoint3d KcDbRadialDimension::center() const { return point(record(), kDimension, 10); }
KcGePoint3d KcDbRadialDimension::chordPoint() const { return point(record(), kRadial, 15); }

// --- ordinate ----------------------------------------------------------------

KcGePoint3d KcDbOrdinateDimension::origin() const { return point(record(), kDimension, 10); }
KcGePoint3d KcDbOrdinateDimension::definingPoint() const { return point(record(), kOrdinate, 13); }
KcGePoint3d KcDbOrdinateDimension::leaderEndPoint() const { return point(record(), kOrdinate, 14); }
bool KcDbOrdinateDimension::isUsingXAxis() const { return db::flagField(record(), kDimension, 70, 64); }

// --- ARC_DIMENSION and LARGE_RADIAL_DIMENSION ------------------------------------

KcGePoint3d KcDbArcDimension::centerPoint() const { return point(record(), kArc, 15); }
KcGePoint3d KcDbArcDimension::xLine1Point() const { return point(record(), kArc, 13); }
KcGePoint3d KcDbArcDimension::xLine2Point() const { return point(record(), kArc, 14); }
KcGePoint3d KcDbArcDimension::arcPoint() const { return point(record(), kDimension, 10); }

KcGePoint3d KcDbRadialDimensionLarge::center() const { return point(record(), kDimension, 10); }
KcGePoint3d KcDbRadialDimensionLarge::chordPoint() const { return point(record(), kLargeRadial, 13); }
KcGePoint3d KcDbRadialDimensionLarge::overrideCenter() const { return point(record(), kLargeRadial, 14); }
KcGePoint3d KcDbRadialDimensionLarge::jogPoint() const { return point(record(), kLargeRadial, 15); }
double KcDbRadialDimensionLarge::jogAngle() const { return db::fieldReal(record(), kLargeRadial, 40, 0.0); }
double KcDbRadialDimensionLarge::extArcStartAngle() const { return 0.0; }
double KcDbRadialDimensionLarge::extArcEndAngle() const { return 0.0; }
