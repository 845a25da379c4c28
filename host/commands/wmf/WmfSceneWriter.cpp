// Scene to metafile: the logical frame, then the records shape by shape.
#include "commands/wmf/WmfSceneWriter.h"

#include <algorithm>
#include <cmath>

#include "metafile/MetafileWriter.h"
#include "metafile/ScaleComment.h"

namespace korva::commands::wmf {

namespace {

using metafile::PointS;

// Logical units across the larger side: the 16-bit range with room for rounding.
constexpr double kLogicalRange = 65532.0;

int16_t toInt16(double value) { return static_cast<int16_t>(std::clamp(std::round(value), -32768.0, 32767.0)); }

// Display coordinates to logical ones.
class LogicalFrame {
public:
    LogicalFrame(const Scene& scene, double cornerX, double cornerY) : cornerX_(cornerX), cornerY_(cornerY) {
        double low[2] = {0.0, 0.0}, high[2] = {0.0, 0.0};  // the corner is always inside
        for (const SceneShape& shape : scene.shapes) {
            for (const SceneContour& contour : shape.contours) {
                for (const ScenePoint& p : contour) {
                    const double r[2] = {p.x - cornerX, cornerY - p.y};
                    for (int axis = 0; axis < 2; ++axis) {
                        low[axis] = std::min(low[axis], r[axis]);
                        high[axis] = std::max(high[axis], r[axis]);
                    }
                }
            }
        }
        k_ = unitsPerDrawingUnitFor(high[0] - low[0], high[1] - low[1]);
        shiftX_ = std::round(-(low[0] + high[0]) / 2.0 * k_);
        shiftY_ = std::round(-(low[1] + high[1]) / 2.0 * k_);
        far_ = {toInt16(std::round(high[0] * k_) + shiftX_), toInt16(std::round(high[1] * k_) + shiftY_)};
    }

    PointS map(const ScenePoint& p) const {
        return {toInt16(std::round((p.x - cornerX_) * k_) + shiftX_), toInt16(std::round((cornerY_ - p.y) * k_) + shiftY_)};
    }
    PointS corner() const { return {toInt16(shiftX_), toInt16(shiftY_)}; }
    // The logical point of the scene's right and bottom extremes.
    PointS farCorner() const { return far_; }
    double k() const { return k_; }

private:
    double cornerX_, cornerY_;
    double k_ = 1.0;
    double shiftX_ = 0.0, shiftY_ = 0.0;
    PointS far_;
};

// A contour in logical units without repeated neighbours.
std::vector<PointS> logicalContour(const SceneContour& contour, const LogicalFrame& frame, bool closed) {
    std::vector<PointS> points;
    points.reserve(contour.size() + 1);
    for (const ScenePoint& p : contour) {
        const PointS q = frame.map(p);
        if (points.empty() || !(points.back() == q)) points.push_back(q);
    }
    if (closed && points.size() > 1 && points.front() == points.back()) points.pop_back();
    return points;
}

class RecordWriter {
public:
    RecordWriter(const LogicalFrame& frame, metafile::MetafileWriter& writer) : frame_(frame), writer_(writer) {}

    void shape(const SceneShape& shape) {
        useColor(shape.color);
        switch (shape.kind) {
            case SceneKind::Open:
            case SceneKind::Closed: outline(shape); break;
            case SceneKind::Filled: filled(shape); break;
            case SceneKind::Point:
                if (!shape.contours.empty() && !shape.contours[0].empty()) {
                    writer_.setPixel(frame_.map(shape.contours[0][0]), colorRef(shape.color));
                }
                break;
        }
    }

    void finishObjects() {
        if (!selected_) return;
        writer_.deleteObject(pen_);
        writer_.deleteObject(brush_);
    }

private:
    static metafile::ColorRef colorRef(const db::Rgb& c) { return {c.red, c.green, c.blue}; }

