// Reading a VIEWPORT's window and view.
#include "render/ViewportWindow.h"

#include <cmath>

#include "db/Drawing.h"
#include "db/geometry/EntityTags.h"
#include "db/geometry/PolylineVertices.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"
#include "render/PathBuilder.h"

namespace korva::render {

namespace {

using db::geometry::EntityTags;

constexpr int64_t kViewportOff = 0x20000;             // 90: the viewport is off
constexpr int64_t kNonRectangularClipping = 0x10000;  // 90: clipped by the entity of 340

// The outline of a planar polyline clip boundary in paper coordinates; empty for other entities.
QPainterPath polylineOutline(const db::ObjectRecord& boundary) {
    db::geometry::PolylineShape shape;
    if (!db::geometry::readPolylineShape(boundary, shape) || shape.kind != db::geometry::PolylineKind::Planar ||
        shape.vertices.size() < 3 || !shape.normal.isCodirectionalTo(KcGeVector3d::kZAxis)) {
        return {};
    }
    std::vector<QPointF> points;
    std::vector<double> bulges;
    for (const auto& v : shape.vertices) {
        points.emplace_back(v.point.x, v.point.y);
        bulges.push_back(v.bulge);
    }
    return bulgePath(points, bulges, true);
}

KcGeMatrix3d viewMatrix(const EntityTags& t) {
    const KcGePoint3d centre = t.point(10);
    const KcGePoint3d viewCentre = t.point(12);
    KcGeVector3d direction = t.point(16, {0, 0, 1}).asVector();
    if (direction.isZeroLength()) direction = KcGeVector3d::kZAxis;
    const KcGePoint3d target = t.point(17);
    const double scale = t.real(41, 0.0) / t.real(45, 1.0);
    const double twist = geom::degreesToRadians(t.real(51, 0.0));
    return KcGeMatrix3d::translation({centre.x, centre.y, 0.0}) * KcGeMatrix3d::scaling(scale) *
           KcGeMatrix3d::translation({-viewCentre.x, -viewCentre.y, 0.0}) *
           KcGeMatrix3d::rotation(twist, KcGeVector3d::kZAxis) * KcGeMatrix3d::worldToPlane(direction) *
           KcGeMatrix3d::translation(-target.asVector());
}

}  // namespace

ViewportWindow readViewportWindow(const db::ObjectRecord& viewport) {
    ViewportWindow window;
    const EntityTags t(viewport);
    window.overall = t.integer(69, 0) == 1;
    const KcGePoint3d centre = t.point(10);
    const double halfWidth = t.real(40, 0.0) / 2.0, halfHeight = t.real(41, 0.0) / 2.0;
    window.outline.addRect(QRectF(centre.x - halfWidth, centre.y - halfHeight, 2 * halfWidth, 2 * halfHeight));
    const int64_t flags = t.integer(90, 0);
    const db::Drawing* drawing = viewport.drawing;
    if ((flags & kNonRectangularClipping) && drawing) {
        const db::Tag* clip = t.first(340);
        const db::ObjectRecord* boundary = clip ? drawing->findByHandle(clip->handleValue()) : nullptr;
        if (boundary && !boundary->erased) {
            const QPainterPath outline = polylineOutline(*boundary);
            if (!outline.isEmpty()) window.outline = outline;
        }
    }
    const double viewHeight = t.real(45, 0.0);
    const bool on = t.integer(68, 1) != 0 && !(flags & kViewportOff);
    window.showsModel = !window.overall && on && viewHeight > 0.0 && std::isfinite(viewHeight) &&
                        halfWidth > 0.0 && halfHeight > 0.0;
    if (window.showsModel) window.modelToPaper = viewMatrix(t);
    if (drawing) {
        for (size_t i = 0; i < t.extendedDataStart(); ++i) {
            if (!t.isData(i) || t.tags[i].code != 341) continue;
            const db::ObjectRecord* layer = drawing->findByHandle(t.tags[i].handleValue());
            if (layer) window.frozenLayers.insert(layer);
        }
    }
    return window;
}

}  // namespace korva::render
