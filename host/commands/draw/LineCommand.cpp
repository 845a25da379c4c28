// LINE: a chain of LINE entities through the points given, one entity per
// segment as each point is given. "Undo" takes back the last segment, "Close"
// (from the second segment on) joins the last point to the first and ends;
// Enter or a cancel ends and keeps what was drawn.
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "editor/Document.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

void eraseEntity(KcDbObjectId id) {
    KcDbEntity* entity = nullptr;
    if (kcdbOpenObject(entity, id, KcDb::kForWrite) != Kcad::eOk) return;
    entity->erase();
    entity->close();
}

KcDbObjectId addLine(const UcsPlane& ucs, const KcGePoint3d& from, const KcGePoint3d& to) {
    return appendToCurrentSpace(new KcDbLine(ucs.toWorld(from), ucs.toWorld(to)));
}

void lineCommand() {
    const UcsPlane ucs = UcsPlane::current();
    kcad_point first;
    if (kcedGetPoint(nullptr, L"\nSpecify first point: ", first) != RTNORM) return;
    std::vector<KcGePoint3d> points{{first[0], first[1], first[2]}};
    std::vector<KcDbObjectId> segments;
    while (true) {
        const bool canClose = segments.size() >= 2;
        kcedInitGet(0, canClose ? L"Close Undo" : L"Undo");
        const KcGePoint3d& last = points.back();
        const kcad_point base = {last.x, last.y, last.z};
        kcad_point next;
        const int status = kcedGetPoint(base, canClose ? L"\nSpecify next point or [Close/Undo]: "
                                                       : L"\nSpecify next point or [Undo]: ",
                                        next);
        if (status == RTNORM) {
            const KcGePoint3d point(next[0], next[1], next[2]);
            const KcDbObjectId id = addLine(ucs, last, point);
            if (id.isNull()) return;
            segments.push_back(id);
            points.push_back(point);
            continue;
        }
        if (status != RTKWORD) return;
        if (answeredKeyword() == L"Close") {
            addLine(ucs, last, points.front());
            return;
        }
        if (segments.empty()) {
            kcutPrintf(L"\nAll segments already undone.");
            continue;
        }
        eraseEntity(segments.back());
        segments.pop_back();
        points.pop_back();
        // "@" answers are relative to the point the chain is back at.
        if (editor::Document* document = editor::Session::instance().current()) document->lastPoint() = points.back();
    }
}

}  // namespace

void registerLineCommand() { addBuiltInCommand(L"LINE", lineCommand); }

}  // namespace korva::commands
