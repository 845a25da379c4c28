// Dispatch of entity outlines by kind; entities the host draws no outline for
// are picked by the edges of their extents box.
#include "editor/selection/EntityOutline.h"

#include "db/EntityGeometry.h"

namespace korva::editor {

void drawEntityOutline(const db::ObjectRecord& entity, ShapeBuilder& builder) {
    if (drawCurveOutline(entity, builder) || drawPolylineOutline(entity, builder) || drawAreaOutline(entity, builder) ||
        drawHatchOutline(entity, builder)) {
        return;
    }
    geom::Box3d box;
    if (db::entityExtents(entity, box)) builder.boxEdges(box);
}

}  // namespace korva::editor
