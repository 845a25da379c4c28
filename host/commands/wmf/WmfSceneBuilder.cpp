// Walking the selected objects into a scene: visibility, colours and layers
// as the view shows them, block references and what explodes into parts.
#include <algorithm>
#include <cmath>

#include "commands/wmf/WmfScene.h"
#include "db/ObjectAccess.h"
#include "db/geometry/BlockTransform.h"
#include "kcdbtables.h"

namespace korva::commands::wmf {

namespace {

// Deeper nesting than this is a block that contains itself.
constexpr int kDepthLimit = 64;

// The largest stretch of a transformation: curves flattened to tolerance / stretch
// in their own units stay within the tolerance in display units.
double stretchOf(const KcGeMatrix3d& m) {
    double stretch = 0.0;
    for (const KcGeVector3d& axis : {KcGeVector3d::kXAxis, KcGeVector3d::kYAxis, KcGeVector3d::kZAxis}) {
        stretch = std::max(stretch, (m * axis).length());
    }
    return stretch;
}

std::wstring layerOf(const KcDbEntity& entity) {
    wchar_t* name = entity.layer();
    std::wstring layer = name ? name : L"0";
    kcutDelString(name);
    return layer;
}

}  // namespace

WmfSceneBuilder::Sink::Sink(WmfSceneBuilder& builder, const Surroundings& where, const db::Rgb& color)
    : builder_(builder), where_(where), color_(color) {
    const double stretch = stretchOf(where.toDisplay);
    tolerance_ = stretch > 0.0 ? builder.tolerance_ / stretch : builder.tolerance_;
}

ScenePoint WmfSceneBuilder::Sink::map(const KcGePoint3d& p) const {
    const KcGePoint3d d = where_.toDisplay * p;
    return {d.x, d.y};
}

void WmfSceneBuilder::Sink::polyline(const std::vector<KcGePoint3d>& points, bool closed) {
    if (points.size() < 2) return;
    SceneShape shape;
    shape.kind = closed ? SceneKind::Closed : SceneKind::Open;
    SceneContour contour;
    contour.reserve(points.size());
    for (const KcGePoint3d& p : points) contour.push_back(map(p));
    shape.contours.push_back(std::move(contour));
    displayShape(std::move(shape));
}

void WmfSceneBuilder::Sink::filled(const std::vector<std::vector<KcGePoint3d>>& polygons, bool alternate) {
    SceneShape shape;
    shape.kind = SceneKind::Filled;
    shape.alternate = alternate;
    for (const auto& polygon : polygons) {
        if (polygon.size() < 3) continue;
        SceneContour contour;
        contour.reserve(polygon.size());
        for (const KcGePoint3d& p : polygon) contour.push_back(map(p));
        shape.contours.push_back(std::move(contour));
    }
    if (!shape.contours.empty()) displayShape(std::move(shape));
}

void WmfSceneBuilder::Sink::point(const KcGePoint3d& point) {
    SceneShape shape;
    shape.kind = SceneKind::Point;
    shape.contours.push_back({map(point)});
    displayShape(std::move(shape));
}

void WmfSceneBuilder::Sink::displayShape(SceneShape shape) {
    shape.color = color_;
    builder_.scene_.shapes.push_back(std::move(shape));
}

WmfSceneBuilder::WmfSceneBuilder(KcDbDatabase* database, const KcGeMatrix3d& worldToDisplay, const ViewBox& view,
                                 double tolerance)
    : database_(database), layers_(database), worldToDisplay_(worldToDisplay), view_(view), tolerance_(tolerance) {}

void WmfSceneBuilder::addSelected(KcDbObjectId id) {
    KcDbEntity* entity = nullptr;
    if (kcdbOpenObject(entity, id, KcDb::kForRead) != Kcad::eOk) return;
    Surroundings top;
    top.toDisplay = worldToDisplay_;
    addEntity(*entity, top);
    entity->close();
}

void WmfSceneBuilder::addEntity(const KcDbEntity& entity, const Surroundings& where) {
    if (entity.visibility() == Kcad::kInvisible) return;
    std::wstring layer = layerOf(entity);
    if (!where.blockLayer.empty() && layer == L"0") layer = where.blockLayer;  // layer 0 takes the reference's
    const LayerLook::Look look = layers_.of(layer);
    if (!look.shown) return;
    const db::Rgb color = resolveColor(entity.color(), look.color, where.blockColor);
    if (const auto* reference = KcDbBlockReference::cast(&entity)) {
        addReference(*reference, where, color, layer);
        return;
    }
    Sink sink(*this, where, color);
    if (addCurveShapes(entity, sink) || addTextShapes(entity, sink)) return;
    addExplodedParts(entity, where, color, layer);
}

void WmfSceneBuilder::addReference(const KcDbBlockReference& reference, const Surroundings& where,
                                   const db::Rgb& color, const std::wstring& layer) {
    if (where.depth < kDepthLimit) {
        const db::ObjectRecord& record = db::ObjectAccess::record(reference);
        const db::geometry::InsertFields fields = db::geometry::readInsertFields(record);
        const db::ObjectRecord* block = db::geometry::referencedBlock(record);
        const KcGePoint3d base = block ? db::geometry::blockBasePoint(*block) : KcGePoint3d::kOrigin;
        Surroundings inner;
        inner.blockColor = color;
        inner.blockLayer = layer;
        inner.depth = where.depth + 1;
        for (int row = 0; row < std::max(1, fields.rows); ++row) {
            for (int column = 0; column < std::max(1, fields.columns); ++column) {
                inner.toDisplay = where.toDisplay * db::geometry::insertTransform(fields, base, column, row);
                addBlockContents(reference.blockTableRecord(), inner);
            }
        }
    }
    // Attributes lie in the reference's own space; BYBLOCK in them means the reference's colour.
    Surroundings attributes = where;
    attributes.blockColor = color;
    std::unique_ptr<KcDbObjectIterator> iterator(reference.attributeIterator());
    if (!iterator) return;
    for (iterator->start(); !iterator->done(); iterator->step()) {
        KcDbEntity* attribute = nullptr;
        if (kcdbOpenObject(attribute, iterator->objectId(), KcDb::kForRead) != Kcad::eOk) continue;
        addEntity(*attribute, attributes);
        attribute->close();
    }
}

void WmfSceneBuilder::addBlockContents(KcDbObjectId block, const Surroundings& inner) {
    KcDbBlockTableRecord* record = nullptr;
    if (kcdbOpenObject(record, block, KcDb::kForRead) != Kcad::eOk) return;
    KcDbBlockTableRecordIterator* iterator = nullptr;
    record->newIterator(iterator);
    std::vector<KcDbObjectId> ids;
    for (; iterator && !iterator->done(); iterator->step()) {
        KcDbObjectId id;
        if (iterator->getEntityId(id) == Kcad::eOk) ids.push_back(id);
    }
    delete iterator;
    record->close();
    for (KcDbObjectId id : ids) {
        KcDbEntity* entity = nullptr;
        if (kcdbOpenObject(entity, id, KcDb::kForRead) != Kcad::eOk) continue;
        addEntity(*entity, inner);
        entity->close();
    }
}

// Dimensions and other composite objects show the parts they explode into.
void WmfSceneBuilder::addExplodedParts(const KcDbEntity& entity, const Surroundings& where, const db::Rgb& color,
                                       const std::wstring& layer) {
    KcDbVoidPtrArray parts;
    if (where.depth >= kDepthLimit || entity.explode(parts) != Kcad::eOk || parts.isEmpty()) {
        ++scene_.undrawable;
        return;
    }
    Surroundings inner = where;
    inner.blockColor = color;
    inner.blockLayer = layer;
    inner.depth = where.depth + 1;
    for (int i = 0; i < parts.length(); ++i) {
        std::unique_ptr<KcDbEntity> part(static_cast<KcDbEntity*>(parts[i]));
        if (part) addEntity(*part, inner);
    }
}

}  // namespace korva::commands::wmf
