// TRACE, SOLID, 3DFACE and SHAPE. TRACE and SOLID share the AcDbTrace
// subclass: four corners (groups 10 to 13) in the OCS of the extrusion; a
// missing fourth corner is the third one. 3DFACE corners are world points with
// the invisible edges in group 70. SHAPE is placed in its OCS with angles in degrees.
#include "db/entities/EntityFields.h"

namespace db = korva::db;
using db::admit;
using korva::db::ObjectRecord;

namespace {

constexpr std::string_view kTrace = "AcDbTrace";
constexpr std::string_view kFace = "AcDbFace";
constexpr std::string_view kShape = "AcDbShape";

// The corner of group 10 + index, the third standing in for a missing fourth.
KcGePoint3d cornerField(const ObjectRecord& record, std::string_view marker, int index) {
    db::TagRef tag;
    if (db::findField(record, marker, 10 + index, tag) && tag.isPoint()) return tag.point();
    if (index == 3) return cornerField(record, marker, 2);
    return KcGePoint3d::kOrigin;
}

Kcad::ErrorStatus getTraceCorner(const ObjectRecord& record, Kcad::UInt16 index, KcGePoint3d& point) {
    if (index > 3) return Kcad::eInvalidInput;
    point = db::toWorld(cornerField(record, kTrace, index), db::normalField(record, kTrace));
    return Kcad::eOk;
}

Kcad::ErrorStatus setTraceCorner(ObjectRecord& record, Kcad::ErrorStatus writable, Kcad::UInt16 index,
                                 const KcGePoint3d& point) {
    if (auto status = admit(writable, index <= 3 && db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setWorldPointField(record, kTrace, 10 + index, point, db::normalField(record, kTrace));
    return Kcad::eOk;
}

// A new extrusion keeps the stored corners where they are in the world.
Kcad::ErrorStatus setTraceNormal(ObjectRecord& record, Kcad::ErrorStatus writable, const KcGeVector3d& normal) {
    if (auto status = admit(writable, db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    const KcGeVector3d old = db::normalField(record, kTrace);
    const KcGeVector3d unit = normal.normal();
    KcGePoint3d corners[4];
    bool present[4];
    for (int i = 0; i < 4; ++i) {
        present[i] = db::hasField(record, kTrace, 10 + i);
        corners[i] = db::toWorld(cornerField(record, kTrace, i), old);
    }
    db::setPointField(record, kTrace, 210, KcGePoint3d::kOrigin + unit);
    for (int i = 0; i < 4; ++i) {
        if (present[i]) db::setWorldPointField(record, kTrace, 10 + i, corners[i], unit);
    }
    return Kcad::eOk;
}

}  // namespace

// --- TRACE and SOLID -----------------------------------------------------------

Kcad::ErrorStatus KcDbTrace::getPointAt(Kcad::UInt16 index, KcGePoint3d& point) const {
    return getTraceCorner(record(), index, point);
}
Kcad::ErrorStatus KcDbTrace::setPointAt(Kcad::UInt16 index, const KcGePoint3d& point) {
    return setTraceCorner(record(), checkWritable(), index, point);
}
KcGeVector3d KcDbTrace::normal() const { return db::normalField(record(), kTrace); }
Kcad::ErrorStatus KcDbTrace::setNormal(const KcGeVector3d& normal) {
    return setTraceNormal(record(), checkWritable(), normal);
}
double KcDbTrace::thickness() const { return db::fieldReal(record(), kTrace, 39, 0.0); }

KcDbSolid::KcDbSolid(const KcGePoint3d& p0, const KcGePoint3d& p1, const KcGePoint3d& p2, const KcGePoint3d& p3) {
    const KcGePoint3d corners[4] = {p0, p1, p2, p3};
    for (int i = 0; i < 4; ++i) db::setPointField(record(), kTrace, 10 + i, corners[i]);
}

Kcad::ErrorStatus KcDbSolid::getPointAt(Kcad::UInt16 index, KcGePoint3d& point) const {
    return getTraceCorner(record(), index, point);
}
Kcad::ErrorStatus KcDbSolid::setPointAt(Kcad::UInt16 index, const KcGePoint3d& point) {
    return setTraceCorner(record(), checkWritable(), index, point);
}
KcGeVector3d KcDbSolid::normal() const { return db::normalField(record(), kTrace); }
Kcad::ErrorStatus KcDbSolid::setNormal(const KcGeVector3d& normal) {
    return setTraceNormal(record(), checkWritable(), normal);
}
double KcDbSolid::thickness() const { return db::fieldReal(record(), kTrace, 39, 0.0); }

// --- 3DFACE ------------------------------------------------------------------

KcDbFace::KcDbFace(const KcGePoint3d& p0, const KcGePoint3d& p1, const KcGePoint3d& p2, const KcGePoint3d& p3) {
    const KcGePoint3d corners[4] = {p0, p1, p2, p3};
    for (int i = 0; i < 4; ++i) db::setPointField(record(), kFace, 10 + i, corners[i]);
}

Kcad::ErrorStatus KcDbFace::getVertexAt(Kcad::UInt16 index, KcGePoint3d& point) const {
    if (index > 3) return Kcad::eInvalidInput;
    point = cornerField(record(), kFace, index);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbFace::setVertexAt(Kcad::UInt16 index, const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), index <= 3 && db::isFinitePoint(point)); status != Kcad::eOk) {
        return status;
    }
    db::setPointField(record(), kFace, 10 + index, point);
    return Kcad::eOk;
}

// Group 70: bit 1 << i set means edge i is invisible.
Kcad::ErrorStatus KcDbFace::isEdgeVisibleAt(Kcad::UInt16 index, bool& visible) const {
    if (index > 3) return Kcad::eInvalidInput;
    visible = !db::flagField(record(), kFace, 70, int64_t{1} << index);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbFace::makeEdgeInvisibleAt(Kcad::UInt16 index) {
    if (auto status = admit(checkWritable(), index <= 3); status != Kcad::eOk) return status;
    db::setFlagField(record(), kFace, 70, int64_t{1} << index, true);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbFace::makeEdgeVisibleAt(Kcad::UInt16 index) {
    if (auto status = admit(checkWritable(), index <= 3); status != Kcad::eOk) return status;
    db::setFlagField(record(), kFace, 70, int64_t{1} << index, false);
    return Kcad::eOk;
}

// --- SHAPE -------------------------------------------------------------------

KcGePoint3d KcDbShape::position() const { return db::worldPointField(record(), kShape, 10, normal()); }
double KcDbShape::size() const { return db::fieldReal(record(), kShape, 40, 1.0); }
double KcDbShape::rotation() const { return db::angleField(record(), kShape, 50); }
double KcDbShape::widthFactor() const { return db::fieldReal(record(), kShape, 41, 1.0); }
double KcDbShape::oblique() const { return db::angleField(record(), kShape, 51); }

// DXF keeps only the shape's name; its number lives in the shape file, which a
// headless host does not load.
Kcad::Int16 KcDbShape::shapeNumber() const { return 0; }

wchar_t* KcDbShape::name() const { return db::allocatedText(db::fieldText(record(), kShape, 2)); }
KcGeVector3d KcDbShape::normal() const { return db::normalField(record(), kShape); }
