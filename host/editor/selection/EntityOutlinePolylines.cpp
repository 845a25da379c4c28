// Outlines of LWPOLYLINE and POLYLINE: planar polylines with their bulged
// segments as arcs, 3D polylines as straight segments; meshes and polyface
// meshes by their extents box.
#include "db/EntityGeometry.h"
#include "db/geometry/PolylineVertices.h"
#include "editor/selection/EntityOutline.h"
#include "geom/Angles.h"
#include "geom/CurveMath.h"
#include "geom/Ocs.h"

namespace korva::editor {

namespace {

void planar(const db::geometry::PolylineShape& shape, ShapeBuilder& builder) {
    const geom::OcsAxes axes = geom::ocsAxes(shape.normal);
    const size_t n = shape.vertices.size();
    builder.beginChain();
    for (size_t i = 0; i < n; ++i) {
        const db::geometry::PolylineVertex& v = shape.vertices[i];
        builder.point(geom::ocsToWcs(v.point, shape.normal));
        const bool hasNext = i + 1 < n || (shape.closed && n > 1);
        if (!hasNext || v.bulge == 0.0) continue;
        const KcGePoint3d& next = shape.vertices[(i + 1) % n].point;
        const geom::BulgeArc arc = geom::bulgeToArc(v.point.convert2d(), next.convert2d(), v.bulge);
        if (!arc.isArc()) continue;
        const KcGePoint3d center = geom::ocsToWcs(KcGePoint3d(arc.center.x, arc.center.y, v.point.z), shape.normal);
        double start = arc.startAngle, end = arc.endAngle;
        if (arc.counterClockwise) {
            while (end <= start) end += geom::kTwoPi;
        } else {
            while (end >= start) end -= geom::kTwoPi;
        }
        builder.trigCurve(center, axes.x * arc.radius, axes.y * arc.radius, start, end);
    }
    builder.endChain(shape.closed);
}

}  // namespace

bool drawPolylineOutline(const db::ObjectRecord& entity, ShapeBuilder& builder) {
    if (entity.type != db::Type::LwPolyline && entity.type != db::Type::Polyline) return false;
    db::geometry::PolylineShape shape;
    if (!db::geometry::readPolylineShape(entity, shape) || shape.vertices.empty()) return true;
    switch (shape.kind) {
        case db::geometry::PolylineKind::Planar: planar(shape, builder); break;
        case db::geometry::PolylineKind::Curve3d: {
            builder.beginChain();
            for (const auto& v : shape.vertices) builder.point(v.point);
            builder.endChain(shape.closed);
            break;
        }
        default: {
            geom::Box3d box;
            if (db::entityExtents(entity, box)) builder.boxEdges(box);
            break;
        }
    }
    return true;
}

}  // namespace korva::editor
