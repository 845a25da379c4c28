// Region selection and picks over the spatial index.
#include "editor/selection/EntityHits.h"

#include <cmath>

#include "editor/selection/EntityOutline.h"
#include "editor/selection/ShapeBuilder.h"
#include "editor/selection/ShapeTests.h"
#include "editor/selection/SpatialIndex.h"

namespace korva::editor {

namespace {

bool regionHolds(const SelectionRegion& region, const std::vector<Point2>& polygon, const FlatShape& shape) {
    switch (region.kind) {
        case SelectionRegion::Kind::Window:
        case SelectionRegion::Kind::WindowPolygon: return insidePolygon(shape, polygon);
        case SelectionRegion::Kind::Crossing:
        case SelectionRegion::Kind::CrossingPolygon: return crossesPolygon(shape, polygon);
        case SelectionRegion::Kind::Fence: return crossesFence(shape, polygon);
    }
    return false;
}

// What an entity's box alone says: 1 selected, 0 not, -1 the outline must tell.
int decideByBox(const SelectionRegion& region, const Rect2& bounds, const Rect2& box, bool plan) {
    if (!box.intersects(bounds)) return 0;
    switch (region.kind) {
        case SelectionRegion::Kind::Window:
            if (bounds.contains(box)) return 1;
            // In a plan view the box is the entity's own extent on screen.
            return plan ? 0 : -1;
        case SelectionRegion::Kind::Crossing: return bounds.contains(box) ? 1 : -1;
        case SelectionRegion::Kind::WindowPolygon: return plan && !bounds.contains(box) ? 0 : -1;
        default: return -1;
    }
}

}  // namespace

void flattenLeaf(const LeafVisit& leaf, const KcGeMatrix3d& worldToDisplay, double tolerance, FlatShape& out) {
    ShapeBuilder builder(out, worldToDisplay * leaf.toWorld, tolerance);
    drawEntityOutline(*leaf.leaf, builder);
}

void flattenEntity(const db::ObjectRecord& entity, const KcGeMatrix3d& worldToDisplay, double tolerance,
                   LayerStates& layers, FlatShape& out) {
    walkLeaves(entity, layers, [&](const LeafVisit& leaf) { flattenLeaf(leaf, worldToDisplay, tolerance, out); });
}

std::vector<db::ObjectRecord*> selectRegion(const SelectionView& view, const SelectionRegion& region,
                                            SelectionRules& rules) {
    std::vector<db::ObjectRecord*> selected;
    const bool rectangle = region.kind == SelectionRegion::Kind::Window || region.kind == SelectionRegion::Kind::Crossing;
    if (rectangle && region.points.size() != 2) return selected;
    const std::vector<Point2> polygon =
        rectangle ? rectanglePolygon(Rect2::around(region.points[0], region.points[1])) : region.points;
    if (polygon.size() < (region.kind == SelectionRegion::Kind::Fence ? 2u : 3u)) return selected;
    const Rect2 bounds = boundsOf(polygon);
    const double tolerance = std::max(std::hypot(bounds.maxX - bounds.minX, bounds.maxY - bounds.minY) * 1e-6, 1e-12);
    const bool plan = view.worldArea(bounds).has_value();

    std::vector<IndexedEntity> candidates;
    SpatialIndex::instance().query(*view.space(), view.worldArea(bounds), candidates);
    FlatShape shape;
    for (const IndexedEntity& candidate : candidates) {
        const int byBox = candidate.bounded ? decideByBox(region, bounds, view.displayBox(candidate.box), plan) : -1;
        if (byBox == 0 || !rules.accepts(*candidate.entity, *candidate.common)) continue;
        if (byBox < 0) {
            shape.clear();
            flattenEntity(*candidate.entity, view.worldToDisplay(), tolerance, rules.layers(), shape);
            if (!regionHolds(region, polygon, shape)) continue;
        }
        selected.push_back(candidate.entity);
    }
    return selected;
}

std::optional<PickResult> pickNearest(const SelectionView& view, const Point2& at, double aperture, SelectionRules& rules) {
    const Rect2 area{at.x - aperture, at.y - aperture, at.x + aperture, at.y + aperture};
    std::vector<IndexedEntity> candidates;
    SpatialIndex::instance().query(*view.space(), view.worldArea(area), candidates);
    std::optional<PickResult> best;
    FlatShape shape;
    const double tolerance = std::max(aperture * 0.05, 1e-12);
    for (const IndexedEntity& candidate : candidates) {
        if (candidate.bounded && !view.displayBox(candidate.box).expanded(aperture).contains(at)) continue;
        if (!rules.accepts(*candidate.entity, *candidate.common)) continue;
        walkLeaves(*candidate.entity, rules.layers(), [&](const LeafVisit& leaf) {
            shape.clear();
            flattenLeaf(leaf, view.worldToDisplay(), tolerance, shape);
            const double distance = distanceTo(shape, at);
            // Later entities are drawn over earlier ones, so they win ties.
            if (distance > aperture || (best && distance > best->distance)) return;
            best = PickResult{candidate.entity, leaf, distance};
        });
    }
    return best;
}

}  // namespace korva::editor
