// WIPEOUT: a wipeout in the current space and layer, its boundary given by
// points until Enter or "Close" (a point equal to the first closes the outline
// and is dropped), or taken from a closed polyline of line segments
// ("Polyline", also Enter at the first point). "Frames" turns the display of
// wipeout frames on or off (WIPEOUTFRAME). The wipeout lies in the XY plane of
// the current UCS and has the form DXF writers give a wipeout without an image
// definition: the smallest square around the outline as the image (origin at
// its lower left corner, u and v its sides, size 1 x 1), display flags 7,
// clipping on, brightness 50, contrast 50, fade 0, and a polygonal clip
// boundary (type 2) in image coordinates: from -0.5 to 0.5 across the square,
// y pointing down, closed by repeating the first point.
#include <algorithm>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "editor/SystemVariables.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

using db::Tag;

// Drawings that hold wipeouts declare the WIPEOUT class.
void declareWipeoutClass(db::Drawing& drawing) {
    if (drawing.versionNumber() < 1012) return;
    for (const db::TagList& entry : drawing.classes) {
        for (db::TagRef tag : entry) {
            if (tag.code() == 1 && tag.text() == "WIPEOUT") return;
        }
    }
    const std::vector<Tag> tags{Tag::string(1, "WIPEOUT"), Tag::string(2, "AcDbWipeout"), Tag::string(3, "WipeOut"),
                                Tag::integerValue(90, 0), Tag::integerValue(91, 0), Tag::integerValue(280, 0),
                                Tag::integerValue(281, 1)};
    drawing.classes.push_back(db::TagList::encode(tags));
}

// The AcDbWipeout groups for an outline in the XY plane of the UCS (UCS points).
std::vector<Tag> wipeoutGroups(const UcsPlane& ucs, const std::vector<KcGePoint2d>& outline, double elevation) {
    double minX = outline[0].x, minY = outline[0].y, maxX = minX, maxY = minY;
    for (const KcGePoint2d& p : outline) {
        minX = std::min(minX, p.x);
        minY = std::min(minY, p.y);
        maxX = std::max(maxX, p.x);
        maxY = std::max(maxY, p.y);
    }
    const double side = std::max(maxX - minX, maxY - minY);
    const KcGePoint3d origin = ucs.toWorld(KcGePoint3d(minX, minY, elevation));
    std::vector<Tag> tags{Tag::integerValue(90, 0),
                          Tag::point(10, origin),
                          Tag::point(11, KcGePoint3d::kOrigin + ucs.xAxis() * side),
                          Tag::point(12, KcGePoint3d::kOrigin + ucs.yAxis() * side),
                          Tag::point2d(13, 1.0, 1.0),
                          Tag::integerValue(70, 7),
                          Tag::integerValue(280, 1),
                          Tag::integerValue(281, 50),
                          Tag::integerValue(282, 50),
                          Tag::integerValue(283, 0),
                          Tag::integerValue(71, 2),
                          Tag::integerValue(91, static_cast<int64_t>(outline.size()) + 1)};
    for (size_t i = 0; i <= outline.size(); ++i) {
        const KcGePoint2d& p = outline[i % outline.size()];
        tags.push_back(Tag::point2d(14, (p.x - minX) / side - 0.5, 0.5 - (p.y - minY) / side));
    }
    return tags;
}

void addWipeout(const std::vector<KcGePoint2d>& outline, double elevation) {
    if (outline.size() < 3) return;
    const UcsPlane ucs = UcsPlane::current();
    KcDbDatabase* database = workingDatabase();
    if (!database) return;
    auto* wipeout = new KcDbWipeout();
    db::ObjectRecord& record = db::ObjectAccess::record(*wipeout);
    const std::vector<Tag> groups = wipeoutGroups(ucs, outline, elevation);
    if (groups[2].pointValue().asVector().isZeroLength()) {
        delete wipeout;
        return;
    }
    db::replaceGroups(record, "AcDbWipeout", {90, 10, 11, 12, 13, 340, 70, 280, 281, 282, 283, 290, 360, 71, 91, 14},
                      groups);
    if (!appendToCurrentSpace(wipeout).isNull()) declareWipeoutClass(database->drawing());
}