    void useColor(const db::Rgb& color) {
        if (selected_ && color_ == color) return;
        const uint16_t pen = writer_.createPen(metafile::kPenSolid, 0, colorRef(color));
        const uint16_t brush = writer_.createBrush(metafile::kBrushSolid, colorRef(color));
        writer_.selectObject(pen);
        writer_.selectObject(brush);
        if (selected_) {
            writer_.deleteObject(pen_);
            writer_.deleteObject(brush_);
        }
        pen_ = pen;
        brush_ = brush;
        color_ = color;
        selected_ = true;
    }

    void outline(const SceneShape& shape) {
        const bool closed = shape.kind == SceneKind::Closed;
        for (const SceneContour& contour : shape.contours) {
            std::vector<PointS> points = logicalContour(contour, frame_, closed);
            if (points.size() < 2) continue;  // shorter than a logical unit
            if (closed && points.size() > 2) points.push_back(points.front());
            if (points.size() == 2) {
                writer_.moveTo(points[0]);
                writer_.lineTo(points[1]);
            } else {
                writer_.polyline(points);
            }
        }
    }

    void filled(const SceneShape& shape) {
        std::vector<std::vector<PointS>> polygons;
        for (const SceneContour& contour : shape.contours) {
            std::vector<PointS> points = logicalContour(contour, frame_, true);
            if (points.size() < 3) continue;  // nothing left to fill
            polygons.push_back(std::move(points));
        }
        if (polygons.empty()) return;
        const metafile::PolyFillMode mode = shape.alternate ? metafile::PolyFillMode::Alternate : metafile::PolyFillMode::Winding;
        if (mode != fillMode_) {
            writer_.setPolyFillMode(mode);
            fillMode_ = mode;
        }
        if (polygons.size() == 1 && writer_.polygon(polygons[0])) return;
        if (writer_.polyPolygon(polygons)) return;
        for (const auto& polygon : polygons) {  // too large for one record: each on its own
            if (!writer_.polygon(polygon)) writer_.polyline(polygon);
        }
    }

    const LogicalFrame& frame_;
    metafile::MetafileWriter& writer_;
    // Plain members rather than optionals: one flag says whether a pen and brush are selected.
    bool selected_ = false;
    db::Rgb color_;
    uint16_t pen_ = 0;
    uint16_t brush_ = 0;
    metafile::PolyFillMode fillMode_ = metafile::PolyFillMode::Winding;
};

}  // namespace

double unitsPerDrawingUnitFor(double width, double height) {
    const double side = std::max(width, height);
    const double k = side > 0.0 ? kLogicalRange / side : 1.0;
    return std::isfinite(k) && k > 0.0 ? k : 1.0;
}

WrittenMetafile writeSceneMetafile(const Scene& scene, double cornerX, double cornerY) {
    const LogicalFrame frame(scene, cornerX, cornerY);
    const PointS corner = frame.corner();
    const PointS extent{static_cast<int16_t>(std::max(1, frame.farCorner().x - corner.x)),
                        static_cast<int16_t>(std::max(1, frame.farCorner().y - corner.y))};
    metafile::MetafileWriter writer;
    writer.setMapMode(metafile::MapMode::Anisotropic);
    writer.setWindowOrg(corner);
    writer.setWindowExt(extent);
    writer.comment(metafile::encodeScaleComment({frame.k(), cornerX, cornerY}));
    writer.setPolyFillMode(metafile::PolyFillMode::Winding);
    RecordWriter records(frame, writer);
    for (const SceneShape& shape : scene.shapes) records.shape(shape);
    records.finishObjects();

    metafile::PlaceableHeader placeable;
    placeable.boundingBox = {corner.x, corner.y, static_cast<int16_t>(std::min(32767, corner.x + extent.x)),
                             static_cast<int16_t>(std::min(32767, corner.y + extent.y))};
    placeable.unitsPerInch = static_cast<uint16_t>(std::clamp(std::round(frame.k()), 1.0, 65535.0));
    WrittenMetafile written;
    written.bytes = writer.finish(placeable);
    written.unitsPerDrawingUnit = frame.k();
    return written;
}

}  // namespace korva::commands::wmf
