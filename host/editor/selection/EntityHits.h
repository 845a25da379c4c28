// The geometric part of selection: which entities of the view's space lie in a
// window, crossing window, polygon or on a fence, and which one a pick hits.
// Candidates come from the spatial index; a candidate whose box settles the
// question (wholly inside a window, or apart from it) is decided by its box,
// the others by their flattened outlines.
#pragma once

#include <optional>
#include <vector>

#include "editor/selection/EntityWalk.h"
#include "editor/selection/FlatShape.h"
#include "editor/selection/SelectionRules.h"
#include "editor/selection/SelectionView.h"

namespace korva::editor {

struct SelectionRegion {
    enum class Kind { Window, Crossing, WindowPolygon, CrossingPolygon, Fence };
    Kind kind = Kind::Window;
    std::vector<Point2> points;  // display: two corners, the polygon's vertices, or the fence's points
};

// The accepted entities of the view's space the region selects, in their space's order.
std::vector<db::ObjectRecord*> selectRegion(const SelectionView& view, const SelectionRegion& region,
                                            SelectionRules& rules);

struct PickResult {
    db::ObjectRecord* entity = nullptr;  // the top-level entity
    LeafVisit leaf;                      // the innermost entity hit, with its containers and transform
    double distance = 0.0;
};

// The accepted entity nearest to a display point within the aperture (display
// units); among equally near ones the one drawn last.
std::optional<PickResult> pickNearest(const SelectionView& view, const Point2& at, double aperture, SelectionRules& rules);

// The flattened outline of one leaf, and of a whole top-level entity, in display coordinates.
void flattenLeaf(const LeafVisit& leaf, const KcGeMatrix3d& worldToDisplay, double tolerance, FlatShape& out);
void flattenEntity(const db::ObjectRecord& entity, const KcGeMatrix3d& worldToDisplay, double tolerance,
                   LayerStates& layers, FlatShape& out);

}  // namespace korva::editor
