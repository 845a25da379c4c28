// Plane geometry of the arc-drawing prompts (ARC, CIRCLE 3P, PLINE arc
// segments), worked out in the XY plane of the current UCS: circles through
// three points, arcs from a start point and a tangent, a centre, an included
// angle or a radius, and the bulge (tangent of a quarter of the included angle)
// that LWPOLYLINE arc segments store.
#pragma once

#include <optional>

#include "kcge.h"

namespace korva::commands {

// A counter-clockwise arc: from startAngle to endAngle about center.
struct PlaneArc {
    KcGePoint2d center;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;
};

double angleOf(const KcGeVector2d& v);              // in [0, 2 pi)
double angleFromTo(const KcGePoint2d& from, const KcGePoint2d& to);
// The angle folded into (-pi, pi].
double signedAngle(double angle);
KcGePoint2d polarPoint(const KcGePoint2d& from, double angle, double distance);

// The centre of the circle through three points; nothing for collinear points.
std::optional<KcGePoint2d> circleCenter(const KcGePoint2d& a, const KcGePoint2d& b, const KcGePoint2d& c);

// The arc from `start` through `through` to `end`.
std::optional<PlaneArc> arcThroughPoints(const KcGePoint2d& start, const KcGePoint2d& through, const KcGePoint2d& end);
// The arc from `start` to `end` sweeping `includedAngle` (negative: clockwise).
std::optional<PlaneArc> arcFromSweep(const KcGePoint2d& start, const KcGePoint2d& end, double includedAngle);
// The arc about `center` from `start`, counter-clockwise to the direction of `end`.
PlaneArc arcAboutCenter(const KcGePoint2d& center, const KcGePoint2d& start, const KcGePoint2d& end);

// The signed sweep of the arc that leaves `start` along the direction `tangentAngle` and reaches `end`.
double sweepFromTangent(const KcGePoint2d& start, double tangentAngle, const KcGePoint2d& end);
// The signed sweep from `start` through `through` to `end`; nothing for collinear points.
std::optional<double> sweepThroughPoints(const KcGePoint2d& start, const KcGePoint2d& through, const KcGePoint2d& end);
// The included angle of a chord of that length (negative: the major arc).
std::optional<double> sweepOfChord(double radius, double chordLength);

double bulgeOfSweep(double sweep);
// The direction in which a segment with that bulge arrives at its end point.
double endTangentAngle(const KcGePoint2d& start, const KcGePoint2d& end, double bulge);

}  // namespace korva::commands
