// Extents of LWPOLYLINE, POLYLINE (2D, 3D, mesh and polyface) and single
// vertices. Widths are ignored; a bulged segment adds the exact box of its arc.
#include "db/geometry/EntityTags.h"
#include "db/geometry/ExtentsBuilder.h"
#include "db/geometry/PolylineVertices.h"
#include "geom/CurveMath.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

void addPlanarSegments(const PolylineShape& shape, ExtentsBuilder& b) {
    const size_t n = shape.vertices.size();
    for (size_t i = 0; i < n; ++i) {
        const PolylineVertex& v = shape.vertices[i];
        b.point(geom::ocsToWcs(v.point, shape.normal));
        const bool hasNext = i + 1 < n || (shape.closed && n > 1);
        if (!hasNext || v.bulge == 0.0) continue;
        const KcGePoint3d& next = shape.vertices[(i + 1) % n].point;
        const geom::BulgeArc arc = geom::bulgeToArc(v.point.convert2d(), next.convert2d(), v.bulge);
        if (!arc.isArc()) continue;
        const KcGePoint3d center(arc.center.x, arc.center.y, v.point.z);
        if (arc.counterClockwise) b.ocsArc(center, arc.radius, arc.startAngle, arc.endAngle, shape.normal);
        else b.ocsArc(center, arc.radius, arc.endAngle, arc.startAngle, shape.normal);
    }
}

bool addVertex(const ObjectRecord& vertex, ExtentsBuilder& b) {
    const EntityTags t(vertex);
    KcGePoint3d p = t.point(10);
    const ObjectRecord* owner = vertex.owner;
    if (owner && owner->type == Type::Polyline) {
        const EntityTags polyline(*owner);
        if (polylineKindOf(polyline.integer(70, 0)) == PolylineKind::Planar) {
            p.z = polyline.point(10).z;
            p = geom::ocsToWcs(p, polyline.normal());
        }
    }
    b.point(p);
    return true;
}

}  // namespace

bool addPolylineExtents(const ObjectRecord& entity, ExtentsBuilder& builder) {
    if (entity.type == Type::Vertex) return addVertex(entity, builder);
    PolylineShape shape;
    if (!readPolylineShape(entity, shape) || shape.vertices.empty()) return false;
    if (shape.kind == PolylineKind::Planar) {
        withThickness(builder, shape.thickness, shape.normal, [&](ExtentsBuilder& b) { addPlanarSegments(shape, b); });
    } else {
        for (const PolylineVertex& v : shape.vertices) builder.point(v.point);
    }
    return true;
}

}  // namespace korva::db::geometry
