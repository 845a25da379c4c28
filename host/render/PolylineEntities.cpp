// Polylines. A 2D polyline is built in its OCS plane with its bulges as arcs;
// one with widths is filled as its outline: a constant width as the stroke of
// the whole path (mitred corners), varying widths segment by segment, each a
// tapered band. 3D polylines join their vertices; meshes draw their grid and
// polyface meshes the visible edges of their faces.
#include <algorithm>
#include <cmath>

#include <QPainterPathStroker>

#include "db/geometry/EntityTags.h"
#include "db/geometry/PolylineVertices.h"
#include "geom/CurveMath.h"
#include "geom/Angles.h"
#include "render/EntityPainters.h"
#include "render/PathBuilder.h"

namespace korva::render {

namespace {

using db::geometry::EntityTags;
using db::geometry::PolylineKind;
using db::geometry::PolylineShape;

struct SegmentWidths {
    double start = 0.0;
    double end = 0.0;
};

// Start and end widths per vertex, in the order readPolylineShape lists the
// vertices: LWPOLYLINE 43 (constant) or 40/41 after each 10; POLYLINE 40/41 as
// defaults, each VERTEX's own 40/41 (spline frame vertices left out).
std::vector<SegmentWidths> readWidths(const db::ObjectRecord& polyline) {
    std::vector<SegmentWidths> widths;
    const EntityTags t(polyline);
    if (polyline.type == db::Type::LwPolyline) {
        const double constant = t.real(43, 0.0);
        for (size_t i = 0; i < t.extendedDataStart(); ++i) {
            if (!t.isData(i)) continue;
            const db::Tag& tag = t.tags[i];
            if (tag.code == 10 && tag.isPoint()) widths.push_back({constant, constant});
            else if (tag.code == 40 && !widths.empty()) widths.back().start = tag.realValue();
            else if (tag.code == 41 && !widths.empty()) widths.back().end = tag.realValue();
        }
        return widths;
    }
    const bool fitted = (t.integer(70, 0) & 6) != 0;
    const SegmentWidths defaults{t.real(40, 0.0), t.real(41, 0.0)};
    if (!polyline.container) return widths;
    for (const db::ObjectRecord* vertex : polyline.container->members) {
        if (vertex->erased || vertex->type != db::Type::Vertex) continue;
        const EntityTags v(*vertex);
        if (fitted && (v.integer(70, 0) & 16)) continue;
        widths.push_back({v.real(40, defaults.start), v.real(41, defaults.end)});
    }
    return widths;
}

double widestOf(const std::vector<SegmentWidths>& widths) {
    double widest = 0.0;
    for (const SegmentWidths& w : widths) widest = std::max({widest, w.start, w.end});
    return std::isfinite(widest) ? widest : 0.0;
}

bool constantWidth(const std::vector<SegmentWidths>& widths, size_t segments) {
    for (size_t i = 0; i < segments; ++i) {
        if (widths[i].start != widths.front().start || widths[i].end != widths.front().start) return false;
    }
    return true;
}

// The band of one segment: offsets of the centre line by half the width on each
// side, the width running linearly from start to end; positive turn, so that
// bands unite under the winding rule.
QPolygonF segmentBand(const QPointF& from, const QPointF& to, double bulge, const SegmentWidths& width) {
    QPolygonF left, right;
    const geom::BulgeArc arc = geom::bulgeToArc({from.x(), from.y()}, {to.x(), to.y()}, bulge);
    if (bulge == 0.0 || !arc.isArc()) {
        const QPointF along = to - from;
        const double length = std::hypot(along.x(), along.y());
        if (length == 0.0) return {};
        const QPointF normal(-along.y() / length, along.x() / length);
        left << from + normal * (width.start / 2) << to + normal * (width.end / 2);
        right << from - normal * (width.start / 2) << to - normal * (width.end / 2);
    } else {
        const double sweep = arc.counterClockwise ? geom::sweepAngle(arc.startAngle, arc.endAngle)
                                                  : -geom::sweepAngle(arc.endAngle, arc.startAngle);
        const int steps = std::clamp(static_cast<int>(std::abs(sweep) / 0.05), 4, 256);
        const QPointF centre(arc.center.x, arc.center.y);
        for (int i = 0; i <= steps; ++i) {
            const double f = static_cast<double>(i) / steps;
            const double angle = arc.startAngle + sweep * f;
            const double half = (width.start + (width.end - width.start) * f) / 2.0;
            const QPointF radial(std::cos(angle), std::sin(angle));
            left << centre + radial * (arc.radius + half);
            right << centre + radial * (arc.radius - half);
        }
    }
    QPolygonF band = left;
    for (auto it = right.rbegin(); it != right.rend(); ++it) band << *it;
    double area = 0.0;
    for (int i = 0; i < band.size(); ++i) {
        const QPointF& a = band[i];
        const QPointF& b = band[(i + 1) % band.size()];
        area += a.x() * b.y() - b.x() * a.y();
    }
    if (area < 0.0) std::reverse(band.begin(), band.end());
    return band;
}

// The filled outline of a polyline with widths, in its plane.
QPainterPath widthOutline(const QPainterPath& centreLine, const std::vector<QPointF>& points,
                          const std::vector<double>& bulges, const std::vector<SegmentWidths>& widths, bool closed) {
    const size_t n = points.size();
    const size_t segments = closed ? n : n - 1;
    if (constantWidth(widths, segments)) {
        QPainterPathStroker stroker;
        stroker.setWidth(widths.front().start);
        stroker.setCapStyle(Qt::FlatCap);
        stroker.setJoinStyle(Qt::MiterJoin);
        return stroker.createStroke(centreLine);
    }
    QPainterPath outline;
    outline.setFillRule(Qt::WindingFill);
    for (size_t i = 0; i < segments; ++i) {
        const QPolygonF band = segmentBand(points[i], points[(i + 1) % n], bulges[i], widths[i]);
        if (!band.isEmpty()) outline.addPolygon(band);
        outline.closeSubpath();
    }
    return outline;
}

void drawPlanar(const DrawItem& item, const PolylineShape& shape) {
    std::vector<QPointF> points;
    std::vector<double> bulges;
    for (const db::geometry::PolylineVertex& v : shape.vertices) {
        points.emplace_back(v.point.x, v.point.y);
        bulges.push_back(v.bulge);
    }
    const bool closed = shape.closed && points.size() > 1;
    const QPainterPath centreLine = bulgePath(points, bulges, closed);
    const QTransform toPicture = item.placement.planeToPicture(ocsPlane(shape.normal, shape.vertices.front().point.z));
    const Pen pen = item.pen();
    const std::vector<SegmentWidths> widths = readWidths(item.entity);
    // A band no wider than the pen shows as the pen's line.
    if (points.size() > 1 && widths.size() == points.size() &&
        widestOf(widths) * item.placement.pixelsPerUnit() > pen.width) {
        item.canvas.fill(toPicture.map(widthOutline(centreLine, points, bulges, widths, closed)), item.style.color);
        return;
    }
    if (points.size() == 1) item.canvas.dot(toPicture.map(points.front()), pen);
    else item.canvas.stroke(toPicture.map(centreLine), pen);
}

void drawCurve3d(const DrawItem& item, const PolylineShape& shape) {
    QPolygonF polygon;
    for (const auto& v : shape.vertices) polygon.push_back(item.placement.picture(v.point));
    if (shape.closed && polygon.size() > 2) polygon.push_back(polygon.front());
    item.canvas.strokePolyline(polygon, item.pen());
}

// An M x N mesh: its rows and columns, closed in M (flag 1) or N (flag 32).
void drawMesh(const DrawItem& item, const PolylineShape& shape) {
    const EntityTags t(item.entity);
    const int64_t flags = t.integer(70, 0);
    const int64_t m = t.integer(71, 0), n = t.integer(72, 0);
    if (m < 1 || n < 1 || static_cast<size_t>(m * n) > shape.vertices.size()) {
        drawCurve3d(item, shape);
        return;
    }
    auto at = [&](int64_t i, int64_t j) { return item.placement.picture(shape.vertices[i * n + j].point); };
    const Pen pen = item.pen();
    for (int64_t i = 0; i < m; ++i) {
        QPolygonF row;
        for (int64_t j = 0; j < n; ++j) row << at(i, j);
        if (flags & 32) row << at(i, 0);
        item.canvas.strokePolyline(row, pen);
    }
    for (int64_t j = 0; j < n; ++j) {
        QPolygonF column;
        for (int64_t i = 0; i < m; ++i) column << at(i, j);
        if (flags & 1) column << at(0, j);
        item.canvas.strokePolyline(column, pen);
    }
}

// A polyface mesh: the edges of its face records (71-74: 1-based vertex
// numbers, negative for an invisible edge).
void drawPolyFace(const DrawItem& item, const PolylineShape& shape) {
    if (!item.entity.container) return;
    const Pen pen = item.pen();
    for (const db::ObjectRecord* record : item.entity.container->members) {
        if (record->erased || record->type != db::Type::Vertex) continue;
        const EntityTags face(*record);
        const int64_t flags = face.integer(70, 0);
        if (!(flags & 128) || (flags & 64)) continue;
        std::vector<int64_t> corners;
        for (int code = 71; code <= 74; ++code) {
            const int64_t index = face.integer(code, 0);
            if (index != 0) corners.push_back(index);
        }
        for (size_t i = 0; i < corners.size(); ++i) {
            const int64_t from = corners[i], to = corners[(i + 1) % corners.size()];
            const auto a = static_cast<size_t>(std::abs(from)), b = static_cast<size_t>(std::abs(to));
            if (from < 0 || a > shape.vertices.size() || b > shape.vertices.size() || a == b) continue;
            item.canvas.strokeLine(item.placement.picture(shape.vertices[a - 1].point),
                                   item.placement.picture(shape.vertices[b - 1].point), pen);
        }
    }
}

}  // namespace

bool drawPolylineEntity(const DrawItem& item) {
    if (item.entity.type != db::Type::LwPolyline && item.entity.type != db::Type::Polyline) return false;
    PolylineShape shape;
    if (!db::geometry::readPolylineShape(item.entity, shape) || shape.vertices.empty()) return true;
    switch (shape.kind) {
        case PolylineKind::Planar: drawPlanar(item, shape); break;
        case PolylineKind::Curve3d: drawCurve3d(item, shape); break;
        case PolylineKind::Mesh: drawMesh(item, shape); break;
        case PolylineKind::PolyFace: drawPolyFace(item, shape); break;
    }
    return true;
}

}  // namespace korva::render