void promptFrames() {
    const bool on = editor::SystemVariables::instance().integer(L"WIPEOUTFRAME", 1) != 0;
    kcedInitGet(0, L"ON OFF");
    wchar_t mode[8] = {};
    const int status = kcedGetKword(on ? L"\nEnter mode [ON/OFF] <ON>: " : L"\nEnter mode [ON/OFF] <OFF>: ", mode, 8);
    if (status != RTNORM) return;
    editor::SystemVariables::instance().setValue(
        L"WIPEOUTFRAME", editor::VarValue::ofInteger(editor::VarType::Short, std::wstring(mode) == L"ON" ? 1 : 0));
}

// "Polyline": the vertices of a closed polyline of line segments, in the UCS.
void outlineFromPolyline() {
    kcad_name name = {0, 0};
    kcad_point picked;
    if (kcedEntSel(L"\nSelect a closed polyline: ", name, picked) != RTNORM) return;
    KcDbObjectId id;
    KcDbPolyline* polyline = nullptr;
    if (kcdbGetObjectId(id, name) != Kcad::eOk || kcdbOpenObject(polyline, id, KcDb::kForRead) != Kcad::eOk) {
        kcutPrintf(L"\nThe object is not a polyline.");
        return;
    }
    const UcsPlane ucs = UcsPlane::current();
    std::vector<KcGePoint2d> outline;
    bool straight = polyline->isClosed() && polyline->normal().isCodirectionalTo(ucs.normal());
    double elevation = 0.0;
    for (Kcad::UInt32 i = 0; straight && i < polyline->numVerts(); ++i) {
        double bulge = 0.0;
        KcGePoint3d point;
        polyline->getBulgeAt(i, bulge);
        polyline->getPointAt(i, point);
        straight = bulge == 0.0;
        const KcGePoint3d inUcs = ucs.toUcs(point);
        elevation = inUcs.z;
        outline.push_back(inUcs.convert2d());
    }
    polyline->close();
    if (!straight) {
        kcutPrintf(L"\nThe polyline must be closed, lie in the current UCS and have only line segments.");
        return;
    }
    kcedInitGet(0, L"Yes No");
    wchar_t answer[8] = {};
    const int status = kcedGetKword(L"\nErase polyline? [Yes/No] <No>: ", answer, 8);
    if (status != RTNORM && status != RTNONE) return;
    addWipeout(outline, elevation);
    if (status == RTNORM && std::wstring(answer) == L"Yes" &&
        kcdbOpenObject(polyline, id, KcDb::kForWrite) == Kcad::eOk) {
        polyline->erase();
        polyline->close();
    }
}

void wipeoutCommand() {
    kcad_point first;
    kcedInitGet(0, L"Frames Polyline");
    const int status = kcedGetPoint(nullptr, L"\nSpecify first point or [Frames/Polyline] <Polyline>: ", first);
    if (status == RTKWORD && answeredKeyword() == L"Frames") {
        promptFrames();
        return;
    }
    if (status == RTKWORD || status == RTNONE) {
        outlineFromPolyline();
        return;
    }
    if (status != RTNORM) return;
    std::vector<KcGePoint2d> outline{{first[0], first[1]}};
    while (true) {
        const bool canClose = outline.size() >= 3;
        kcedInitGet(0, canClose ? L"Close Undo" : L"Undo");
        const kcad_point last = {outline.back().x, outline.back().y, first[2]};
        kcad_point next;
        const wchar_t* prompt = outline.size() == 1 ? L"\nSpecify next point: "
                                : canClose          ? L"\nSpecify next point or [Close/Undo]: "
                                                    : L"\nSpecify next point or [Undo]: ";
        const int answer = kcedGetPoint(last, prompt, next);
        if (answer == RTNORM) {
            // A point on the first one closes the outline; the boundary repeats it anyway.
            if (!KcGePoint2d(next[0], next[1]).isEqualTo(outline.front())) outline.emplace_back(next[0], next[1]);
            continue;
        }
        if (answer == RTKWORD && answeredKeyword() == L"Undo") {
            if (outline.size() > 1) outline.pop_back();
            continue;
        }
        if (answer == RTNONE || answer == RTKWORD) addWipeout(outline, first[2]);
        return;
    }
}

}  // namespace

void registerWipeoutCommand() { addBuiltInCommand(L"WIPEOUT", wipeoutCommand); }

}  // namespace korva::commands
