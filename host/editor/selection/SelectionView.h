// SelectionView: where selections happen, the current document's current space
// as the current view shows it. Converts UCS answers to display coordinates,
// entity boxes to display rectangles, and display areas back to the world xy
// areas the spatial index answers for (in plan views, where the view looks
// along the world z axis; other views test every entity).
#pragma once

#include <optional>

#include "db/Drawing.h"
#include "editor/Document.h"
#include "editor/selection/FlatShape.h"
#include "geom/Box3d.h"
#include "kcge.h"

namespace korva::editor {

class SelectionView {
public:
    // The view of the current document; nothing when no document is open.
    static std::optional<SelectionView> current();

    Document& document() const { return *document_; }
    db::Drawing& drawing() const { return document_->drawing(); }
    // The block record of the space selections pick from (model space, or the
    // current layout when paper space itself is current).
    db::ObjectRecord* space() const { return space_; }

    const KcGeMatrix3d& worldToDisplay() const { return worldToDisplay_; }
    Point2 display(const KcGePoint3d& world) const;
    Point2 displayOfUcs(const KcGePoint3d& ucs) const;
    KcGePoint3d worldOfUcs(const KcGePoint3d& ucs) const { return ucsToWorld_ * ucs; }
    KcGePoint3d ucsOfWorld(const KcGePoint3d& world) const { return worldToUcs_ * world; }

    // The display rectangle around a world box (its eight corners).
    Rect2 displayBox(const geom::Box3d& box) const;
    // The world xy area whose points show inside the display rectangle; nothing
    // when the view is not a plan view (the index cannot narrow the search).
    std::optional<Rect2> worldArea(const Rect2& displayArea) const;

private:
    Document* document_ = nullptr;
    db::ObjectRecord* space_ = nullptr;
    KcGeMatrix3d worldToDisplay_;
    KcGeMatrix3d displayToWorld_;
    KcGeMatrix3d ucsToWorld_;
    KcGeMatrix3d worldToUcs_;
    bool plan_ = true;
};

}  // namespace korva::editor
