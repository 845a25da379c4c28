// The walk over spaces, blocks and viewports.
#include "render/SceneRenderer.h"

#include <algorithm>
#include <cmath>

#include "db/geometry/BlockTransform.h"
#include "db/geometry/EntityTags.h"
#include "render/DrawOrder.h"
#include "render/ViewportWindow.h"

namespace korva::render {

namespace {

constexpr size_t kDeepestNesting = 32;
constexpr int64_t kMostArrayCells = 10000;

// Attribute definitions show in references only when constant; references
// carry ATTRIBs for the others.
bool showsInReference(const db::ObjectRecord& member) {
    if (member.type != db::Type::AttDef) return true;
    return (db::geometry::EntityTags(member).integer(70, 0) & 2) != 0;
}

using EntityPainter = bool (*)(const DrawItem&);
constexpr EntityPainter kEntityPainters[] = {drawCurveEntity, drawPolylineEntity, drawHatchEntity,
                                             drawImageEntity, drawTextEntity,     drawLinearEntity};

bool isDimension(db::TypeId type) {
    return type == db::Type::Dimension || type == db::Type::ArcDimension || type == db::Type::LargeRadialDimension;
}

}  // namespace

void SceneRenderer::drawSpace(const db::ObjectRecord& space, const Placement& placement, bool layout) {
    layout_ = layout;
    drawBlock(space, placement, styles_.topLevel(), BlockUse::Space);
}

const std::vector<const db::ObjectRecord*>& SceneRenderer::drawOrderOf(const db::ObjectRecord& block) {
    auto it = drawOrders_.find(&block);
    if (it == drawOrders_.end()) it = drawOrders_.emplace(&block, entitiesInDrawOrder(block)).first;
    return it->second;
}

void SceneRenderer::drawBlock(const db::ObjectRecord& block, const Placement& placement, const Inheritance& outer,
                              BlockUse use) {
    if (openBlocks_.size() >= kDeepestNesting ||
        std::find(openBlocks_.begin(), openBlocks_.end(), &block) != openBlocks_.end()) {
        return;
    }
    openBlocks_.push_back(&block);
    for (const db::ObjectRecord* entity : drawOrderOf(block)) {
        if (use == BlockUse::Referenced && !showsInReference(*entity)) continue;
        drawEntity(*entity, placement, outer);
    }
    openBlocks_.pop_back();
}

void SceneRenderer::drawEntity(const db::ObjectRecord& entity, const Placement& placement, const Inheritance& outer) {
    const EntityStyle style = styles_.resolve(entity, outer);
    const db::TypeId type = entity.type;
    // A viewport on a hidden layer loses its frame, not what it shows.
    if (type == db::Type::Viewport) {
        if (layout_) drawViewport(entity, style, placement);
        return;
    }
    if (style.visibility == Visibility::Hidden) return;
    if (type == db::Type::Insert) {
        drawInsert(entity, style, placement);
        return;
    }
    if (style.visibility != Visibility::Shown) return;
    if (isDimension(type) || type == db::Type::AcadTable) {
        drawAnonymousBlock(entity, style, placement);
        return;
    }
    const DrawItem item{entity, style, placement, canvas_, settings_};
    for (const EntityPainter painter : kEntityPainters) {
        if (painter(item)) return;
    }
}

// A reference: its block under the insert transform, once per array cell, then
// its attributes (which lie in the reference's own coordinates). The parts of
// the block inherit the reference's style even when its layer is off.
void SceneRenderer::drawInsert(const db::ObjectRecord& insert, const EntityStyle& style, const Placement& placement) {
    const Inheritance inner = StyleResolver::inheritanceOf(style);
    if (const db::ObjectRecord* block = db::geometry::referencedBlock(insert)) {
        const db::geometry::InsertFields fields = db::geometry::readInsertFields(insert);
        const KcGePoint3d base = db::geometry::blockBasePoint(*block);
        int64_t cells = 0;
        for (int row = 0; row < fields.rows && cells < kMostArrayCells; ++row) {
            for (int column = 0; column < fields.columns && cells < kMostArrayCells; ++column, ++cells) {
                drawBlock(*block, placement.nested(db::geometry::insertTransform(fields, base, column, row)), inner,
                          BlockUse::Referenced);
            }
        }
    }
    if (!insert.container) return;
    for (const db::ObjectRecord* attribute : insert.container->members) {
        if (!attribute->erased && attribute->type == db::Type::Attrib) drawEntity(*attribute, placement, inner);
    }
}

// Dimensions and tables are drawn as the anonymous block they name (group 2):
// a dimension's block is in world coordinates; a table's is placed at its
// insertion point (10) along its direction (11).
void SceneRenderer::drawAnonymousBlock(const db::ObjectRecord& entity, const EntityStyle& style,
                                       const Placement& placement) {
    const db::ObjectRecord* block = db::geometry::referencedBlock(entity);
    if (!block) return;
    KcGeMatrix3d blockToOwner;
    if (entity.type == db::Type::AcadTable) {
        const db::geometry::EntityTags t(entity);
        db::geometry::InsertFields fields;
        fields.position = t.point(10);
        const KcGePoint3d direction = t.point(11, {1, 0, 0});
        fields.rotation = std::atan2(direction.y, direction.x);
        blockToOwner = db::geometry::insertTransform(fields, db::geometry::blockBasePoint(*block));
    }
    drawBlock(*block, placement.nested(blockToOwner), StyleResolver::inheritanceOf(style), BlockUse::Referenced);
}

// A viewport in a layout: model space drawn through its window, clipped to its
// outline, then its frame (unless it is the sheet's own viewport, or its layer hides it).
void SceneRenderer::drawViewport(const db::ObjectRecord& viewport, const EntityStyle& style,
                                 const Placement& placement) {
    const ViewportWindow window = readViewportWindow(viewport);
    if (window.overall) return;
    const QPainterPath outline = placement.planeToPicture(KcGeMatrix3d()).map(window.outline);
    const db::ObjectRecord* model = drawing_.modelSpace();
    if (window.showsModel && model) {
        canvas_.beginClip(outline);
        styles_.setViewportFrozenLayers(window.frozenLayers);
        const bool wasLayout = layout_;
        layout_ = false;
        drawBlock(*model, Placement(placement.toView() * window.modelToPaper, placement.viewToPicture()),
                  styles_.topLevel(), BlockUse::Space);
        layout_ = wasLayout;
        styles_.setViewportFrozenLayers({});
        canvas_.endClip();
    }
    if (style.visibility == Visibility::Shown) canvas_.stroke(outline, canvas_.penFor(style, placement.pixelsPerUnit()));
}

}  // namespace korva::render
