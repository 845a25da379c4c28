// A paper-space viewport as a window onto model space: its frame on the paper,
// whether it shows anything, the map from model space to paper, and the layers
// frozen in it. The view looks along its direction (16) at its target (17): a
// model point p lands on the paper at
//   centre + scale * (twist rotation * (world-to-view-plane * (p - target)) - view centre)
// where the view plane has the arbitrary axes of the direction, the twist (51)
// turns the view, the view centre (12) is in those view coordinates and the
// scale is the viewport's paper height (41) over the view's height (45).
// Perspective views are drawn as parallel ones.
#pragma once

#include <QPainterPath>

#include <unordered_set>

#include "db/ObjectRecord.h"
#include "kcge.h"

namespace korva::render {

struct ViewportWindow {
    bool overall = false;      // the layout's own viewport (id 1): the sheet itself, not a window
    bool showsModel = false;   // on, with a view to show
    QPainterPath outline;      // the frame in paper coordinates (a polyline boundary when clipped to one)
    KcGeMatrix3d modelToPaper;
    std::unordered_set<const db::ObjectRecord*> frozenLayers;
};

ViewportWindow readViewportWindow(const db::ObjectRecord& viewport);

}  // namespace korva::render
