// The painter the entities are drawn on, in picture pixels: strokes with a
// lineweight and linetype, fills, dots, and the background colour wipeouts fill
// with. Pens are built here from an entity's resolved style so that every kind
// of entity draws its lines the same way.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QRectF>

#include <vector>

#include "render/EntityStyle.h"
#include "render/PaintTarget.h"

namespace korva::render {

// A stroke in picture terms.
struct Pen {
    QColor color;
    double width = 1.0;          // pixels
    std::vector<double> dashes;  // pixels: on, off, on, off ...; empty: continuous
};

// The dashes of a linetype in pixels, as on/off pairs. Empty (a continuous line)
// for no linetype, or when the pattern is so small in the picture that its
// dashes would merge (it then looks continuous, as it does on screen).
std::vector<double> dashPattern(const Linetype* linetype, double unitsToPixels);

class Canvas {
public:
    Canvas(PaintTarget& target, const QRectF& area, const StyleResolver& styles);

    const QRectF& area() const { return area_; }
    QColor background() const { return background_; }

    // The pen of an entity drawn at pixelsPerUnit (linetype dashes scale with it).
    Pen penFor(const EntityStyle& style, double pixelsPerUnit) const;

    void stroke(const QPainterPath& path, const Pen& pen);
    void strokePolyline(const QPolygonF& points, const Pen& pen);
    void strokeLine(const QPointF& from, const QPointF& to, const Pen& pen);
    void fill(const QPainterPath& path, const QColor& color);
    void fillPolygon(const QPolygonF& points, const QColor& color);
    void dot(const QPointF& at, const Pen& pen);

    // Limits what is drawn to an area until endClip (clips do not nest).
    void beginClip(const QPainterPath& area) { target_.beginClip(area); }
    void endClip() { target_.endClip(); }

private:
    void usePen(const Pen& pen);
    QPainter& painter() { return target_.painter(); }

    PaintTarget& target_;
    QRectF area_;
    QColor background_;
    const StyleResolver& styles_;
};

}  // namespace korva::render
