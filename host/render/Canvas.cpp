// Strokes and fills on the picture's painter.
#include "render/Canvas.h"

#include <algorithm>
#include <cmath>

namespace korva::render {

namespace {

// Below this length in pixels a whole linetype pattern shows as a continuous line.
constexpr double kShortestPattern = 4.0;

}  // namespace

std::vector<double> dashPattern(const Linetype* linetype, double unitsToPixels) {
    if (!linetype || !(unitsToPixels > 0.0) || !std::isfinite(unitsToPixels)) return {};
    // Runs of on (dashes and dots) and off (gaps), merged where the pattern repeats a kind.
    std::vector<std::pair<bool, double>> runs;
    for (double element : linetype->elements) {
        const bool on = element >= 0.0;
        const double length = std::abs(element) * unitsToPixels;
        if (!runs.empty() && runs.back().first == on) runs.back().second += length;
        else runs.emplace_back(on, length);
    }
    if (runs.size() > 1 && runs.front().first == runs.back().first) {
        runs.front().second += runs.back().second;
        runs.pop_back();
    }
    if (runs.size() < 2) return {};
    if (!runs.front().first) std::rotate(runs.begin(), runs.begin() + 1, runs.end());
    double total = 0.0;
    std::vector<double> dashes;
    for (const auto& [on, length] : runs) {
        total += length;
        dashes.push_back(length);
    }
    if (total < kShortestPattern || dashes.size() % 2 != 0) return {};
    return dashes;
}

Canvas::Canvas(PaintTarget& target, const QRectF& area, const StyleResolver& styles)
    : target_(target), area_(area), background_(styles.background()), styles_(styles) {}

Pen Canvas::penFor(const EntityStyle& style, double pixelsPerUnit) const {
    Pen pen;
    pen.color = style.color;
    pen.width = styles_.penWidth(style.lineweight);
    pen.dashes = dashPattern(style.linetype, style.linetypeScale * pixelsPerUnit);
    return pen;
}

void Canvas::usePen(const Pen& pen) {
    QPen qpen(pen.color, pen.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    if (!pen.dashes.empty()) {
        // Qt measures dashes in pen widths; a dot is as long as the pen is wide.
        QVector<qreal> pattern;
        pattern.reserve(static_cast<int>(pen.dashes.size()));
        for (double length : pen.dashes) pattern.push_back(std::max(length, 1.0) / pen.width);
        qpen.setCapStyle(Qt::FlatCap);
        qpen.setDashPattern(pattern);
    }
    painter().setPen(qpen);
    painter().setBrush(Qt::NoBrush);
}

void Canvas::stroke(const QPainterPath& path, const Pen& pen) {
    usePen(pen);
    painter().drawPath(path);
}

void Canvas::strokePolyline(const QPolygonF& points, const Pen& pen) {
    usePen(pen);
    painter().drawPolyline(points);
}

void Canvas::strokeLine(const QPointF& from, const QPointF& to, const Pen& pen) {
    usePen(pen);
    painter().drawLine(from, to);
}

void Canvas::fill(const QPainterPath& path, const QColor& color) {
    painter().fillPath(path, color);
}

void Canvas::fillPolygon(const QPolygonF& points, const QColor& color) {
    painter().setPen(Qt::NoPen);
    painter().setBrush(color);
    painter().drawPolygon(points, Qt::OddEvenFill);
}

void Canvas::dot(const QPointF& at, const Pen& pen) {
    const double radius = std::max(pen.width, 2.0) / 2.0;
    painter().setPen(Qt::NoPen);
    painter().setBrush(pen.color);
    painter().drawEllipse(at, radius, radius);
}

}  // namespace korva::render
