// Lines, points, circles, arcs, ellipses, splines, rays and construction lines,
// and the four-point entities. Circles and arcs are built in their OCS plane,
// ellipses in the plane of their axes, so that any block transform or view keeps
// them exact; rays and construction lines are cut at the picture's edges.
#include <algorithm>
#include <cmath>
#include <limits>

#include "db/geometry/EntityTags.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"
#include "render/EntityPainters.h"
#include "render/PathBuilder.h"

namespace korva::render {

namespace {

using db::geometry::EntityTags;

void drawLine(const DrawItem& item, const EntityTags& t) {
    item.canvas.strokeLine(item.placement.picture(t.point(10)), item.placement.picture(t.point(11)), item.pen());
}

void drawCircleOrArc(const DrawItem& item, const EntityTags& t) {
    const KcGePoint3d centre = t.point(10);
    const double radius = t.real(40, 0.0);
    if (!(radius > 0.0) || !std::isfinite(radius)) return;
    double start = 0.0, sweep = geom::kTwoPi;
    const bool arc = item.entity.type == db::Type::Arc;
    if (arc) {
        start = geom::degreesToRadians(t.real(50, 0.0));
        sweep = geom::sweepAngle(start, geom::degreesToRadians(t.real(51, 360.0)));
    }
    QPainterPath path;
    appendTrigArc(path, {centre.x, centre.y}, {radius, 0.0}, {0.0, radius}, start, sweep, true);
    if (!arc) path.closeSubpath();
    const QTransform toPicture = item.placement.planeToPicture(ocsPlane(t.normal(), centre.z));
    item.canvas.stroke(toPicture.map(path), item.pen());
}

void drawEllipse(const DrawItem& item, const EntityTags& t) {
    const KcGeVector3d major = t.point(11, {1, 0, 0}).asVector();
    const KcGeVector3d normal = t.normal().normal();
    const KcGeVector3d minor = normal.crossProduct(major) * t.real(40, 1.0);
    if (major.isZeroLength()) return;
    const double start = t.real(41, 0.0);
    const double sweep = geom::sweepAngle(start, t.real(42, geom::kTwoPi));
    QPainterPath path;
    appendTrigArc(path, {0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}, start, sweep, true);
    const QTransform toPicture = item.placement.planeToPicture(planeOfAxes(t.point(10), major, minor, normal));
    item.canvas.stroke(toPicture.map(path), item.pen());
}

void drawSpline(const DrawItem& item, const EntityTags& t) {
    NurbsCurve curve;
    curve.degree = static_cast<int>(t.integer(71, 3));
    std::vector<KcGePoint3d> fit;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (!t.isData(i)) continue;
        const db::Tag& tag = t.tags[i];
        if (tag.code == 40 && tag.kind == db::TagKind::Real) curve.knots.push_back(tag.realValue());
        else if (tag.code == 41 && tag.kind == db::TagKind::Real) curve.weights.push_back(tag.realValue());
        else if (tag.code == 10 && tag.isPoint()) curve.controlPoints.push_back(tag.pointValue());
        else if (tag.code == 11 && tag.isPoint()) fit.push_back(tag.pointValue());
    }
    if (curve.weights.size() != curve.controlPoints.size()) curve.weights.clear();
    // Without control points only the fit points are known: join them.
    const std::vector<KcGePoint3d> points =
        curve.controlPoints.empty() ? fit : sampleNurbs(curve, item.placement.pixelsPerUnit());
    if (points.size() < 2) return;
    QPolygonF polygon;
    polygon.reserve(static_cast<int>(points.size()));
    for (const KcGePoint3d& p : points) polygon.push_back(item.placement.picture(p));
    item.canvas.strokePolyline(polygon, item.pen());
}

// Cuts the line base + s d (s from `from` on) to the rectangle; false when it misses.
bool clipLine(const QPointF& base, const QPointF& d, double from, const QRectF& area, QPointF& a, QPointF& b) {
    double low = from, high = std::numeric_limits<double>::infinity();
    const double deltas[2] = {d.x(), d.y()};
    const double starts[2] = {base.x(), base.y()};
    const double mins[2] = {area.left(), area.top()};
    const double maxs[2] = {area.right(), area.bottom()};
    for (int axis = 0; axis < 2; ++axis) {
        if (std::abs(deltas[axis]) < 1e-12) {
            if (starts[axis] < mins[axis] || starts[axis] > maxs[axis]) return false;
            continue;
        }
        double s0 = (mins[axis] - starts[axis]) / deltas[axis];
        double s1 = (maxs[axis] - starts[axis]) / deltas[axis];
        if (s0 > s1) std::swap(s0, s1);
        low = std::max(low, s0);
        high = std::min(high, s1);
    }
    if (!(low <= high) || !std::isfinite(low) || !std::isfinite(high)) return false;
    a = base + d * low;
    b = base + d * high;
    return true;
}

void drawInfiniteLine(const DrawItem& item, const EntityTags& t) {
    const KcGePoint3d base = t.point(10);
    const KcGeVector3d direction = t.point(11, {1, 0, 0}).asVector();
    const QPointF from = item.placement.picture(base);
    const QPointF d = item.placement.picture(base + direction) - from;
    if (std::hypot(d.x(), d.y()) < 1e-9) return;  // seen end-on
    const double rayStart = item.entity.type == db::Type::Ray ? 0.0 : -std::numeric_limits<double>::infinity();
    const Pen pen = item.pen();
    const QRectF area = item.canvas.area().adjusted(-pen.width, -pen.width, pen.width, pen.width);
    QPointF a, b;
    if (clipLine(from, d, rayStart, area, a, b)) item.canvas.strokeLine(a, b, pen);
}

// SOLID and TRACE: corners 1, 2, 4, 3 in the OCS (a missing fourth is the third).
void drawFilledQuad(const DrawItem& item, const EntityTags& t) {
    const KcGeVector3d normal = t.normal();
    const KcGePoint3d third = t.point(12);
    QPolygonF polygon;
    for (int code : {10, 11, 13, 12}) {
        polygon.push_back(item.placement.picture(geom::ocsToWcs(t.point(code, third), normal)));
    }
    item.canvas.fillPolygon(polygon, item.style.color);
    polygon.push_back(polygon.front());
    item.canvas.strokePolyline(polygon, item.pen());
}

// 3DFACE: its edges, less those its flags (70) make invisible.
void drawFace(const DrawItem& item, const EntityTags& t) {
    const KcGePoint3d third = t.point(12);
    QPointF corners[4];
    for (int i = 0; i < 4; ++i) corners[i] = item.placement.picture(t.point(10 + i, third));
    const int64_t hidden = t.integer(70, 0);
    const Pen pen = item.pen();
    for (int i = 0; i < 4; ++i) {
        if (!(hidden & (1 << i))) item.canvas.strokeLine(corners[i], corners[(i + 1) % 4], pen);
    }
}

}  // namespace

bool drawCurveEntity(const DrawItem& item) {
    const db::TypeId type = item.entity.type;
    switch (type) {
        case db::Type::Line: case db::Type::Point: case db::Type::Circle: case db::Type::Arc:
        case db::Type::Ellipse: case db::Type::Spline: case db::Type::Ray: case db::Type::Xline:
        case db::Type::Solid: case db::Type::Trace: case db::Type::Face3d:
            break;
        default:
            return false;
    }
    const EntityTags t(item.entity);
    switch (type) {
        case db::Type::Line: drawLine(item, t); break;
        case db::Type::Point: item.canvas.dot(item.placement.picture(t.point(10)), item.pen()); break;
        case db::Type::Circle: case db::Type::Arc: drawCircleOrArc(item, t); break;
        case db::Type::Ellipse: drawEllipse(item, t); break;
        case db::Type::Spline: drawSpline(item, t); break;
        case db::Type::Ray: case db::Type::Xline: drawInfiniteLine(item, t); break;
        case db::Type::Solid: case db::Type::Trace: drawFilledQuad(item, t); break;
        default: drawFace(item, t); break;
    }
    return true;
}

}  // namespace korva::render
