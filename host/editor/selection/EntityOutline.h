// The outline of one entity as the screen shows it, drawn into a ShapeBuilder
// in the entity's own coordinates (a block's, for an entity inside one; the
// builder's matrix carries it to the display). Block references are not drawn
// here: EntityWalk hands out their contents one by one.
#pragma once

#include "db/ObjectRecord.h"
#include "editor/selection/ShapeBuilder.h"

namespace korva::editor {

void drawEntityOutline(const db::ObjectRecord& entity, ShapeBuilder& builder);

// Per-kind parts of drawEntityOutline; false when the entity is not of their kinds.
bool drawCurveOutline(const db::ObjectRecord& entity, ShapeBuilder& builder);     // EntityOutlineCurves.cpp
bool drawPolylineOutline(const db::ObjectRecord& entity, ShapeBuilder& builder);  // EntityOutlinePolylines.cpp
bool drawAreaOutline(const db::ObjectRecord& entity, ShapeBuilder& builder);      // EntityOutlineAreas.cpp
bool drawHatchOutline(const db::ObjectRecord& entity, ShapeBuilder& builder);     // EntityOutlineHatch.cpp

}  // namespace korva::editor
