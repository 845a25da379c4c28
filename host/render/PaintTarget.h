// Where a picture is painted: a painter, and how an area is clipped on it.
// Raster and PDF painters clip by themselves; the SVG generator ignores clips,
// so an SVG picture is painted in pieces that are joined into one document with
// clip paths (SvgPieces.h).
#pragma once

#include <QPainter>
#include <QPainterPath>

namespace korva::render {

class PaintTarget {
public:
    virtual ~PaintTarget() = default;
    virtual QPainter& painter() = 0;
    // Limits drawing to an area (picture pixels) until endClip; clips do not nest.
    virtual void beginClip(const QPainterPath& area) = 0;
    virtual void endClip() = 0;
};

// A painter that clips by itself.
class PainterTarget final : public PaintTarget {
public:
    explicit PainterTarget(QPainter& painter) : painter_(painter) {}
    QPainter& painter() override { return painter_; }
    void beginClip(const QPainterPath& area) override {
        painter_.save();
        painter_.setClipPath(area, Qt::IntersectClip);
    }
    void endClip() override { painter_.restore(); }

private:
    QPainter& painter_;
};

}  // namespace korva::render
