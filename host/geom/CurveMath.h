// Curve geometry the drawing database needs for entities: polyline bulge segments as
// arcs, exact extents of arcs, circles and ellipses, and NURBS evaluation and extents.
// Arcs and circles are given in the OCS of their normal; ellipses and NURBS in WCS.
#pragma once

#include <vector>

#include "geom/Box3d.h"
#include "kcge.h"

namespace korva::geom {

// The arc of a polyline segment from p0 to p1. radius is 0 when the segment is straight
// (bulge 0 or coincident ends). startAngle and endAngle are the directions of p0 and p1
// seen from the centre, in [0, 2 pi); counterClockwise tells which way the segment runs
// from p0 to p1, so a clockwise arc covers the counter-clockwise sweep from endAngle to
// startAngle.
struct BulgeArc {
    KcGePoint2d center;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;
    bool counterClockwise = true;

    bool isArc() const { return radius > 0.0; }
};

// bulge = tan(included angle / 4); negative bulges run clockwise.
BulgeArc bulgeToArc(const KcGePoint2d& p0, const KcGePoint2d& p1, double bulge);

// Exact box of the arc of the given radius around centerOcs, swept counter-clockwise
// from startAngle to endAngle in the OCS plane of normal (at the centre's elevation).
// Equal angles mean a full circle.
Box3d arcExtents(const KcGePoint3d& centerOcs, double radius, double startAngle, double endAngle,
                 const KcGeVector3d& normal);
Box3d circleExtents(const KcGePoint3d& centerOcs, double radius, const KcGeVector3d& normal);

// Exact box of the ellipse c + a cos t + b sin t for t from startParam to endParam
// (counter-clockwise about normal), where a is the major axis and b the minor axis,
// radiusRatio times as long, in the direction normal x a.
Box3d ellipseExtents(const KcGePoint3d& centerWcs, const KcGeVector3d& majorAxisWcs, const KcGeVector3d& normal,
                     double radiusRatio, double startParam, double endParam);

// True when the data describe a B-spline: degree >= 0, at least degree + 1 control
// points, (count + degree + 1) non-decreasing finite knots, a non-empty domain
// [knots[degree], knots[count]], and weights either empty or one positive per point.
bool isValidNurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                  const std::vector<double>& weights);

// The curve point at t (clamped to the domain) by de Boor's algorithm in homogeneous
// coordinates. Empty weights mean a non-rational curve. Invalid data (see isValidNurbs)
// give the first control point, or the origin when there is none.
KcGePoint3d evaluateNurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                          const std::vector<double>& weights, double t);

// Box of the curve over its domain. The curve is sampled samplesPerSpan times per
// non-empty knot span, ends included; each axis extreme is then refined by a
// golden-section search between the neighbouring samples, to about 1e-12 of that
// parameter interval. Every point used lies on the curve, so the box never exceeds the
// true extents; it can fall short only where an axis has several local extremes within
// one sample spacing. Invalid data give the box of the control points.
Box3d nurbsExtents(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                   const std::vector<double>& weights, int samplesPerSpan = 32);

}  // namespace korva::geom
