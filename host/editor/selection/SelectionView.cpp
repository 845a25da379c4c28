// The current view for selections.
#include "editor/selection/SelectionView.h"

#include <cmath>

#include "editor/Coordinates.h"

namespace korva::editor {

std::optional<SelectionView> SelectionView::current() {
    Document* document = Session::instance().current();
    if (!document) return std::nullopt;
    SelectionView view;
    view.document_ = document;
    db::Drawing& drawing = document->drawing();
    view.space_ = document->cvport() == 1 ? drawing.paperSpace() : drawing.modelSpace();
    if (!view.space_) return std::nullopt;
    view.worldToDisplay_ = editor::worldToDisplay(document);
    view.displayToWorld_ = editor::displayToWorld(document);
    view.ucsToWorld_ = editor::ucsToWorld(document);
    view.worldToUcs_ = editor::worldToUcs(document);
    // Display x and y do not depend on world z exactly when the view looks along z.
    const KcGeMatrix3d& m = view.worldToDisplay_;
    view.plan_ = std::fabs(m(0, 2)) < 1e-12 && std::fabs(m(1, 2)) < 1e-12;
    return view;
}

Point2 SelectionView::display(const KcGePoint3d& world) const {
    const KcGePoint3d d = worldToDisplay_ * world;
    return {d.x, d.y};
}

Point2 SelectionView::displayOfUcs(const KcGePoint3d& ucs) const { return display(ucsToWorld_ * ucs); }

Rect2 SelectionView::displayBox(const geom::Box3d& box) const {
    const KcGePoint3d& lo = box.min();
    const KcGePoint3d& hi = box.max();
    Rect2 out;
    // In a plan view the display does not depend on z: the four corners at one height do.
    const int corners = plan_ ? 4 : 8;
    for (int i = 0; i < corners; ++i) {
        const Point2 p = display({i & 1 ? hi.x : lo.x, i & 2 ? hi.y : lo.y, i & 4 ? hi.z : lo.z});
        if (i == 0) {
            out = {p.x, p.y, p.x, p.y};
            continue;
        }
        out.minX = std::min(out.minX, p.x);
        out.minY = std::min(out.minY, p.y);
        out.maxX = std::max(out.maxX, p.x);
        out.maxY = std::max(out.maxY, p.y);
    }
    return out;
}

std::optional<Rect2> SelectionView::worldArea(const Rect2& area) const {
    if (!plan_) return std::nullopt;
    Rect2 out;
    const Point2 corners[4] = {{area.minX, area.minY}, {area.maxX, area.minY}, {area.maxX, area.maxY}, {area.minX, area.maxY}};
    for (int i = 0; i < 4; ++i) {
        const KcGePoint3d w = displayToWorld_ * KcGePoint3d(corners[i].x, corners[i].y, 0.0);
        if (i == 0) {
            out = {w.x, w.y, w.x, w.y};
            continue;
        }
        out.minX = std::min(out.minX, w.x);
        out.minY = std::min(out.minY, w.y);
        out.maxX = std::max(out.maxX, w.x);
        out.maxY = std::max(out.maxY, w.y);
    }
    return out;
}

}  // namespace korva::editor
