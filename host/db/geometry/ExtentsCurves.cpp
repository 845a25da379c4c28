// Extents of lines, points, circles, arcs, ellipses, splines and the four-point
// entities (SOLID, TRACE, 3DFACE). Arcs and ellipses are exact: the box holds the
// ends and the axis extremes that lie on the arc.
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "db/geometry/ExtentsBuilder.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

bool addSpline(const EntityTags& t, ExtentsBuilder& builder) {
    std::vector<double> knots, weights;
    std::vector<KcGePoint3d> control, fit;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (!t.isData(i)) continue;
        const Tag& tag = t.tags[i];
        if (tag.code == 40 && tag.kind == TagKind::Real) knots.push_back(tag.realValue());
        else if (tag.code == 41 && tag.kind == TagKind::Real) weights.push_back(tag.realValue());
        else if (tag.code == 10 && tag.isPoint()) control.push_back(tag.pointValue());
        else if (tag.code == 11 && tag.isPoint()) fit.push_back(tag.pointValue());
    }
    if (!control.empty()) {
        if (weights.size() != control.size()) weights.clear();
        builder.nurbs(static_cast<int>(t.integer(71, 3)), knots, control, weights);
        return true;
    }
    // Without control points only the fit points are known.
    for (const KcGePoint3d& p : fit) builder.point(p);
    return !fit.empty();
}

}  // namespace

bool addCurveExtents(const ObjectRecord& entity, ExtentsBuilder& builder) {
    const EntityTags t(entity);
    const KcGeVector3d normal = t.normal();
    const double thickness = t.real(39, 0.0);
    switch (entity.type) {
        case Type::Line:
            withThickness(builder, thickness, normal, [&](ExtentsBuilder& b) {
                b.point(t.point(10));
                b.point(t.point(11));
            });
            return true;
        case Type::Point:
            withThickness(builder, thickness, normal, [&](ExtentsBuilder& b) { b.point(t.point(10)); });
            return true;
        case Type::Circle:
        case Type::Arc: {
            const double radius = t.real(40, 0.0);
            double start = 0.0, end = geom::kTwoPi;
            if (entity.type == Type::Arc) {
                start = geom::degreesToRadians(t.real(50, 0.0));
                end = geom::degreesToRadians(t.real(51, 0.0));
            }
            withThickness(builder, thickness, normal,
                          [&](ExtentsBuilder& b) { b.ocsArc(t.point(10), radius, start, end, normal); });
            return true;
        }
        case Type::Ellipse: {
            const KcGeVector3d major = t.point(11, {1, 0, 0}).asVector();
            const KcGeVector3d minor = normal.normal().crossProduct(major) * t.real(40, 1.0);
            builder.trigCurve(t.point(10), major, minor, t.real(41, 0.0), t.real(42, geom::kTwoPi));
            return true;
        }
        case Type::Spline:
            return addSpline(t, builder);
        case Type::Solid:
        case Type::Trace:
            withThickness(builder, thickness, normal, [&](ExtentsBuilder& b) {
                for (int code = 10; code <= 13; ++code) b.point(geom::ocsToWcs(t.point(code, t.point(12)), normal));
            });
            return true;
        case Type::Face3d:
            for (int code = 10; code <= 13; ++code) builder.point(t.point(code, t.point(12)));
            return true;
        default:
            return false;
    }
}

}  // namespace korva::db::geometry
