// Outlines of lines, points, circles, arcs, ellipses, splines, rays, construction
// lines, leaders and multilines.
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "editor/selection/EntityOutline.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::editor {

namespace {

void pointsOf(const db::geometry::EntityTags& t, int code, ShapeBuilder& builder, bool closed) {
    builder.beginChain();
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (t.isData(i) && t.tags[i].code == code && t.tags[i].isPoint()) builder.point(t.tags[i].pointValue());
    }
    builder.endChain(closed);
}

void spline(const db::geometry::EntityTags& t, ShapeBuilder& builder) {
    std::vector<double> knots, weights;
    std::vector<KcGePoint3d> control, fit;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (!t.isData(i)) continue;
        const db::Tag& tag = t.tags[i];
        if (tag.code == 40 && tag.kind == db::TagKind::Real) knots.push_back(tag.realValue());
        else if (tag.code == 41 && tag.kind == db::TagKind::Real) weights.push_back(tag.realValue());
        else if (tag.code == 10 && tag.isPoint()) control.push_back(tag.pointValue());
        else if (tag.code == 11 && tag.isPoint()) fit.push_back(tag.pointValue());
    }
    builder.beginChain();
    if (!control.empty()) {
        if (weights.size() != control.size()) weights.clear();
        builder.nurbs(static_cast<int>(t.integer(71, 3)), knots, control, weights);
    } else {
        // Without control points the fit points are what is known of the curve.
        for (const KcGePoint3d& p : fit) builder.point(p);
    }
    builder.endChain(false);
}

}  // namespace

bool drawCurveOutline(const db::ObjectRecord& entity, ShapeBuilder& builder) {
    using db::Type::Arc, db::Type::Circle, db::Type::Ellipse, db::Type::Leader, db::Type::Line, db::Type::MLine,
        db::Type::Point, db::Type::Ray, db::Type::Spline, db::Type::Xline, db::Type::Tolerance, db::Type::Shape;
    const db::TypeId type = entity.type;
    if (type != Line && type != Point && type != Circle && type != Arc && type != Ellipse && type != Spline &&
        type != Ray && type != Xline && type != Leader && type != MLine && type != Tolerance && type != Shape) {
        return false;
    }
    const db::geometry::EntityTags t(entity);
    const KcGeVector3d normal = t.normal();
    switch (type) {
        case Line:
            builder.polyline({t.point(10), t.point(11)}, false);
            break;
        case Point:
        case Tolerance:
            builder.polyline({t.point(10)}, false);
            break;
        case Shape:
            builder.polyline({geom::ocsToWcs(t.point(10), normal)}, false);
            break;
        case Circle:
        case Arc: {
            const double radius = t.real(40, 0.0);
            const geom::OcsAxes axes = geom::ocsAxes(normal);
            const KcGePoint3d center = geom::ocsToWcs(t.point(10), normal);
            double start = 0.0, end = geom::kTwoPi;
            if (type == Arc) {
                start = geom::degreesToRadians(t.real(50, 0.0));
                end = geom::degreesToRadians(t.real(51, 0.0));
                while (end <= start) end += geom::kTwoPi;
            }
            builder.beginChain();
            builder.trigCurve(center, axes.x * radius, axes.y * radius, start, end);
            builder.endChain(type == Circle);
            break;
        }
        case Ellipse: {
            const KcGeVector3d major = t.point(11, {1, 0, 0}).asVector();
            const KcGeVector3d minor = normal.normal().crossProduct(major) * t.real(40, 1.0);
            const double start = t.real(41, 0.0);
            double end = t.real(42, geom::kTwoPi);
            while (end <= start) end += geom::kTwoPi;
            builder.beginChain();
            builder.trigCurve(t.point(10), major, minor, start, end);
            builder.endChain(false);
            break;
        }
        case Spline: spline(t, builder); break;
        case Ray:
        case Xline: builder.infiniteLine(t.point(10), t.point(11, {1, 0, 0}).asVector(), type == Ray); break;
        case Leader: pointsOf(t, 10, builder, false); break;
        case MLine: pointsOf(t, 11, builder, (t.integer(71, 0) & 2) != 0); break;
        default: break;
    }
    return true;
}

}  // namespace korva::editor
