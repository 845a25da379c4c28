// What ZOOM and MVIEW share: the world extents of a space's entities, the view
// that shows a box, the screen's shape, and changing the current view of a
// document (the old view goes on the space's history; the model-space view is
// also written to the "*Active" viewport record, so that a saved drawing opens
// where it was left).
#pragma once

#include <vector>

#include "db/ObjectRecord.h"
#include "editor/Document.h"
#include "geom/Box3d.h"

namespace korva::commands {

// World extents of the live entities of a block record (a space), without the
// paper-space viewport itself; empty when nothing has extents.
geom::Box3d spaceExtents(const db::ObjectRecord* space);
geom::Box3d entityListExtents(const std::vector<const db::ObjectRecord*>& entities);
// The drawing limits of a space ($LIMMIN/$LIMMAX, $PLIMMIN/$PLIMMAX).
geom::Box3d limitsOf(const db::Drawing& drawing, bool paperSpace);

// Width over height of the screen (SCREENSIZE).
double screenAspect();

// A view of the given width/height ratio centred on a box of display coordinates.
struct ViewFit {
    KcGePoint3d center;
    double height = 0.0;
};
ViewFit fitBox(const geom::Box3d& displayBox, double aspect);

// Whether the current viewport shows paper space.
bool isPaperSpaceCurrent(const editor::Document& document);
// The box in the current view's display coordinates.
geom::Box3d toDisplay(editor::Document& document, const geom::Box3d& worldBox);
// Makes the view current for the current space, pushing the old one on its history.
void changeView(editor::Document& document, const KcGePoint3d& center, double height);
// Steps back to the last view of the history; false when there is none.
bool restorePreviousView(editor::Document& document);

}  // namespace korva::commands
