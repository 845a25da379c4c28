// The drawing of single entities, one family per file. Each function draws the
// entity types it knows and returns false for the others; the scene renderer
// handles what contains other entities (block references, dimensions, viewports).
#pragma once

#include "db/Drawing.h"
#include "db/ObjectRecord.h"
#include "render/Canvas.h"
#include "render/EntityStyle.h"
#include "render/Placement.h"

namespace korva::render {

// Settings of the drawing that single entities need.
struct SceneSettings {
    bool wipeoutFrames = true;  // WIPEOUTFRAME 1; 0 (off) and 2 (shown, not plotted) draw none
};

// WIPEOUTFRAME from the header ($WIPEOUTFRAME, where the host keeps it), else
// from the drawing's WIPEOUTVARIABLES (group 70 of the named object
// dictionary's entry "ACAD_WIPEOUT_VARS"), else 1.
SceneSettings sceneSettingsOf(const db::Drawing& drawing);

// One entity being drawn.
struct DrawItem {
    const db::ObjectRecord& entity;
    const EntityStyle& style;
    const Placement& placement;
    Canvas& canvas;
    const SceneSettings& settings;

    Pen pen() const { return canvas.penFor(style, placement.pixelsPerUnit()); }
};

// LINE, POINT, CIRCLE, ARC, ELLIPSE, SPLINE, RAY, XLINE, SOLID, TRACE, 3DFACE.
bool drawCurveEntity(const DrawItem& item);
// LWPOLYLINE and POLYLINE (2D with bulges and widths, 3D, meshes, polyface meshes).
bool drawPolylineEntity(const DrawItem& item);
// HATCH: solid fills filled, patterns as their lines clipped to the boundary.
bool drawHatchEntity(const DrawItem& item);
// WIPEOUT (filled with the background) and IMAGE (its frame).
bool drawImageEntity(const DrawItem& item);
// TEXT, ATTRIB, ATTDEF and MTEXT, filled glyph outlines.
bool drawTextEntity(const DrawItem& item);
// LEADER and MLINE.
bool drawLinearEntity(const DrawItem& item);

}  // namespace korva::render
