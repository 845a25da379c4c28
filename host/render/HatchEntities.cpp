// Hatches. The boundary paths become one even-odd path in the hatch's OCS
// plane (db/geometry/HatchLayout.h tells what each tag is): polyline paths with
// their bulges, edge paths from their lines, arcs, elliptic arcs and splines.
// A solid fill (and a gradient, in the entity's colour) fills it; a pattern
// draws its lines cut to it (HatchPattern.h); a pattern too fine for the
// picture shades the area; a pattern without line data shows its boundary.
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "db/geometry/HatchLayout.h"
#include "geom/Angles.h"
#include "render/EntityPainters.h"
#include "render/HatchPattern.h"
#include "render/PathBuilder.h"

namespace korva::render {

namespace {

using db::geometry::EntityTags;
using db::geometry::HatchLayout;
using db::geometry::HatchPiece;
using db::geometry::HatchRole;

QPointF planePoint(const db::Tag& tag) { return {tag.xyz[0], tag.xyz[1]}; }

// The index of the boundary path (92 group) each tag lies in; -1 before the first.
std::vector<int> pathIndexOfTags(const EntityTags& t, const HatchLayout& layout) {
    std::vector<int> index(t.size(), -1);
    int current = -1;
    bool inPattern = false;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (t.isData(i) && t.tags[i].code == 75) inPattern = true;
        if (!inPattern && t.isData(i) && t.tags[i].code == 92 && layout.roles[i] == HatchRole::None) ++current;
        index[i] = current;
    }
    return index;
}

void appendPolylinePath(const EntityTags& t, const HatchLayout& layout, const HatchPiece& piece, QPainterPath& path) {
    std::vector<QPointF> points;
    std::vector<double> bulges;
    for (size_t i = piece.begin; i < piece.end; ++i) {
        if (layout.roles[i] == HatchRole::PolylineVertex) {
            points.push_back(planePoint(t.tags[i]));
            bulges.push_back(0.0);
        } else if (layout.roles[i] == HatchRole::Bulge && !bulges.empty()) {
            bulges.back() = t.tags[i].realValue();
        }
    }
    if (points.size() > 1) path.addPath(bulgePath(points, bulges, true));
}

struct CurvedEdge {
    QPointF centre;
    QPointF major{1.0, 0.0};
    double radius = 0.0;
    double ratio = 1.0;
    double start = 0.0;  // degrees
    double end = 360.0;
    bool counterClockwise = true;
};

CurvedEdge readCurvedEdge(const EntityTags& t, const HatchLayout& layout, const HatchPiece& piece) {
    CurvedEdge edge;
    for (size_t i = piece.begin; i < piece.end; ++i) {
        const db::Tag& tag = t.tags[i];
        switch (layout.roles[i]) {
            case HatchRole::EdgePoint: edge.centre = planePoint(tag); break;
            case HatchRole::EllipseMajor: edge.major = planePoint(tag); break;
            case HatchRole::ArcRadius: edge.radius = tag.realValue(); break;
            case HatchRole::EdgeStartAngle: edge.start = tag.realValue(); break;
            case HatchRole::EdgeEndAngle: edge.end = tag.realValue(); break;
            case HatchRole::EdgeCounterClockwise: edge.counterClockwise = tag.integer != 0; break;
            default:
                if (tag.code == 40 && piece.kind == HatchPiece::EllipseEdge) edge.ratio = tag.realValue();
                break;
        }
    }
    return edge;
}

// An arc or elliptic arc edge. A clockwise edge stores the complements of its
// angles: it runs clockwise from -start to -end. The angles of an elliptic edge
// are angles from the major axis, turned into the ellipse's parameters.
void appendCurvedEdge(const CurvedEdge& edge, bool ellipse, bool startLoop, QPainterPath& path) {
    QPointF u(edge.radius, 0.0), v(0.0, edge.radius);
    double start = geom::degreesToRadians(edge.start), end = geom::degreesToRadians(edge.end);
    if (!edge.counterClockwise) {
        start = -start;
        end = -end;
    }
    if (ellipse) {
        u = edge.major;
        v = QPointF(-edge.major.y(), edge.major.x()) * edge.ratio;
        if (edge.ratio > 0.0) {
            start = std::atan2(std::sin(start) / edge.ratio, std::cos(start));
            end = std::atan2(std::sin(end) / edge.ratio, std::cos(end));
        }
    }
    const double sweep = edge.counterClockwise ? geom::sweepAngle(start, end) : -geom::sweepAngle(end, start);
    appendTrigArc(path, edge.centre, u, v, start, sweep, startLoop);
}

void appendSplineEdge(const EntityTags& t, const HatchLayout& layout, const HatchPiece& piece, bool startLoop,
                      double pixelsPerUnit, QPainterPath& path) {
    NurbsCurve curve;
    std::vector<KcGePoint3d> fit;
    for (size_t i = piece.begin; i < piece.end; ++i) {
        const db::Tag& tag = t.tags[i];
        if (layout.roles[i] == HatchRole::SplineControl) curve.controlPoints.push_back(tag.pointValue());
        else if (layout.roles[i] == HatchRole::SplineFit) fit.push_back(tag.pointValue());
        else if (tag.code == 94) curve.degree = static_cast<int>(tag.integer);
        else if (tag.code == 40) curve.knots.push_back(tag.realValue());
        else if (tag.code == 42) curve.weights.push_back(tag.realValue());
    }
    if (curve.weights.size() != curve.controlPoints.size()) curve.weights.clear();
    const std::vector<KcGePoint3d> points = curve.controlPoints.empty() ? fit : sampleNurbs(curve, pixelsPerUnit);
    for (size_t i = 0; i < points.size(); ++i) {
        const QPointF p(points[i].x, points[i].y);
        if (i == 0 && (startLoop || path.elementCount() == 0)) path.moveTo(p);
        else path.lineTo(p);
    }
}

void appendLineEdge(const EntityTags& t, const HatchLayout& layout, const HatchPiece& piece, bool startLoop,
                    QPainterPath& path) {
    bool first = true;
    for (size_t i = piece.begin; i < piece.end; ++i) {
        if (layout.roles[i] != HatchRole::EdgePoint) continue;
        const QPointF p = planePoint(t.tags[i]);
        if (first && (startLoop || path.elementCount() == 0)) path.moveTo(p);
        else path.lineTo(p);
        first = false;
    }
}

// Every boundary path as a closed loop of one even-odd path, in plane coordinates.
QPainterPath boundaryOf(const EntityTags& t, const HatchLayout& layout, double pixelsPerUnit) {
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    const std::vector<int> pathIndex = pathIndexOfTags(t, layout);
    int currentPath = -2;
    for (const HatchPiece& piece : layout.pieces) {
        const int index = piece.begin > 0 ? pathIndex[piece.begin - 1] : -1;
        const bool startLoop = index != currentPath;
        if (startLoop && path.elementCount() > 0) path.closeSubpath();
        currentPath = index;
        switch (piece.kind) {
            case HatchPiece::PolylinePath: appendPolylinePath(t, layout, piece, path); break;
            case HatchPiece::LineEdge: appendLineEdge(t, layout, piece, startLoop, path); break;
            case HatchPiece::ArcEdge:
            case HatchPiece::EllipseEdge:
                appendCurvedEdge(readCurvedEdge(t, layout, piece), piece.kind == HatchPiece::EllipseEdge, startLoop, path);
                break;
            case HatchPiece::SplineEdge: appendSplineEdge(t, layout, piece, startLoop, pixelsPerUnit, path); break;
        }
    }
    if (path.elementCount() > 0) path.closeSubpath();
    return path;
}

// The pattern lines: 53 angle, 43/44 base, 45/46 offset, 49 dashes (plane units, degrees).
std::vector<PatternLine> patternLinesOf(const EntityTags& t, const HatchLayout& layout) {
    std::vector<PatternLine> lines;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        const db::Tag& tag = t.tags[i];
        auto next = [&](size_t at) { return at + 1 < t.size() ? t.tags[at + 1].realValue() : 0.0; };
        switch (layout.roles[i]) {
            case HatchRole::LineAngle:
                lines.emplace_back();
                lines.back().angle = geom::degreesToRadians(tag.realValue());
                break;
            case HatchRole::LineBaseX:
                if (!lines.empty()) lines.back().base = QPointF(tag.realValue(), next(i));
                break;
            case HatchRole::LineOffsetX:
                if (!lines.empty()) lines.back().offset = QPointF(tag.realValue(), next(i));
                break;
            case HatchRole::LineDash:
                if (!lines.empty()) lines.back().dashes.push_back(tag.realValue());
                break;
            default: break;
        }
    }
    return lines;
}

}  // namespace

bool drawHatchEntity(const DrawItem& item) {
    if (item.entity.type != db::Type::Hatch) return false;
    const EntityTags t(item.entity);
    const HatchLayout layout = db::geometry::layoutHatch(t);
    const QTransform toPicture = item.placement.planeToPicture(ocsPlane(t.normal(), t.point(10).z));
    const QPainterPath boundary = boundaryOf(t, layout, item.placement.pixelsPerUnit());
    if (boundary.isEmpty()) return true;
    const bool solid = (t.integer(70, 0) & 1) != 0 || t.integer(450, 0) != 0;
    if (solid) {
        item.canvas.fill(toPicture.map(boundary), item.style.color);
        return true;
    }
    QPainterPath strokes;
    switch (patternStrokes(patternLinesOf(t, layout), boundary, toPicture, strokes)) {
        case PatternResult::Drawn: item.canvas.stroke(strokes, item.pen()); break;
        case PatternResult::TooDense: {
            QColor shade = item.style.color;
            shade.setAlphaF(0.5);
            item.canvas.fill(toPicture.map(boundary), shade);
            break;
        }
        case PatternResult::Empty: item.canvas.stroke(toPicture.map(boundary), item.pen()); break;
    }
    return true;
}

}  // namespace korva::render
