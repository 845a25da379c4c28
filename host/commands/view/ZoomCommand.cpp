// ZOOM: Extents, All, Object, Previous, Window, Center, Scale and typed scale
// factors ("2" relative to the limits, "2x" relative to the current view, "2xp"
// relative to paper space, taken as the current view here). The headless host
// has no screen, so Dynamic and the real-time default change nothing.
#include "commands/view/ZoomCommand.h"

#include <cwctype>
#include <optional>

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/view/ViewFitting.h"
#include "db/EntityNames.h"
#include "editor/Coordinates.h"
#include "editor/Prompts.h"
#include "kced.h"

namespace korva::commands {

namespace {

using editor::Document;

constexpr const wchar_t* kZoomPrompt =
    L"\nSpecify corner of window, enter a scale factor (nX or nXP), or\n"
    L"[All/Center/Dynamic/Extents/Previous/Scale/Window/Object] <real time>: ";
constexpr const wchar_t* kZoomKeywords =
    L"All Center Dynamic Extents Previous Scale Window Object _ All Center Dynamic Extents Previous Scale Window "
    L"Object";

// A typed scale: "n" (of the limits), "nX" (of the current view), "nXP" (of paper space).
struct ScaleFactor {
    double factor = 1.0;
    bool ofCurrentView = false;
};

std::optional<ScaleFactor> parseScale(std::wstring text) {
    ScaleFactor scale;
    const std::wstring upper = upperText(text);
    if (upper.size() > 2 && upper.ends_with(L"XP")) {
        text.resize(text.size() - 2);
        scale.ofCurrentView = true;
    } else if (upper.size() > 1 && upper.back() == L'X') {
        text.pop_back();
        scale.ofCurrentView = true;
    }
    const auto number = editor::parseNumber(text);
    if (!number || *number <= 0) return std::nullopt;
    scale.factor = *number;
    return scale;
}

void zoomToWorldBox(Document& document, const geom::Box3d& worldBox) {
    const ViewFit fit = fitBox(toDisplay(document, worldBox), screenAspect());
    changeView(document, fit.center, fit.height);
}

db::ObjectRecord* currentSpaceRecord(Document& document) {
    return isPaperSpaceCurrent(document) ? document.drawing().paperSpace() : document.drawing().modelSpace();
}

void zoomExtents(Document& document) {
    geom::Box3d box = spaceExtents(currentSpaceRecord(document));
    if (box.isEmpty()) box = limitsOf(document.drawing(), isPaperSpaceCurrent(document));
    zoomToWorldBox(document, box);
}

void zoomAll(Document& document) {
    geom::Box3d box = limitsOf(document.drawing(), isPaperSpaceCurrent(document));
    box.add(spaceExtents(currentSpaceRecord(document)));
    zoomToWorldBox(document, box);
}

void applyScale(Document& document, const ScaleFactor& scale) {
    const editor::ViewState& view = document.view(isPaperSpaceCurrent(document));
    if (scale.ofCurrentView) {
        changeView(document, view.center, view.height / scale.factor);
        return;
    }
    const geom::Box3d limits = toDisplay(document, limitsOf(document.drawing(), isPaperSpaceCurrent(document)));
    changeView(document, view.center, (limits.max().y - limits.min().y) / scale.factor);
}

void zoomScale(Document& document) {
    const TextAnswer answer = askString(L"\nEnter a scale factor (nX or nXP): ", false);
    if (answer.cancelled() || answer.text.empty()) return;
    const auto scale = parseScale(answer.text);
    if (!scale) {
        refuseAnswer(L"Requires a positive number, nX or nXP.");
        return;
    }
    applyScale(document, *scale);
}

// Two corners in UCS; the view shows the window they span.
void zoomWindow(Document& document, const double* firstCorner) {
    double first[3] = {0, 0, 0};
    if (firstCorner) {
        std::copy(firstCorner, firstCorner + 3, first);
    } else if (kcedGetPoint(nullptr, L"\nSpecify first corner: ", first) != RTNORM) {
        return;
    }
    double second[3] = {0, 0, 0};
    if (kcedGetCorner(first, L"\nSpecify opposite corner: ", second) != RTNORM) return;
    const geom::Box3d box(editor::ucsPointToWorld({first[0], first[1], first[2]}),
                          editor::ucsPointToWorld({second[0], second[1], second[2]}));
    const geom::Box3d display = toDisplay(document, box);
    if (display.max().x - display.min().x <= 0 && display.max().y - display.min().y <= 0) {
        printMessage(L"** Invalid window **");
        return;
    }
    zoomToWorldBox(document, box);
}

void zoomCenter(Document& document) {
    double center[3] = {0, 0, 0};
    if (kcedGetPoint(nullptr, L"\nSpecify center point: ", center) != RTNORM) return;
    const editor::ViewState& view = document.view(isPaperSpaceCurrent(document));
    const TextAnswer answer = askString(L"\nEnter magnification or height <" + formatReal(view.height) + L">: ", false);
    if (answer.cancelled()) return;
    double height = view.height;
    if (!answer.text.empty()) {
        const auto scale = parseScale(answer.text);
        if (!scale) {
            refuseAnswer(L"Requires a positive number or nX.");
            return;
        }
        height = scale->ofCurrentView ? view.height / scale->factor : scale->factor;
    }
    const KcGePoint3d world = editor::ucsPointToWorld({center[0], center[1], center[2]});
    const KcGePoint3d display = editor::worldToDisplay(&document) * world;
    changeView(document, {display.x, display.y, 0.0}, height);
}

void zoomObjects(Document& document) {
    kcad_name set = {0, 0};
    if (kcedSSGet(nullptr, nullptr, nullptr, nullptr, set) != RTNORM) return;
    Kcad::Int32 length = 0;
    kcedSSLength(set, &length);
    std::vector<const db::ObjectRecord*> entities;
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name entity = {0, 0};
        if (kcedSSName(set, i, entity) == RTNORM) entities.push_back(db::recordOf(entity));
    }
    kcedSSFree(set);
    const geom::Box3d box = entityListExtents(entities);
    if (box.isEmpty()) return;
    zoomToWorldBox(document, box);
}

void runOption(Document& document, const std::wstring& option) {
    if (option == L"Extents") return zoomExtents(document);
    if (option == L"All") return zoomAll(document);
    if (option == L"Object") return zoomObjects(document);
    if (option == L"Window") return zoomWindow(document, nullptr);
    if (option == L"Center") return zoomCenter(document);
    if (option == L"Scale") return zoomScale(document);
    if (option == L"Dynamic") return;  // needs a screen
    if (option == L"Previous") {
        if (!restorePreviousView(document)) printMessage(L"No previous view saved.");
        return;
    }
    if (const auto scale = parseScale(option)) return applyScale(document, *scale);
    refuseAnswer(L"Requires a point, a scale factor or an option keyword.");
}

void runZoomCommand() {
    Document* document = currentDocument();
    if (!document) return;
    double point[3] = {0, 0, 0};
    kcedInitGet(RSG_OTHER, kZoomKeywords);
    const int status = kcedGetPoint(nullptr, kZoomPrompt, point);
    if (status == RTNORM) {
        zoomWindow(*document, point);
    } else if (status == RTKWORD) {
        wchar_t input[256] = {0};
        kcedGetInput(input, 256);
        runOption(*document, input);
    }
}

}  // namespace

void registerZoomCommand() { addBuiltInCommand(L"ZOOM", runZoomCommand); }

}  // namespace korva::commands
