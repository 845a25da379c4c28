#include "commands/view/ViewFitting.h"

#include <algorithm>

#include "db/EntityGeometry.h"
#include "db/RecordFields.h"
#include "editor/Coordinates.h"
#include "editor/SystemVariables.h"

namespace korva::commands {

namespace {

constexpr size_t kHistoryDepth = 10;
constexpr std::string_view kVportMarker = "AcDbViewportTableRecord";

bool isPaperViewport(const db::ObjectRecord& entity) {
    return entity.type == db::Type::Viewport && db::fieldInteger(entity, "AcDbViewport", 69, 0) == 1;
}

// The model-space view is kept in the "*Active" viewport record as well.
void storeModelView(editor::Document& document, const editor::ViewState& view) {
    db::ObjectRecord* active = document.drawing().tableRecord("VPORT", "*Active");
    if (!active) return;
    db::setField(*active, kVportMarker, db::Tag::point2d(12, view.center.x, view.center.y));
    db::setField(*active, kVportMarker, db::Tag::real(40, view.height));
}

}  // namespace

geom::Box3d entityListExtents(const std::vector<const db::ObjectRecord*>& entities) {
    geom::Box3d box;
    for (const db::ObjectRecord* entity : entities) {
        geom::Box3d part;
        if (entity && !entity->erased && db::entityExtents(*entity, part)) box.add(part);
    }
    return box;
}

geom::Box3d spaceExtents(const db::ObjectRecord* space) {
    std::vector<const db::ObjectRecord*> entities;
    if (space && space->container) {
        for (const db::ObjectRecord* entity : space->container->members) {
            if (!entity->erased && !isPaperViewport(*entity)) entities.push_back(entity);
        }
    }
    return entityListExtents(entities);
}

geom::Box3d limitsOf(const db::Drawing& drawing, bool paperSpace) {
    const auto low = drawing.header.getPoint(paperSpace ? "$PLIMMIN" : "$LIMMIN").value_or(KcGePoint3d(0, 0, 0));
    const auto high = drawing.header.getPoint(paperSpace ? "$PLIMMAX" : "$LIMMAX").value_or(KcGePoint3d(12, 9, 0));
    return geom::Box3d(KcGePoint3d(low.x, low.y, 0), KcGePoint3d(high.x, high.y, 0));
}

double screenAspect() {
    const auto screen = editor::SystemVariables::instance().value(L"SCREENSIZE");
    if (!screen || screen->point.x <= 0 || screen->point.y <= 0) return 1024.0 / 768.0;
    return screen->point.x / screen->point.y;
}

ViewFit fitBox(const geom::Box3d& displayBox, double aspect) {
    ViewFit fit;
    const KcGePoint3d& low = displayBox.min();
    const KcGePoint3d& high = displayBox.max();
    fit.center = {(low.x + high.x) / 2, (low.y + high.y) / 2, 0.0};
    const double width = high.x - low.x;
    const double height = high.y - low.y;
    fit.height = std::max(height, aspect > 0 ? width / aspect : width);
    if (fit.height <= 0) fit.height = 1.0;  // a single point: keep a usable view around it
    return fit;
}

bool isPaperSpaceCurrent(const editor::Document& document) { return document.cvport() == 1; }

geom::Box3d toDisplay(editor::Document& document, const geom::Box3d& worldBox) {
    return worldBox.transformedBy(editor::worldToDisplay(&document));
}

void changeView(editor::Document& document, const KcGePoint3d& center, double height) {
    const bool paper = isPaperSpaceCurrent(document);
    editor::ViewState& view = document.view(paper);
    std::vector<editor::ViewState>& history = document.viewHistory(paper);
    history.push_back(view);
    if (history.size() > kHistoryDepth) history.erase(history.begin());
    view.center = center;
    view.height = height;
    if (!paper) storeModelView(document, view);
}

bool restorePreviousView(editor::Document& document) {
    const bool paper = isPaperSpaceCurrent(document);
    std::vector<editor::ViewState>& history = document.viewHistory(paper);
    if (history.empty()) return false;
    document.view(paper) = history.back();
    history.pop_back();
    if (!paper) storeModelView(document, document.view(paper));
    return true;
}

}  // namespace korva::commands
