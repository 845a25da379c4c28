// Exact boxes and principal axes of affine images of circles and ellipses.
#include "db/geometry/EllipseMath.h"

#include <cmath>
#include <numbers>

#include "geom/Angles.h"

namespace korva::db::geometry {

namespace {

KcGePoint3d curvePoint(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double t) {
    return c + u * std::cos(t) + v * std::sin(t);
}

}  // namespace

geom::Box3d trigCurveBox(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start,
                         double end) {
    geom::Box3d box;
    box.add(curvePoint(c, u, v, start));
    box.add(curvePoint(c, u, v, end));
    // Coordinate k is extreme where tan t = v_k / u_k.
    for (int axis = 0; axis < 3; ++axis) {
        const double extreme = std::atan2(v[axis], u[axis]);
        for (double candidate : {extreme, extreme + std::numbers::pi}) {
            if (geom::isAngleInSweep(candidate, start, end)) box.add(curvePoint(c, u, v, candidate));
        }
    }
    return box;
}

EllipseArc principalEllipse(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start,
                            double end, bool closed, const KcGeVector3d& normal) {
    // |u cos t + v sin t| is largest at t0 with tan 2 t0 = 2 u.v / (u.u - v.v); there
    // the curve point is the end of the major axis, a quarter turn later the minor.
    const double t0 = 0.5 * std::atan2(2.0 * u.dotProduct(v), u.lengthSqrd() - v.lengthSqrd());
    const KcGeVector3d major = u * std::cos(t0) + v * std::sin(t0);
    const KcGeVector3d minor = v * std::cos(t0) - u * std::sin(t0);
    EllipseArc arc;
    arc.center = c;
    arc.majorAxis = major;
    arc.normal = normal;
    const double majorLength = major.length();
    arc.ratio = majorLength > 0.0 ? std::min(1.0, minor.length() / majorLength) : 1.0;
    // With s = t - t0 the curve is c + major cos s + minor sin s. An ELLIPSE runs
    // counter-clockwise about its normal; if minor points the other way, the stored
    // parameter is -s and the ends swap.
    const bool reversed = normal.crossProduct(major).dotProduct(minor) < 0.0;
    if (closed) {
        arc.startParam = 0.0;
        arc.endParam = geom::kTwoPi;
        return arc;
    }
    double s0 = start - t0, s1 = end - t0;
    if (reversed) {
        const double first = -s1;
        s1 = -s0;
        s0 = first;
    }
    arc.startParam = geom::normalizeAngle(s0);
    arc.endParam = geom::normalizeAngle(s1);
    return arc;
}

}  // namespace korva::db::geometry
