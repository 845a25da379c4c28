// Bulge arcs and the exact extents of circular and elliptical arcs. Both arcs and
// ellipses have the form c + a cos t + b sin t in world space, whose coordinate k is
// extreme where tan t = b_k / a_k; those angles plus the two ends give the exact box.
#include "geom/CurveMath.h"

#include <cmath>
#include <numbers>

#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::geom {
namespace {

KcGePoint3d trigCurvePoint(const KcGePoint3d& c, const KcGeVector3d& a, const KcGeVector3d& b, double t) {
    return c + a * std::cos(t) + b * std::sin(t);
}

Box3d trigCurveExtents(const KcGePoint3d& c, const KcGeVector3d& a, const KcGeVector3d& b, double start,
                       double end) {
    Box3d box;
    box.add(trigCurvePoint(c, a, b, start));
    box.add(trigCurvePoint(c, a, b, end));
    for (int axis = 0; axis < 3; ++axis) {
        double extremeAngle = std::atan2(b[axis], a[axis]);
        for (double candidate : {extremeAngle, extremeAngle + std::numbers::pi})
            if (isAngleInSweep(candidate, start, end)) box.add(trigCurvePoint(c, a, b, candidate));
    }
    return box;
}

}  // namespace

BulgeArc bulgeToArc(const KcGePoint2d& p0, const KcGePoint2d& p1, double bulge) {
    BulgeArc arc;
    double chord = p0.distanceTo(p1);
    arc.center = p0 + (p1 - p0) * 0.5;
    if (bulge == 0.0 || chord == 0.0) return arc;
    // The centre lies on the chord's perpendicular bisector, at signed distance
    // chord (1 - b^2) / (4 b) to the left of the direction p0 -> p1.
    KcGeVector2d left = KcGeVector2d(p0.y - p1.y, p1.x - p0.x) * (1.0 / chord);
    arc.center = arc.center + left * (chord * (1.0 - bulge * bulge) / (4.0 * bulge));
    arc.radius = chord * (1.0 + bulge * bulge) / (4.0 * std::abs(bulge));
    arc.startAngle = (p0 - arc.center).angle();
    arc.endAngle = (p1 - arc.center).angle();
    arc.counterClockwise = bulge > 0.0;
    return arc;
}

Box3d arcExtents(const KcGePoint3d& centerOcs, double radius, double startAngle, double endAngle,
                 const KcGeVector3d& normal) {
    OcsAxes axes = ocsAxes(normal);
    return trigCurveExtents(ocsToWcs(centerOcs, normal), axes.x * radius, axes.y * radius, startAngle, endAngle);
}

Box3d circleExtents(const KcGePoint3d& centerOcs, double radius, const KcGeVector3d& normal) {
    return arcExtents(centerOcs, radius, 0.0, kTwoPi, normal);
}

Box3d ellipseExtents(const KcGePoint3d& centerWcs, const KcGeVector3d& majorAxisWcs, const KcGeVector3d& normal,
                     double radiusRatio, double startParam, double endParam) {
    KcGeVector3d minorDirection = normal.normal().crossProduct(majorAxisWcs).normal();
    KcGeVector3d minorAxis = minorDirection * (majorAxisWcs.length() * radiusRatio);
    return trigCurveExtents(centerWcs, majorAxisWcs, minorAxis, startParam, endParam);
}

}  // namespace korva::geom
