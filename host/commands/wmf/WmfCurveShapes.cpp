// The curve-like objects of a scene: lines, points, circles, arcs, ellipses,
// polylines (bulges as arcs, wide segments as filled bands), splines, solids
// and traces, 3D faces, solid hatches, and rays and construction lines cut to
// the view. Curves are flattened so that no chord strays further than the
// sink's tolerance from the curve.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "commands/wmf/WmfScene.h"
#include "db/ObjectAccess.h"
#include "db/geometry/PolylineVertices.h"
#include "geom/CurveMath.h"

namespace korva::commands::wmf {

namespace {

using Points = std::vector<KcGePoint3d>;
constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr int kMaximumSegments = 1 << 16;

// Segments of an arc of that radius and sweep, each within the tolerance of the arc.
int arcSegments(double radius, double sweep, double tolerance) {
    sweep = std::abs(sweep);
    double step = std::numbers::pi / 2.0;
    if (radius > tolerance && tolerance > 0.0) step = std::min(step, 2.0 * std::acos(1.0 - tolerance / radius));
    const double segments = std::ceil(sweep / step);
    return static_cast<int>(std::clamp(segments, 1.0, static_cast<double>(kMaximumSegments)));
}

// Points of c + u cos t + v sin t for t from start over sweep (signed), ends included.
Points trigPoints(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start, double sweep,
                  double tolerance) {
    const int segments = arcSegments(std::max(u.length(), v.length()), sweep, tolerance);
    Points points;
    points.reserve(static_cast<size_t>(segments) + 1);
    for (int i = 0; i <= segments; ++i) {
        const double t = start + sweep * i / segments;
        points.push_back(c + u * std::cos(t) + v * std::sin(t));
    }
    return points;
}

// An arc in the plane of a normal (centre in world coordinates, angles in the OCS).
Points arcPoints(const KcGePoint3d& center, const KcGeVector3d& normal, double radius, double start, double sweep,
                 double tolerance) {
    const KcGeMatrix3d plane = KcGeMatrix3d::planeToWorld(normal);
    return trigPoints(center, plane * KcGeVector3d(radius, 0, 0), plane * KcGeVector3d(0, radius, 0), start, sweep,
                      tolerance);
}

double counterClockwiseSweep(double start, double end) {
    double sweep = std::fmod(end - start, kTurn);
    if (sweep <= 0.0) sweep += kTurn;
    return sweep;
}

// A closed contour repeats no point: the last point joins the first.
void dropClosingPoint(Points& points) {
    if (points.size() > 1 && points.front().isEqualTo(points.back())) points.pop_back();
}

// ----- polylines in their plane (2D OCS vertices with bulges and widths) -----

struct PlanarVertex {
    KcGePoint2d point;
    double bulge = 0.0;
    double startWidth = 0.0;
    double endWidth = 0.0;
};

struct PlanarPolyline {
    std::vector<PlanarVertex> vertices;
    bool closed = false;
    double elevation = 0.0;
    KcGeVector3d normal = KcGeVector3d::kZAxis;
};

KcGePoint2d onCircle(const KcGePoint2d& center, double radius, double angle) {
    return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

// The path of one segment from a to b (a included, b left out), in the plane.
void appendSegment(const PlanarVertex& a, const KcGePoint2d& b, double tolerance, std::vector<KcGePoint2d>& out) {
    const geom::BulgeArc arc = geom::bulgeToArc(a.point, b, a.bulge);
    if (!arc.isArc()) {
        out.push_back(a.point);
        return;
    }
    const double sweep = 4.0 * std::atan(a.bulge);  // signed: negative bulges run clockwise
    const double start = std::atan2(a.point.y - arc.center.y, a.point.x - arc.center.x);
    const int segments = arcSegments(arc.radius, sweep, tolerance);
    for (int i = 0; i < segments; ++i) out.push_back(onCircle(arc.center, arc.radius, start + sweep * i / segments));
}

double signedArea(const std::vector<KcGePoint2d>& polygon) {
    double area = 0.0;
    for (size_t i = 0; i < polygon.size(); ++i) {
        const KcGePoint2d& p = polygon[i];
        const KcGePoint2d& q = polygon[(i + 1) % polygon.size()];
        area += p.x * q.y - q.x * p.y;
    }
    return area / 2.0;
}

// A wide segment as a band: its left edge forward and its right edge back,
// turned counter-clockwise so that the bands of a polyline unite when filled.
std::vector<KcGePoint2d> segmentBand(const PlanarVertex& a, const KcGePoint2d& b, double tolerance) {
    std::vector<KcGePoint2d> left, right;
    const geom::BulgeArc arc = geom::bulgeToArc(a.point, b, a.bulge);
    if (!arc.isArc()) {
        const double length = std::hypot(b.x - a.point.x, b.y - a.point.y);
        if (length <= 0.0) return {};
        const KcGeVector2d n((a.point.y - b.y) / length, (b.x - a.point.x) / length);
        left = {a.point + n * (a.startWidth / 2), b + n * (a.endWidth / 2)};
        right = {a.point - n * (a.startWidth / 2), b - n * (a.endWidth / 2)};
    } else {
        const double sweep = 4.0 * std::atan(a.bulge);
        const double start = std::atan2(a.point.y - arc.center.y, a.point.x - arc.center.x);
        const int segments = arcSegments(arc.radius, sweep, tolerance);
        const double side = sweep > 0 ? -1.0 : 1.0;  // left of a counter-clockwise arc is inside
        for (int i = 0; i <= segments; ++i) {
            const double t = static_cast<double>(i) / segments;
            const double halfWidth = (a.startWidth + (a.endWidth - a.startWidth) * t) / 2.0;
            left.push_back(onCircle(arc.center, arc.radius + side * halfWidth, start + sweep * t));
            right.push_back(onCircle(arc.center, arc.radius - side * halfWidth, start + sweep * t));
        }
    }
    std::vector<KcGePoint2d> band(left.begin(), left.end());
    band.insert(band.end(), right.rbegin(), right.rend());
    if (signedArea(band) < 0.0) std::reverse(band.begin(), band.end());
    return band;
}

void addPlanarPolyline(const PlanarPolyline& polyline, WmfSceneBuilder::Sink& sink) {
    const auto& vertices = polyline.vertices;
    if (vertices.empty()) return;
    const KcGeMatrix3d plane = KcGeMatrix3d::planeToWorld(polyline.normal);
    auto toWorld = [&](const KcGePoint2d& p) { return plane * KcGePoint3d(p.x, p.y, polyline.elevation); };
    const size_t segments = polyline.closed ? vertices.size() : vertices.size() - 1;
    const bool wide = std::any_of(vertices.begin(), vertices.end(),
                                  [](const PlanarVertex& v) { return v.startWidth > 0.0 || v.endWidth > 0.0; });
    if (vertices.size() == 1) {
        sink.point(toWorld(vertices[0].point));
        return;
    }
    if (wide) {
        std::vector<Points> bands;
        for (size_t i = 0; i < segments; ++i) {
            Points band;
            for (const KcGePoint2d& p : segmentBand(vertices[i], vertices[(i + 1) % vertices.size()].point, sink.tolerance())) {
                band.push_back(toWorld(p));
            }
            if (band.size() >= 3) bands.push_back(std::move(band));
        }
        sink.filled(bands);
        return;
    }
    std::vector<KcGePoint2d> path;
    for (size_t i = 0; i < segments; ++i) {
        appendSegment(vertices[i], vertices[(i + 1) % vertices.size()].point, sink.tolerance(), path);
    }
    if (!polyline.closed) path.push_back(vertices.back().point);
    Points points;
    points.reserve(path.size());
    for (const KcGePoint2d& p : path) points.push_back(toWorld(p));
    sink.polyline(points, polyline.closed);
}

bool addLightweightPolyline(const KcDbPolyline& polyline, WmfSceneBuilder::Sink& sink) {
    PlanarPolyline planar;
    planar.closed = polyline.isClosed();
    planar.elevation = polyline.elevation();
    planar.normal = polyline.normal();
    for (Kcad::UInt32 i = 0; i < polyline.numVerts(); ++i) {
        PlanarVertex vertex;
        polyline.getPointAt(i, vertex.point);
        polyline.getBulgeAt(i, vertex.bulge);
        polyline.getWidthsAt(i, vertex.startWidth, vertex.endWidth);
        planar.vertices.push_back(vertex);
    }
    addPlanarPolyline(planar, sink);
    return true;
}

// Old-style polylines: 2D ones in their plane, 3D ones as straight segments.
bool addOldPolyline(const KcDbEntity& entity, WmfSceneBuilder::Sink& sink) {
    db::geometry::PolylineShape shape;
    if (!db::geometry::readPolylineShape(db::ObjectAccess::record(entity), shape)) return false;
    if (shape.kind == db::geometry::PolylineKind::Planar) {
        PlanarPolyline planar;
        planar.closed = shape.closed;
        planar.normal = shape.normal;
        planar.elevation = shape.vertices.empty() ? 0.0 : shape.vertices.front().point.z;
        for (const auto& vertex : shape.vertices) {
            PlanarVertex planarVertex;
            planarVertex.point = {vertex.point.x, vertex.point.y};
            planarVertex.bulge = vertex.bulge;
            planar.vertices.push_back(planarVertex);
        }
        addPlanarPolyline(planar, sink);
        return true;
    }
    if (shape.kind != db::geometry::PolylineKind::Curve3d) return false;  // meshes show through their faces
    Points points;
    for (const auto& vertex : shape.vertices) points.push_back(vertex.point);
    sink.polyline(points, shape.closed);
    return true;
}

// ----- splines -----

struct Nurbs {
    int degree = 0;
    std::vector<double> knots;
    std::vector<KcGePoint3d> controlPoints;
    std::vector<double> weights;
    KcGePoint3d at(double t) const { return geom::evaluateNurbs(degree, knots, controlPoints, weights, t); }
};

double distanceToChord(const KcGePoint3d& p, const KcGePoint3d& a, const KcGePoint3d& b) {
    const KcGeVector3d ab = b - a;
    const double length2 = ab.dotProduct(ab);
    if (length2 <= 0.0) return p.distanceTo(a);
    const double t = std::clamp((p - a).dotProduct(ab) / length2, 0.0, 1.0);
    return p.distanceTo(a + ab * t);
}

// Adds the points after a up to b: halves until the middle lies within the tolerance of the chord.
void flattenSpan(const Nurbs& curve, double a, const KcGePoint3d& pa, double b, const KcGePoint3d& pb,
                 double tolerance, int depth, Points& out) {
    const double middle = (a + b) / 2.0;
    const KcGePoint3d pm = curve.at(middle);
    const bool flat = distanceToChord(pm, pa, pb) <= tolerance && depth >= 2;
    if (flat || depth >= 16) {
        out.push_back(pb);
        return;
    }
    flattenSpan(curve, a, pa, middle, pm, tolerance, depth + 1, out);
    flattenSpan(curve, middle, pm, b, pb, tolerance, depth + 1, out);
}

bool addSpline(const KcDbSpline& spline, WmfSceneBuilder::Sink& sink) {
    Nurbs curve;
    curve.degree = spline.degree();
    for (int i = 0; i < spline.numControlPoints(); ++i) {
        KcGePoint3d p;
        spline.getControlPointAt(i, p);
        curve.controlPoints.push_back(p);
        if (spline.isRational()) curve.weights.push_back(spline.weightAt(i));
    }
    for (int i = 0; i < spline.numKnots(); ++i) curve.knots.push_back(spline.knotAt(i));
    Points points;
    if (geom::isValidNurbs(curve.degree, curve.knots, curve.controlPoints, curve.weights)) {
        const auto count = curve.controlPoints.size();
        const double first = curve.knots[static_cast<size_t>(curve.degree)], last = curve.knots[count];
        points.push_back(curve.at(first));
        for (size_t i = static_cast<size_t>(curve.degree); i < count; ++i) {
            const double a = std::max(first, curve.knots[i]), b = std::min(last, curve.knots[i + 1]);
            if (b > a) flattenSpan(curve, a, curve.at(a), b, curve.at(b), sink.tolerance(), 0, points);
        }
    } else {
        for (int i = 0; i < spline.numFitPoints(); ++i) {  // a spline known by its fit points alone
            KcGePoint3d p;
            spline.getFitPointAt(i, p);
            points.push_back(p);
        }
    }
    const bool closed = spline.isClosed() && points.size() > 2;
    if (closed) dropClosingPoint(points);
    sink.polyline(points, closed);
    return true;
}

// ----- the rest -----

void addCorners(const KcGePoint3d (&corners)[4], WmfSceneBuilder::Sink& sink) {
    // SOLID and TRACE corners run 0, 1, 3, 2 around the shape; a triangle repeats its third corner.
    Points polygon{corners[0], corners[1], corners[3], corners[2]};
    if (corners[2].isEqualTo(corners[3])) polygon.pop_back();
    sink.filled({polygon});
}

bool addFace(const KcDbFace& face, WmfSceneBuilder::Sink& sink) {
    KcGePoint3d corners[4];
    bool visible[4];
    bool allVisible = true;
    for (Kcad::UInt16 i = 0; i < 4; ++i) {
        face.getVertexAt(i, corners[i]);
        face.isEdgeVisibleAt(i, visible[i]);
        allVisible = allVisible && visible[i];
    }
    if (allVisible) {
        Points outline(std::begin(corners), std::end(corners));
        dropClosingPoint(outline);
        sink.polyline(outline, true);
        return true;
    }
    for (int i = 0; i < 4; ++i) {
        if (visible[i]) sink.polyline({corners[i], corners[(i + 1) % 4]}, false);
    }
    return true;
}

bool addHatch(const KcDbHatch& hatch, WmfSceneBuilder::Sink& sink) {
    if (!hatch.isSolidFill()) return false;  // pattern lines are not drawn
    std::vector<Points> loops;
    for (int i = 0; i < hatch.numLoops(); ++i) {
        Kcad::Int32 type = 0;
        KcGePoint2dArray vertices;
        KcGeDoubleArray bulges;
        if (hatch.getLoopAt(i, type, vertices, bulges) != Kcad::eOk) continue;
        PlanarPolyline loop;
        loop.closed = true;
        loop.normal = hatch.normal();
        loop.elevation = hatch.elevation();
        for (int v = 0; v < vertices.length(); ++v) {
            PlanarVertex vertex;
            vertex.point = vertices[v];
            vertex.bulge = v < bulges.length() ? bulges[v] : 0.0;
            loop.vertices.push_back(vertex);
        }
        std::vector<KcGePoint2d> path;
        for (size_t s = 0; s < loop.vertices.size(); ++s) {
            appendSegment(loop.vertices[s], loop.vertices[(s + 1) % loop.vertices.size()].point, sink.tolerance(), path);
        }
        const KcGeMatrix3d plane = KcGeMatrix3d::planeToWorld(loop.normal);
        Points points;
        for (const KcGePoint2d& p : path) points.push_back(plane * KcGePoint3d(p.x, p.y, loop.elevation));
        loops.push_back(std::move(points));
    }
    sink.filled(loops, true);  // islands alternate, as a normal-style hatch shows them
    return true;
}

// A line through base along direction, cut to the view: from the base only for a ray.
bool addInfiniteLine(const KcGePoint3d& base, const KcGeVector3d& direction, bool ray, WmfSceneBuilder::Sink& sink) {
    const KcGePoint3d b = sink.toDisplay() * base;
    const KcGeVector3d d = sink.toDisplay() * direction;
    if (std::hypot(d.x, d.y) <= 1e-12) return true;  // seen end-on
    const ViewBox& view = sink.view();
    double low = ray ? 0.0 : -1e300, high = 1e300;
    const double starts[2] = {b.x, b.y}, steps[2] = {d.x, d.y};
    const double mins[2] = {view.left, view.bottom}, maxs[2] = {view.right, view.top};
    for (int axis = 0; axis < 2; ++axis) {
        if (steps[axis] == 0.0) {
            if (starts[axis] < mins[axis] || starts[axis] > maxs[axis]) return true;
            continue;
        }
        double t0 = (mins[axis] - starts[axis]) / steps[axis], t1 = (maxs[axis] - starts[axis]) / steps[axis];
        if (t0 > t1) std::swap(t0, t1);
        low = std::max(low, t0);
        high = std::min(high, t1);
    }
    if (low >= high) return true;  // outside the view
    SceneShape shape;
    shape.kind = SceneKind::Open;
    shape.contours.push_back({{b.x + d.x * low, b.y + d.y * low}, {b.x + d.x * high, b.y + d.y * high}});
    sink.displayShape(std::move(shape));
    return true;
}

}  // namespace

bool addCurveShapes(const KcDbEntity& entity, WmfSceneBuilder::Sink& sink) {
    const double tolerance = sink.tolerance();
    if (const auto* line = KcDbLine::cast(&entity)) {
        sink.polyline({line->startPoint(), line->endPoint()}, false);
    } else if (const auto* point = KcDbPoint::cast(&entity)) {
        sink.point(point->position());
    } else if (const auto* circle = KcDbCircle::cast(&entity)) {
        Points points = arcPoints(circle->center(), circle->normal(), circle->radius(), 0.0, kTurn, tolerance);
        dropClosingPoint(points);
        sink.polyline(points, true);
    } else if (const auto* arc = KcDbArc::cast(&entity)) {
        sink.polyline(arcPoints(arc->center(), arc->normal(), arc->radius(), arc->startAngle(),
                                counterClockwiseSweep(arc->startAngle(), arc->endAngle()), tolerance),
                      false);
    } else if (const auto* ellipse = KcDbEllipse::cast(&entity)) {
        const double sweep = counterClockwiseSweep(ellipse->startAngle(), ellipse->endAngle());
        const bool whole = std::abs(sweep - kTurn) < 1e-9;
        Points points = trigPoints(ellipse->center(), ellipse->majorAxis(), ellipse->minorAxis(),
                                   ellipse->startAngle(), sweep, tolerance);
        if (whole) dropClosingPoint(points);
        sink.polyline(points, whole);
    } else if (const auto* polyline = KcDbPolyline::cast(&entity)) {
        return addLightweightPolyline(*polyline, sink);
    } else if (KcDb2dPolyline::cast(&entity) || KcDb3dPolyline::cast(&entity)) {
        return addOldPolyline(entity, sink);
    } else if (const auto* spline = KcDbSpline::cast(&entity)) {
        return addSpline(*spline, sink);
    } else if (const auto* solid = KcDbSolid::cast(&entity)) {
        KcGePoint3d corners[4];
        for (Kcad::UInt16 i = 0; i < 4; ++i) solid->getPointAt(i, corners[i]);
        addCorners(corners, sink);
    } else if (const auto* trace = KcDbTrace::cast(&entity)) {
        KcGePoint3d corners[4];
        for (Kcad::UInt16 i = 0; i < 4; ++i) trace->getPointAt(i, corners[i]);
        addCorners(corners, sink);
    } else if (const auto* face = KcDbFace::cast(&entity)) {
        return addFace(*face, sink);
    } else if (const auto* hatch = KcDbHatch::cast(&entity)) {
        return addHatch(*hatch, sink);
    } else if (const auto* ray = KcDbRay::cast(&entity)) {
        return addInfiniteLine(ray->basePoint(), ray->unitDir(), true, sink);
    } else if (const auto* xline = KcDbXline::cast(&entity)) {
        return addInfiniteLine(xline->basePoint(), xline->unitDir(), false, sink);
    } else {
        return false;
    }
    return true;
}

}  // namespace korva::commands::wmf
