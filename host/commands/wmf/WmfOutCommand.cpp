// WMFOUT: writes the selected objects as the current view shows them to a
// Windows Metafile. The file name (FILEDIA), then "Select objects:" (objects
// on locked layers are written too: nothing is edited), then the scene in
// display coordinates from the view's upper-left corner: VIEWSIZE high and
// VIEWSIZE x SCREENSIZE.x / SCREENSIZE.y wide around VIEWCTR. Nothing is
// written when none of the selected objects can be drawn.
#include <cmath>
#include <fstream>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/edit/EditSelection.h"
#include "commands/view/ViewFitting.h"
#include "commands/wmf/WmfCommands.h"
#include "commands/wmf/WmfFileName.h"
#include "commands/wmf/WmfScene.h"
#include "commands/wmf/WmfSceneWriter.h"
#include "db/EntityGeometry.h"
#include "db/ObjectAccess.h"
#include "db/Utf8.h"
#include "editor/CommandStack.h"
#include "editor/Coordinates.h"
#include "editor/Document.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace korva::commands::wmf {

namespace {

// Flattened curves stay within this many logical units of the true curve.
constexpr double kFlatteningInLogicalUnits = 0.25;

struct DisplayView {
    KcGeMatrix3d worldToDisplay;
    ViewBox box;
    double cornerX = 0.0;  // the upper-left corner
    double cornerY = 0.0;
};

DisplayView currentView(editor::Document& document) {
    const editor::ViewState& view = document.view(isPaperSpaceCurrent(document));
    const double width = view.height * screenAspect();
    DisplayView shown;
    shown.worldToDisplay = editor::worldToDisplay(&document);
    shown.box = {view.center.x - width / 2, view.center.y - view.height / 2, view.center.x + width / 2,
                 view.center.y + view.height / 2};
    shown.cornerX = shown.box.left;
    shown.cornerY = shown.box.top;
    return shown;
}

// The flattening tolerance in display units, from the objects' extents: the
// scale the file will have is known once the scene is built, and nearly known
// before from the extents.
double flatteningTolerance(const std::vector<KcDbObjectId>& ids, const DisplayView& view) {
    double width = 0.0, height = 0.0;
    for (KcDbObjectId id : ids) {
        const db::ObjectRecord* record = db::ObjectAccess::record(id);
        geom::Box3d world;
        if (!record || !db::entityExtents(*record, world)) continue;
        const geom::Box3d shown = world.transformedBy(view.worldToDisplay);
        width = std::max({width, std::abs(shown.min().x - view.cornerX), std::abs(shown.max().x - view.cornerX)});
        height = std::max({height, std::abs(view.cornerY - shown.min().y), std::abs(view.cornerY - shown.max().y)});
    }
    if (width <= 0.0 && height <= 0.0) {
        width = view.box.right - view.box.left;
        height = view.box.top - view.box.bottom;
    }
    // The scene spans at most twice the farthest distance from the corner.
    return kFlatteningInLogicalUnits / unitsPerDrawingUnitFor(2 * width, 2 * height);
}

bool writeFile(const std::wstring& path, const std::vector<uint8_t>& bytes) {
    std::ofstream file(db::wideToUtf8(path), std::ios::binary | std::ios::trunc);
    if (!file) return false;
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(file);
}

void wmfOutCommand() {
    editor::Document* document = currentDocument();
    KcDbDatabase* database = workingDatabase();
    if (!document || !database) return;
    std::wstring path;
    if (askMetafileName(FileUse::Write, path) != RTNORM) return;
    std::vector<KcDbObjectId> ids;
    if (const int status = selectObjectsToRead(ids); status != RTNORM) {
        if (status == RTNONE) printMessage(L"Nothing selected: no metafile was written.");
        return;
    }
    const DisplayView view = currentView(*document);
    WmfSceneBuilder builder(database, view.worldToDisplay, view.box, flatteningTolerance(ids, view));
    for (KcDbObjectId id : ids) builder.addSelected(id);
    const Scene scene = builder.take();
    if (scene.shapes.empty()) {
        printMessage(L"Nothing to write: none of the selected objects can be drawn in a metafile. No file was written.");
        return;
    }
    if (scene.undrawable > 0) {
        printMessage(std::to_wstring(scene.undrawable) + L" object(s) of a kind a metafile cannot show were left out.");
    }
    const WrittenMetafile written = writeSceneMetafile(scene, view.cornerX, view.cornerY);
    if (!writeFile(path, written.bytes)) printMessage(L"The metafile \"" + path + L"\" could not be written.");
}

}  // namespace

void registerWmfOutCommand() { addBuiltInCommand(L"WMFOUT", wmfOutCommand, editor::kCmdUsePickSet); }

}  // namespace korva::commands::wmf
