// Making the block of an imported picture.
#include "commands/wmf/WmfPictureBlock.h"

#include <memory>
#include <vector>

#include "commands/BlockRecords.h"
#include "commands/wmf/WmfColors.h"
#include "kcdbents.h"
#include "kcdbtables.h"

namespace korva::commands::wmf {

namespace {

using metafile::LogicalPoint;
using metafile::PictureShape;
using metafile::ShapeKind;

// The colour of what a shape draws: its pen, or for polygons without a pen its brush.
std::optional<metafile::ColorRef> drawnColor(const PictureShape& shape) {
    if (shape.pen) return shape.pen;
    if (shape.kind == ShapeKind::Polygon) return shape.brush;
    return std::nullopt;
}

// A contour in block coordinates without repeated neighbours.
std::vector<KcGePoint2d> blockPoints(const std::vector<LogicalPoint>& contour, const metafile::PictureMapping& mapping) {
    std::vector<KcGePoint2d> points;
    points.reserve(contour.size());
    for (const LogicalPoint& p : contour) {
        const LogicalPoint d = mapping.toDrawing(p);
        const KcGePoint2d q(d.x, d.y);
        if (points.empty() || points.back() != q) points.push_back(q);
    }
    return points;
}

std::unique_ptr<KcDbEntity> polylineOf(std::vector<KcGePoint2d> points, bool closed) {
    if (points.size() > 2 && points.front() == points.back()) {
        points.pop_back();  // a path back to its start is a closed outline
        closed = true;
    }
    if (points.size() < 2 || (closed && points.size() < 3)) return nullptr;
    auto polyline = std::make_unique<KcDbPolyline>();
    for (size_t i = 0; i < points.size(); ++i) polyline->addVertexAt(static_cast<Kcad::UInt32>(i), points[i]);
    polyline->setClosed(closed);
    return polyline;
}

// The entities one shape becomes.
std::vector<std::unique_ptr<KcDbEntity>> entitiesOf(const PictureShape& shape, const metafile::PictureMapping& mapping) {
    std::vector<std::unique_ptr<KcDbEntity>> made;
    for (const auto& contour : shape.contours) {
        std::vector<KcGePoint2d> points = blockPoints(contour, mapping);
        if (points.empty()) continue;
        switch (shape.kind) {
            case ShapeKind::Pixel:
                made.push_back(std::make_unique<KcDbPoint>(KcGePoint3d(points[0].x, points[0].y, 0.0)));
                break;
            case ShapeKind::Line:
                if (points.size() == 2) {
                    made.push_back(std::make_unique<KcDbLine>(KcGePoint3d(points[0].x, points[0].y, 0.0),
                                                              KcGePoint3d(points[1].x, points[1].y, 0.0)));
                }
                break;
            case ShapeKind::Polyline:
            case ShapeKind::Polygon:
                if (auto polyline = polylineOf(std::move(points), shape.kind == ShapeKind::Polygon)) {
                    made.push_back(std::move(polyline));
                }
                break;
        }
    }
    return made;
}

KcDbObjectId newAnonymousBlock(KcDbDatabase& database) {
    return addBlockRecord(database, L"*U", KcGePoint3d::kOrigin);  // the database names it "*U<n>"
}

KcCmColor currentLayerColor(KcDbDatabase& database) {
    KcDbLayerTableRecord* layer = nullptr;
    KcCmColor color;
    if (kcdbOpenObject(layer, database.clayer(), KcDb::kForRead) == Kcad::eOk) {
        color = layer->color();
        layer->close();
    }
    return color;
}

}  // namespace

PictureBlock makePictureBlock(KcDbDatabase& database, const metafile::MetafilePicture& picture,
                              const metafile::PictureMapping& mapping) {
    PictureBlock result;
    result.block = newAnonymousBlock(database);
    if (result.block.isNull()) return result;
    KcDbBlockTableRecord* block = nullptr;
    if (kcdbOpenObject(block, result.block, KcDb::kForWrite) != Kcad::eOk) return result;
    const KcCmColor layerColor = currentLayerColor(database);
    for (const PictureShape& shape : picture.shapes) {
        const auto color = drawnColor(shape);
        if (!color) continue;  // draws nothing
        const KcCmColor entityColor = importedColor({color->red, color->green, color->blue}, layerColor);
        for (auto& entity : entitiesOf(shape, mapping)) {
            entity->setLayer(database.clayer());
            entity->setColor(entityColor);
            if (block->appendKcDbEntity(entity.get()) != Kcad::eOk) continue;
            entity.release()->close();
            ++result.entities;
        }
    }
    block->close();
    return result;
}

}  // namespace korva::commands::wmf
