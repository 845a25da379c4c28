// Curves as painter paths in the plane they lie in, ready to be mapped into the
// picture by a plane's transform: arcs of circles and ellipses as cubic Bezier
// pieces (an affine map keeps them exact), polyline segments with bulges, and
// NURBS curves sampled finely enough for the picture.
#pragma once

#include <QPainterPath>
#include <QPointF>

#include <vector>

#include "kcge.h"

namespace korva::render {

// Appends c + u cos t + v sin t for t from start over sweep (radians; negative
// sweeps run clockwise). The arc begins with a move when moveToStart is set or
// the path is empty, else with a line from the current point.
void appendTrigArc(QPainterPath& path, const QPointF& c, const QPointF& u, const QPointF& v, double start,
                   double sweep, bool moveToStart);

// Appends the segment from the current point to `to` with a bulge (tan of a
// quarter of the included angle, negative clockwise).
void appendBulgeSegment(QPainterPath& path, const QPointF& from, const QPointF& to, double bulge);

// A polyline in its plane: vertices with the bulge of the segment that starts there.
QPainterPath bulgePath(const std::vector<QPointF>& points, const std::vector<double>& bulges, bool closed);

struct NurbsCurve {
    int degree = 3;
    std::vector<double> knots;
    std::vector<KcGePoint3d> controlPoints;
    std::vector<double> weights;  // empty: not rational
};

// Points along the curve, about one every two pixels at pixelsPerUnit (at least
// four per knot span). Invalid data give the control points.
std::vector<KcGePoint3d> sampleNurbs(const NurbsCurve& curve, double pixelsPerUnit);

}  // namespace korva::render
