// MVIEW: a rectangular viewport of the current layout by two corners (or
// fitting the current paper-space view), showing the extents of model space;
// ON and OFF switch chosen viewports. A layout that has no viewport of its own
// (number 1, the sheet) gets one first, as CAD hosts do when a layout is set up.
#include "commands/view/ViewportCommand.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/view/Layouts.h"
#include "commands/view/ViewFitting.h"
#include "db/EntityNames.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "editor/CommandStack.h"
#include "editor/Coordinates.h"
#include "kcdbdatabase.h"
#include "kced.h"

namespace korva::commands {

namespace {

using db::Tag;
using editor::Document;

constexpr std::string_view kViewportMarker = "AcDbViewport";
constexpr int64_t kDefaultStatusFlags = 819296;  // always-on bit, adaptive grid, UCS icon shown at origin
constexpr int64_t kOffFlag = 131072;

struct ViewportShape {
    KcGePoint3d center;
    double width = 0.0;
    double height = 0.0;
    int number = 0;
    int status = 0;
    KcGePoint3d viewCenter;  // the model-space point shown at its centre
    double viewHeight = 0.0;
};

// The groups of a VIEWPORT as current writers give them; R2007 added the lighting groups.
std::vector<Tag> viewportTags(const ViewportShape& shape, int version) {
    std::vector<Tag> tags{Tag::string(100, "AcDbEntity"),      Tag::string(8, ""),
                          Tag::string(100, kViewportMarker),   Tag::point(10, shape.center),
                          Tag::real(40, shape.width),          Tag::real(41, shape.height),
                          Tag::integerValue(68, shape.status), Tag::integerValue(69, shape.number)};
    if (version < 1015) return tags;
    const std::vector<Tag> view{Tag::point2d(12, shape.viewCenter.x, shape.viewCenter.y),
                                Tag::point2d(13, 0, 0),
                                Tag::point2d(14, 10, 10),
                                Tag::point2d(15, 10, 10),
                                Tag::point(16, {0, 0, 1}),
                                Tag::point(17, {0, 0, 0}),
                                Tag::real(42, 50.0),
                                Tag::real(43, 0.0),
                                Tag::real(44, 0.0),
                                Tag::real(45, shape.viewHeight),
                                Tag::real(50, 0.0),
                                Tag::real(51, 0.0),
                                Tag::integerValue(72, 100),
                                Tag::integerValue(90, kDefaultStatusFlags),
                                Tag::string(1, ""),
                                Tag::integerValue(281, 0),
                                Tag::integerValue(71, 1),
                                Tag::integerValue(74, 0),
                                Tag::point(110, {0, 0, 0}),
                                Tag::point(111, {1, 0, 0}),
                                Tag::point(112, {0, 1, 0}),
                                Tag::integerValue(79, 0),
                                Tag::real(146, 0.0),
                                Tag::integerValue(170, 0)};
    tags.insert(tags.end(), view.begin(), view.end());
    if (version >= 1021) {
        const std::vector<Tag> lighting{
            Tag::integerValue(61, 5), Tag::integerValue(292, 1),  Tag::integerValue(282, 1),      Tag::real(141, 0.0),
            Tag::real(142, 0.0),      Tag::integerValue(63, 250), Tag::integerValue(421, 3355443)};
        tags.insert(tags.end(), lighting.begin(), lighting.end());
    }
    return tags;
}

// Appends the viewport to the layout block through the block's open protocol.
bool appendViewport(db::ObjectRecord& layoutBlock, const ViewportShape& shape) {
    KcDbBlockTableRecord* block = nullptr;
    if (kcdbOpenObject(block, db::ObjectAccess::id(&layoutBlock), KcDb::kForWrite) != Kcad::eOk) return false;
    auto* viewport = new KcDbViewport();
    db::ObjectAccess::record(*viewport).tags =
        db::TagList::encode(viewportTags(shape, layoutBlock.drawing->versionNumber()));
    const Kcad::ErrorStatus status = block->appendKcDbEntity(viewport);
    block->close();
    if (status != Kcad::eOk) {
        delete viewport;
        return false;
    }
    viewport->close();
    return true;
}

// The view of model space a viewport of that shape shows: the extents, or the limits of an empty model.
void fitModelView(const db::Drawing& drawing, ViewportShape& shape) {
    geom::Box3d box = spaceExtents(drawing.modelSpace());
    if (box.isEmpty()) box = limitsOf(drawing, false);
    const ViewFit fit = fitBox(box, shape.height > 0 ? shape.width / shape.height : 1.0);
    shape.viewCenter = fit.center;
    shape.viewHeight = fit.height;
}

// The sheet's own viewport (number 1), made from the paper-space view when the layout lacks it.
void ensureSheetViewport(Document& document, db::ObjectRecord& layoutBlock) {
    for (const db::ObjectRecord* viewport : viewportsOf(&layoutBlock)) {
        if (viewportNumber(*viewport) == 1) return;
    }
    const editor::ViewState& view = document.view(true);
    ViewportShape sheet;
    sheet.center = {view.center.x, view.center.y, 0.0};
    sheet.height = view.height;
    sheet.width = view.height * screenAspect();
    sheet.number = 1;
    sheet.status = 1;
    sheet.viewCenter = sheet.center;
    sheet.viewHeight = sheet.height;
    appendViewport(layoutBlock, sheet);
}

void createViewport(Document& document, const geom::Box3d& paperBox) {
    db::ObjectRecord* layoutBlock = document.drawing().paperSpace();
    if (!layoutBlock) return;
    const double width = paperBox.max().x - paperBox.min().x;
    const double height = paperBox.max().y - paperBox.min().y;
    if (width <= 0 || height <= 0) {
        refuseAnswer(L"** Invalid viewport size **");
        return;
    }
    ensureSheetViewport(document, *layoutBlock);
    ViewportShape shape;
    shape.center = {(paperBox.min().x + paperBox.max().x) / 2, (paperBox.min().y + paperBox.max().y) / 2, 0.0};
    shape.width = width;
    shape.height = height;
    for (const db::ObjectRecord* viewport : viewportsOf(layoutBlock)) {
        shape.number = std::max(shape.number, viewportNumber(*viewport));
        shape.status = std::max(shape.status, viewportStatus(*viewport));
    }
    shape.number = std::max(shape.number + 1, 2);
    shape.status = std::max(shape.status + 1, 2);
    fitModelView(document.drawing(), shape);
    if (!appendViewport(*layoutBlock, shape)) printMessage(L"The viewport could not be created.");
}

// ON/OFF: the chosen viewports (not the sheet's own) are switched.
void switchViewports(bool on) {
    kcad_name set = {0, 0};
    if (kcedSSGet(nullptr, nullptr, nullptr, nullptr, set) != RTNORM) return;
    Kcad::Int32 length = 0;
    kcedSSLength(set, &length);
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name name = {0, 0};
        if (kcedSSName(set, i, name) != RTNORM) continue;
        db::ObjectRecord* viewport = db::recordOf(name);
        if (!viewport || viewport->type != db::Type::Viewport || viewportNumber(*viewport) == 1) continue;
        const int64_t flags = db::fieldInteger(*viewport, kViewportMarker, 90, 0);
        const int status = viewportStatus(*viewport);
        if (on && status <= 0) db::setField(*viewport, kViewportMarker, Tag::integerValue(68, 2));
        if (!on) db::setField(*viewport, kViewportMarker, Tag::integerValue(68, 0));
        if (db::hasField(*viewport, kViewportMarker, 90)) {
            db::setField(*viewport, kViewportMarker,
                         Tag::integerValue(90, on ? (flags & ~kOffFlag) : (flags | kOffFlag)));
        }
    }
    kcedSSFree(set);
}

geom::Box3d currentPaperView(Document& document) {
    const editor::ViewState& view = document.view(true);
    const double halfHeight = view.height / 2;
    const double halfWidth = halfHeight * screenAspect();
    return geom::Box3d(KcGePoint3d(view.center.x - halfWidth, view.center.y - halfHeight, 0),
                       KcGePoint3d(view.center.x + halfWidth, view.center.y + halfHeight, 0));
}

void runViewportCommand() {
    Document* document = currentDocument();
    if (!document) return;
    double first[3] = {0, 0, 0};
    kcedInitGet(0, L"ON OFF Fit _ ON OFF Fit");
    const int status = kcedGetPoint(nullptr, L"\nSpecify corner of viewport or [ON/OFF/Fit] <Fit>: ", first);
    if (status == RTNORM) {
        double second[3] = {0, 0, 0};
        if (kcedGetCorner(first, L"\nSpecify opposite corner: ", second) != RTNORM) return;
        // Corners are in the paper-space UCS; the sheet lies in the world XY plane.
        const KcGePoint3d a = editor::ucsPointToWorld({first[0], first[1], first[2]});
        const KcGePoint3d b = editor::ucsPointToWorld({second[0], second[1], second[2]});
        createViewport(*document, geom::Box3d(KcGePoint3d(a.x, a.y, 0), KcGePoint3d(b.x, b.y, 0)));
        return;
    }
    wchar_t keyword[32] = {0};
    if (status == RTKWORD) kcedGetInput(keyword, 32);
    const std::wstring option = status == RTNONE ? L"Fit" : keyword;
    if (option == L"Fit")
        createViewport(*document, currentPaperView(*document));
    else if (option == L"ON" || option == L"OFF")
        switchViewports(option == L"ON");
}

}  // namespace

void registerViewportCommand() { addBuiltInCommand(L"MVIEW", runViewportCommand, editor::kCmdNoTileMode); }

}  // namespace korva::commands
