// Chords of curves and the bookkeeping of chains and regions.
#include "editor/selection/ShapeBuilder.h"

#include <algorithm>
#include <cmath>

#include "geom/CurveMath.h"

namespace korva::editor {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kMaxChords = 4096;

}  // namespace

ShapeBuilder::ShapeBuilder(FlatShape& shape, const KcGeMatrix3d& toDisplay, double tolerance)
    : shape_(shape), toDisplay_(toDisplay), tolerance_(tolerance > 0 ? tolerance : 1e-9) {}

Point2 ShapeBuilder::flat(const KcGePoint3d& p) const {
    const KcGePoint3d d = toDisplay_ * p;
    return {d.x, d.y};
}

void ShapeBuilder::beginChain() { chainStart_ = shape_.points.size(); }

void ShapeBuilder::point(const KcGePoint3d& p) {
    const Point2 q = flat(p);
    if (!std::isfinite(q.x) || !std::isfinite(q.y)) return;
    // Repeated points add nothing to a chain.
    if (shape_.points.size() > chainStart_) {
        const Point2& last = shape_.points.back();
        if (last.x == q.x && last.y == q.y) return;
    }
    shape_.points.push_back(q);
}

void ShapeBuilder::endChain(bool closed) {
    const size_t count = shape_.points.size() - chainStart_;
    if (count == 0) return;
    FlatShape::Chain chain;
    chain.first = static_cast<uint32_t>(chainStart_);
    chain.count = static_cast<uint32_t>(count);
    chain.closed = closed;
    shape_.chains.push_back(chain);
}

void ShapeBuilder::endAreaChain(int area) {
    endChain(true);
    if (!shape_.chains.empty() && shape_.chains.back().first == chainStart_) shape_.chains.back().area = area;
}

void ShapeBuilder::polyline(const std::vector<KcGePoint3d>& points, bool closed) {
    beginChain();
    for (const KcGePoint3d& p : points) point(p);
    endChain(closed);
}

void ShapeBuilder::polygonArea(const std::vector<KcGePoint3d>& points) {
    const int area = beginArea();
    beginChain();
    for (const KcGePoint3d& p : points) point(p);
    endAreaChain(area);
}

void ShapeBuilder::trigCurve(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start,
                             double end) {
    // The radius as seen on the display decides how many chords keep within the tolerance.
    const KcGeVector3d du = toDisplay_ * u, dv = toDisplay_ * v;
    const double radius = std::max(std::hypot(du.x, du.y), std::hypot(dv.x, dv.y));
    const double sweep = end - start;
    int chords = 1;
    if (radius > tolerance_) {
        const double step = 2.0 * std::acos(std::max(-1.0, 1.0 - tolerance_ / radius));
        chords = static_cast<int>(std::ceil(std::fabs(sweep) / std::max(step, 1e-6)));
    }
    chords = std::clamp(chords, std::fabs(sweep) > kPi ? 4 : 2, kMaxChords);
    for (int i = 0; i <= chords; ++i) {
        const double t = start + sweep * i / chords;
        point(c + u * std::cos(t) + v * std::sin(t));
    }
}

void ShapeBuilder::nurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                         const std::vector<double>& weights) {
    if (!geom::isValidNurbs(degree, knots, controlPoints, weights)) {
        for (const KcGePoint3d& p : controlPoints) point(p);
        return;
    }
    // Samples per knot span follow the span's control polygon length on the display.
    const double first = knots[static_cast<size_t>(degree)];
    const double last = knots[controlPoints.size()];
    for (size_t span = static_cast<size_t>(degree); span < controlPoints.size(); ++span) {
        const double a = std::max(first, knots[span]), b = std::min(last, knots[span + 1]);
        if (b <= a) continue;
        double length = 0.0;
        for (size_t k = span - static_cast<size_t>(degree); k < span; ++k) {
            const KcGePoint3d p = toDisplay_ * controlPoints[k], q = toDisplay_ * controlPoints[k + 1];
            length += std::hypot(q.x - p.x, q.y - p.y);
        }
        const int samples = std::clamp(static_cast<int>(std::ceil(std::sqrt(length / tolerance_))) * 2, 8, 512);
        for (int i = 0; i <= samples; ++i) {
            point(geom::evaluateNurbs(degree, knots, controlPoints, weights, a + (b - a) * i / samples));
        }
    }
}

void ShapeBuilder::infiniteLine(const KcGePoint3d& base, const KcGeVector3d& direction, bool ray) {
    const Point2 b = flat(base);
    const KcGeVector3d d = toDisplay_ * direction;
    if (std::hypot(d.x, d.y) == 0.0) {
        // Seen end-on: a point.
        beginChain();
        point(base);
        endChain(false);
        return;
    }
    shape_.lines.push_back({b, {d.x, d.y}, ray});
}

void ShapeBuilder::boxEdges(const geom::Box3d& box) {
    if (box.isEmpty()) return;
    const KcGePoint3d& lo = box.min();
    const KcGePoint3d& hi = box.max();
    auto corner = [&](int i) { return KcGePoint3d(i & 1 ? hi.x : lo.x, i & 2 ? hi.y : lo.y, i & 4 ? hi.z : lo.z); };
    static const int edges[12][2] = {{0, 1}, {1, 3}, {3, 2}, {2, 0}, {4, 5}, {5, 7}, {7, 6}, {6, 4}, {0, 4}, {1, 5}, {3, 7}, {2, 6}};
    for (const auto& edge : edges) {
        beginChain();
        point(corner(edge[0]));
        point(corner(edge[1]));
        endChain(false);
    }
}

}  // namespace korva::editor
