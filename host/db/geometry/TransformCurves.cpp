// Transformation of lines, points, faces, rays, splines, ellipses, circles, arcs,
// solids and traces. World entities map their points and vectors directly;
// circles, arcs, solids and traces live in their OCS and go through a PlaneMap.
// Circles and arcs cannot take a non-uniform scale in their plane.
#include <cmath>

#include "db/geometry/EllipseMath.h"
#include "db/geometry/PlaneMap.h"
#include "db/geometry/TransformSupport.h"
#include "geom/Angles.h"

namespace korva::db::geometry {

namespace {

// The extrusion and thickness of a world entity (LINE, POINT): the thickness runs
// along the normal, so it scales by how far m stretches the normal.
void mapExtrusion(EntityTags& t, ObjectRecord& scratch, const KcGeMatrix3d& m) {
    const KcGeVector3d normal = t.normal();
    const KcGeVector3d mapped = transformedNormal(m, normal);
    const double thickness = t.real(39, 0.0);
    if (thickness != 0.0) t.setReal(39, thickness * (m * normal.normal()).dotProduct(mapped));
    writeNormal(t, scratch, mapped);
}

void transformPoint(EntityTags& t, ObjectRecord& scratch, const KcGeMatrix3d& m) {
    const PlaneMap plane(m, t.normal());
    if (const Tag* angle = t.first(50)) {
        t.setReal(50, storedDegrees(plane.angle(geom::degreesToRadians(angle->realValue()))));
    }
    mapWorldGroups(t, m, {{10}, {}, {}});
    mapExtrusion(t, scratch, m);
}

void transformSpline(EntityTags& t, const KcGeMatrix3d& m) {
    mapWorldGroups(t, m, {{10, 11}, {}, {12, 13}});
    if (const Tag* normal = t.first(210)) {
        t.setPoint(210, KcGePoint3d::kOrigin + transformedNormal(m, normal->pointValue().asVector()));
    }
    scaleGroups(t, {44}, lengthFactor(m));  // fit tolerance
}

Kcad::ErrorStatus transformEllipse(EntityTags& t, ObjectRecord& scratch, const KcGeMatrix3d& m) {
    const KcGeVector3d normal = t.normal().normal();
    const KcGeVector3d major = t.point(11, {1, 0, 0}).asVector();
    const KcGeVector3d minor = normal.crossProduct(major) * t.real(40, 1.0);
    const double start = t.real(41, 0.0), end = t.real(42, geom::kTwoPi);
    const bool closed = std::abs(geom::sweepAngle(start, end) - geom::kTwoPi) < 1e-12;
    const EllipseArc arc = principalEllipse(m * t.point(10), m * major, m * minor, start, end, closed,
                                            transformedNormal(m, normal));
    // DXF ellipses need a ratio of at least 1e-6: a flatter image is a line, not an ellipse.
    if (arc.majorAxis.isZeroLength() || arc.ratio < 1e-6) return Kcad::eInvalidInput;
    writeGroup(t, scratch, Tag::point(10, arc.center), true);
    writeGroup(t, scratch, Tag::point(11, KcGePoint3d::kOrigin + arc.majorAxis), true);
    writeNormal(t, scratch, arc.normal);
    writeGroup(t, scratch, Tag::real(40, arc.ratio), true);
    writeGroup(t, scratch, Tag::real(41, arc.startParam), arc.startParam != 0.0);
    writeGroup(t, scratch, Tag::real(42, closed ? geom::kTwoPi : arc.endParam), !closed);
    return Kcad::eOk;
}

Kcad::ErrorStatus transformPlanar(EntityTags& t, ObjectRecord& scratch, const KcGeMatrix3d& m) {
    const PlaneMap plane(m, t.normal());
    if (plane.degenerate()) return Kcad::eInvalidInput;
    const bool round = scratch.type == Type::Circle || scratch.type == Type::Arc;
    if (round && !plane.conformal()) return Kcad::eCannotScaleNonUniformly;
    for (int code : {10, 11, 12, 13}) {
        if (code > 10 && round) break;
        writeGroup(t, scratch, Tag::point(code, plane.point(t.point(code))), true);
    }
    if (round) writeGroup(t, scratch, Tag::real(40, t.real(40, 1.0) * plane.scale()), true);
    if (scratch.type == Type::Arc) {
        double start = plane.angle(geom::degreesToRadians(t.real(50, 0.0)));
        double end = plane.angle(geom::degreesToRadians(t.real(51, 0.0)));
        // Arcs run counter-clockwise: a mirror in the plane swaps their ends.
        if (plane.mirrored()) std::swap(start, end);
        writeGroup(t, scratch, Tag::real(50, storedDegrees(start)), true);
        writeGroup(t, scratch, Tag::real(51, storedDegrees(end)), true);
    }
    if (const double thickness = t.real(39, 0.0); thickness != 0.0) t.setReal(39, thickness * plane.thicknessFactor());
    writeNormal(t, scratch, plane.newNormal());
    return Kcad::eOk;
}

}  // namespace

Kcad::ErrorStatus transformCurve(ObjectRecord& scratch, const KcGeMatrix3d& m) {
    EntityTags t(scratch);
    switch (scratch.type) {
        case Type::Line:
            mapWorldGroups(t, m, {{10, 11}, {}, {}});
            mapExtrusion(t, scratch, m);
            break;
        case Type::Point: transformPoint(t, scratch, m); break;
        case Type::Face3d: mapWorldGroups(t, m, {{10, 11, 12, 13}, {}, {}}); break;
        case Type::Ray:
        case Type::Xline: mapWorldGroups(t, m, {{10}, {}, {11}}); break;
        case Type::Spline: transformSpline(t, m); break;
        case Type::Ellipse:
            if (Kcad::ErrorStatus status = transformEllipse(t, scratch, m); status != Kcad::eOk) return status;
            break;
        case Type::Circle:
        case Type::Arc:
        case Type::Solid:
        case Type::Trace:
            if (Kcad::ErrorStatus status = transformPlanar(t, scratch, m); status != Kcad::eOk) return status;
            break;
        default: return Kcad::eNotApplicable;
    }
    t.commit(scratch);
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
