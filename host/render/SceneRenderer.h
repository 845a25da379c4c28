// Walks a space and draws it: entities in draw order, each in its resolved
// style, block references through their transforms (nested, every cell of an
// array, with their attributes), dimensions and tables through their anonymous
// blocks, and in a layout the viewports with model space seen through them.
// Single entities are drawn by the painters of EntityPainters.h.
#pragma once

#include <unordered_map>
#include <vector>

#include "db/Drawing.h"
#include "render/Canvas.h"
#include "render/EntityPainters.h"
#include "render/EntityStyle.h"
#include "render/Placement.h"

namespace korva::render {

class SceneRenderer {
public:
    SceneRenderer(const db::Drawing& drawing, Canvas& canvas, StyleResolver& styles, const SceneSettings& settings)
        : drawing_(drawing), canvas_(canvas), styles_(styles), settings_(settings) {}

    // Draws the entities of a space; in a layout (paper space) viewports show model space.
    void drawSpace(const db::ObjectRecord& space, const Placement& placement, bool layout);

private:
    // A space shows all its entities; a referenced block leaves out its variable attribute definitions.
    enum class BlockUse { Space, Referenced };
    void drawBlock(const db::ObjectRecord& block, const Placement& placement, const Inheritance& outer, BlockUse use);
    void drawEntity(const db::ObjectRecord& entity, const Placement& placement, const Inheritance& outer);
    void drawInsert(const db::ObjectRecord& insert, const EntityStyle& style, const Placement& placement);
    void drawAnonymousBlock(const db::ObjectRecord& entity, const EntityStyle& style, const Placement& placement);
    void drawViewport(const db::ObjectRecord& viewport, const EntityStyle& style, const Placement& placement);
    const std::vector<const db::ObjectRecord*>& drawOrderOf(const db::ObjectRecord& block);

    const db::Drawing& drawing_;
    Canvas& canvas_;
    StyleResolver& styles_;
    const SceneSettings& settings_;
    bool layout_ = false;
    std::vector<const db::ObjectRecord*> openBlocks_;  // blocks being drawn, against cycles
    std::unordered_map<const db::ObjectRecord*, std::vector<const db::ObjectRecord*>> drawOrders_;
};

}  // namespace korva::render
