// Arcs as Bezier pieces, bulge segments and NURBS sampling.
#include "render/PathBuilder.h"

#include <algorithm>
#include <cmath>

#include "geom/Angles.h"
#include "geom/CurveMath.h"

namespace korva::render {

namespace {

constexpr double kQuarterTurn = 1.5707963267948966;
constexpr int kMostNurbsSamples = 8192;

}  // namespace

void appendTrigArc(QPainterPath& path, const QPointF& c, const QPointF& u, const QPointF& v, double start,
                   double sweep, bool moveToStart) {
    auto point = [&](double t) { return c + u * std::cos(t) + v * std::sin(t); };
    auto tangent = [&](double t) { return v * std::cos(t) - u * std::sin(t); };
    const QPointF first = point(start);
    if (moveToStart || path.elementCount() == 0) path.moveTo(first);
    else path.lineTo(first);
    if (!std::isfinite(sweep) || sweep == 0.0) return;
    // Pieces of at most a quarter turn; each is a cubic with handles k along the tangents.
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / kQuarterTurn - 1e-9)));
    const double step = sweep / pieces;
    const double k = 4.0 / 3.0 * std::tan(step / 4.0);
    for (int i = 0; i < pieces; ++i) {
        const double t0 = start + step * i, t1 = t0 + step;
        const QPointF p0 = point(t0), p3 = point(t1);
        path.cubicTo(p0 + tangent(t0) * k, p3 - tangent(t1) * k, p3);
    }
}

void appendBulgeSegment(QPainterPath& path, const QPointF& from, const QPointF& to, double bulge) {
    const geom::BulgeArc arc = geom::bulgeToArc({from.x(), from.y()}, {to.x(), to.y()}, bulge);
    if (!arc.isArc() || !std::isfinite(arc.radius)) {
        path.lineTo(to);
        return;
    }
    const double sweep = arc.counterClockwise ? geom::sweepAngle(arc.startAngle, arc.endAngle)
                                              : -geom::sweepAngle(arc.endAngle, arc.startAngle);
    const QPointF centre(arc.center.x, arc.center.y);
    appendTrigArc(path, centre, {arc.radius, 0.0}, {0.0, arc.radius}, arc.startAngle, sweep, false);
    path.lineTo(to);  // the exact end, whatever rounding the arc had
}

QPainterPath bulgePath(const std::vector<QPointF>& points, const std::vector<double>& bulges, bool closed) {
    QPainterPath path;
    if (points.empty()) return path;
    path.moveTo(points.front());
    const size_t n = points.size();
    const size_t segments = closed ? n : n - 1;
    for (size_t i = 0; i < segments; ++i) {
        const QPointF& to = points[(i + 1) % n];
        const double bulge = i < bulges.size() ? bulges[i] : 0.0;
        if (bulge == 0.0) path.lineTo(to);
        else appendBulgeSegment(path, points[i], to, bulge);
    }
    if (closed) path.closeSubpath();
    return path;
}

std::vector<KcGePoint3d> sampleNurbs(const NurbsCurve& curve, double pixelsPerUnit) {
    if (!geom::isValidNurbs(curve.degree, curve.knots, curve.controlPoints, curve.weights)) return curve.controlPoints;
    double polygonLength = 0.0;
    for (size_t i = 1; i < curve.controlPoints.size(); ++i) {
        polygonLength += curve.controlPoints[i].distanceTo(curve.controlPoints[i - 1]);
    }
    const size_t degree = static_cast<size_t>(curve.degree);
    const size_t count = curve.controlPoints.size();
    std::vector<std::pair<double, double>> spans;  // non-empty knot spans of the domain
    for (size_t i = degree; i < count; ++i) {
        if (curve.knots[i + 1] > curve.knots[i]) spans.emplace_back(curve.knots[i], curve.knots[i + 1]);
    }
    if (spans.empty()) return curve.controlPoints;
    const double wanted = std::isfinite(polygonLength * pixelsPerUnit) ? polygonLength * pixelsPerUnit / 2.0 : 0.0;
    const double most = std::max(4.0, static_cast<double>(kMostNurbsSamples) / static_cast<double>(spans.size()));
    const int perSpan = static_cast<int>(std::clamp(wanted / static_cast<double>(spans.size()), 4.0, most));
    std::vector<KcGePoint3d> points;
    points.reserve(spans.size() * perSpan + 1);
    for (const auto& [from, to] : spans) {
        for (int i = 0; i < perSpan; ++i) {
            const double t = from + (to - from) * i / perSpan;
            points.push_back(geom::evaluateNurbs(curve.degree, curve.knots, curve.controlPoints, curve.weights, t));
        }
    }
    points.push_back(geom::evaluateNurbs(curve.degree, curve.knots, curve.controlPoints, curve.weights,
                                         spans.back().second));
    return points;
}

}  // namespace korva::render
