// The extents builder and the dispatch of entity types to their extents code.
#include "db/geometry/ExtentsBuilder.h"

#include "db/geometry/EllipseMath.h"
#include "geom/CurveMath.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

void ExtentsBuilder::trigCurve(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start,
                               double end) {
    box_.add(trigCurveBox(toWorld_ * c, toWorld_ * u, toWorld_ * v, start, end));
}

void ExtentsBuilder::ocsArc(const KcGePoint3d& centerOcs, double radius, double start, double end,
                            const KcGeVector3d& normal) {
    const geom::OcsAxes axes = geom::ocsAxes(normal);
    trigCurve(geom::ocsToWcs(centerOcs, normal), axes.x * radius, axes.y * radius, start, end);
}

void ExtentsBuilder::nurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                           const std::vector<double>& weights) {
    // NURBS are invariant under affine maps: transform the control points.
    std::vector<KcGePoint3d> mapped;
    mapped.reserve(controlPoints.size());
    for (const KcGePoint3d& p : controlPoints) mapped.push_back(toWorld_ * p);
    box_.add(geom::nurbsExtents(degree, knots, mapped, weights));
}

ExtentsBuilder ExtentsBuilder::shifted(const KcGeVector3d& offset) const {
    return ExtentsBuilder(box_, toWorld_ * KcGeMatrix3d::translation(offset), openBlocks_);
}

ExtentsBuilder ExtentsBuilder::nested(const KcGeMatrix3d& blockToOwner) const {
    return ExtentsBuilder(box_, toWorld_ * blockToOwner, openBlocks_);
}

bool addEntityExtents(const ObjectRecord& entity, ExtentsBuilder& builder) {
    if (entity.erased) return false;
    switch (entity.type) {
        case Type::Line: case Type::Point: case Type::Circle: case Type::Arc: case Type::Ellipse:
        case Type::Spline: case Type::Solid: case Type::Trace: case Type::Face3d:
            return addCurveExtents(entity, builder);
        case Type::LwPolyline: case Type::Polyline: case Type::Vertex:
            return addPolylineExtents(entity, builder);
        case Type::Text: case Type::Attrib: case Type::AttDef: case Type::MText: case Type::Shape:
            return addTextExtents(entity, builder);
        case Type::Insert: case Type::Dimension:
            return addBlockExtents(entity, builder);
        case Type::Hatch: case Type::Image: case Type::Wipeout: case Type::Viewport: case Type::MLine:
        case Type::Leader: case Type::Tolerance:
            return addOtherExtents(entity, builder);
        default:
            // Rays and construction lines are infinite; regions, solids and bodies need
            // their modeler data; unknown types have no known geometry.
            return false;
    }
}

}  // namespace korva::db::geometry
