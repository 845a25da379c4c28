// Plane geometry of the selection tests: segment intersection, distances and
// the even-odd point-in-polygon rule.
#include "editor/selection/ShapeTests.h"

#include <cmath>
#include <limits>

namespace korva::editor {

namespace {

double cross(const Point2& o, const Point2& a, const Point2& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

bool onSegment(const Point2& a, const Point2& b, const Point2& p) {
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

int sign(double v) { return v > 0 ? 1 : (v < 0 ? -1 : 0); }

// Closed segments meet (touching and overlapping included).
bool segmentsMeet(const Point2& p1, const Point2& p2, const Point2& q1, const Point2& q2) {
    const int d1 = sign(cross(q1, q2, p1)), d2 = sign(cross(q1, q2, p2));
    const int d3 = sign(cross(p1, p2, q1)), d4 = sign(cross(p1, p2, q2));
    if (d1 * d2 < 0 && d3 * d4 < 0) return true;
    if (d1 == 0 && onSegment(q1, q2, p1)) return true;
    if (d2 == 0 && onSegment(q1, q2, p2)) return true;
    if (d3 == 0 && onSegment(p1, p2, q1)) return true;
    if (d4 == 0 && onSegment(p1, p2, q2)) return true;
    return false;
}

// The segments cross at a point inside both (a segment that leaves a polygon).
bool segmentsCross(const Point2& p1, const Point2& p2, const Point2& q1, const Point2& q2) {
    return sign(cross(q1, q2, p1)) * sign(cross(q1, q2, p2)) < 0 && sign(cross(p1, p2, q1)) * sign(cross(p1, p2, q2)) < 0;
}

double distanceToSegment(const Point2& p, const Point2& a, const Point2& b) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double lengthSquared = dx * dx + dy * dy;
    double t = lengthSquared > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / lengthSquared : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    return std::hypot(p.x - (a.x + t * dx), p.y - (a.y + t * dy));
}

double distanceToLine(const Point2& p, const FlatShape::Line& line) {
    const double length = std::hypot(line.direction.x, line.direction.y);
    if (length == 0) return std::hypot(p.x - line.base.x, p.y - line.base.y);
    const double ux = line.direction.x / length, uy = line.direction.y / length;
    const double along = (p.x - line.base.x) * ux + (p.y - line.base.y) * uy;
    if (line.ray && along < 0) return std::hypot(p.x - line.base.x, p.y - line.base.y);
    return std::fabs((p.x - line.base.x) * uy - (p.y - line.base.y) * ux);
}

// Whether an infinite line or ray meets the segment.
bool lineMeetsSegment(const FlatShape::Line& line, const Point2& a, const Point2& b) {
    const Point2 far{line.base.x + line.direction.x, line.base.y + line.direction.y};
    const double da = cross(line.base, far, a), db = cross(line.base, far, b);
    if (sign(da) * sign(db) > 0) return false;
    if (!line.ray) return true;
    // Where the segment meets the line's carrier, measured along the ray.
    const double denominator = da - db;
    const Point2 hit = denominator == 0 ? a : Point2{a.x + (b.x - a.x) * da / denominator, a.y + (b.y - a.y) * da / denominator};
    const double along = (hit.x - line.base.x) * line.direction.x + (hit.y - line.base.y) * line.direction.y;
    if (along >= 0) return true;
    // A segment lying on the carrier may still reach past the base.
    return denominator == 0 && ((b.x - line.base.x) * line.direction.x + (b.y - line.base.y) * line.direction.y >= 0);
}

template <class Visit>
void forEachSegment(const FlatShape& shape, Visit&& visit) {
    for (const FlatShape::Chain& chain : shape.chains) {
        if (chain.count == 0) continue;
        const Point2* p = shape.points.data() + chain.first;
        if (chain.count == 1) {
            visit(p[0], p[0]);
            continue;
        }
        for (uint32_t i = 0; i + 1 < chain.count; ++i) visit(p[i], p[i + 1]);
        if (chain.closed && chain.count > 2) visit(p[chain.count - 1], p[0]);
    }
}

// Even-odd rule over the chains that bound one filled region.
bool insideArea(const FlatShape& shape, int area, const Point2& q) {
    bool inside = false;
    for (const FlatShape::Chain& chain : shape.chains) {
        if (chain.area != area || chain.count < 3) continue;
        const Point2* p = shape.points.data() + chain.first;
        for (uint32_t i = 0, j = chain.count - 1; i < chain.count; j = i++) {
            if ((p[i].y > q.y) != (p[j].y > q.y) &&
                q.x < (p[j].x - p[i].x) * (q.y - p[i].y) / (p[j].y - p[i].y) + p[i].x) {
                inside = !inside;
            }
        }
    }
    return inside;
}

}  // namespace

Rect2 boundsOf(const std::vector<Point2>& points) {
    if (points.empty()) return {};
    Rect2 r{points[0].x, points[0].y, points[0].x, points[0].y};
    for (const Point2& p : points) {
        r.minX = std::min(r.minX, p.x);
        r.minY = std::min(r.minY, p.y);
        r.maxX = std::max(r.maxX, p.x);
        r.maxY = std::max(r.maxY, p.y);
    }
    return r;
}

std::vector<Point2> rectanglePolygon(const Rect2& r) {
    return {{r.minX, r.minY}, {r.maxX, r.minY}, {r.maxX, r.maxY}, {r.minX, r.maxY}};
}

bool pointInPolygon(const Point2& q, const std::vector<Point2>& polygon) {
    const size_t n = polygon.size();
    if (n == 0) return false;
    bool inside = false;
    for (size_t i = 0, j = n - 1; i < n; j = i++) {
        const Point2& a = polygon[i];
        const Point2& b = polygon[j];
        if (sign(cross(a, b, q)) == 0 && onSegment(a, b, q)) return true;  // on the boundary
        if ((a.y > q.y) != (b.y > q.y) && q.x < (b.x - a.x) * (q.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
    }
    return inside;
}

double distanceTo(const FlatShape& shape, const Point2& p) {
    for (int area = 0; area < shape.areaCount; ++area) {
        if (insideArea(shape, area, p)) return 0.0;
    }
    double best = std::numeric_limits<double>::infinity();
    forEachSegment(shape, [&](const Point2& a, const Point2& b) { best = std::min(best, distanceToSegment(p, a, b)); });
    for (const FlatShape::Line& line : shape.lines) best = std::min(best, distanceToLine(p, line));
    return best;
}

bool insidePolygon(const FlatShape& shape, const std::vector<Point2>& polygon) {
    if (shape.points.empty() || !shape.lines.empty() || polygon.size() < 3) return false;
    for (const Point2& p : shape.points) {
        if (!pointInPolygon(p, polygon)) return false;
    }
    // In a concave polygon a chord between two inside points can still leave it.
    bool leaves = false;
    const size_t n = polygon.size();
    forEachSegment(shape, [&](const Point2& a, const Point2& b) {
        for (size_t i = 0; i < n && !leaves; ++i) leaves = segmentsCross(a, b, polygon[i], polygon[(i + 1) % n]);
    });
    return !leaves;
}

bool crossesPolygon(const FlatShape& shape, const std::vector<Point2>& polygon) {
    const size_t n = polygon.size();
    if (n < 3) return false;
    for (const Point2& p : shape.points) {
        if (pointInPolygon(p, polygon)) return true;
    }
    bool meets = false;
    forEachSegment(shape, [&](const Point2& a, const Point2& b) {
        for (size_t i = 0; i < n && !meets; ++i) meets = segmentsMeet(a, b, polygon[i], polygon[(i + 1) % n]);
    });
    if (meets) return true;
    for (const FlatShape::Line& line : shape.lines) {
        for (size_t i = 0; i < n; ++i) {
            if (lineMeetsSegment(line, polygon[i], polygon[(i + 1) % n])) return true;
        }
    }
    // A polygon wholly inside a filled region.
    for (int area = 0; area < shape.areaCount; ++area) {
        if (insideArea(shape, area, polygon[0])) return true;
    }
    return false;
}

bool crossesFence(const FlatShape& shape, const std::vector<Point2>& fence) {
    if (fence.size() < 2) return false;
    bool meets = false;
    forEachSegment(shape, [&](const Point2& a, const Point2& b) {
        for (size_t i = 0; i + 1 < fence.size() && !meets; ++i) meets = segmentsMeet(a, b, fence[i], fence[i + 1]);
    });
    if (meets) return true;
    for (const FlatShape::Line& line : shape.lines) {
        for (size_t i = 0; i + 1 < fence.size(); ++i) {
            if (lineMeetsSegment(line, fence[i], fence[i + 1])) return true;
        }
    }
    return false;
}

}  // namespace korva::editor
