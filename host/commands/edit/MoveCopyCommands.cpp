// MOVE and COPY: the selected objects by the displacement from a base point to
// a second point ("Displacement", or Enter at the second point: the first
// point taken as the displacement). MOVE transforms the objects in place; COPY
// adds copies, one set per second point until Enter or "Exit" in its Multiple
// mode ("Undo" takes back the last set), one set in Single mode ("mOde").
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/edit/EditSelection.h"
#include "commands/edit/EditTransforms.h"
#include "editor/CommandStack.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

bool copyModeSingle = false;  // COPYMODE

// A typed displacement (a point read as a vector in the UCS). False on cancel.
bool promptDisplacement(KcGeMatrix3d& displacement) {
    kcad_point vector = {0.0, 0.0, 0.0};
    const kcad_point origin = {0.0, 0.0, 0.0};
    const int status = kcedGetPoint(nullptr, L"\nSpecify displacement <0.0000, 0.0000, 0.0000>: ", vector);
    if (status != RTNORM && status != RTNONE) return false;
    displacement = displacementBetween(origin, vector);
    return true;
}

// The base point or "Displacement" (Enter chooses it too). False on cancel.
// base is set when a point was given; otherwise displacement holds the answer.
bool promptBasePoint(const wchar_t* prompt, const wchar_t* keywords, kcad_point base, bool& hasBase,
                     KcGeMatrix3d& displacement, bool& modeChanged) {
    modeChanged = false;
    kcedInitGet(0, keywords);
    const int status = kcedGetPoint(nullptr, prompt, base);
    hasBase = status == RTNORM;
    if (hasBase) return true;
    if (status == RTKWORD && answeredKeyword() == L"mOde") {
        kcedInitGet(0, L"Single Multiple");
        wchar_t mode[16] = {};
        const std::wstring question = std::wstring(L"\nEnter a copy mode option [Single/Multiple] <") +
                                      (copyModeSingle ? L"Single" : L"Multiple") + L">: ";
        const int given = kcedGetKword(question.c_str(), mode, 16);
        if (given == RTNORM) copyModeSingle = std::wstring(mode) == L"Single";
        modeChanged = given == RTNORM || given == RTNONE;
        return modeChanged;
    }
    if (status != RTKWORD && status != RTNONE) return false;
    return promptDisplacement(displacement);
}

// The second point, or Enter: the base point as the displacement. False on cancel.
bool promptSecondPoint(const kcad_point base, KcGeMatrix3d& displacement) {
    kcad_point second;
    const int status = kcedGetPoint(base, L"\nSpecify second point or <use first point as displacement>: ", second);
    if (status == RTNONE) {
        const kcad_point origin = {0.0, 0.0, 0.0};
        displacement = displacementBetween(origin, base);
        return true;
    }
    if (status != RTNORM) return false;
    displacement = displacementBetween(base, second);
    return true;
}

void moveCommand() {
    std::vector<KcDbObjectId> ids;
    if (selectObjectsToEdit(ids) != RTNORM) return;
    kcad_point base;
    bool hasBase = false, modeChanged = false;
    KcGeMatrix3d displacement;
    if (!promptBasePoint(L"\nSpecify base point or [Displacement] <Displacement>: ", L"Displacement", base, hasBase,
                         displacement, modeChanged)) {
        return;
    }
    if (hasBase && !promptSecondPoint(base, displacement)) return;
    transformObjects(ids, displacement);
}

void eraseAll(const std::vector<KcDbObjectId>& ids) {
    for (KcDbObjectId id : ids) {
        KcDbEntity* entity = nullptr;
        if (id.isNull() || kcdbOpenObject(entity, id, KcDb::kForWrite) != Kcad::eOk) continue;
        entity->erase();
        entity->close();
    }
}

// Further copies at more second points until Enter or "Exit"; "Undo" takes back the last set.
void moreCopies(const std::vector<KcDbObjectId>& ids, const kcad_point base, std::vector<std::vector<KcDbObjectId>>& sets) {
    while (true) {
        kcedInitGet(0, L"Exit Undo");
        kcad_point second;
        const int status = kcedGetPoint(base, L"\nSpecify second point or [Exit/Undo] <Exit>: ", second);
        if (status == RTNORM) {
            sets.push_back(copyObjects(ids, displacementBetween(base, second)));
            continue;
        }
        if (status != RTKWORD || answeredKeyword() == L"Exit") return;
        if (sets.empty()) {
            kcutPrintf(L"\nEverything has been undone.");
            continue;
        }
        eraseAll(sets.back());
        sets.pop_back();
    }
}

void copyCommand() {
    std::vector<KcDbObjectId> ids;
    if (selectObjectsToEdit(ids) != RTNORM) return;
    kcad_point base;
    bool hasBase = false, modeChanged = true;
    KcGeMatrix3d displacement;
    while (modeChanged) {
        kcutPrintf(L"\nCurrent settings:  Copy mode = %s", copyModeSingle ? L"Single" : L"Multiple");
        if (!promptBasePoint(L"\nSpecify base point or [Displacement/mOde] <Displacement>: ", L"Displacement mOde", base,
                             hasBase, displacement, modeChanged)) {
            return;
        }
    }
    if (!hasBase) {
        copyObjects(ids, displacement);
        return;
    }
    kcad_point second;
    const int status = kcedGetPoint(base, L"\nSpecify second point or <use first point as displacement>: ", second);
    if (status == RTNONE) {
        const kcad_point origin = {0.0, 0.0, 0.0};
        copyObjects(ids, displacementBetween(origin, base));
        return;
    }
    if (status != RTNORM) return;
    std::vector<std::vector<KcDbObjectId>> sets{copyObjects(ids, displacementBetween(base, second))};
    if (!copyModeSingle) moreCopies(ids, base, sets);
}

}  // namespace

void registerMoveCopyCommands() {
    addBuiltInCommand(L"MOVE", moveCommand, editor::kCmdUsePickSet);
    addBuiltInCommand(L"COPY", copyCommand, editor::kCmdUsePickSet);
}

}  // namespace korva::commands
