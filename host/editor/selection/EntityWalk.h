// The entities a top-level entity shows on screen: itself, or for a block
// reference (and a dimension, whose block holds its lines and text) the shown
// entities of its block under the block transform, recursively, and the
// reference's attributes. Picks and selections test these leaves.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"
#include "editor/selection/LayerStates.h"
#include "kcge.h"

namespace korva::editor {

struct LeafVisit {
    const db::ObjectRecord* leaf = nullptr;
    KcGeMatrix3d toWorld;  // from the leaf's own coordinates (its block's) to world
    // The references around the leaf, outermost first. An attribute's list ends
    // before its own reference, whose coordinates it shares.
    std::vector<const db::ObjectRecord*> containers;
};

// Visits the leaves of a top-level entity. Erased and invisible entities, and
// those on layers that are off or frozen (entities on layer "0" in a block take
// the layer of their reference), are left out; the top-level entity itself is
// the caller's to check.
void walkLeaves(const db::ObjectRecord& entity, LayerStates& layers, const std::function<void(const LeafVisit&)>& visit);

// Whether the entity references a block whose entities it shows (INSERT, DIMENSION).
bool isBlockReference(const db::ObjectRecord& entity);

}  // namespace korva::editor
