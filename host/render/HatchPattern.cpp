// Pattern lines against the boundary, one family at a time.
#include "render/HatchPattern.h"

#include <algorithm>
#include <cmath>

namespace korva::render {

namespace {

constexpr double kClosestLinesPixels = 1.5;
constexpr double kMostLines = 20000;
constexpr double kMostCrossingTests = 2e7;
constexpr double kShortestDashPeriodPixels = 1.0;
constexpr double kMostDashesPerLine = 20000;

struct Edge {
    QPointF from;
    QPointF to;
};

std::vector<Edge> edgesOf(const QPainterPath& pictureBoundary) {
    std::vector<Edge> edges;
    for (const QPolygonF& loop : pictureBoundary.toSubpathPolygons()) {
        for (int i = 0; i < loop.size(); ++i) {
            const QPointF& a = loop[i];
            const QPointF& b = loop[(i + 1) % loop.size()];
            if (a != b) edges.push_back({a, b});
        }
    }
    return edges;
}

// The parameters where the line origin + s direction crosses the edges, sorted:
// stretches between the first and second, third and fourth ... lie inside.
std::vector<double> crossings(const std::vector<Edge>& edges, const QPointF& origin, const QPointF& direction) {
    std::vector<double> result;
    const QPointF normal(-direction.y(), direction.x());
    const double along = QPointF::dotProduct(direction, direction);
    for (const Edge& edge : edges) {
        const double da = QPointF::dotProduct(edge.from - origin, normal);
        const double db = QPointF::dotProduct(edge.to - origin, normal);
        if ((da > 0.0) == (db > 0.0)) continue;  // half-open: a vertex on the line counts once
        const QPointF hit = edge.from + (edge.to - edge.from) * (da / (da - db));
        result.push_back(QPointF::dotProduct(hit - origin, direction) / along);
    }
    std::sort(result.begin(), result.end());
    return result;
}

// Adds the dashes of a pattern that fall within [from, to] of the line.
void addDashes(const std::vector<double>& dashes, double period, double from, double to, const QPointF& origin,
               const QPointF& direction, QPainterPath& strokes) {
    auto segment = [&](double a, double b) {
        strokes.moveTo(origin + direction * a);
        strokes.lineTo(origin + direction * b);
    };
    if (dashes.empty() || period <= 0.0) {
        segment(from, to);
        return;
    }
    double start = std::floor(from / period) * period;
    for (; start <= to; start += period) {
        double at = start;
        for (double dash : dashes) {
            const double length = std::abs(dash);
            if (dash >= 0.0) {
                const double a = std::max(at, from), b = std::min(at + length, to);
                if (a <= b) segment(a, dash == 0.0 ? a : b);
            }
            at += length;
        }
    }
}

}  // namespace

PatternResult patternStrokes(const std::vector<PatternLine>& lines, const QPainterPath& boundary,
                             const QTransform& planeToPicture, QPainterPath& strokes) {
    const std::vector<Edge> edges = edgesOf(planeToPicture.map(boundary));
    const QRectF box = boundary.boundingRect();
    const QPointF corners[4] = {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()};
    bool usable = false;
    for (const PatternLine& line : lines) {
        const QPointF direction(std::cos(line.angle), std::sin(line.angle));
        const QPointF normal(-direction.y(), direction.x());
        const double spacing = QPointF::dotProduct(line.offset, normal);
        if (!std::isfinite(spacing) || std::abs(spacing) < 1e-12 * std::max(1.0, box.width() + box.height())) continue;
        // The lines k whose offsets reach across the boundary's box.
        double low = INFINITY, high = -INFINITY;
        for (const QPointF& corner : corners) {
            const double k = QPointF::dotProduct(corner - line.base, normal) / spacing;
            low = std::min(low, k);
            high = std::max(high, k);
        }
        // The distance between neighbouring lines in the picture.
        const QPointF pictureOffset = planeToPicture.map(line.base + line.offset) - planeToPicture.map(line.base);
        const QPointF pictureDirection = planeToPicture.map(line.base + direction) - planeToPicture.map(line.base);
        const double directionPixels = std::hypot(pictureDirection.x(), pictureDirection.y());
        if (!(directionPixels > 0.0)) continue;
        const double pictureSpacing =
            std::abs(pictureOffset.x() * pictureDirection.y() - pictureOffset.y() * pictureDirection.x()) /
            directionPixels;
        const double count = std::floor(high) - std::ceil(low) + 1.0;
        if (!std::isfinite(count)) continue;
        usable = true;
        if (pictureSpacing < kClosestLinesPixels || count > kMostLines || count * edges.size() > kMostCrossingTests) {
            return PatternResult::TooDense;
        }
        double period = 0.0;
        for (double dash : line.dashes) period += std::abs(dash);
        const bool dashed = period * directionPixels >= kShortestDashPeriodPixels;
        for (double k = std::ceil(low); k <= std::floor(high); k += 1.0) {
            // Plane origin of line k; its dashes count from there.
            const QPointF planeOrigin = line.base + line.offset * k;
            const QPointF origin = planeToPicture.map(planeOrigin);
            const std::vector<double> cuts = crossings(edges, origin, pictureDirection);
            for (size_t i = 0; i + 1 < cuts.size(); i += 2) {
                const double from = cuts[i], to = cuts[i + 1];
                if (dashed && (to - from) / period > kMostDashesPerLine) return PatternResult::TooDense;
                addDashes(dashed ? line.dashes : std::vector<double>{}, period, from, to, origin, pictureDirection,
                          strokes);
            }
        }
    }
    return usable ? PatternResult::Drawn : PatternResult::Empty;
}

}  // namespace korva::render
