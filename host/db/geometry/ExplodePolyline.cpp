// Explode of polylines: LWPOLYLINE and 2D POLYLINE segments become LINEs and
// ARCs, 3D polyline segments LINEs, each with the polyline's common properties
// (layer, colour, linetype, ...) and thickness. Widths are not kept; zero-length
// segments give nothing.
#include "db/geometry/ExplodeSupport.h"
#include "db/geometry/PolylineVertices.h"
#include "db/geometry/TransformSupport.h"
#include "geom/CurveMath.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

std::unique_ptr<KcDbEntity> linePart(const ObjectRecord& from, const KcGePoint3d& start, const KcGePoint3d& end,
                                     const PolylineShape& shape) {
    std::vector<Tag> fields{Tag::point(10, start), Tag::point(11, end)};
    if (shape.thickness != 0.0) fields.push_back(Tag::real(39, shape.thickness));
    if (shape.kind == PolylineKind::Planar && shape.normal.normal() != KcGeVector3d::kZAxis) {
        fields.push_back(Tag::point(210, KcGePoint3d::kOrigin + shape.normal.normal()));
    }
    return newPart(Type::Line, from, fields);
}

std::unique_ptr<KcDbEntity> arcPart(const ObjectRecord& from, const geom::BulgeArc& arc, double elevation,
                                    const PolylineShape& shape) {
    const double start = arc.counterClockwise ? arc.startAngle : arc.endAngle;
    const double end = arc.counterClockwise ? arc.endAngle : arc.startAngle;
    std::vector<Tag> fields{Tag::point(10, {arc.center.x, arc.center.y, elevation}), Tag::real(40, arc.radius),
                            Tag::real(50, storedDegrees(start)), Tag::real(51, storedDegrees(end))};
    if (shape.thickness != 0.0) fields.push_back(Tag::real(39, shape.thickness));
    if (shape.normal.normal() != KcGeVector3d::kZAxis) {
        fields.push_back(Tag::point(210, KcGePoint3d::kOrigin + shape.normal.normal()));
    }
    return newPart(Type::Arc, from, fields);
}

}  // namespace

Kcad::ErrorStatus explodePolyline(const ObjectRecord& polyline, Parts& parts) {
    PolylineShape shape;
    if (!readPolylineShape(polyline, shape)) return Kcad::eNotApplicable;
    if (shape.kind == PolylineKind::Mesh || shape.kind == PolylineKind::PolyFace) return Kcad::eNotApplicable;
    const size_t n = shape.vertices.size();
    const size_t segments = n < 2 ? 0 : (shape.closed ? n : n - 1);
    for (size_t i = 0; i < segments; ++i) {
        const PolylineVertex& a = shape.vertices[i];
        const PolylineVertex& b = shape.vertices[(i + 1) % n];
        if (a.point.isEqualTo(b.point)) continue;
        if (shape.kind == PolylineKind::Curve3d) {
            parts.push_back(linePart(polyline, a.point, b.point, shape));
            continue;
        }
        const geom::BulgeArc arc = geom::bulgeToArc(a.point.convert2d(), b.point.convert2d(), a.bulge);
        if (arc.isArc()) {
            parts.push_back(arcPart(polyline, arc, a.point.z, shape));
        } else {
            const KcGePoint3d start = geom::ocsToWcs(a.point, shape.normal);
            parts.push_back(linePart(polyline, start, geom::ocsToWcs(b.point, shape.normal), shape));
        }
    }
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
