// Old-style polylines (POLYLINE with VERTEX records and a SEQEND): 2D and 3D
// polylines, polygon meshes and polyface meshes, and their vertices. The
// POLYLINE's 70 flags name the kind (8 3D, 16 mesh, 64 polyface) and its
// subclass marker follows from them; the vertices are the members of its
// container. 2D vertices lie in the OCS of the polyline's extrusion, at the
// elevation of the z of the polyline's group 10.
#include "db/EntitySchema.h"
#include "db/entities/ContainerIterator.h"
#include "db/entities/EntityFields.h"

namespace db = korva::db;
using korva::db::ObjectRecord;

namespace {

// The POLYLINE's own 70 flags (also found in files without subclass markers).
int64_t polylineFlags(const ObjectRecord& record) { return db::fieldInteger(record, {}, 70, 0); }
std::string_view polylineMarkerOf(const ObjectRecord& record) { return db::polylineMarker(polylineFlags(record)); }

std::string_view vertexMarkerOf(const ObjectRecord& record) {
    return db::vertexMarker(db::fieldInteger(record, {}, 70, 0));
}

// Curve and spline fitting: 70 bit 2 curve-fit, bit 4 spline-fit with 75 giving the spline type.
int64_t smoothType(const ObjectRecord& record) {
    const int64_t flags = polylineFlags(record);
    if (flags & 4) return db::fieldInteger(record, polylineMarkerOf(record), 75, 6) == 5 ? 5 : 6;
    if (flags & 2) return 1;
    return 0;
}

KcGePoint3d vertexPosition(const ObjectRecord& record) {
    return db::fieldPoint(record, vertexMarkerOf(record), 10);
}

}  // namespace

// --- 2D polyline ---------------------------------------------------------------

KcDb::Poly2dType KcDb2dPolyline::polyType() const {
    switch (smoothType(record())) {
        case 1: return KcDb::k2dFitCurvePoly;
        case 5: return KcDb::k2dQuadSplinePoly;
        case 6: return KcDb::k2dCubicSplinePoly;
        default: return KcDb::k2dSimplePoly;
    }
}

double KcDb2dPolyline::elevation() const { return db::fieldPoint(record(), polylineMarkerOf(record()), 10).z; }
bool KcDb2dPolyline::isClosed() const { return (polylineFlags(record()) & 1) != 0; }
KcGeVector3d KcDb2dPolyline::normal() const { return db::normalField(record(), polylineMarkerOf(record())); }
double KcDb2dPolyline::defaultStartWidth() const { return db::fieldReal(record(), polylineMarkerOf(record()), 40, 0.0); }
double KcDb2dPolyline::defaultEndWidth() const { return db::fieldReal(record(), polylineMarkerOf(record()), 41, 0.0); }
KcDbObjectIterator* KcDb2dPolyline::vertexIterator() const { return new db::ContainerIterator(&record()); }

// --- 3D polyline ---------------------------------------------------------------

KcDb::Poly3dType KcDb3dPolyline::polyType() const {
    switch (smoothType(record())) {
        case 5: return KcDb::k3dQuadSplinePoly;
        case 6: return KcDb::k3dCubicSplinePoly;
        default: return KcDb::k3dSimplePoly;
    }
}

bool KcDb3dPolyline::isClosed() const { return (polylineFlags(record()) & 1) != 0; }
KcDbObjectIterator* KcDb3dPolyline::vertexIterator() const { return new db::ContainerIterator(&record()); }

// --- meshes ------------------------------------------------------------------

Kcad::Int16 KcDbPolygonMesh::mSize() const {
    return static_cast<Kcad::Int16>(db::fieldInteger(record(), polylineMarkerOf(record()), 71, 0));
}
Kcad::Int16 KcDbPolygonMesh::nSize() const {
    return static_cast<Kcad::Int16>(db::fieldInteger(record(), polylineMarkerOf(record()), 72, 0));
}
KcDbObjectIterator* KcDbPolygonMesh::vertexIterator() const { return new db::ContainerIterator(&record()); }

Kcad::Int16 KcDbPolyFaceMesh::numVertices() const {
    return static_cast<Kcad::Int16>(db::fieldInteger(record(), polylineMarkerOf(record()), 71, 0));
}
Kcad::Int16 KcDbPolyFaceMesh::numFaces() const {
    return static_cast<Kcad::Int16>(db::fieldInteger(record(), polylineMarkerOf(record()), 72, 0));
}
// The vertices, then the face records, as the file lists them.
KcDbObjectIterator* KcDbPolyFaceMesh::vertexIterator() const { return new db::ContainerIterator(&record()); }

// --- vertices ------------------------------------------------------------------

KcGePoint3d KcDb2dVertex::position() const {
    const ObjectRecord& self = record();
    const KcGePoint3d local = vertexPosition(self);
    const ObjectRecord* polyline = self.owner && self.owner->type == db::Type::Polyline ? self.owner : nullptr;
    if (!polyline) return local;
    const std::string_view marker = polylineMarkerOf(*polyline);
    const double elevation = db::fieldPoint(*polyline, marker, 10).z;
    return db::toWorld({local.x, local.y, elevation}, db::normalField(*polyline, marker));
}

double KcDb2dVertex::bulge() const { return db::fieldReal(record(), vertexMarkerOf(record()), 42, 0.0); }

// A vertex without its own width takes the polyline's default width.
double KcDb2dVertex::startWidth() const {
    const ObjectRecord& self = record();
    const double fallback = self.owner ? db::fieldReal(*self.owner, polylineMarkerOf(*self.owner), 40, 0.0) : 0.0;
    return db::fieldReal(self, vertexMarkerOf(self), 40, fallback);
}

double KcDb2dVertex::endWidth() const {
    const ObjectRecord& self = record();
    const double fallback = self.owner ? db::fieldReal(*self.owner, polylineMarkerOf(*self.owner), 41, 0.0) : 0.0;
    return db::fieldReal(self, vertexMarkerOf(self), 41, fallback);
}

KcGePoint3d KcDb3dPolylineVertex::position() const { return vertexPosition(record()); }
KcGePoint3d KcDbPolygonMeshVertex::position() const { return vertexPosition(record()); }
KcGePoint3d KcDbPolyFaceMeshVertex::position() const { return vertexPosition(record()); }

// Groups 71 to 74: the face's vertex numbers (1-based, negative for an invisible edge).
Kcad::ErrorStatus KcDbFaceRecord::getVertexAt(Kcad::UInt16 faceIndex, Kcad::Int16& vertexIndex) const {
    if (faceIndex > 3) return Kcad::eInvalidInput;
    vertexIndex = static_cast<Kcad::Int16>(db::fieldInteger(record(), vertexMarkerOf(record()), 71 + faceIndex, 0));
    return Kcad::eOk;
}
