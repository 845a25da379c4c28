// The vertices of the polyline entities as one list: LWPOLYLINE vertices from
// their repeated groups, POLYLINE vertices from the VERTEX records of its
// container. Extents and explode both walk this list.
#pragma once

#include <vector>

#include "db/ObjectRecord.h"
#include "kcge.h"

namespace korva::db::geometry {

struct PolylineVertex {
    KcGePoint3d point;  // OCS (with the elevation in z) for 2D polylines, WCS for the others
    double bulge = 0.0;
};

enum class PolylineKind { Planar, Curve3d, Mesh, PolyFace };

struct PolylineShape {
    PolylineKind kind = PolylineKind::Planar;
    KcGeVector3d normal{0, 0, 1};
    double thickness = 0.0;
    bool closed = false;
    std::vector<PolylineVertex> vertices;  // the drawn vertices (spline frame points left out)
};

// LWPOLYLINE or POLYLINE; false for other types.
bool readPolylineShape(const ObjectRecord& polyline, PolylineShape& shape);

// The POLYLINE kind a 70 flag value gives.
PolylineKind polylineKindOf(int64_t flags);

}  // namespace korva::db::geometry
