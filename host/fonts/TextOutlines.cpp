// Text outlines: glyph paths at their pen positions, the switch bars, and
// flattening into contours.
#include "fonts/TextOutlines.h"

#include <algorithm>
#include <cmath>

#include "db/geometry/MTextLayout.h"
#include "fonts/FontCatalog.h"
#include "fonts/GlyphLayout.h"

namespace korva::fonts {

namespace {

constexpr int kMaximumSubdivision = 16;

// A bar as a closed rectangle turning the way the font's outer contours turn.
void addBar(QPainterPath& path, const DecorationBar& bar, bool clockwise) {
    const double low = bar.centre - bar.thickness / 2.0, high = bar.centre + bar.thickness / 2.0;
    const QPointF corners[4] = {{bar.from, low}, {bar.from, high}, {bar.to, high}, {bar.to, low}};  // clockwise, y up
    path.moveTo(corners[0]);
    if (clockwise) {
        for (int i = 1; i < 4; ++i) path.lineTo(corners[i]);
    } else {
        for (int i = 3; i > 0; --i) path.lineTo(corners[i]);
    }
    path.closeSubpath();
}

double distanceToSegment(const QPointF& p, const QPointF& a, const QPointF& b) {
    const QPointF ab = b - a;
    const double length2 = QPointF::dotProduct(ab, ab);
    double t = length2 > 0.0 ? QPointF::dotProduct(p - a, ab) / length2 : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    const QPointF d = p - (a + ab * t);
    return std::hypot(d.x(), d.y());
}

// Adds the points of a cubic after its start. A cubic lies within the hull of
// its control points, so once they are within the tolerance of the chord, so is the curve.
void flattenCubic(const QPointF& p0, const QPointF& p1, const QPointF& p2, const QPointF& p3, double tolerance,
                  int depth, Contour& out) {
    if (depth >= kMaximumSubdivision ||
        std::max(distanceToSegment(p1, p0, p3), distanceToSegment(p2, p0, p3)) <= tolerance) {
        out.push_back({p3.x(), p3.y()});
        return;
    }
    const QPointF a = (p0 + p1) / 2, b = (p1 + p2) / 2, c = (p2 + p3) / 2;
    const QPointF ab = (a + b) / 2, bc = (b + c) / 2, middle = (ab + bc) / 2;
    flattenCubic(p0, a, ab, middle, tolerance, depth + 1, out);
    flattenCubic(middle, bc, c, p3, tolerance, depth + 1, out);
}

void finishContour(Contour& contour, std::vector<Contour>& contours) {
    if (contour.size() > 1 && contour.front() == contour.back()) contour.pop_back();
    if (contour.size() >= 3) contours.push_back(std::move(contour));
    contour.clear();
}

}  // namespace

QPainterPath textPath(std::string_view text, const db::TextStyleMetrics& style) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    if (text.empty()) return path;
    const std::shared_ptr<const FontFace> face = FontCatalog::instance().fontFor(style);
    if (!face) return path;
    const std::optional<GlyphLayout> layout = layoutGlyphs(text, *face);
    if (!layout || layout->glyphs.empty()) return path;
    for (const PlacedGlyph& placed : layout->glyphs) path.addPath(placed.glyph->outline.translated(placed.x, 0.0));
    for (const DecorationBar& bar : layout->bars) addBar(path, bar, face->outerContoursClockwise());
    return textTransform(style).map(path);
}

std::vector<Contour> flattenPath(const QPainterPath& path, double tolerance) {
    std::vector<Contour> contours;
    Contour contour;
    QPointF last;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        const QPointF point(element.x, element.y);
        if (element.isMoveTo()) {
            finishContour(contour, contours);
            contour.push_back({point.x(), point.y()});
        } else if (element.isLineTo()) {
            contour.push_back({point.x(), point.y()});
        } else if (element.isCurveTo() && i + 2 < path.elementCount()) {
            const QPainterPath::Element second = path.elementAt(i + 1);
            const QPainterPath::Element end = path.elementAt(i + 2);
            flattenCubic(last, point, QPointF(second.x, second.y), QPointF(end.x, end.y), tolerance, 0, contour);
            i += 2;
            last = QPointF(end.x, end.y);
            continue;
        }
        last = point;
    }
    finishContour(contour, contours);
    return contours;
}

std::vector<Contour> textContours(std::string_view text, const db::TextStyleMetrics& style, double tolerance) {
    if (!(tolerance > 0.0) || !std::isfinite(tolerance)) tolerance = std::abs(style.height) / 1000.0;
    if (!(tolerance > 0.0) || !std::isfinite(tolerance)) tolerance = 1e-6;
    return flattenPath(textPath(text, style), tolerance);
}

QPainterPath mtextPath(const db::ObjectRecord& mtext) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    db::TextStyleMetrics style = db::textStyleOf(mtext);
    for (const db::geometry::MTextLine& line : db::geometry::layoutMText(mtext).lines) {
        for (const db::geometry::MTextRun& run : line.runs) {
            style.height = run.height;
            path.addPath(textPath(run.text, style).translated(line.x + run.x, line.y));
        }
    }
    return path;
}

}  // namespace korva::fonts
