// ROTATE and SCALE: the selected objects about a base point, by an angle (in
// the XY plane of the current UCS) or a factor, given directly or as "Reference"
// and new values. "Copy" keeps the objects and transforms copies instead.
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/edit/EditSelection.h"
#include "commands/edit/EditTransforms.h"
#include "editor/CommandStack.h"
#include "editor/SystemVariables.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

double lastRotation = 0.0;  // the default of the next ROTATE
double lastScale = 1.0;     // the default of the next SCALE

// Two points and the angle between them (the "Points" options). False on cancel.
bool angleByPoints(double& angle) {
    kcad_point first, second;
    if (kcedGetPoint(nullptr, L"\nSpecify first point: ", first) != RTNORM) return false;
    if (kcedGetPoint(first, L"\nSpecify second point: ", second) != RTNORM) return false;
    angle = kcutAngle(first, second);
    return true;
}

bool distanceByPoints(double& distance) {
    kcad_point first, second;
    if (kcedGetPoint(nullptr, L"\nSpecify first point: ", first) != RTNORM) return false;
    if (kcedGetPoint(first, L"\nSpecify second point: ", second) != RTNORM) return false;
    distance = kcutDistance(first, second);
    return distance > 0.0;
}

// "Reference" of ROTATE: the reference angle and the new angle. False on cancel.
bool rotationByReference(const kcad_point base, double& rotation) {
    double reference = 0.0, target = 0.0;
    int status = kcedGetAngle(nullptr, L"\nSpecify the reference angle <0>: ", &reference);
    if (status != RTNORM && status != RTNONE) return false;
    kcedInitGet(0, L"Points");
    status = kcedGetAngle(base, L"\nSpecify the new angle or [Points] <0>: ", &target);
    if (status == RTKWORD && !angleByPoints(target)) return false;
    if (status != RTNORM && status != RTNONE && status != RTKWORD) return false;
    rotation = target - reference;
    return true;
}

bool scaleByReference(const kcad_point base, double& factor) {
    double reference = 1.0, target = 1.0;
    kcedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
    int status = kcedGetDist(nullptr, L"\nSpecify reference length <1.0000>: ", &reference);
    if (status != RTNORM && status != RTNONE) return false;
    kcedInitGet(RSG_NOZERO | RSG_NONEG, L"Points");
    status = kcedGetDist(base, L"\nSpecify new length or [Points] <1.0000>: ", &target);
    if (status == RTKWORD && !distanceByPoints(target)) return false;
    if (status != RTNORM && status != RTNONE && status != RTKWORD) return false;
    factor = target / reference;
    return true;
}

void apply(const std::vector<KcDbObjectId>& ids, const KcGeMatrix3d& m, bool copy) {
    if (copy) copyObjects(ids, m);
    else transformObjects(ids, m);
}

void rotateCommand() {
    const editor::SystemVariables& variables = editor::SystemVariables::instance();
    kcutPrintf(L"\nCurrent positive angle in UCS:  ANGDIR=%s  ANGBASE=%s",
               variables.integer(L"ANGDIR", 0) == 1 ? L"clockwise" : L"counterclockwise",
               formatAngle(variables.real(L"ANGBASE", 0.0)).c_str());
    std::vector<KcDbObjectId> ids;
    if (selectObjectsToEdit(ids) != RTNORM) return;
    kcad_point base;
    if (kcedGetPoint(nullptr, L"\nSpecify base point: ", base) != RTNORM) return;
    bool copy = false;
    double rotation = lastRotation;
    while (true) {
        kcedInitGet(0, L"Copy Reference");
        const std::wstring prompt = L"\nSpecify rotation angle or [Copy/Reference] <" + formatAngle(lastRotation) + L">: ";
        const int status = kcedGetAngle(base, prompt.c_str(), &rotation);
        if (status == RTNORM || status == RTNONE) break;
        if (status != RTKWORD) return;
        if (answeredKeyword() == L"Reference") {
            if (!rotationByReference(base, rotation)) return;
            break;
        }
        copy = true;
        kcutPrintf(L"\nRotating a copy of the selected objects.");
    }
    lastRotation = rotation;
    const UcsPlane ucs = UcsPlane::current();
    apply(ids, KcGeMatrix3d::rotation(rotation, ucs.normal(), ucs.toWorld(base)), copy);
}

void scaleCommand() {
    std::vector<KcDbObjectId> ids;
    if (selectObjectsToEdit(ids) != RTNORM) return;
    kcad_point base;
    if (kcedGetPoint(nullptr, L"\nSpecify base point: ", base) != RTNORM) return;
    bool copy = false;
    double factor = lastScale;
    while (true) {
        kcedInitGet(RSG_NOZERO | RSG_NONEG, L"Copy Reference");
        const std::wstring prompt = L"\nSpecify scale factor or [Copy/Reference] <" + formatDistance(lastScale) + L">: ";
        const int status = kcedGetDist(base, prompt.c_str(), &factor);
        if (status == RTNORM || status == RTNONE) break;
        if (status != RTKWORD) return;
        if (answeredKeyword() == L"Reference") {
            if (!scaleByReference(base, factor)) return;
            break;
        }
        copy = true;
        kcutPrintf(L"\nScaling a copy of the selected objects.");
    }
    if (factor <= 0.0) return;
    lastScale = factor;
    const UcsPlane ucs = UcsPlane::current();
    apply(ids, KcGeMatrix3d::scaling(factor, ucs.toWorld(base)), copy);
}

}  // namespace

void registerRotateScaleCommands() {
    addBuiltInCommand(L"ROTATE", rotateCommand, editor::kCmdUsePickSet);
    addBuiltInCommand(L"SCALE", scaleCommand, editor::kCmdUsePickSet);
}

}  // namespace korva::commands
